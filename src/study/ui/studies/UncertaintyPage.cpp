// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/UncertaintyPage.h"

#include "base/numbers.h"
#include "base/ui/Form.h"
#include "base/ui/NumberEdit.h"
#include "base/ui/qtText.h"
#include "study/output/headlines.h"
#include "study/ui/studies/choices.h"

#include <algorithm>
#include <cmath>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <thread>

namespace telvo::study::ui {

using telvo::ui::fromQt;
using telvo::ui::NumberEdit;
using telvo::ui::toQt;

namespace {

constexpr int FewestBits = 9, MostBits = 16; // of a replicate, to choose from
constexpr std::size_t MostLimits = 15;
constexpr double MostSeed = 9007199254740991.0; // whole numbers that a double holds

} // namespace

UncertaintyPage::UncertaintyPage(PageActions actions, EditScatter editScatter, QWidget* parent)
    : StudyPage("Uncertainty", tr(UncertaintyTitle), tr("uncertainty"), std::move(actions), parent),
      m_editScatter(std::move(editScatter)) {
    makeFields();
}

void UncertaintyPage::makeFields() {
    const auto add = [this](QHBoxLayout& row, const QString& caption, QWidget* field) {
        auto* label = new QLabel(caption, this);
        label->setBuddy(field);
        row.addWidget(label);
        row.addWidget(field);
    };
    m_view = new QComboBox(this);
    telvo::ui::describe(*m_view, named("cbo", "View"), tr("Show"),
                        tr("What table and picture show of the samples"));
    m_view->addItems({tr("Shares"), tr("What drives it"), tr("Convergence"), tr("Samples")});
    m_limit = new QComboBox(this);
    telvo::ui::describe(*m_limit, named("cbo", "Limit"), tr("Limit"),
                        tr("The limit that picture and sentence are about"));
    m_limit->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_limit->setMinimumContentsLength(40);
    m_remove = new QPushButton(tr("&Remove"), this);
    telvo::ui::describe(*m_remove, named("cmd", "RemoveLimit"), tr("Remove"),
                        tr("Takes this limit out of the study"));
    m_remove->setAutoDefault(false);
    auto* first = new QHBoxLayout;
    add(*first, tr("Sho&w:"), m_view);
    add(*first, tr("o&f the limit:"), m_limit);
    first->addWidget(m_remove);
    first->addStretch();
    fields().addLayout(first);
    makeLimitFields();

    m_inputs = new QPushButton(tr("&Inputs..."), this);
    telvo::ui::describe(*m_inputs, named("cmd", "Inputs"), tr("Inputs"),
                        tr("Which inputs scatter, and how"));
    m_inputs->setAutoDefault(false);
    m_samples = new QComboBox(this);
    telvo::ui::describe(
        *m_samples, named("cbo", "Samples"), tr("Samples"),
        tr("How many samples are drawn, in replicates that the interval comes from"));
    m_seed = makeNumber("Seed", tr("Seed"),
                        tr("A whole number; another one draws other samples of the same study"));
    auto* third = new QHBoxLayout;
    third->addWidget(m_inputs);
    add(*third, tr("Sa&mples:"), m_samples);
    add(*third, tr("See&d:"), m_seed);
    third->addStretch();
    fields().addLayout(third);

    connect(m_view, &QComboBox::activated, this, [this] { renew(); });
    connect(m_limit, &QComboBox::activated, this, [this] { renew(); });
    connect(m_samples, &QComboBox::activated, this, [this] {
        m_asked.plan.bits = m_samples->currentData().toInt();
        keep();
    });
    disconnect(m_seed, &QLineEdit::textEdited, nullptr, nullptr);
    connect(m_seed, &QLineEdit::textEdited, this, [this] {
        m_answer.reset();
        renewSoon();
    });
    connect(m_remove, &QPushButton::clicked, this, [this] {
        const int at = m_limit->currentIndex();
        m_asked.limits = limits();
        if (at < 0 || m_asked.limits.size() < 2) return;
        m_asked.limits.erase(m_asked.limits.begin() + at);
        listLimits(std::max(at - 1, 0));
        keep();
    });
    connect(m_inputs, &QPushButton::clicked, this, [this] {
        AskedUncertainty changed = m_asked;
        changed.limits = limits();
        if (!m_editScatter(subject().current, changed)) return;
        m_asked.vary = std::move(changed.vary);
        m_asked.correlated = std::move(changed.correlated);
        keep();
    });
}

void UncertaintyPage::makeLimitFields() {
    m_outcome = new OutcomeBox(named("cbo", "Outcome"), tr("Result of a new limit"),
                               tr("The result that another limit is for"), this);
    m_sense = new QComboBox(this);
    telvo::ui::describe(*m_sense, named("cbo", "Sense"), tr("At least or at most"),
                        tr("Whether the result has to be at least or at most the limit"));
    m_sense->addItems({tr("at least"), tr("at most")});
    m_target = makeNumber("Target", tr("New limit"), tr("What the result has to reach"));
    disconnect(m_target, &QLineEdit::textEdited, nullptr, nullptr);
    m_suggested = new QCheckBox(tr("s&uggested"), this);
    telvo::ui::describe(*m_suggested, named("chk", "Suggested"), tr("Suggested"),
                        tr("The factor that the warnings suggest; for the panel it follows the "
                           "depth of each sample"));
    auto* button = new QPushButton(tr("&Add"), this);
    telvo::ui::describe(*button, named("cmd", "AddLimit"), tr("Add"),
                        tr("Adds this limit to the study"));
    button->setAutoDefault(false);
    auto* row = new QHBoxLayout;
    auto* label = new QLabel(tr("&New limit:"), this);
    label->setBuddy(m_outcome);
    row->addWidget(label);
    for (QWidget* field :
         std::initializer_list<QWidget*>{m_outcome, m_sense, m_target, m_suggested, button})
        row->addWidget(field);
    row->addStretch();
    fields().addLayout(row);

    const auto showTarget = [this] {
        const auto outcome = m_outcome->outcome();
        const bool may = outcome && outcome->marginToSuggested().has_value();
        m_suggested->setEnabled(may);
        if (!may) m_suggested->setChecked(false);
        m_target->setEnabled(!m_suggested->isChecked());
    };
    connect(m_outcome, &QComboBox::activated, this, showTarget);
    connect(m_suggested, &QCheckBox::toggled, this, showTarget);
    connect(m_target, &QLineEdit::returnPressed, this, &UncertaintyPage::addLimit);
    connect(button, &QPushButton::clicked, this, &UncertaintyPage::addLimit);
}

void UncertaintyPage::addLimit() {
    const auto refused = [this](const std::string& why) { actions().showText(tr("Limit"), why); };
    const auto outcome = m_outcome->outcome();
    if (!outcome) return refused("Choose a result");
    Criterion criterion{*outcome,
                        m_sense->currentIndex() == 1 ? Criterion::Sense::AtMost
                                                     : Criterion::Sense::AtLeast,
                        std::nullopt};
    if (!m_suggested->isChecked()) {
        const Result<double> target = numberIn(*m_target);
        if (!target) return refused(target.fault().message);
        criterion.target = *target;
    }
    std::vector<Criterion> all = limits();
    const auto same = [&](const Criterion& one) { return one.text() == criterion.text(); };
    const auto known = std::find_if(all.begin(), all.end(), same);
    const auto place = static_cast<int>(known - all.begin());
    if (known != all.end()) {
        m_limit->setCurrentIndex(place);
        return renew();
    }
    if (all.size() >= MostLimits) return refused("A study has at most 15 limits");
    all.push_back(criterion);
    m_asked.limits = std::move(all);
    listLimits(place);
    keep();
}

/// What was computed belongs to another question.
void UncertaintyPage::keep() {
    settings().uncertainty = m_asked;
    m_answer.reset();
    renew();
    Q_EMIT askedChanged();
}

std::vector<Criterion> UncertaintyPage::limits() const {
    return m_asked.limits.empty() ? usualLimits(subject().current) : m_asked.limits;
}

void UncertaintyPage::listLimits(int current) {
    m_limit->clear();
    for (const Criterion& limit : limits())
        m_limit->addItem(toQt(limit.title(subject().current.Units)), toQt(limit.text()));
    m_limit->setCurrentIndex(std::clamp(current, 0, std::max(m_limit->count() - 1, 0)));
    m_remove->setEnabled(m_limit->count() > 1);
}

void UncertaintyPage::listSamples() {
    m_samples->clear();
    const sampling::Plan& plan = m_asked.plan;
    for (int bits = std::min(FewestBits, plan.bits); bits <= std::max(MostBits, plan.bits); ++bits)
        m_samples->addItem(toQt(groupedCount(plan.replicates << bits)), bits);
    m_samples->setCurrentIndex(m_samples->findData(plan.bits));
}

void UncertaintyPage::fill(bool another) {
    m_answer.reset();
    m_asked = settings().uncertainty.value_or(AskedUncertainty{});
    m_outcome->list(subject().current);
    listLimits(another ? 0 : m_limit->currentIndex());
    listSamples();
    if (another) m_seed->setText(toQt(generalNumber(static_cast<double>(m_asked.plan.seed), 17)));
}

Result<StudyPage::Compute> UncertaintyPage::read() {
    const auto seed = numberIn(*m_seed);
    if (!seed) return seed.fault();
    if (!(*seed >= 0 && *seed <= MostSeed && *seed == std::floor(*seed)))
        return Fault{"A seed is a whole number", fromQt(m_seed->objectName())};
    if (const auto typed = static_cast<std::uint64_t>(*seed); typed != m_asked.plan.seed) {
        m_asked.plan.seed = typed;
        settings().uncertainty = m_asked;
        Q_EMIT askedChanged();
    }
    const auto view = static_cast<UncertaintyView>(m_view->currentIndex());
    const auto limit = static_cast<std::size_t>(std::max(m_limit->currentIndex(), 0));
    const unsigned threads = std::max(1U, std::thread::hardware_concurrency());
    return Compute(
        [known = m_answer, asked = m_asked, run = asking(m_asked, threads),
         base = subject().current, view, limit, threads,
         rounding = subject().RoundTELVOSF](const std::stop_token& stop) -> Result<StudyResult> {
            UncertaintyPtr answer = known;
            if (!answer) {
                auto request = requestOf(asked, base);
                if (!request) return request.fault();
                auto made = uncertainty(base, *request, rounding, threads, stop);
                if (!made) return made.fault();
                answer = std::make_shared<const UncertaintyAnswer>(
                    UncertaintyAnswer{base, std::move(*request), std::move(*made)});
            }
            StudyResult result = uncertaintyResult(answer, view, limit);
            if (!result.stopped) result.asked = run;
            return result;
        });
}

void UncertaintyPage::shown() {
    m_answer = std::static_pointer_cast<const UncertaintyAnswer>(result().made);
    m_inputs->setText(tr("&Inputs (%1)...").arg(m_answer->request.inputs.size()));
}

} // namespace telvo::study::ui
