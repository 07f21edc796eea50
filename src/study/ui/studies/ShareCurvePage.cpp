// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/ShareCurvePage.h"

#include "base/numbers.h"
#include "base/text.h"
#include "base/ui/Form.h"
#include "base/ui/NumberEdit.h"
#include "base/ui/qtText.h"
#include "study/questions/ranges.h"
#include "study/questions/searchGrid.h"
#include "study/questions/sweep.h"
#include "study/ui/studies/choices.h"
#include "study/ui/studies/FindPage.h"

#include <algorithm>
#include <array>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>
#include <thread>

namespace telvo::study::ui {

using telvo::ui::fromQt;
using telvo::ui::NumberEdit;
using telvo::ui::toQt;

namespace {

constexpr double Percent = 100;
constexpr double FirstValues = 25; // of the variable
constexpr std::size_t MostValues = 200;
constexpr int MostBits = 9; // of a replicate: as many samples at each of the values

StudyCell estimateCell(const ShareCurvePoint& point, std::size_t part) {
    if (point.computed == 0) return {};
    const std::array<double, 3> numbers = {point.missed.value, point.missed.low, point.missed.high};
    return Percent * numbers[part];
}

std::shared_ptr<const StudyTable> curveTable(const ShareCurvePtr& answer) {
    auto table = std::make_shared<StudyTable>();
    table->columns.push_back({.label = answer->asked.over.label(),
                              .unit = std::string(answer->asked.over.unit(answer->base.Units)),
                              .digits = 8});
    for (const Criterion& criterion : answer->request.criteria) {
        const std::string title = criterionTitle(criterion, answer->base.Units);
        table->columns.push_back(
            {.label = "Samples that Miss: " + title, .unit = "%", .digits = 3});
        table->columns.push_back({.label = "Interval from", .unit = "%", .digits = 3});
        table->columns.push_back({.label = "to", .unit = "%", .digits = 3});
    }
    table->columns.push_back({.label = "Not Computed"});
    table->rows = answer->made.points.empty() ? 0 : answer->made.points.front().size();
    table->cell = [answer, last = table->columns.size() - 1](std::size_t row,
                                                             std::size_t column) -> StudyCell {
        const auto& points = answer->made.points;
        if (column == 0) return points.front()[row].x;
        if (column == last) return static_cast<double>(points.front()[row].notComputed);
        return estimateCell(points[(column - 1) / 3][row], (column - 1) % 3);
    };
    return table;
}

std::string averageText(const ShareCurveAnswer& answer) {
    std::string text;
    for (std::size_t c = 0; c < answer.made.average.size(); ++c)
        if (const auto& one = answer.made.average[c])
            text += (text.empty() ? "Over the whole panel " : "; ") +
                    generalNumber(Percent * one->value, 3) + " % (" +
                    generalNumber(Percent * one->low, 3) + " to " +
                    generalNumber(Percent * one->high, 3) + ") miss " +
                    criterionTitle(answer.request.criteria[c], answer.base.Units);
    return text.empty() ? text : text + ". ";
}

StudyResult shareCurveResult(ShareCurveAnswer made) {
    const auto answer = std::make_shared<const ShareCurveAnswer>(std::move(made));
    StudyResult result;
    result.drawing = shareCurveDrawing(answer);
    result.headline = result.drawing.headline;
    result.remark = averageText(*answer) + std::string(ShareNote);
    result.tally = answer->made.tally;
    result.table = curveTable(answer);
    result.made = answer;
    const auto choice = [answer](std::size_t row) {
        const double x = answer->made.points.front()[row].x;
        const Variable over = answer->asked.over;
        return CaseChoice{over.label() + " " + over.text(x, answer->base.Units), [answer, over, x] {
                              project::ProjectCase moved = answer->base;
                              moved.Input = over.in(moved.Input, moved.Units, x);
                              return moved;
                          }};
    };
    result.ofRow = [choice](std::size_t row, int) { return std::vector{choice(row)}; };
    result.ofSpot = [choice](std::size_t id) { return std::optional(choice(id)); };
    return result;
}

} // namespace

ShareCurvePage::ShareCurvePage(PageActions actions, QWidget* parent)
    : StudyPage("ShareCurve", tr("Share over a Variable"), tr("fragility"), std::move(actions),
                parent) {
    makeFields();
}

void ShareCurvePage::makeFields() {
    const auto add = [this](QHBoxLayout& row, const QString& caption, QWidget* field) {
        auto* label = new QLabel(caption, this);
        label->setBuddy(field);
        row.addWidget(label);
        row.addWidget(field);
    };
    m_over = new InputBox(named("cbo", "Over"), tr("Design variable"),
                          tr("The input along the axis, which does not scatter itself"), this);
    m_from = makeNumber("From", tr("From"), tr("Where it begins"));
    m_to = makeNumber("To", tr("To"), tr("Where it ends"));
    m_step = makeNumber("Step", tr("Step"), tr("From a value to the next"));
    auto* first = new QHBoxLayout;
    add(*first, tr("o&ver:"), m_over);
    add(*first, tr("&from"), m_from);
    add(*first, tr("&to"), m_to);
    add(*first, tr("&step"), m_step);
    first->addStretch();
    fields().addLayout(first);
    m_share = makeNumber("Share", tr("Share asked for"),
                         tr("Percent of the samples that may miss; empty: none is asked for"));
    m_weights = new QLineEdit(this);
    telvo::ui::describe(*m_weights, named("txt", "Weights"), tr("Parts of the panel"),
                        tr("How much of the panel has each value, one number per value; empty: no "
                           "average over the panel"));
    auto* second = new QHBoxLayout;
    add(*second, tr("Share as&ked for (%):"), m_share);
    add(*second, tr("Parts of the pa&nel:"), m_weights);
    second->addStretch();
    fields().addLayout(second);
    connect(m_over, &QComboBox::activated, this, [this] {
        propose();
        renew();
    });
    connect(m_weights, &QLineEdit::textEdited, this, [this] { renewSoon(); });
}

void ShareCurvePage::propose() {
    const Variable variable = m_over->variable();
    const Span range = defaultSearchRange(subject().current, variable);
    double step = defaultStep(variable, subject().current.Units);
    const double wanted = (range.high - range.low) / FirstValues;
    while (step > 0 && step < wanted)
        step *= 2;
    m_from->setText(toQt(generalNumber(range.low)));
    m_to->setText(toQt(generalNumber(range.high)));
    m_step->setText(toQt(generalNumber(step)));
}

void ShareCurvePage::fill(bool another) {
    m_over->list(subject().current);
    if (!another) return;
    m_over->choose(firstFindRequest(subject().current).variable);
    propose();
    m_share->setText("5");
    m_weights->clear();
}

Result<StudyPage::Compute> ShareCurvePage::read() {
    std::array<double, 3> numbers{};
    std::size_t next = 0;
    for (const NumberEdit* box : {m_from, m_to, m_step}) {
        const auto number = numberIn(*box);
        if (!number) return number.fault();
        numbers[next++] = *number;
    }
    const Variable over = m_over->variable();
    const std::string stepName = fromQt(m_step->objectName());
    if (!(numbers[2] > 0))
        return Fault{"A step has to be above 0, not " + generalNumber(numbers[2]), stepName};
    if (const auto why = refusedRange(subject().current, over, {numbers[0], numbers[1]}))
        return Fault{why->message, fromQt(m_to->objectName())};
    if ((numbers[1] - numbers[0]) / numbers[2] > static_cast<double>(MostValues))
        return Fault{"A curve has at most 200 values: take a longer step", stepName};
    auto values = parseValues(generalNumber(numbers[0]) + ":" + generalNumber(numbers[1]) + ":" +
                              generalNumber(numbers[2]));
    if (!values) return Fault{values.fault().message, stepName};
    AskedFragility asked{
        settings().uncertainty.value_or(AskedUncertainty{}), over, std::move(*values), {}, {}};
    asked.scatter.plan.bits = std::min(asked.scatter.plan.bits, MostBits);
    if (!m_share->text().trimmed().isEmpty()) {
        const auto share = numberIn(*m_share);
        if (!share) return share.fault();
        asked.share = *share / Percent;
    }
    if (const std::string text = fromQt(m_weights->text().trimmed()); !text.empty()) {
        auto weights = parseValues(text);
        if (!weights) return Fault{weights.fault().message, fromQt(m_weights->objectName())};
        asked.weights = std::move(*weights);
    }
    // Its own scatter, where it has one, is not what is asked here.
    std::erase_if(asked.scatter.vary, [&](const ScatteredInput& input) {
        return std::find(input.variables.begin(), input.variables.end(), over) !=
               input.variables.end();
    });
    std::erase_if(asked.scatter.correlated, [&](const AskedUncertainty::Together& pair) {
        return pair.first == over || pair.second == over;
    });
    return Compute(
        [asked = std::move(asked), base = subject().current,
         rounding = subject().RoundTELVOSF](const std::stop_token& stop) -> Result<StudyResult> {
            auto request = requestOf(asked.scatter, base, asked.over);
            if (!request) return request.fault();
            auto made = shareCurve(base, *request, asked, rounding,
                                   std::max(1U, std::thread::hardware_concurrency()), stop);
            if (!made) return made.fault();
            return shareCurveResult({base, std::move(*request), asked, std::move(*made)});
        });
}

} // namespace telvo::study::ui
