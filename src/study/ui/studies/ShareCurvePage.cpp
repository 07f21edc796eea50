// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/ShareCurvePage.h"

#include "base/numbers.h"
#include "base/text.h"
#include "base/ui/Form.h"
#include "base/ui/NumberEdit.h"
#include "base/ui/qtText.h"
#include "study/output/headlines.h"
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
        const std::string title = criterion.title(answer->base.Units);
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
                    answer.request.criteria[c].title(answer.base.Units);
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
    : StudyPage("ShareCurve", tr(ShareCurveTitle), tr("fragility"), std::move(actions), parent) {
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
    if (const auto& kept = settings().shareCurve) return showRequest(*kept);
    m_over->choose(firstFindRequest(subject().current).variable);
    propose();
    m_share->setText("5");
    m_weights->clear();
}

void ShareCurvePage::showRequest(const AskedFragility& asked) {
    const std::vector<double>& values = asked.values;
    m_over->choose(asked.over);
    m_from->setText(toQt(generalNumber(values.front())));
    m_to->setText(toQt(generalNumber(values.back())));
    if (values.size() > 1) m_step->setText(toQt(generalNumber(values[1] - values[0], 10)));
    m_share->setText(asked.share ? toQt(generalNumber(Percent * *asked.share)) : QString());
    std::string weights;
    for (const double weight : asked.weights)
        weights += (weights.empty() ? "" : ", ") + generalNumber(weight);
    m_weights->setText(toQt(weights));
}

AskedUncertainty ShareCurvePage::scatterOfCase() const {
    if (settings().uncertainty) return *settings().uncertainty;
    return settings().shareCurve ? settings().shareCurve->scatter : AskedUncertainty{};
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
    AskedFragility asked{scatterOfCase(), over, std::move(*values), {}, {}};
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
    if (isEdited()) settings().shareCurve = asked;
    const bool usual = asked.scatter.vary.empty();
    asked.scatter = scatterWithout(std::move(asked.scatter), over);
    if (!usual && asked.scatter.vary.empty())
        return Fault{"Nothing scatters but the variable itself: tick other inputs in How Sure",
                     fromQt(m_over->objectName())};
    asked.scatter.plan.bits = std::min(asked.scatter.plan.bits, MostShareCurveBits);
    const unsigned threads = std::max(1U, std::thread::hardware_concurrency());
    return Compute([asked, run = asking(asked, threads), base = subject().current, threads,
                    rounding = subject().RoundTELVOSF](
                       const std::stop_token& stop) -> Result<StudyResult> {
        auto request = requestOf(asked.scatter, base, asked.over);
        if (!request) return request.fault();
        auto made = shareCurve(base, *request, asked, rounding, threads, stop);
        if (!made) return made.fault();
        StudyResult result = shareCurveResult({base, std::move(*request), asked, std::move(*made)});
        result.asked = run;
        return result;
    });
}

} // namespace telvo::study::ui
