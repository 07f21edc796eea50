// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "base/ui/qtText.h"
#include "chart/ui/chartParts.h"
#include "study/ui/drawings/drawingParts.h"
#include "study/ui/drawings/studyDrawings.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace telvo::study::ui {

using telvo::ui::toQt;

namespace {

constexpr std::size_t MostDrawnPoints = 20'000; // of a curve
constexpr std::size_t MostMapSpots = 250'000;

QString rowTip(const Sweep& subject, std::size_t row) {
    const std::int16_t units = subject.base().Units;
    std::string text = sweepRowName(subject, row);
    for (std::size_t o = 0; o < subject.request.outcomes.size(); ++o) {
        const Outcome& outcome = subject.request.outcomes[o];
        const double value = subject.outcomes[o][row];
        text += "\n" + outcome.label() + " " +
                (std::isnan(value) ? "none" : outcome.text(value, units));
    }
    if (!subject.computed[row]) text += "\n" + subject.message(row);
    return toQt(text);
}

/// Of the lines of a picture, in their order.
QPen linePen(std::size_t line, const QColor& color, double width) {
    static constexpr std::array styles = {Qt::DashLine, Qt::DotLine, Qt::DashDotLine,
                                          Qt::DashDotDotLine};
    return QPen(color, width, styles[line % styles.size()]);
}

QString lineName(const SweepLine& line) {
    return line.level ? toQt("at " + line.text()) : QObject::tr("suggested factor");
}

/// A line over a curve: level, or along the suggested factor, which follows the inputs.
std::vector<Stretch> levelLine(const Sweep& subject, const SweepLine& line, const Extent& extent,
                               std::size_t every) {
    if (line.level) return {{{extent.x0, *line.level}, {extent.x1, *line.level}}};
    std::vector<Stretch> pieces(1);
    for (std::size_t row = 0; row < subject.rows(); row += every) {
        const double y = line.suggested[row];
        if (!std::isnan(y))
            pieces.back().push_back({subject.input(row, 0), y});
        else if (!pieces.back().empty())
            pieces.emplace_back();
    }
    return pieces;
}

/// Curves over the first axis.
void composeCurves(QCustomPlot& chart, const Sweep& subject, const std::vector<SweepLine>& lines,
                   const ChartInk& ink) {
    Extent extent;
    const std::size_t rows = subject.rows();
    const std::size_t every = rows / MostDrawnPoints + 1;
    const engine::Kind kind = subject.request.outcomes[0].kind();
    std::vector<Outcome> drawn;
    for (std::size_t o = 0; o < subject.request.outcomes.size(); ++o) {
        if (subject.request.outcomes[o].kind() != kind) continue; // another unit
        drawn.push_back(subject.request.outcomes[o]);
        std::vector<Stretch> pieces(1);
        for (std::size_t row = 0; row < rows; row += every) {
            const double y = subject.outcomes[o][row];
            if (std::isnan(y)) {
                if (!pieces.back().empty()) pieces.emplace_back();
                continue;
            }
            pieces.back().push_back({subject.input(row, 0), y});
        }
        extent.take(pieces);
        const QPen pen(studyColor(o, ink.palette), 1.5 * ink.pointsToPixels,
                       o % 2 == 0 ? Qt::SolidLine : Qt::DashLine);
        auto* line = addLine(chart, "curve:" + QString::number(o), pieces, pen);
        if (rows <= 200)
            line->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssDisc, 4 * ink.pointsToPixels));
        addKeyEntry(chart, toQt(subject.request.outcomes[o].label()), pen);
    }
    for (std::size_t i = 0; i < lines.size() && extent.x0 <= extent.x1; ++i) {
        const auto pieces = levelLine(subject, lines[i], extent, every);
        extent.take(pieces);
        const QPen pen = linePen(i, studyColor(3, ink.palette), 1.3 * ink.pointsToPixels);
        addLine(chart, "level:" + QString::number(i), pieces, pen);
        addKeyEntry(chart, lineName(lines[i]), pen);
    }
    extent.apply(chart);
    chart.xAxis->setLabel(inputTitle(subject.request.axes[0].variable, subject.base().Units));
    chart.yAxis->setLabel(outcomesTitle(drawn, subject.base().Units));
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

/// Names a line of a map on the line itself, away from the edges and from the labels before.
/// Given: taken  places of labels, in shares of the axes; takes the new one
void addContourLabel(QCustomPlot& chart, const QString& text, const std::vector<Stretch>& pieces,
                     std::vector<GraphPoint>& taken, const ChartInk& ink) {
    const QCPRange x = chart.xAxis->range(), y = chart.yAxis->range();
    double most = -1;
    GraphPoint best, bestShare;
    for (const Stretch& piece : pieces)
        for (const GraphPoint& point : piece) {
            const GraphPoint share{(point.x - x.lower) / x.size(), (point.y - y.lower) / y.size()};
            double room = std::min({share.x, 1 - share.x, share.y, 1 - share.y, 0.2});
            for (const GraphPoint& other : taken)
                room = std::min(room, std::hypot(share.x - other.x, share.y - other.y));
            if (room <= most) continue;
            most = room;
            best = point;
            bestShare = share;
        }
    if (most < 0) return;
    taken.push_back(bestShare);
    auto* label = new QCPItemText(&chart);
    label->setObjectName("contourLabel");
    label->setLayer("axes"); // above all lines
    label->setFont(ink.font);
    label->setText(text);
    label->setColor(Qt::black);
    label->setBrush(QColor(255, 255, 255, 225));
    label->setPadding({3, 0, 3, 0});
    label->setPositionAlignment(Qt::AlignCenter);
    label->position->setCoords(best.x, best.y);
}

QPen contourPen(std::size_t line, const ChartInk& ink) {
    static constexpr std::array styles = {Qt::SolidLine, Qt::DashLine, Qt::DotLine,
                                          Qt::DashDotLine};
    return QPen(QColor(0xd0, 0x10, 0x50), 1.6 * ink.pointsToPixels, styles[line % styles.size()]);
}

void composeMap(QCustomPlot& chart, const Sweep& subject, const std::vector<SweepLine>& lines,
                const ChartInk& ink) {
    const MapAxis x{subject.request.axes[0].values}, y{subject.request.axes[1].values};
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
            const double value = subject.outcomes[0][static_cast<std::size_t>(i) * y.values.size() +
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
    numbers->setLabel(outcomeTitle(subject.request.outcomes[0], subject.base().Units));
    numbers->setLabelColor(text);
    numbers->setTickLabelColor(text);
    numbers->setBasePen(QPen(text));
    numbers->setTickPen(QPen(text));
    numbers->setSubTickPen(QPen(text));
    numbers->setLabelFont(ink.font);
    numbers->setTickLabelFont(ink.font);
    std::vector<GraphPoint> labels;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::vector<Stretch> pieces = lines[i].contour;
        for (Stretch& piece : pieces)
            for (GraphPoint& point : piece)
                point = {x.at(point.x), y.at(point.y)};
        if (pieces.empty()) continue;
        // White with a dark core is seen on every color.
        addLine(chart, "contourGround:" + QString::number(i), pieces,
                QPen(Qt::white, 3.5 * ink.pointsToPixels));
        const QPen pen = contourPen(i, ink);
        addLine(chart, "contour:" + QString::number(i), pieces, pen);
        addKeyEntry(chart, lineName(lines[i]), pen);
        addContourLabel(chart, toQt(lines[i].text()), pieces, labels, ink);
        chart.legend->setVisible(true);
    }
    chart.xAxis->setLabel(inputTitle(subject.request.axes[0].variable, subject.base().Units));
    chart.yAxis->setLabel(inputTitle(subject.request.axes[1].variable, subject.base().Units));
}

void addSpots(Drawing& drawing, const Sweep& subject) {
    const std::size_t rows = subject.rows();
    if (subject.isMap()) {
        if (rows > MostMapSpots) return;
        const MapAxis x{subject.request.axes[0].values}, y{subject.request.axes[1].values};
        for (std::size_t row = 0; row < rows; ++row)
            drawing.spots.push_back(
                {x.place(row / y.values.size()), y.place(row % y.values.size()), row});
        return;
    }
    const std::size_t every = rows / MostDrawnPoints + 1;
    for (std::size_t row = 0; row < rows; row += every)
        if (const double value = subject.outcomes[0][row]; !std::isnan(value))
            drawing.spots.push_back({subject.input(row, 0), value, row});
}

} // namespace

std::string sweepRowName(const Sweep& sweep, std::size_t row) {
    std::string text = "row " + std::to_string(row + 1) + ":";
    for (std::size_t a = 0; a < sweep.request.axes.size(); ++a) {
        const Variable& variable = sweep.request.axes[a].variable;
        text += (a > 0 ? ", " : " ") + variable.label() + " " +
                variable.text(sweep.input(row, a), sweep.base().Units);
    }
    return text;
}

Drawing sweepDrawing(std::shared_ptr<const Sweep> sweep, std::vector<SweepLine> lines) {
    Drawing drawing;
    drawing.headline = sweepHeadline(*sweep, lines);
    if (sweep->isMap())
        drawing.compose = [sweep, lines](QCustomPlot& chart, const ChartInk& ink) {
            composeMap(chart, *sweep, lines, ink);
        };
    else if (sweep->request.axes.size() == 1 || sweep->request.linked)
        drawing.compose = [sweep, lines](QCustomPlot& chart, const ChartInk& ink) {
            composeCurves(chart, *sweep, lines, ink);
        };
    else
        return drawing;
    addSpots(drawing, *sweep);
    drawing.tip = [sweep](std::size_t row) { return rowTip(*sweep, row); };
    return drawing;
}

} // namespace telvo::study::ui
