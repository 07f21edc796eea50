// SPDX-License-Identifier: GPL-3.0-or-later
//
// Table and picture of what matters.
#include "base/numbers.h"
#include "base/ui/qtText.h"
#include "chart/ui/chartParts.h"
#include "study/ui/studies/choices.h"
#include "study/ui/studies/TornadoPage.h"

#include <algorithm>
#include <cmath>

namespace telvo::study::ui {

using chart::ui::mixed;
using telvo::ui::toQt;

namespace {

enum Column {
    Input,
    Ranged,
    Unit,
    From,
    To,
    Own,
    AtLow,
    AtHigh,
    Least,
    LeastAt,
    Most,
    MostAt,
    Swing,
    Jumps,
    Remark,
    ColumnCount
};

enum End : std::size_t { LowEnd, HighEnd, LeastEnd, MostEnd, Ends };

struct Subject {
    std::shared_ptr<const Tornado> tornado;
    project::ProjectCase base;
    Outcome outcome;
    std::vector<RangedInput> inputs;
    std::optional<double> limit;

    const TornadoBar& bar(std::size_t i) const { return tornado->bars[i]; }
    const RangedInput* ranged(const Variable& variable) const {
        const auto found = std::find_if(inputs.begin(), inputs.end(), [&](const RangedInput& one) {
            return one.variable == variable;
        });
        return found == inputs.end() ? nullptr : &*found;
    }
};
using SubjectPtr = std::shared_ptr<const Subject>;

std::optional<GraphPoint> endOf(const TornadoBar& bar, std::size_t end) {
    switch (end) {
    case LowEnd:
        if (bar.atLow) return GraphPoint{bar.range.low, *bar.atLow};
        return std::nullopt;
    case HighEnd:
        if (bar.atHigh) return GraphPoint{bar.range.high, *bar.atHigh};
        return std::nullopt;
    case LeastEnd:
        return bar.least;
    default:
        return bar.most;
    }
}

std::string rangeText(const RangedInput& input, std::int16_t units) {
    const auto sign = [](double x) { return (x > 0 ? "+" : "") + generalNumber(x, 6); };
    const std::string unit(input.variable.unit(units));
    std::string text;
    switch (input.range.form) {
    case Range::Form::Percent:
        text = sign(input.range.low) + " .. " + sign(input.range.high) + " %";
        break;
    case Range::Form::Offset:
        text = sign(input.range.low) + " .. " + sign(input.range.high) + " " + unit;
        break;
    case Range::Form::Absolute:
        text = generalNumber(input.range.low, 6) + " .. " + generalNumber(input.range.high, 6) +
               " " + unit;
        break;
    }
    return input.edited ? text + " (own)" : text;
}

std::string remarkOf(const TornadoBar& bar) {
    if (!bar.withoutEffect.empty()) return "no effect here: " + bar.withoutEffect;
    if (bar.notComputed > 0)
        return std::to_string(bar.notComputed) + " values could not be computed";
    return {};
}

StudyCell tornadoCell(const Subject& subject, std::size_t row, std::size_t column) {
    const TornadoBar& bar = subject.bar(row);
    const auto number = [](const std::optional<double>& x) {
        return x ? StudyCell(*x) : StudyCell();
    };
    switch (column) {
    case Input:
        return bar.variable.label();
    case Ranged: {
        const RangedInput* input = subject.ranged(bar.variable);
        return input ? rangeText(*input, subject.base.Units) : std::string();
    }
    case Unit:
        return std::string(bar.variable.unit(subject.base.Units));
    case From:
        return bar.range.low;
    case To:
        return bar.range.high;
    case Own:
        return bar.own;
    case AtLow:
        return number(bar.atLow);
    case AtHigh:
        return number(bar.atHigh);
    case Least:
        return bar.least ? StudyCell(bar.least->y) : StudyCell();
    case LeastAt:
        return bar.least ? StudyCell(bar.least->x) : StudyCell();
    case Most:
        return bar.most ? StudyCell(bar.most->y) : StudyCell();
    case MostAt:
        return bar.most ? StudyCell(bar.most->x) : StudyCell();
    case Swing:
        return bar.least ? StudyCell(bar.swing()) : StudyCell();
    case Jumps:
        return static_cast<double>(bar.jumps.size());
    default:
        return remarkOf(bar);
    }
}

std::shared_ptr<const StudyTable> tableOf(const SubjectPtr& subject) {
    auto table = std::make_shared<StudyTable>();
    const std::string unit(engine::unitName(subject->outcome.kind(), subject->base.Units));
    table->columns = {{.label = "Input", .isText = true},
                      {.label = "Range", .isText = true},
                      {.label = "Unit", .isText = true},
                      {.label = "From"},
                      {.label = "To"},
                      {.label = "Own Value"},
                      {.label = "Result at From", .unit = unit},
                      {.label = "Result at To", .unit = unit},
                      {.label = "Smallest", .unit = unit},
                      {.label = "Smallest at"},
                      {.label = "Largest", .unit = unit},
                      {.label = "Largest at"},
                      {.label = "Swing", .unit = unit},
                      {.label = "Jumps"},
                      {.label = "Remark", .isText = true}};
    static_assert(ColumnCount == 15);
    table->rows = subject->tornado->bars.size();
    table->cell = [subject](std::size_t row, std::size_t column) {
        return tornadoCell(*subject, row, column);
    };
    return table;
}

std::optional<CaseChoice> choiceAt(const SubjectPtr& subject, std::size_t row, std::size_t end) {
    const TornadoBar& bar = subject->bar(row);
    const auto point = endOf(bar, end);
    if (!point) return std::nullopt;
    return CaseChoice{bar.variable.label() + " " + bar.variable.text(point->x, subject->base.Units),
                      [subject, variable = bar.variable, x = point->x] {
                          project::ProjectCase made = subject->base;
                          made.Input = variable.in(made.Input, made.Units, x);
                          return made;
                      }};
}

std::vector<CaseChoice> choicesAt(const SubjectPtr& subject, std::size_t row, int column) {
    std::size_t first = LeastEnd;
    if (column == AtLow || column == From) first = LowEnd;
    if (column == AtHigh || column == To) first = HighEnd;
    if (column == Most || column == MostAt) first = MostEnd;
    std::vector<CaseChoice> choices;
    const auto add = [&](std::size_t end) {
        auto choice = choiceAt(subject, row, end);
        const bool known = choice && std::any_of(choices.begin(), choices.end(), [&](auto& one) {
                               return one.what == choice->what;
                           });
        if (choice && !known) choices.push_back(std::move(*choice));
    };
    add(first);
    for (std::size_t end = 0; end < Ends; ++end)
        add(end);
    return choices;
}

QString tipOf(const Subject& subject, std::size_t id) {
    const TornadoBar& bar = subject.bar(id / Ends);
    const auto point = endOf(bar, id % Ends);
    if (!point) return {};
    const std::int16_t units = subject.base.Units;
    std::string text = bar.variable.label() + " " + bar.variable.text(point->x, units) + "\n" +
                       subject.outcome.label() + " " + subject.outcome.text(point->y, units) +
                       "\nvaried from " + generalNumber(bar.range.low, 6) + " to " +
                       bar.variable.text(bar.range.high, units, 6) + ", own value " +
                       bar.variable.text(bar.own, units, 6);
    for (std::size_t i = 0; i < bar.jumps.size() && i < 3; ++i)
        text +=
            "\njumps at " + bar.variable.text(bar.jumps[i].x, units, 6) + ": " + bar.jumps[i].rule;
    if (bar.jumps.size() > 3)
        text += "\nand " + std::to_string(bar.jumps.size() - 3) + " more jumps";
    return toQt(text);
}

/// A box without a frame.
void addRect(QCustomPlot& chart, double x0, double y0, double x1, double y1, const QColor& color) {
    auto* rect = new QCPItemRect(&chart);
    rect->topLeft->setCoords(std::min(x0, x1), std::max(y0, y1));
    rect->bottomRight->setCoords(std::max(x0, x1), std::min(y0, y1));
    rect->setPen(QPen(color, 1));
    rect->setBrush(color);
}

void addKey(QCustomPlot& chart, const QString& text, const QColor& color) {
    QCPGraph* key = chart.addGraph();
    key->setName(text);
    key->setPen(QPen(color, 6));
    key->addToLegend();
}

void addUpright(QCustomPlot& chart, double x, const QPen& pen) {
    auto* line = new QCPItemStraightLine(&chart);
    line->point1->setCoords(x, 0);
    line->point2->setCoords(x, 1);
    line->setPen(pen);
}

double barPlace(const Subject& subject, std::size_t row) {
    return static_cast<double>(subject.tornado->bars.size() - 1 - row);
}

Span outcomeSpan(const Subject& subject) {
    Span span{subject.tornado->own.value_or(0), subject.tornado->own.value_or(0)};
    for (const TornadoBar& bar : subject.tornado->bars) {
        if (!bar.withoutEffect.empty() || !bar.least) continue;
        span.low = std::min(span.low, bar.least->y);
        span.high = std::max(span.high, bar.most->y);
    }
    const double room = 0.06 * (span.high - span.low);
    if (subject.limit && *subject.limit > span.low - 3 * room &&
        *subject.limit < span.high + 3 * room)
        span = {std::min(span.low, *subject.limit), std::max(span.high, *subject.limit)};
    const double margin = span.high > span.low ? 0.06 * (span.high - span.low)
                                               : std::max(std::abs(span.low) * 0.1, 1e-9);
    return {span.low - margin, span.high + margin};
}

void addLines(QCustomPlot& chart, const Subject& subject, const ChartInk& ink, bool upright) {
    const QColor text = ink.palette.color(QPalette::Text);
    const double width = ink.pointsToPixels;
    const auto add = [&](double at, const QPen& pen, const QString& name) {
        if (upright) {
            addUpright(chart, at, pen);
        } else {
            auto* line = new QCPItemStraightLine(&chart);
            line->point1->setCoords(0, at);
            line->point2->setCoords(1, at);
            line->setPen(pen);
        }
        QCPGraph* key = chart.addGraph();
        key->setName(name);
        key->setPen(pen);
        key->addToLegend();
    };
    if (subject.tornado->own)
        add(*subject.tornado->own, QPen(text, 1.2 * width), QObject::tr("this case"));
    if (subject.limit)
        add(*subject.limit, QPen(studyColor(3, ink.palette), 1.5 * width, Qt::DashLine),
            QObject::tr("suggested %1").arg(toQt(generalNumber(*subject.limit, 4))));
}

void composeTornado(QCustomPlot& chart, const Subject& subject, const ChartInk& ink) {
    const auto& bars = subject.tornado->bars;
    const QColor base = ink.palette.color(QPalette::Base), text = ink.palette.color(QPalette::Text);
    const QColor low = studyColor(0, ink.palette), high = studyColor(1, ink.palette);
    const QColor light = mixed(base, text, 0.2), faint = mixed(base, text, 0.6);
    auto names = QSharedPointer<QCPAxisTickerText>::create();
    const Span span = outcomeSpan(subject);
    const double own = subject.tornado->own.value_or(span.low);
    std::vector<double> diamondsX, diamondsY;
    for (std::size_t row = 0; row < bars.size(); ++row) {
        const TornadoBar& bar = bars[row];
        const double y = barPlace(subject, row);
        std::string name = bar.variable.label();
        if (!bar.withoutEffect.empty() || !bar.least) {
            auto* note = new QCPItemText(&chart);
            note->setFont(ink.font);
            note->setColor(faint);
            note->setText(toQt(remarkOf(bar)));
            note->position->setTypeX(QCPItemPosition::ptAxisRectRatio);
            note->position->setAxes(chart.xAxis, chart.yAxis);
            note->position->setTypeY(QCPItemPosition::ptPlotCoords);
            note->position->setCoords(0.01, y);
            note->setPositionAlignment(Qt::AlignLeft | Qt::AlignVCenter);
            names->addTick(y, toQt(name));
            continue;
        }
        names->addTick(y,
                       toQt(name + ", " + spanText(bar.variable, bar.range, subject.base.Units)));
        addRect(chart, bar.least->y, y - 0.36, bar.most->y, y + 0.36, light);
        if (bar.atLow) addRect(chart, own, y + 0.02, *bar.atLow, y + 0.28, low);
        if (bar.atHigh) addRect(chart, own, y - 0.28, *bar.atHigh, y - 0.02, high);
        for (const Jump& jump : bar.jumps)
            for (const auto& side : {jump.before, jump.after})
                if (side) {
                    diamondsX.push_back(*side);
                    diamondsY.push_back(y);
                }
    }
    chart.yAxis->setTicker(names);
    chart.yAxis->setSubTicks(false);
    chart.yAxis->setTickLength(0);
    chart.yAxis->setRange(-0.7, static_cast<double>(bars.size()) - 0.3);
    chart.xAxis->setRange(span.low, span.high);
    chart.xAxis->grid()->setVisible(true);
    const std::string unit(engine::unitName(subject.outcome.kind(), subject.base.Units));
    chart.xAxis->setLabel(
        toQt(unit.empty() ? subject.outcome.label() : subject.outcome.label() + " (" + unit + ")"));
    addKey(chart, QObject::tr("input at its low end"), low);
    addKey(chart, QObject::tr("at its high end"), high);
    addKey(chart, QObject::tr("anywhere in its range"), light);
    if (!diamondsX.empty()) {
        QCPGraph* marks = chart.addGraph();
        marks->setObjectName("jumps");
        marks->setName(QObject::tr("jump"));
        marks->setLineStyle(QCPGraph::lsNone);
        marks->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssDiamond, QPen(text, 1),
                                               QBrush(base), 6 * ink.pointsToPixels));
        marks->setLayer("axes"); // above the bars
        marks->setData(QVector<double>(diamondsX.begin(), diamondsX.end()),
                       QVector<double>(diamondsY.begin(), diamondsY.end()));
        marks->addToLegend();
    }
    addLines(chart, subject, ink, true);
    chart.legend->setVisible(true);
}

constexpr std::size_t NamedLegs = 7; // lines that can be told apart

/// Where a value lies between the ends of its range: -1 low, 0 the case's own, 1 high.
double legPlace(const TornadoBar& bar, double x) {
    if (x < bar.own) return bar.own > bar.range.low ? (x - bar.own) / (bar.own - bar.range.low) : 0;
    return bar.range.high > bar.own ? (x - bar.own) / (bar.range.high - bar.own) : 0;
}

void composeSpider(QCustomPlot& chart, const Subject& subject, const ChartInk& ink) {
    const QColor base = ink.palette.color(QPalette::Base), text = ink.palette.color(QPalette::Text);
    const auto& bars = subject.tornado->bars;
    for (std::size_t at = bars.size(); at-- > 0;) { // the widest ones above the others
        const TornadoBar& bar = bars[at];
        if (!bar.withoutEffect.empty()) continue;
        const bool named = at < NamedLegs;
        QPen pen(named ? studyColor(at, ink.palette) : mixed(base, text, 0.3),
                 (named ? 1.5 : 0.75) * ink.pointsToPixels,
                 at % 2 == 0 ? Qt::SolidLine : Qt::DashLine);
        auto* leg = new QCPCurve(chart.xAxis, chart.yAxis);
        leg->setObjectName("leg:" + toQt(bar.variable.name()));
        leg->setPen(pen);
        double key = 0;
        for (const Stretch& stretch : bar.curve) {
            for (const GraphPoint& point : stretch)
                leg->addData(key++, legPlace(bar, point.x), point.y);
            leg->addData(key++, qQNaN(), qQNaN());
        }
    }
    for (std::size_t at = 0; at < std::min(bars.size(), NamedLegs); ++at) {
        if (!bars[at].withoutEffect.empty()) continue;
        QCPGraph* key = chart.addGraph();
        key->setName(toQt(bars[at].variable.label()));
        key->setPen(QPen(studyColor(at, ink.palette), 1.5 * ink.pointsToPixels,
                         at % 2 == 0 ? Qt::SolidLine : Qt::DashLine));
        key->addToLegend();
    }
    const Span span = outcomeSpan(subject);
    chart.yAxis->setRange(span.low, span.high);
    chart.xAxis->setRange(-1.05, 1.05);
    chart.yAxis->grid()->setVisible(true);
    const std::string unit(engine::unitName(subject.outcome.kind(), subject.base.Units));
    chart.yAxis->setLabel(
        toQt(unit.empty() ? subject.outcome.label() : subject.outcome.label() + " (" + unit + ")"));
    chart.xAxis->setLabel(QObject::tr("Input: -1 low end of its range, 0 this case, 1 high end"));
    addLines(chart, subject, ink, false);
    chart.legend->setVisible(true);
}

std::vector<Spot> spotsOf(const Subject& subject, bool spider) {
    std::vector<Spot> spots;
    for (std::size_t row = 0; row < subject.tornado->bars.size(); ++row) {
        const TornadoBar& bar = subject.bar(row);
        if (!bar.withoutEffect.empty()) continue;
        std::vector<double> places;
        for (const std::size_t end : {LowEnd, HighEnd, LeastEnd, MostEnd}) {
            const auto point = endOf(bar, end);
            if (!point) continue;
            if (std::find(places.begin(), places.end(), point->x) != places.end()) continue;
            places.push_back(point->x);
            const double half = end == LowEnd ? 0.15 : end == HighEnd ? -0.15 : 0;
            spots.push_back(spider
                                ? Spot{legPlace(bar, point->x), point->y, row * Ends + end}
                                : Spot{point->y, barPlace(subject, row) + half, row * Ends + end});
        }
    }
    return spots;
}

} // namespace

StudyResult tornadoResult(std::shared_ptr<const Tornado> tornado, const project::ProjectCase& base,
                          const TornadoRequest& request, bool spider, std::optional<double> limit) {
    const auto subject = std::make_shared<const Subject>(
        Subject{std::move(tornado), base, request.outcome, request.inputs, limit});
    StudyResult result;
    result.headline = subject->tornado->headline;
    if (result.headline.ends_with("moves it")) result.headline += ".";
    result.tally = subject->tornado->tally;
    result.made = subject->tornado;
    result.table = tableOf(subject);
    result.ofRow = [subject](std::size_t row, int column) {
        return choicesAt(subject, row, column);
    };
    result.ofSpot = [subject](std::size_t id) { return choiceAt(subject, id / Ends, id % Ends); };
    result.drawing.compose = [subject, spider](QCustomPlot& chart, const ChartInk& ink) {
        spider ? composeSpider(chart, *subject, ink) : composeTornado(chart, *subject, ink);
    };
    result.drawing.spots = spotsOf(*subject, spider);
    result.drawing.tip = [subject](std::size_t id) { return tipOf(*subject, id); };
    result.drawing.summary = toQt(result.headline);
    result.drawing.linesOfText = spider ? 0 : static_cast<int>(subject->tornado->bars.size()) + 6;
    return result;
}

} // namespace telvo::study::ui
