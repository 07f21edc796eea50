// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/designChart.h"

#include "base/numbers.h"
#include "study/Evaluator.h"
#include "study/questions/intervals.h"
#include "study/questions/searchGrid.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace telvo::study {

namespace {

constexpr std::size_t MostOver = 2000;
constexpr std::size_t Split = 16; // parts into which a stretch is cut at once

/// Margins of all targets at one value of the input over which the chart goes.
struct Column {
    std::vector<std::vector<double>> margins; ///< [target][of the grid]; NaN where not computed
};

class Chart {
  public:
    Chart(const DesignChartRequest& request, const Evaluator& evaluator, std::vector<double> grid,
          DesignChart& chart)
        : m_request(request), m_evaluator(evaluator), m_grid(std::move(grid)), m_chart(chart) {}

    void make() {
        std::vector<Column> columns;
        for (const double over : m_request.values)
            columns.push_back(columnAt(over));
        m_chart.direction = directionOf(columns);
        for (std::size_t t = 0; t < m_request.targets.size(); ++t) {
            std::vector<DesignPoint> points;
            for (std::size_t i = 0; i < columns.size(); ++i)
                points.push_back(pointOf(m_request.values[i], columns[i], t));
            m_chart.curves.push_back(
                {{m_request.outcome, m_request.sense, m_request.targets[t]}, withSteps(points, t)});
        }
    }

  private:
    bool holds(double margin) const {
        return m_request.sense == Criterion::Sense::AtLeast ? margin >= 0 : margin <= 0;
    }

    /// Values at some places of the required input: of the outcome, and its margin to what is
    /// suggested, where that is a target.
    std::array<std::vector<double>, 2> valuesAt(double over, const std::vector<double>& required) {
        const std::size_t count = required.size();
        const std::vector<double> same(count, over);
        std::array<std::vector<double>, 2> values;
        std::vector<double*> out;
        for (std::size_t o = 0; o < m_evaluator.outcomes().size(); ++o) {
            values[o].resize(count);
            out.push_back(values[o].data());
        }
        std::vector<std::uint8_t> computed(count);
        const double* const in[] = {same.data(), required.data()};
        m_evaluator.compute(count, in, out, nullptr, computed.data());
        m_chart.tally.runs += count;
        return values;
    }
    double marginOf(const std::array<std::vector<double>, 2>& values, std::size_t target,
                    std::size_t place) const {
        const auto& limit = m_request.targets[target];
        return limit ? values[0][place] - *limit : values[1][place];
    }

    Column columnAt(double over) {
        const auto values = valuesAt(over, m_grid);
        const auto gap = std::find_if(values[0].begin(), values[0].end(),
                                      [](double value) { return std::isnan(value); });
        if (gap != values[0].end()) {
            const auto count = std::count_if(values[0].begin(), values[0].end(),
                                             [](double value) { return std::isnan(value); });
            const double where[] = {over,
                                    m_grid[static_cast<std::size_t>(gap - values[0].begin())]};
            std::string why = m_evaluator.whyNot(where);
            if (why.empty()) why = "There is no " + m_request.outcome.name();
            m_chart.tally.leaveOut(why, static_cast<std::size_t>(count));
        }
        Column column;
        for (std::size_t t = 0; t < m_request.targets.size(); ++t) {
            column.margins.emplace_back();
            for (std::size_t i = 0; i < m_grid.size(); ++i)
                column.margins.back().push_back(marginOf(values, t, i));
        }
        return column;
    }

    /// From the end at which the criteria hold more often; from the greater one where both are alike.
    Direction directionOf(const std::vector<Column>& columns) const {
        std::ptrdiff_t more = 0;
        for (const Column& column : columns)
            for (const auto& margins : column.margins)
                more += int{holds(margins.back())} - int{holds(margins.front())};
        return more >= 0 ? Direction::FromOn : Direction::UpTo;
    }

    DesignPoint pointOf(double over, const Column& column, std::size_t target) {
        DesignPoint point;
        point.over = over;
        const std::vector<double>& margins = column.margins[target];
        const std::size_t count = margins.size();
        const bool fromOn = m_chart.direction == Direction::FromOn;
        // Places counted from the end at which it has to hold.
        const auto place = [&](std::size_t k) { return fromOn ? count - 1 - k : k; };
        if (std::all_of(margins.begin(), margins.end(), [](double m) { return std::isnan(m); })) {
            point.state = DesignPoint::State::Uncomputable;
            return point;
        }
        std::size_t k = 0;
        while (k < count && holds(margins[place(k)]))
            ++k;
        for (std::size_t i = k; i < count; ++i)
            point.holdsElsewhere = point.holdsElsewhere || holds(margins[place(i)]);
        if (k == 0) {
            point.state = DesignPoint::State::Never;
            return point;
        }
        if (k == count) {
            point.state = DesignPoint::State::Everywhere;
            point.required = m_grid[place(count - 1)];
            point.practical = point.required;
            return point;
        }
        point.state = DesignPoint::State::Required;
        point.required = locate(over, m_grid[place(k - 1)], m_grid[place(k)], target);
        point.practical = rounded(over, point.required, target);
        return point;
    }

    /// The last place towards `failing` at which it holds.
    double locate(double over, double holding, double failing, std::size_t target) {
        const double near = 1e-9 * (m_grid.back() - m_grid.front());
        for (int n = 0; n < 16 && std::abs(failing - holding) > near; ++n) {
            std::vector<double> between;
            for (std::size_t i = 1; i < Split; ++i)
                between.push_back(holding +
                                  (failing - holding) * static_cast<double>(i) / double{Split});
            const auto values = valuesAt(over, between);
            std::size_t i = 0;
            while (i < between.size() && holds(marginOf(values, target, i)))
                ++i;
            if (i < between.size()) failing = between[i];
            if (i > 0) holding = between[i - 1];
        }
        return holding;
    }

    std::optional<double> rounded(double over, double required, std::size_t target) {
        const bool fromOn = m_chart.direction == Direction::FromOn;
        const double multiple = required / m_request.step;
        double k = fromOn ? std::ceil(multiple) : std::floor(multiple);
        for (int tries = 0; tries < 3; ++tries, k += fromOn ? 1 : -1) {
            const double value = practicalValue(k, m_request.step);
            if (fromOn ? value < required : value > required) continue;
            if (!m_request.in.contains(value)) return std::nullopt;
            if (holds(marginOf(valuesAt(over, {value}), target, 0))) return value;
        }
        return std::nullopt;
    }

    DesignPoint pointAt(double over, std::size_t target) {
        return pointOf(over, columnAt(over), target);
    }

    static bool isDrawn(const DesignPoint& point) {
        return point.state == DesignPoint::State::Required ||
               point.state == DesignPoint::State::Everywhere;
    }

    /// The points with both sides of every step and of every end of a state between them.
    std::vector<DesignPoint> withSteps(const std::vector<DesignPoint>& points, std::size_t target) {
        std::vector<DesignPoint> all;
        for (std::size_t i = 0; i < points.size(); ++i) {
            all.push_back(points[i]);
            if (i + 1 == points.size()) break;
            const DesignPoint& a = points[i];
            const DesignPoint& b = points[i + 1];
            const bool states = a.state != b.state;
            if (!states && (!isDrawn(a) || !steps(points, i))) continue;
            DesignPoint left = a, right = b;
            const double near = 1e-6 * (points.back().over - points.front().over);
            while (right.over - left.over > near) {
                DesignPoint middle = pointAt(left.over + (right.over - left.over) / 2, target);
                const bool toLeft = states ? middle.state == left.state
                                           : std::abs(middle.required - left.required) <
                                                 std::abs(right.required - middle.required);
                (toLeft ? left : right) = std::move(middle);
            }
            const bool isStep =
                states || std::abs(right.required - left.required) > m_request.step / 4;
            if (!isStep) continue;
            if (left.over > a.over) all.push_back(left);
            if (right.over < b.over) all.push_back(right);
        }
        return all;
    }

    /// Whether a curve rises or falls by more between two neighbors than its slope there tells.
    bool steps(const std::vector<DesignPoint>& points, std::size_t i) const {
        const auto rise = [&](std::size_t k) {
            return points[k + 1].state == points[k].state
                       ? points[k + 1].required - points[k].required
                       : 0;
        };
        const double here = rise(i);
        double usual = 0;
        int count = 0;
        for (const std::size_t k : {i - 1, i + 1}) // before 0 is beyond the last
            if (k < points.size() && k + 1 < points.size()) {
                usual += rise(k);
                ++count;
            }
        if (count > 0) usual /= count;
        return std::abs(here - usual) > m_request.step / 2;
    }

    const DesignChartRequest& m_request;
    const Evaluator& m_evaluator;
    std::vector<double> m_grid; ///< of the required input
    DesignChart& m_chart;
};

std::string headlineOf(const DesignChart& chart, const DesignChartRequest& request,
                       std::int16_t units) {
    std::string text;
    const DesignCurve& first = chart.curves.front();
    const std::string over = generalNumber(request.values.front(), 8) + " to " +
                             request.over.text(request.values.back(), units, 8) + " of " +
                             request.over.label();
    std::optional<double> least, most;
    std::size_t never = 0, elsewhere = 0;
    for (const DesignPoint& point : first.points) {
        never += point.state == DesignPoint::State::Never ||
                 point.state == DesignPoint::State::Uncomputable;
        elsewhere += point.holdsElsewhere;
        if (!point.practical) continue;
        if (!least || *point.practical < *least) least = point.practical;
        if (!most || *point.practical > *most) most = point.practical;
    }
    const std::string asked = first.criterion.words();
    if (!least) return "For " + asked + " nothing in the range helps over " + over;
    const bool fromOn = chart.direction == Direction::FromOn;
    text = "For " + asked + " " + request.required.label() + " has to be " +
           (fromOn ? "at least " : "at most ") + generalNumber(*least, 8);
    if (*most > *least)
        text += " to " + request.required.text(*most, units, 8);
    else
        text = "For " + asked + " " + request.required.label() + " has to be " +
               (fromOn ? "at least " : "at most ") + request.required.text(*least, units, 8);
    text += " over " + over;
    if (never > 0) text += "; where it is hatched nothing in the range helps";
    if (elsewhere > 0)
        text +=
            std::string("; in places smaller windows hold as well ") + (fromOn ? "below" : "above");
    return text;
}

} // namespace

Result<DesignChart> designChart(const project::ProjectCase& base, const DesignChartRequest& request,
                                int RoundTELVOSF) {
    auto grid = searchGrid(base, request.required, request.in, request.step);
    if (!grid) return grid.fault();
    if (request.values.size() < 2 || request.values.size() > MostOver)
        return Fault{"A design chart goes over 2 to 2000 values", request.over.name()};
    if (!std::is_sorted(request.values.begin(), request.values.end(), std::less_equal<>()))
        return Fault{"The values of a design chart have to rise", request.over.name()};
    if (auto fault =
            refusedRange(base, request.over, {request.values.front(), request.values.back()}))
        return std::move(*fault);
    if (request.targets.empty() || request.targets.size() > MostTargets)
        return Fault{"A design chart has one to eight targets", request.outcome.name()};

    std::vector<Outcome> outcomes{request.outcome};
    for (const auto& target : request.targets) {
        if (target && !std::isfinite(*target))
            return Fault{"A target is no number", request.outcome.name()};
        if (target || outcomes.size() > 1) continue;
        const auto margin = request.outcome.marginToSuggested();
        if (!margin)
            return Fault{"Only stability factors of the panel and of barriers have a suggested one",
                         request.outcome.name()};
        outcomes.push_back(*margin);
    }
    auto evaluator =
        Evaluator::prepare(base, {request.over, request.required}, outcomes, RoundTELVOSF);
    if (!evaluator) return evaluator.fault();
    DesignChart chart;
    Chart(request, *evaluator, std::move(*grid), chart).make();
    chart.headline = headlineOf(chart, request, base.Units);
    return chart;
}

} // namespace telvo::study
