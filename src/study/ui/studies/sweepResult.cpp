// SPDX-License-Identifier: GPL-3.0-or-later
//
// Table and picture of a table of values.
#include "base/numbers.h"
#include "base/ui/qtText.h"
#include "chart/ui/chartParts.h"
#include "study/ui/studies/drawingParts.h"
#include "study/ui/studies/TablePage.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace telvo::study::ui {

using telvo::ui::toQt;

namespace {

constexpr std::size_t MostDrawnPoints = 20'000; // of a curve
constexpr std::size_t MostMapSpots = 250'000;
constexpr int FlagCount = 16;

struct SweepSubject {
    Sweep sweep;
    project::ProjectCase base;
    std::size_t shown = 0; ///< outcomes of the table; one more may be there for the contour
    std::vector<ContourSegment> contour;

    const SweepAxis& axis(std::size_t a) const { return sweep.request.axes[a]; }
    std::size_t axes() const { return sweep.request.axes.size(); }
    bool isMap() const { return axes() == 2 && !sweep.request.linked && !sweep.stopped; }
};
using SweepSubjectPtr = std::shared_ptr<const SweepSubject>;

/// "3 7", the numbers of the flags that are set.
std::string flagsText(std::uint16_t flags) {
    std::string text;
    for (int i = 0; i < FlagCount; ++i)
        if (flags >> i & 1) text += (text.empty() ? "" : " ") + std::to_string(i);
    return text;
}

StudyCell sweepCell(const SweepSubject& subject, std::size_t row, std::size_t column) {
    const Sweep& sweep = subject.sweep;
    if (column == 0) return static_cast<double>(row + 1);
    if (column <= subject.axes()) return sweep.input(row, column - 1);
    column -= subject.axes() + 1;
    if (column < subject.shown) {
        const double value = sweep.outcomes[column][row];
        return std::isnan(value) ? StudyCell() : StudyCell(value);
    }
    if (column == subject.shown) return flagsText(sweep.flags[row]);
    return sweep.computed[row] ? std::string() : sweep.message(row);
}

std::shared_ptr<const StudyTable> sweepTable(const SweepSubjectPtr& subject) {
    auto table = std::make_shared<StudyTable>();
    const std::int16_t units = subject->base.Units;
    table->columns.push_back({.label = "No.", .name = "id", .digits = 9});
    for (const SweepAxis& axis : subject->sweep.request.axes)
        table->columns.push_back({.label = axis.variable.label(),
                                  .unit = std::string(axis.variable.unit(units)),
                                  .name = axis.variable.name(),
                                  .digits = 8});
    for (std::size_t o = 0; o < subject->shown; ++o) {
        const Outcome& outcome = subject->sweep.request.outcomes[o];
        table->columns.push_back({.label = outcome.label(),
                                  .unit = std::string(engine::unitName(outcome.kind(), units)),
                                  .name = outcome.name()});
    }
    table->columns.push_back({.label = "Flags", .name = "flags", .isText = true});
    table->columns.push_back({.label = "Message", .name = "message", .isText = true});
    table->rows = subject->sweep.rows();
    table->cell = [subject](std::size_t row, std::size_t column) {
        return sweepCell(*subject, row, column);
    };
    return table;
}

CaseChoice rowChoice(const SweepSubjectPtr& subject, std::size_t row) {
    std::string what = "row " + std::to_string(row + 1) + ":";
    for (std::size_t a = 0; a < subject->axes(); ++a)
        what += (a > 0 ? ", " : " ") + subject->axis(a).variable.label() + " " +
                subject->axis(a).variable.text(subject->sweep.input(row, a), subject->base.Units);
    return {what, [subject, row] { return subject->sweep.caseOf(row); }};
}

QString rowTip(const SweepSubjectPtr& subject, std::size_t row) {
    std::string text = rowChoice(subject, row).what;
    for (std::size_t o = 0; o < subject->shown; ++o) {
        const Outcome& outcome = subject->sweep.request.outcomes[o];
        const double value = subject->sweep.outcomes[o][row];
        text += "\n" + outcome.label() + " " +
                (std::isnan(value) ? "none" : outcome.text(value, subject->base.Units));
    }
    if (!subject->sweep.computed[row]) text += "\n" + subject->sweep.message(row);
    return toQt(text);
}

QString outcomeTitle(const SweepSubject& subject, std::size_t outcome) {
    const Outcome& shown = subject.sweep.request.outcomes[outcome];
    return axisTitle(shown.label(), engine::unitName(shown.kind(), subject.base.Units));
}

void addLevel(QCustomPlot& chart, double level, const ChartInk& ink) {
    auto* line = new QCPItemStraightLine(&chart);
    const QPen pen(studyColor(3, ink.palette), 1.3 * ink.pointsToPixels, Qt::DashLine);
    line->point1->setCoords(0, level);
    line->point2->setCoords(1, level);
    line->setPen(pen);
}

/// Curves over the first axis.
void composeCurves(QCustomPlot& chart, const SweepSubject& subject, std::optional<double> level,
                   const ChartInk& ink) {
    Extent extent;
    const std::size_t rows = subject.sweep.rows();
    const std::size_t every = rows / MostDrawnPoints + 1;
    const engine::Kind kind = subject.sweep.request.outcomes[0].kind();
    for (std::size_t o = 0; o < subject.shown; ++o) {
        if (subject.sweep.request.outcomes[o].kind() != kind) continue; // another unit
        std::vector<Stretch> pieces(1);
        for (std::size_t row = 0; row < rows; row += every) {
            const double y = subject.sweep.outcomes[o][row];
            if (std::isnan(y)) {
                if (!pieces.back().empty()) pieces.emplace_back();
                continue;
            }
            pieces.back().push_back({subject.sweep.input(row, 0), y});
        }
        extent.take(pieces);
        const QPen pen(studyColor(o, ink.palette), 1.5 * ink.pointsToPixels,
                       o % 2 == 0 ? Qt::SolidLine : Qt::DashLine);
        auto* line = addLine(chart, "curve:" + QString::number(o), pieces, pen);
        if (rows <= 200)
            line->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssDisc, 4 * ink.pointsToPixels));
        addKeyEntry(chart, toQt(subject.sweep.request.outcomes[o].label()), pen);
    }
    if (level) {
        extent.take(extent.x0, *level);
        addLevel(chart, *level, ink);
        addKeyEntry(chart, toQt("at " + generalNumber(*level, 4)),
                    QPen(studyColor(3, ink.palette), 1.3 * ink.pointsToPixels, Qt::DashLine));
    }
    extent.apply(chart);
    const Variable& variable = subject.axis(0).variable;
    chart.xAxis->setLabel(axisTitle(variable.label(), variable.unit(subject.base.Units)));
    chart.yAxis->setLabel(outcomeTitle(subject, 0));
    chart.yAxis->grid()->setVisible(true);
    chart.legend->setVisible(true);
}

/// Where a value stands among those of an axis, which need not be evenly spaced: 0 the first one,
/// 1 the second.
double placeOn(const std::vector<double>& values, double x) {
    const bool rises = values.back() >= values.front();
    for (std::size_t i = 0; i + 1 < values.size(); ++i) {
        const double a = values[i], b = values[i + 1];
        if (rises ? x <= b : x >= b)
            return static_cast<double>(i) + (b != a ? (x - a) / (b - a) : 0);
    }
    return static_cast<double>(values.size() - 1);
}

bool isEven(const std::vector<double>& values) {
    if (values.size() < 2) return false;
    const double step = (values.back() - values.front()) / static_cast<double>(values.size() - 1);
    for (std::size_t i = 0; i < values.size(); ++i)
        if (std::abs(values.front() + step * static_cast<double>(i) - values[i]) >
            1e-6 * std::abs(step))
            return false;
    return step > 0;
}

/// An axis of a map: the values themselves where they are even, else their places.
struct MapAxis {
    const std::vector<double>& values;
    bool even = isEven(values);

    double at(double x) const { return even ? x : placeOn(values, x); }
    double place(std::size_t i) const { return even ? values[i] : static_cast<double>(i); }
    QCPRange range() const { return {place(0), place(values.size() - 1)}; }
    void tick(QCPAxis& axis) const {
        const double half = values.size() > 1 ? (place(1) - place(0)) / 2 : 0.5;
        axis.setRange(place(0) - half, place(values.size() - 1) + half);
        if (even) return;
        auto names = QSharedPointer<QCPAxisTickerText>::create();
        const std::size_t every = values.size() / 12 + 1;
        for (std::size_t i = 0; i < values.size(); i += every)
            names->addTick(static_cast<double>(i), toQt(generalNumber(values[i], 6)));
        axis.setTicker(names);
        axis.setSubTicks(false);
    }
};

/// Dark blue to yellow, rising in lightness, so that everybody and a copier can tell them apart.
QCPColorGradient mapColors(const QPalette& palette) {
    QCPColorGradient colors;
    colors.clearColorStops();
    static constexpr std::array<QRgb, 6> stops = {0xff00204d, 0xff31446b, 0xff666970,
                                                  0xff958f78, 0xffcbba69, 0xffffea46};
    for (std::size_t i = 0; i < stops.size(); ++i)
        colors.setColorStopAt(static_cast<double>(i) / (stops.size() - 1), QColor(stops[i]));
    colors.setNanHandling(QCPColorGradient::nhTransparent);
    Q_UNUSED(palette)
    return colors;
}

void composeMap(QCustomPlot& chart, const SweepSubject& subject, std::optional<double> level,
                const ChartInk& ink) {
    const MapAxis x{subject.axis(0).values}, y{subject.axis(1).values};
    x.tick(*chart.xAxis);
    y.tick(*chart.yAxis);
    const auto nx = static_cast<int>(x.values.size()), ny = static_cast<int>(y.values.size());
    // What cannot be computed is left free, and there the ground is hatched.
    auto* ground = addBand(chart, chart.xAxis->range().lower, chart.xAxis->range().upper,
                           QBrush(chart::ui::mixed(ink.palette.color(QPalette::Base),
                                                   ink.palette.color(QPalette::Text), 0.4),
                                  Qt::BDiagPattern));
    ground->setObjectName("ground");
    auto* map = new QCPColorMap(chart.xAxis, chart.yAxis);
    map->setObjectName("map");
    map->data()->setSize(nx, ny);
    map->data()->setRange(x.range(), y.range());
    map->setInterpolate(false);
    double low = HUGE_VAL, high = -HUGE_VAL;
    for (int i = 0; i < nx; ++i)
        for (int j = 0; j < ny; ++j) {
            const double value =
                subject.sweep.outcomes[0][static_cast<std::size_t>(i) * y.values.size() +
                                          static_cast<std::size_t>(j)];
            map->data()->setCell(i, j, value);
            if (std::isnan(value)) continue;
            low = std::min(low, value);
            high = std::max(high, value);
        }
    auto* scale = new QCPColorScale(&chart);
    scale->setType(QCPAxis::atRight);
    chart.plotLayout()->addElement(0, 1, scale);
    map->setColorScale(scale);
    map->setGradient(mapColors(ink.palette));
    map->setDataRange(low < high ? QCPRange(low, high) : QCPRange(low - 1, low + 1));
    auto* margins = new QCPMarginGroup(&chart);
    chart.axisRect()->setMarginGroup(QCP::msTop | QCP::msBottom, margins);
    scale->setMarginGroup(QCP::msTop | QCP::msBottom, margins);
    const QColor text = ink.palette.color(QPalette::Text);
    QCPAxis* numbers = scale->axis();
    numbers->setTicker(QSharedPointer<chart::ui::PlainTicker>::create());
    numbers->setLabel(outcomeTitle(subject, 0));
    numbers->setLabelColor(text);
    numbers->setTickLabelColor(text);
    numbers->setBasePen(QPen(text));
    numbers->setTickPen(QPen(text));
    numbers->setSubTickPen(QPen(text));
    numbers->setLabelFont(ink.font);
    numbers->setTickLabelFont(ink.font);
    std::vector<Stretch> lines;
    lines.reserve(subject.contour.size());
    for (const ContourSegment& one : subject.contour)
        lines.push_back({{x.at(one.x0), y.at(one.y0)}, {x.at(one.x1), y.at(one.y1)}});
    if (!lines.empty()) {
        // White with a dark core is seen on every color.
        addLine(chart, "contourGround", lines, QPen(Qt::white, 3.5 * ink.pointsToPixels));
        const QPen pen(QColor(0xd0, 0x10, 0x50), 1.6 * ink.pointsToPixels);
        addLine(chart, "contour", lines, pen);
        addKeyEntry(
            chart, level ? toQt("at " + generalNumber(*level, 4)) : QObject::tr("suggested factor"),
            pen);
        chart.legend->setVisible(true);
    }
    chart.xAxis->setLabel(axisTitle(subject.axis(0).variable.label(),
                                    subject.axis(0).variable.unit(subject.base.Units)));
    chart.yAxis->setLabel(axisTitle(subject.axis(1).variable.label(),
                                    subject.axis(1).variable.unit(subject.base.Units)));
}

void addSpots(Drawing& drawing, const SweepSubject& subject) {
    const std::size_t rows = subject.sweep.rows();
    if (subject.isMap()) {
        if (rows > MostMapSpots) return;
        const MapAxis x{subject.axis(0).values}, y{subject.axis(1).values};
        for (std::size_t row = 0; row < rows; ++row)
            drawing.spots.push_back(
                {x.place(row / y.values.size()), y.place(row % y.values.size()), row});
        return;
    }
    const std::size_t every = rows / MostDrawnPoints + 1;
    for (std::size_t row = 0; row < rows; row += every)
        if (const double value = subject.sweep.outcomes[0][row]; !std::isnan(value))
            drawing.spots.push_back({subject.sweep.input(row, 0), value, row});
}

std::string rowsInWords(const SweepSubject& subject, std::optional<double> level, bool hidden) {
    const Sweep& sweep = subject.sweep;
    const Outcome& outcome = sweep.request.outcomes[0];
    const std::vector<double>& values = sweep.outcomes[0];
    const std::vector<double>& judged = hidden ? sweep.outcomes[subject.shown] : values;
    double low = HUGE_VAL, high = -HUGE_VAL;
    std::size_t held = 0, known = 0;
    for (std::size_t row = 0; row < values.size(); ++row) {
        if (std::isnan(values[row])) continue;
        ++known;
        low = std::min(low, values[row]);
        high = std::max(high, values[row]);
        if (level && judged[row] >= *level) ++held;
    }
    if (known == 0)
        return "None of " + grouped(sweep.rows()) + " rows has this result: " + outcome.label();
    std::string text = outcome.label() + " " + outcome.text(low, subject.base.Units) + " to " +
                       outcome.text(high, subject.base.Units) + " in " + grouped(known) +
                       (known == 1 ? " row" : " rows");
    if (level)
        text += "; " + grouped(held) + " of them reach " +
                (hidden ? std::string("the suggested factor") : generalNumber(*level, 4));
    return text + ".";
}

} // namespace

StudyResult sweepResult(Sweep made, const project::ProjectCase& base, std::optional<double> level,
                        bool hidden) {
    SweepSubject own{std::move(made), base, 0, {}};
    own.shown = own.sweep.request.outcomes.size() - (hidden ? 1 : 0);
    if (own.isMap() && level) own.contour = contour(own.sweep, hidden ? own.shown : 0, *level);
    const auto subject = std::make_shared<const SweepSubject>(std::move(own));
    StudyResult result;
    result.headline = rowsInWords(*subject, level, hidden);
    result.tally = subject->sweep.tally;
    result.stopped = subject->sweep.stopped;
    result.made = subject;
    result.table = sweepTable(subject);
    result.ofRow = [subject](std::size_t row, int) {
        return std::vector<CaseChoice>{rowChoice(subject, row)};
    };
    result.ofSpot = [subject](std::size_t row) { return std::optional(rowChoice(subject, row)); };
    result.drawing.tip = [subject](std::size_t row) { return rowTip(subject, row); };
    result.drawing.summary = toQt(result.headline);
    if (subject->isMap())
        result.drawing.compose = [subject, shown = hidden ? std::nullopt : level](
                                     QCustomPlot& chart, const ChartInk& ink) {
            composeMap(chart, *subject, shown, ink);
        };
    else if (subject->axes() == 1 || subject->sweep.request.linked)
        result.drawing.compose = [subject, shown = hidden ? std::nullopt : level](
                                     QCustomPlot& chart, const ChartInk& ink) {
            composeCurves(chart, *subject, shown, ink);
        };
    else
        result.remark = "A picture is drawn of one input, or of two in all combinations.";
    if (result.drawing.compose) addSpots(result.drawing, *subject);
    return result;
}

} // namespace telvo::study::ui
