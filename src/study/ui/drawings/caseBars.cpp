// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/drawings/caseBars.h"

#include "base/text.h"
#include "base/ui/qtText.h"
#include "chart/ui/chartParts.h"
#include "study/ui/drawings/drawingParts.h"

#include <algorithm>

namespace telvo::study::ui {

using telvo::ui::toQt;

namespace {

constexpr std::size_t LongestName = 30; // characters

/// Groups of bars, one per case.
struct CaseBars {
    std::vector<Outcome> bars; ///< what each bar of a group shows
    std::int16_t units = 0;
    std::vector<DrawnCase> groups; ///< values per bar
};

struct BarPlace {
    double low, high;
    double middle() const { return (low + high) / 2; }
};

/// Middle of a group; the first one is on top.
double groupPlace(const CaseBars& all, std::size_t group) {
    return static_cast<double>(all.groups.size() - 1 - group);
}

BarPlace barPlaceIn(const CaseBars& all, std::size_t group, std::size_t bar) {
    const double width = 0.8 / static_cast<double>(all.bars.size());
    const double high = groupPlace(all, group) + 0.4 - static_cast<double>(bar) * width;
    return {high - 0.9 * width, high};
}

void addNote(QCustomPlot& plot, const std::string& text, double place, const ChartInk& ink) {
    auto* note = new QCPItemText(&plot);
    note->setFont(ink.font);
    note->setColor(chart::ui::mixed(ink.palette.color(QPalette::Base),
                                    ink.palette.color(QPalette::Text), 0.6));
    note->setText(QObject::tr("not computed: %1").arg(toQt(excerpt(text, 80))));
    note->position->setTypeX(QCPItemPosition::ptAxisRectRatio);
    note->position->setAxes(plot.xAxis, plot.yAxis);
    note->position->setTypeY(QCPItemPosition::ptPlotCoords);
    note->position->setCoords(0.01, place);
    note->setPositionAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void composeBars(QCustomPlot& plot, const CaseBars& all, const ChartInk& ink) {
    auto names = QSharedPointer<QCPAxisTickerText>::create();
    double least = 0, most = 0;
    for (std::size_t group = 0; group < all.groups.size(); ++group) {
        const DrawnCase& one = all.groups[group];
        names->addTick(groupPlace(all, group), toQt(excerpt(one.name, LongestName)));
        if (!one.note.empty()) addNote(plot, one.note, groupPlace(all, group), ink);
        for (std::size_t bar = 0; bar < one.values.size(); ++bar) {
            if (!one.values[bar]) continue;
            const double value = *one.values[bar];
            const BarPlace place = barPlaceIn(all, group, bar);
            auto* rect = new QCPItemRect(&plot);
            rect->topLeft->setCoords(std::min(0.0, value), place.high);
            rect->bottomRight->setCoords(std::max(0.0, value), place.low);
            const QColor color = studyColor(bar, ink.palette);
            rect->setPen(QPen(color, 1));
            rect->setBrush(color);
            least = std::min(least, value);
            most = std::max(most, value);
        }
    }
    for (std::size_t bar = 0; bar < all.bars.size(); ++bar) {
        addKeyBox(plot, toQt(all.bars[bar].label()), studyColor(bar, ink.palette));
    }
    const double room = most > least ? 0.05 * (most - least) : 1;
    plot.xAxis->setRange(least < 0 ? least - room : 0, most + room);
    plot.xAxis->grid()->setVisible(true);
    plot.xAxis->setLabel(outcomesTitle(all.bars, all.units));
    plot.yAxis->setTicker(names);
    plot.yAxis->setSubTicks(false);
    plot.yAxis->setTickLength(0);
    plot.yAxis->setRange(-0.6, static_cast<double>(all.groups.size()) - 0.4);
    plot.legend->setVisible(true);
}

/// Those results that are drawn: of one kind with the first one, at most so many.
CaseBars barsOf(const std::vector<Outcome>& outcomes, std::vector<DrawnCase> cases,
                std::int16_t units) {
    std::vector<std::size_t> drawn;
    for (std::size_t i = 0; i < outcomes.size() && drawn.size() < MostBars; ++i)
        if (outcomes[i].kind() == outcomes.front().kind()) drawn.push_back(i);
    CaseBars all{{}, units, std::move(cases)};
    for (const std::size_t i : drawn)
        all.bars.push_back(outcomes[i]);
    for (DrawnCase& group : all.groups) {
        std::vector<std::optional<double>> values;
        for (const std::size_t i : drawn)
            values.push_back(i < group.values.size() ? group.values[i] : std::nullopt);
        group.values = std::move(values);
    }
    return all;
}

} // namespace

Drawing caseDrawing(const std::vector<Outcome>& outcomes, std::vector<DrawnCase> cases,
                    std::int16_t units) {
    const auto all = std::make_shared<const CaseBars>(barsOf(outcomes, std::move(cases), units));
    Drawing drawing;
    drawing.compose = [all](QCustomPlot& plot, const ChartInk& ink) {
        composeBars(plot, *all, ink);
    };
    for (std::size_t group = 0; group < all->groups.size(); ++group)
        for (std::size_t bar = 0; bar < all->groups[group].values.size(); ++bar)
            if (const auto value = all->groups[group].values[bar])
                drawing.spots.push_back(
                    {*value, barPlaceIn(*all, group, bar).middle(), group * MostBars + bar});
    drawing.tip = [all](std::size_t id) {
        const DrawnCase& group = all->groups[id / MostBars];
        const Outcome& outcome = all->bars[id % MostBars];
        return toQt(group.name + "\n" + outcome.label() + " " +
                    outcome.text(*group.values[id % MostBars], all->units));
    };
    const auto lines = 1.4 * static_cast<double>(all->groups.size()) *
                       std::max(1.0, 0.5 * static_cast<double>(all->bars.size()));
    drawing.linesOfText = static_cast<int>(lines) + 6;
    return drawing;
}

Drawing compareDrawing(const Comparison& comparison, const std::vector<Outcome>& outcomes) {
    std::vector<DrawnCase> cases;
    for (const ComparedCase& one : comparison.cases) {
        DrawnCase& drawn = cases.emplace_back(DrawnCase{one.name, {}, one.message});
        if (!one.run) continue;
        for (const Outcome& outcome : outcomes)
            drawn.values.push_back(valueIn(one, outcome));
    }
    Drawing drawing =
        caseDrawing(outcomes, std::move(cases), comparison.cases[comparison.base].current.Units);
    drawing.headline = compareHeadline(comparison, outcomes.front());
    return drawing;
}

Drawing scenarioDrawing(const ScenarioAnswer& answer) {
    std::vector<DrawnCase> cases;
    for (const ScenarioRow& row : answer.made.rows)
        cases.push_back({row.name.empty() ? CaseItself : row.name, row.outcomes, row.message});
    Drawing drawing =
        caseDrawing(answer.outcomes, std::move(cases), answer.made.rows.front().current.Units);
    drawing.headline = scenarioHeadline(answer);
    return drawing;
}

} // namespace telvo::study::ui
