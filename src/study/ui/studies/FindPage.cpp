// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/FindPage.h"

#include "base/numbers.h"
#include "base/ui/Form.h"
#include "base/ui/NumberEdit.h"
#include "base/ui/qtText.h"
#include "study/output/factors.h"
#include "study/questions/ranges.h"
#include "study/questions/searchGrid.h"
#include "study/ui/drawings/studyDrawings.h"
#include "study/ui/studies/choices.h"

#include <algorithm>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace telvo::study::ui {

using telvo::ui::fromQt;
using telvo::ui::NumberEdit;
using telvo::ui::toQt;

namespace {

using FindAnswerPtr = std::shared_ptr<const FindAnswer>;

std::string endText(const IntervalEnd& end) {
    switch (end.kind) {
    case EndKind::Crossing:
        return "crosses the target";
    case EndKind::Jump:
        return end.rule.empty() ? "jump" : "jump: " + end.rule;
    case EndKind::RangeEnd:
        return "end of the range";
    case EndKind::Uncomputable:
        break;
    }
    return end.rule.empty() ? "nothing beyond can be computed" : "beyond: " + end.rule;
}

CaseChoice valueChoice(const FindAnswerPtr& subject, double x) {
    const Variable variable = subject->request.variable;
    return {variable.label() + " " + variable.text(x, subject->base.Units), [subject, variable, x] {
                project::ProjectCase made = subject->base;
                made.Input = variable.in(made.Input, made.Units, x);
                return made;
            }};
}

StudyCell intervalCell(const FindAnswer& subject, std::size_t row, std::size_t column) {
    const Interval& one = subject.made.intervals[row];
    const auto optional = [](const std::optional<double>& x) {
        return x ? StudyCell(*x) : StudyCell();
    };
    switch (column) {
    case 0:
        return one.from.x;
    case 1:
        return one.to.x;
    case 2:
        return optional(one.practicalFrom);
    case 3:
        return optional(one.practicalTo);
    case 4:
        return endText(one.from);
    case 5:
        return one.from.value;
    case 6:
        return endText(one.to);
    default:
        return one.to.value;
    }
}

std::shared_ptr<const StudyTable> intervalTable(const FindAnswerPtr& subject) {
    auto table = std::make_shared<StudyTable>();
    const std::int16_t units = subject->base.Units;
    const std::string unit(subject->request.variable.unit(units));
    const Outcome& outcome = subject->request.criterion.outcome;
    const std::string ofOutcome(engine::unitName(outcome.kind(), units));
    table->columns = {{.label = "Holds from", .unit = unit, .digits = 8},
                      {.label = "to", .unit = unit, .digits = 8},
                      {.label = "Practical from", .unit = unit, .digits = 8},
                      {.label = "Practical to", .unit = unit, .digits = 8},
                      {.label = "At the lower end", .isText = true},
                      {.label = "Result there", .unit = ofOutcome},
                      {.label = "At the upper end", .isText = true},
                      {.label = "Result there ", .unit = ofOutcome}};
    table->rows = subject->made.intervals.size();
    table->cell = [subject](std::size_t row, std::size_t column) {
        return intervalCell(*subject, row, column);
    };
    return table;
}

std::vector<CaseChoice> intervalChoices(const FindAnswerPtr& subject, std::size_t row, int column) {
    const Interval& one = subject->made.intervals[row];
    std::vector<double> values;
    const auto add = [&](const std::optional<double>& x) {
        if (x && std::find(values.begin(), values.end(), *x) == values.end()) values.push_back(*x);
    };
    if (column == 1 || column == 6 || column == 7) add(one.to.x);
    if (column == 2) add(one.practicalFrom);
    if (column == 3) add(one.practicalTo);
    add(one.from.x);
    add(one.practicalFrom);
    add(one.practicalTo);
    add(one.to.x);
    std::vector<CaseChoice> choices;
    for (const double x : values)
        choices.push_back(valueChoice(subject, x));
    return choices;
}

StudyResult findResult(const FindAnswerPtr& answer) {
    StudyResult result;
    result.drawing = findDrawing(answer);
    result.headline = result.drawing.headline;
    result.remark = answer->made.searched;
    result.tally = answer->made.tally;
    result.made = answer;
    result.table = intervalTable(answer);
    result.ofRow = [answer](std::size_t row, int column) {
        return intervalChoices(answer, row, column);
    };
    result.ofSpot = [answer, spots = result.drawing.spots](std::size_t id) {
        return std::optional(valueChoice(answer, spots[id].x));
    };
    return result;
}

} // namespace

FindRequest firstFindRequest(const project::ProjectCase& base) {
    using project::Field;
    for (const auto& [field, outcome] :
         {std::pair{Field::BarrierSecondGob, "BarrierSF.retreat.second"},
          {Field::BarrierFirstGob, "BarrierSF.retreat.first"}}) {
        const Variable variable(field);
        const auto all = outcomesOf(base);
        const bool known = std::any_of(
            all.begin(), all.end(), [&, name = outcome](auto& one) { return one.name() == name; });
        if (known && whyWithoutEffect(base, variable).empty())
            return {variable,
                    {*Outcome::named(outcome), Criterion::Sense::AtLeast, std::nullopt},
                    defaultSearchRange(base, variable),
                    defaultStep(variable, base.Units)};
    }
    const Variable depth(Field::DepthCover);
    const auto all = outcomesOf(base);
    return {depth,
            {all.empty() ? Outcome::factor(1, 0) : all.front(), Criterion::Sense::AtLeast,
             std::nullopt},
            defaultSearchRange(base, depth),
            defaultStep(depth, base.Units)};
}

FindPage::FindPage(PageActions actions, QWidget* parent)
    : StudyPage("Find", tr(FindTitle), tr("goal seek"), std::move(actions), parent) {
    makeFields();
}

void FindPage::makeFields() {
    const auto add = [this](QHBoxLayout& row, const QString& caption, QWidget* field) {
        auto* label = new QLabel(caption, this);
        label->setBuddy(field);
        row.addWidget(label);
        row.addWidget(field);
    };
    m_input =
        new InputBox(named("cbo", "Input"), tr("Input"), tr("The input that is looked for"), this);
    m_low = makeNumber("Low", tr("Search from"), tr("Where the search begins"));
    m_high = makeNumber("High", tr("Search to"), tr("Where the search ends"));
    m_step = makeNumber("Step", tr("Practical step"),
                        tr("Values that can be built: the answer is rounded to the safe side"));
    auto* first = new QHBoxLayout;
    add(*first, tr("F&ind:"), m_input);
    add(*first, tr("&from"), m_low);
    add(*first, tr("&to"), m_high);
    add(*first, tr("&step"), m_step);
    first->addStretch();
    fields().addLayout(first);

    m_outcome = new OutcomeBox(named("cbo", "Outcome"), tr("Result"),
                               tr("The result that has to reach the target"), this);
    m_sense = new QComboBox(this);
    telvo::ui::describe(*m_sense, named("cbo", "Sense"), tr("At least or at most"),
                        tr("Whether the result has to be at least or at most the target"));
    m_sense->addItems({tr("at least"), tr("at most")});
    m_target = makeNumber("Target", tr("Target"), tr("What the result has to reach"));
    m_suggested = new QCheckBox(tr("s&uggested"), this);
    telvo::ui::describe(*m_suggested, named("chk", "Suggested"), tr("Suggested"),
                        tr("The factor that the warnings suggest; for the panel it follows the "
                           "depth"));
    m_take = new QPushButton(tr("Ta&ke"), this);
    telvo::ui::describe(*m_take, named("cmd", "Take"), tr("Take"),
                        tr("Writes the safe answer into the case"));
    m_take->setAutoDefault(false);
    auto* second = new QHBoxLayout;
    add(*second, tr("s&o that:"), m_outcome);
    second->addWidget(m_sense);
    second->addWidget(m_target);
    second->addWidget(m_suggested);
    second->addStretch();
    second->addWidget(m_take);
    fields().addLayout(second);

    connect(m_input, &QComboBox::activated, this, [this] {
        proposeRange();
        renew();
    });
    connect(m_outcome, &QComboBox::activated, this, [this] {
        proposeTarget();
        renew();
    });
    connect(m_sense, &QComboBox::activated, this, [this] { renew(); });
    connect(m_suggested, &QCheckBox::clicked, this, [this] {
        m_target->setEnabled(!m_suggested->isChecked());
        renew();
    });
    connect(m_take, &QPushButton::clicked, this, &FindPage::take);
    connect(this, &StudyPage::currentChanged, this,
            [this] { m_take->setEnabled(isCurrent() && m_take->property("has").toBool()); });
}

void FindPage::proposeRange() {
    const Variable variable = m_input->variable();
    const Span range = defaultSearchRange(subject().current, variable);
    m_low->setText(toQt(generalNumber(range.low)));
    m_high->setText(toQt(generalNumber(range.high)));
    m_step->setText(toQt(generalNumber(defaultStep(variable, subject().current.Units))));
}

void FindPage::proposeTarget() {
    const auto outcome = m_outcome->outcome();
    const bool factor = outcome && outcome->marginToSuggested();
    m_suggested->setEnabled(factor);
    m_suggested->setChecked(factor);
    m_target->setEnabled(!factor);
    if (!outcome) return;
    std::optional<double> value = suggestedFor(subject().current, *outcome, subject().RoundTELVOSF);
    if (!value) value = ownValueOf(subject().current, *outcome);
    m_target->setText(value ? toQt(generalNumber(*value, 4)) : QString());
}

void FindPage::showRequest(const FindRequest& request) {
    m_input->choose(request.variable);
    m_low->setText(toQt(generalNumber(request.in.low)));
    m_high->setText(toQt(generalNumber(request.in.high)));
    m_step->setText(toQt(generalNumber(request.step)));
    m_outcome->choose(request.criterion.outcome.name());
    m_sense->setCurrentIndex(request.criterion.sense == Criterion::Sense::AtMost ? 1 : 0);
    proposeTarget();
    if (!request.criterion.target) return;
    m_suggested->setChecked(false);
    m_target->setEnabled(true);
    m_target->setText(toQt(generalNumber(*request.criterion.target)));
}

void FindPage::fill(bool another) {
    m_input->list(subject().current);
    m_outcome->list(subject().current);
    if (!another) return;
    showRequest(settings().find.value_or(firstFindRequest(subject().current)));
}

Result<StudyPage::Compute> FindPage::read() {
    const auto outcome = m_outcome->outcome();
    if (!outcome) return Fault{"Choose a result", fromQt(m_outcome->objectName())};
    std::array<double, 3> numbers{};
    std::size_t next = 0;
    for (const NumberEdit* box : {m_low, m_high, m_step}) {
        const Result<double> number = numberIn(*box);
        if (!number) return number.fault();
        numbers[next++] = *number;
    }
    FindRequest request{
        m_input->variable(),
        {*outcome,
         m_sense->currentIndex() == 1 ? Criterion::Sense::AtMost : Criterion::Sense::AtLeast,
         std::nullopt},
        {numbers[0], numbers[1]},
        numbers[2]};
    if (!m_suggested->isChecked()) {
        const Result<double> target = numberIn(*m_target);
        if (!target) return target.fault();
        request.criterion.target = *target;
    }
    const project::ProjectCase& base = subject().current;
    if (auto grid = searchGrid(base, request.variable, request.in, request.step); !grid) {
        const bool ofStep = !(request.step > 0) || grid.fault().message.starts_with("A step");
        const bool unused = !whyWithoutEffect(base, request.variable).empty();
        const bool low = request.in.low < request.variable.valid(base.Input).low;
        const QWidget* field = m_high;
        if (unused)
            field = m_input;
        else if (ofStep)
            field = m_step;
        else if (low)
            field = m_low;
        return Fault{grid.fault().message, fromQt(field->objectName())};
    }
    if (isEdited()) settings().find = request;
    m_request = request;
    return Compute([request, asked = asking(request), base, rounding = subject().RoundTELVOSF](
                       const std::stop_token&) -> Result<StudyResult> {
        auto found = study::find(base, request, rounding);
        if (!found) return found.fault();
        StudyResult result = findResult(
            std::make_shared<const FindAnswer>(FindAnswer{base, request, std::move(*found)}));
        result.asked = asked;
        return result;
    });
}

void FindPage::shown() {
    const auto& subject = *std::static_pointer_cast<const FindAnswer>(result().made);
    const auto& answer = subject.made.answer;
    m_take->setProperty("has", answer.has_value());
    m_take->setEnabled(answer.has_value());
    m_take->setText(
        answer
            ? tr("Ta&ke %1").arg(toQt(subject.request.variable.text(*answer, subject.base.Units)))
            : tr("Ta&ke"));
}

void FindPage::take() {
    if (!isCurrent()) return;
    const auto& subject = *std::static_pointer_cast<const FindAnswer>(result().made);
    if (!subject.made.answer) return;
    const Variable& variable = subject.request.variable;
    const std::string why = actions().take(
        variable.in(subject.base.Input, subject.base.Units, *subject.made.answer),
        variable.label() + " " + variable.text(*subject.made.answer, subject.base.Units));
    if (!why.empty()) actions().showText(tr("Take"), why);
}

} // namespace telvo::study::ui
