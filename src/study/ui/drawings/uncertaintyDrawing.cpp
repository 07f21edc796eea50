// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/drawings/uncertaintyDrawing.h"

#include "base/numbers.h"
#include "base/ui/qtText.h"
#include "chart/ui/chartParts.h"
#include "study/questions/sampleBlock.h"
#include "study/ui/drawings/drawingParts.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace telvo::study::ui {

using telvo::ui::toQt;

namespace {

constexpr double Percent = 100;

QPen linePen(const QColor& color, const ChartInk& ink, Qt::PenStyle style = Qt::SolidLine) {
    return {color, 1.6 * ink.pointsToPixels, style};
}

void addLimit(QCustomPlot& chart, double at, const QString& name, const QPen& pen) {
    auto* line = new QCPItemStraightLine(&chart);
    line->setObjectName("limit");
    line->point1->setCoords(at, 0);
    line->point2->setCoords(at, 1);
    line->setPen(pen);
    addKeyEntry(chart, name, pen);
}

QCPBars* addBars(QCustomPlot& chart, const QString& objectName, const QString& name, double width,
                 const QColor& color) {
    auto* bars = new QCPBars(chart.xAxis, chart.yAxis);
    bars->setObjectName(objectName);
    bars->setName(name);
    bars->setWidthType(QCPBars::wtPlotCoords);
    bars->setWidth(width);
    bars->setPen(QPen(color, 1));
    bars->setBrush(color);
    bars->addToLegend();
    return bars;
}

/// Samples of each bin that miss the criterion.
std::vector<std::uint64_t> missesByBin(const UncertaintyAnswer& answer, std::size_t criterion) {
    const Histogram& histogram = answer.made.criteria[criterion].histogram;
    const Samples& samples = answer.made.samples;
    std::vector<std::uint64_t> misses(histogram.counts.size());
    for (std::size_t s = 0; s < samples.size(); ++s) {
        if (!answer.made.isComputed(s) || (samples.missed[s] >> criterion & 1U) == 0) continue;
        const double value = samples.outcomes[criterion][s];
        const double bin =
            histogram.width > 0 ? std::floor((value - histogram.first) / histogram.width) : 0;
        if (bin >= 0 && bin < static_cast<double>(misses.size()))
            ++misses[static_cast<std::size_t>(bin)];
    }
    return misses;
}

/// Shares of a histogram's bins in percent of the samples: those that miss below those that hold.
void addHistogram(QCustomPlot& chart, const UncertaintyAnswer& answer, std::size_t criterion,
                  const std::vector<std::uint64_t>& misses, const ChartInk& ink) {
    const Criterion& asked = answer.request.criteria[criterion];
    const Histogram& histogram = answer.made.criteria[criterion].histogram;
    const auto computed = static_cast<double>(std::accumulate(
        histogram.counts.begin(), histogram.counts.end(), histogram.below + histogram.above));
    const double width =
        histogram.width > 0 ? histogram.width : std::max(std::abs(histogram.first) * 0.02, 1e-9);
    const double from = histogram.width > 0 ? histogram.first : histogram.first - width / 2;
    // A bar of nothing would be drawn as a line.
    QVector<double> missingAt, missing, holdingAt, holding;
    double highest = 0;
    for (std::size_t bin = 0; bin < histogram.counts.size(); ++bin) {
        const double at = from + (static_cast<double>(bin) + 0.5) * width;
        const std::uint64_t missed = std::min(misses[bin], histogram.counts[bin]);
        const std::uint64_t held = histogram.counts[bin] - missed;
        if (missed > 0) {
            missingAt.append(at);
            missing.append(Percent * static_cast<double>(missed) / computed);
        }
        if (held > 0) {
            holdingAt.append(at);
            holding.append(Percent * static_cast<double>(held) / computed);
        }
        highest =
            std::max(highest, Percent * static_cast<double>(histogram.counts[bin]) / computed);
    }
    QCPBars* below = addBars(chart, "misses", QObject::tr("samples that miss"), width,
                             studyColor(1, ink.palette));
    below->setData(missingAt, missing, true);
    QCPBars* above = addBars(
        chart, "holds", QObject::tr("samples that hold"), width,
        chart::ui::mixed(ink.palette.color(QPalette::Base), studyColor(0, ink.palette), 0.6));
    above->setData(holdingAt, holding, true);
    above->moveAbove(below);
    const auto bins = static_cast<double>(histogram.counts.size());
    double low = from, high = from + bins * width;
    if (asked.target) {
        low = std::min(low, *asked.target - width);
        high = std::max(high, *asked.target + width);
    }
    chart.xAxis->setRange(low, high);
    chart.yAxis->setRange(0, highest * 1.08);
}

void composeDistribution(QCustomPlot& chart, const UncertaintyAnswer& answer, std::size_t criterion,
                         const std::vector<std::uint64_t>& misses, const ChartInk& ink) {
    const Criterion& asked = answer.request.criteria[criterion];
    const CriterionShare& share = answer.made.criteria[criterion];
    const QColor text = ink.palette.color(QPalette::Text);
    addHistogram(chart, answer, criterion, misses, ink);
    chart.yAxis2->setVisible(true);
    chart.yAxis2->setTicks(true);
    chart.yAxis2->setTickLabels(true);
    chart.yAxis2->setRange(0, Percent);
    chart.yAxis2->setLabel(QObject::tr("samples up to there (%)"));
    auto* curve = new QCPCurve(chart.xAxis, chart.yAxis2);
    curve->setObjectName("cumulative");
    curve->setName(QObject::tr("up to there, in all"));
    curve->setPen(linePen(text, ink));
    curve->addToLegend();
    QVector<double> x, y;
    for (const auto& [value, part] : share.cumulative) {
        x.append(value);
        y.append(Percent * part);
    }
    curve->setData(x, y);
    if (asked.target)
        addLimit(chart, *asked.target,
                 QObject::tr("limit %1").arg(toQt(generalNumber(*asked.target, 6))),
                 linePen(studyColor(1, ink.palette), ink, Qt::DashLine));
    chart.xAxis->setLabel(outcomeTitle(asked.outcome, answer.base.Units));
    chart.yAxis->setLabel(QObject::tr("samples (%)"));
    chart.yAxis->grid()->setVisible(true);
    chart.legend->setVisible(true);
}

void composeImportance(QCustomPlot& chart, const UncertaintyAnswer& answer,
                       const std::vector<Importance>& importance, const ChartInk& ink) {
    std::vector<std::size_t> order(importance.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return std::abs(importance[a].rankCorrelation) > std::abs(importance[b].rankCorrelation);
    });
    auto names = QSharedPointer<QCPAxisTickerText>::create();
    const QColor colors[] = {studyColor(0, ink.palette), studyColor(1, ink.palette)};
    for (std::size_t row = 0; row < order.size(); ++row) {
        const double y = static_cast<double>(order.size() - 1 - row);
        const double value = importance[order[row]].rankCorrelation;
        auto* bar = new QCPItemRect(&chart);
        bar->setObjectName("bar");
        bar->topLeft->setCoords(std::min(value, 0.0), y + 0.34);
        bar->bottomRight->setCoords(std::max(value, 0.0), y - 0.34);
        const QColor& color = colors[value < 0];
        bar->setPen(QPen(color, 1));
        bar->setBrush(color);
        names->addTick(y, toQt(answer.request.inputs[order[row]].variable.label()));
    }
    chart.yAxis->setTicker(names);
    chart.yAxis->setSubTicks(false);
    chart.yAxis->setTickLength(0);
    chart.yAxis->setRange(-0.7, static_cast<double>(order.size()) - 0.3);
    chart.xAxis->setRange(-1.02, 1.02);
    chart.xAxis->grid()->setVisible(true);
    chart.xAxis->setLabel(QObject::tr("rank correlation of the input with the result"));
    addKeyBox(chart, QObject::tr("more of it raises the result"), colors[0]);
    addKeyBox(chart, QObject::tr("lowers it"), colors[1]);
    chart.legend->setVisible(true);
}

/// A line with its band, both in percent.
void addBanded(QCustomPlot& chart, const QString& name, const std::vector<double>& x,
               const std::vector<sampling::Estimate>& estimates, const QColor& color,
               const ChartInk& ink) {
    QVector<double> at, value, low, high;
    for (std::size_t i = 0; i < x.size(); ++i) {
        at.append(x[i]);
        value.append(Percent * estimates[i].value);
        low.append(Percent * estimates[i].low);
        high.append(Percent * estimates[i].high);
    }
    QColor faint = color;
    faint.setAlphaF(0.25F);
    QCPGraph* lower = chart.addGraph();
    lower->setPen(Qt::NoPen);
    lower->setData(at, low, true);
    lower->removeFromLegend();
    QCPGraph* upper = chart.addGraph();
    upper->setObjectName("band");
    upper->setPen(Qt::NoPen);
    upper->setData(at, high, true);
    upper->setBrush(faint);
    upper->setChannelFillGraph(lower);
    upper->removeFromLegend();
    QCPGraph* line = chart.addGraph();
    line->setObjectName("share");
    line->setName(name);
    line->setPen(linePen(color, ink));
    line->setData(at, value, true);
    line->addToLegend();
}

void scaleShares(QCustomPlot& chart, double highest) {
    chart.yAxis->setRange(0, std::min(102.0, std::max(highest * 1.1, 0.01)));
    chart.yAxis->setLabel(QObject::tr("samples that miss (%)"));
    chart.yAxis->grid()->setVisible(true);
}

void composeConvergence(QCustomPlot& chart, const UncertaintyAnswer& answer, std::size_t criterion,
                        const ChartInk& ink) {
    std::vector<double> x;
    std::vector<sampling::Estimate> shares;
    double highest = 0;
    for (const Convergence& one : answer.made.convergence[criterion]) {
        x.push_back(static_cast<double>(one.samples));
        shares.push_back(one.missed);
        highest = std::max(highest, Percent * one.missed.high);
    }
    addBanded(chart, QObject::tr("share with its 95 % interval"), x, shares,
              studyColor(0, ink.palette), ink);
    chart.xAxis->setScaleType(QCPAxis::stLogarithmic);
    chart.xAxis->setTicker(QSharedPointer<QCPAxisTickerLog>::create());
    if (!x.empty()) chart.xAxis->setRange(x.front() / 1.2, x.back() * 1.2);
    chart.xAxis->setNumberFormat("f");
    chart.xAxis->setNumberPrecision(0);
    chart.xAxis->setLabel(QObject::tr("samples"));
    scaleShares(chart, highest);
    chart.legend->setVisible(true);
}

void composeShareCurve(QCustomPlot& chart, const ShareCurveAnswer& answer, const ChartInk& ink) {
    double highest = answer.asked.share ? Percent * *answer.asked.share : 0;
    double left = HUGE_VAL, right = -HUGE_VAL;
    for (std::size_t c = 0; c < answer.made.points.size(); ++c) {
        std::vector<double> x;
        std::vector<sampling::Estimate> shares;
        for (const ShareCurvePoint& point : answer.made.points[c]) {
            left = std::min(left, point.x);
            right = std::max(right, point.x);
            if (point.computed == 0) continue;
            x.push_back(point.x);
            shares.push_back(point.missed);
            highest = std::max(highest, Percent * point.missed.high);
        }
        addBanded(chart, toQt(answer.request.criteria[c].title(answer.base.Units)), x, shares,
                  studyColor(c, ink.palette), ink);
    }
    if (answer.asked.share) {
        const QPen pen = linePen(ink.palette.color(QPalette::Text), ink, Qt::DashLine);
        auto* line = new QCPItemStraightLine(&chart);
        line->setObjectName("limit");
        line->point1->setCoords(0, Percent * *answer.asked.share);
        line->point2->setCoords(1, Percent * *answer.asked.share);
        line->setPen(pen);
        addKeyEntry(chart,
                    QObject::tr("share asked for: %1 %")
                        .arg(toQt(generalNumber(Percent * *answer.asked.share, 6))),
                    pen);
    }
    const double room = right > left ? 0.02 * (right - left) : 1;
    chart.xAxis->setRange(left - room, right + room);
    chart.xAxis->setLabel(inputTitle(answer.asked.over, answer.base.Units));
    scaleShares(chart, highest);
    chart.legend->setVisible(true);
}

std::string sentenceOf(const UncertaintyAnswer& answer, std::size_t criterion) {
    return asSentence(shareSentence(answer.made, answer.request, criterion, answer.base.Units));
}

} // namespace

Drawing distributionDrawing(const UncertaintyPtr& answer, std::size_t criterion) {
    Drawing drawing;
    drawing.headline = sentenceOf(*answer, criterion);
    drawing.compose = [answer, criterion, misses = missesByBin(*answer, criterion)](
                          QCustomPlot& chart, const ChartInk& ink) {
        composeDistribution(chart, *answer, criterion, misses, ink);
    };
    return drawing;
}

Drawing importanceDrawing(const UncertaintyPtr& answer,
                          std::shared_ptr<const std::vector<Importance>> importance,
                          std::size_t criterion) {
    Drawing drawing;
    drawing.headline = sentenceOf(*answer, criterion);
    drawing.linesOfText = static_cast<int>(importance->size()) + 5;
    drawing.compose = [answer, importance = std::move(importance)](QCustomPlot& chart,
                                                                   const ChartInk& ink) {
        composeImportance(chart, *answer, *importance, ink);
    };
    return drawing;
}

Drawing convergenceDrawing(const UncertaintyPtr& answer, std::size_t criterion) {
    Drawing drawing;
    drawing.headline = sentenceOf(*answer, criterion);
    drawing.compose = [answer, criterion](QCustomPlot& chart, const ChartInk& ink) {
        composeConvergence(chart, *answer, criterion, ink);
    };
    return drawing;
}

Drawing shareCurveDrawing(const ShareCurvePtr& answer) {
    Drawing drawing;
    drawing.headline = asSentence(answer->made.headline);
    drawing.compose = [answer](QCustomPlot& chart, const ChartInk& ink) {
        composeShareCurve(chart, *answer, ink);
    };
    if (answer->made.points.empty()) return drawing;
    const auto& first = answer->made.points.front();
    for (std::size_t i = 0; i < first.size(); ++i)
        if (first[i].computed > 0)
            drawing.spots.push_back({first[i].x, Percent * first[i].missed.value, i});
    drawing.tip = [answer](std::size_t id) {
        const Variable& over = answer->asked.over;
        std::string text =
            over.label() + " " + over.text(answer->made.points.front()[id].x, answer->base.Units);
        for (std::size_t c = 0; c < answer->made.points.size(); ++c) {
            const ShareCurvePoint& point = answer->made.points[c][id];
            if (point.computed > 0)
                text += "\n" + percentText(point.missed.value) + " % (" +
                        percentText(point.missed.low) + " to " + percentText(point.missed.high) +
                        " %) miss: " + answer->request.criteria[c].title(answer->base.Units);
        }
        return toQt(text);
    };
    return drawing;
}

} // namespace telvo::study::ui
