// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/DesignPage.h"

#include "base/numbers.h"
#include "base/ui/Form.h"
#include "base/ui/NumberEdit.h"
#include "base/ui/qtText.h"
#include "study/questions/ranges.h"
#include "study/questions/searchGrid.h"
#include "study/questions/sweep.h"
#include "study/ui/studies/choices.h"
#include "study/ui/studies/designResult.h"
#include "study/ui/studies/FindPage.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace telvo::study::ui {

using telvo::ui::fromQt;
using telvo::ui::NumberEdit;
using telvo::ui::toQt;

namespace {

constexpr double FirstPlaces = 60; // of the axis
constexpr std::size_t MostPlaces = 2000;

std::string targetsText(const DesignChartRequest& request) {
    std::string text;
    for (const auto& target : request.targets)
        text += (text.empty() ? "" : ", ") + (target ? generalNumber(*target) : "suggested");
    return text;
}

} // namespace

DesignPage::DesignPage(PageActions actions, QWidget* parent)
    : StudyPage("Design", tr(DesignTitle), tr("required width over depth"), std::move(actions),
                parent) {
    makeFields();
}

void DesignPage::makeFields() {
    auto* grid = new QGridLayout;
    int row = 0;
    const auto addRange = [&](const QString& caption, const std::string& suffix,
                              const QString& name, const QString& stepTip) {
        RangeFields made{};
        made.input = new InputBox(named("cbo", suffix.c_str()), name, name, this);
        made.from =
            makeNumber((suffix + "From").c_str(), tr("%1 from").arg(name), tr("Where it begins"));
        made.to = makeNumber((suffix + "To").c_str(), tr("%1 to").arg(name), tr("Where it ends"));
        made.step = makeNumber((suffix + "Step").c_str(), tr("%1 step").arg(name), stepTip);
        int column = 0;
        for (const auto& [text, field] : {std::pair<QString, QWidget*>{caption, made.input},
                                          {tr("from"), made.from},
                                          {tr("to"), made.to},
                                          {tr("step"), made.step}}) {
            auto* label = new QLabel(text, this);
            label->setBuddy(field);
            grid->addWidget(label, row, column++);
            grid->addWidget(field, row, column++);
        }
        ++row;
        return made;
    };
    m_required = addRange(tr("&Required:"), "Required", tr("Required input"),
                          tr("Values that can be built: the chart is rounded to the safe side"));
    m_over = addRange(tr("o&ver:"), "Over", tr("Input along the axis"),
                      tr("From a place of the axis to the next"));
    grid->setColumnStretch(8, 1);
    fields().addLayout(grid);

    m_outcome = new OutcomeBox(named("cbo", "Outcome"), tr("Result"),
                               tr("The result that has to reach the targets"), this);
    m_sense = new QComboBox(this);
    telvo::ui::describe(*m_sense, named("cbo", "Sense"), tr("At least or at most"),
                        tr("Whether the result has to be at least or at most the target"));
    m_sense->addItems({tr("at least"), tr("at most")});
    m_targets = new QLineEdit(this);
    telvo::ui::describe(*m_targets, named("txt", "Targets"), tr("Targets"),
                        tr("One to eight numbers with commas; \"suggested\" is the factor of the "
                           "warnings"));
    m_targets->setMinimumWidth(fontMetrics().averageCharWidth() * 16);
    auto* row2 = new QHBoxLayout;
    auto* label = new QLabel(tr("s&o that:"), this);
    label->setBuddy(m_outcome);
    row2->addWidget(label);
    row2->addWidget(m_outcome);
    row2->addWidget(m_sense);
    row2->addWidget(m_targets);
    row2->addStretch();
    fields().addLayout(row2);

    connect(m_required.input, &QComboBox::activated, this, [this] {
        propose(m_required, 0);
        renew();
    });
    connect(m_over.input, &QComboBox::activated, this, [this] {
        propose(m_over, FirstPlaces);
        renew();
    });
    connect(m_outcome, &QComboBox::activated, this, [this] { renew(); });
    connect(m_sense, &QComboBox::activated, this, [this] { renew(); });
    connect(m_targets, &QLineEdit::textEdited, this, [this] { renewSoon(); });
}

/// Given: steps  about how many there are to be; 0: the practical step
void DesignPage::propose(RangeFields& fields, double steps) {
    const Variable variable = fields.input->variable();
    const Span range = defaultSearchRange(subject().current, variable);
    double step = defaultStep(variable, subject().current.Units);
    if (steps > 0) {
        const double wanted = (range.high - range.low) / steps;
        for (const double by : {2.0, 2.5, 2.0})
            while (step * by <= wanted * 1.01 && step < wanted)
                step *= by;
    }
    fields.from->setText(toQt(generalNumber(range.low)));
    fields.to->setText(toQt(generalNumber(range.high)));
    fields.step->setText(toQt(generalNumber(step)));
}

void DesignPage::showRequest(const DesignChartRequest& request) {
    m_required.input->choose(request.required);
    m_over.input->choose(request.over);
    m_required.from->setText(toQt(generalNumber(request.in.low)));
    m_required.to->setText(toQt(generalNumber(request.in.high)));
    m_required.step->setText(toQt(generalNumber(request.step)));
    m_over.from->setText(toQt(generalNumber(request.values.front())));
    m_over.to->setText(toQt(generalNumber(request.values.back())));
    if (request.values.size() > 1)
        m_over.step->setText(toQt(generalNumber(request.values[1] - request.values[0], 10)));
    m_outcome->choose(request.outcome.name());
    m_sense->setCurrentIndex(request.sense == Criterion::Sense::AtMost ? 1 : 0);
    m_targets->setText(toQt(targetsText(request)));
}

void DesignPage::fill(bool another) {
    for (InputBox* box : {m_required.input, m_over.input})
        box->list(subject().current);
    m_outcome->list(subject().current);
    if (!another) return;
    if (settings().chart) return showRequest(*settings().chart);
    const FindRequest first = firstFindRequest(subject().current);
    m_required.input->choose(first.variable);
    propose(m_required, 0);
    const bool isDepth = first.variable == project::Field::DepthCover;
    m_over.input->choose(isDepth ? project::Field::EntryHeight : project::Field::DepthCover);
    propose(m_over, FirstPlaces);
    m_outcome->choose(first.criterion.outcome.name());
    m_sense->setCurrentIndex(0);
    m_targets->setText("1.3, 1.5, 2");
}

Result<Span> DesignPage::readSpan(const RangeFields& fields, double& step) const {
    std::array<double, 3> numbers{};
    std::size_t next = 0;
    for (const NumberEdit* box : {fields.from, fields.to, fields.step}) {
        const auto number = numberIn(*box);
        if (!number) return number.fault();
        numbers[next++] = *number;
    }
    step = numbers[2];
    if (!(step > 0))
        return Fault{"A step has to be above 0, not " + generalNumber(step),
                     fromQt(fields.step->objectName())};
    const Span span{numbers[0], numbers[1]};
    const Variable variable = fields.input->variable();
    const auto why = refusedRange(subject().current, variable, span);
    if (!why) return span;
    const QWidget* field = fields.to;
    if (!whyWithoutEffect(subject().current, variable).empty())
        field = fields.input;
    else if (span.low < variable.valid(subject().current.Input).low)
        field = fields.from;
    return Fault{why->message, fromQt(field->objectName())};
}

Result<StudyPage::Compute> DesignPage::read() {
    const auto outcome = m_outcome->outcome();
    if (!outcome) return Fault{"Choose a result", fromQt(m_outcome->objectName())};
    const Variable required = m_required.input->variable(), over = m_over.input->variable();
    if (required == over)
        return Fault{"The required input cannot be the one along the axis",
                     fromQt(m_over.input->objectName())};
    double step = 0, overStep = 0;
    const auto in = readSpan(m_required, step);
    if (!in) return in.fault();
    const auto along = readSpan(m_over, overStep);
    if (!along) return along.fault();
    const std::string overStepName = fromQt(m_over.step->objectName());
    if ((along->high - along->low) / overStep > static_cast<double>(MostPlaces))
        return Fault{"A design chart has at most 2,000 places along its axis: take a longer step",
                     overStepName};
    auto values = parseValues(generalNumber(along->low) + ":" + generalNumber(along->high) + ":" +
                              generalNumber(overStep));
    if (!values) return Fault{values.fault().message, overStepName};
    auto targets = parseTargets(fromQt(m_targets->text()));
    if (!targets) return Fault{targets.fault().message, fromQt(m_targets->objectName())};
    for (const auto& target : *targets)
        if (!target && !outcome->marginToSuggested())
            return Fault{"Only the factors of panel and barriers have a suggested value",
                         fromQt(m_targets->objectName())};
    const DesignChartRequest request{required,
                                     *in,
                                     step,
                                     over,
                                     std::move(*values),
                                     *outcome,
                                     m_sense->currentIndex() == 1 ? Criterion::Sense::AtMost
                                                                  : Criterion::Sense::AtLeast,
                                     std::move(*targets)};
    if (isEdited()) settings().chart = request;
    return Compute([request, asked = asking(request), base = subject().current,
                    rounding =
                        subject().RoundTELVOSF](const std::stop_token&) -> Result<StudyResult> {
        auto made = designChart(base, request, rounding);
        if (!made) return made.fault();
        StudyResult result = designResult(
            std::make_shared<const DesignAnswer>(DesignAnswer{base, request, std::move(*made)}));
        result.asked = asked;
        return result;
    });
}

} // namespace telvo::study::ui
