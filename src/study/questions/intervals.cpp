// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/intervals.h"

#include <algorithm>
#include <cmath>

namespace telvo::study {

namespace {

/// Finds what is between samples.
class Search {
  public:
    Search(const Response& response, const Judged& judged, double width)
        : m_response(response), m_judged(judged), m_width(width) {}

    /// Samples with a point added wherever the outcome turns back beyond its target between two.
    std::vector<AxisSample> withTurns(const std::vector<AxisSample>& samples) const {
        std::vector<AxisSample> all;
        all.reserve(samples.size() + 8);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            all.push_back(samples[i]);
            if (i == 0 || i + 1 == samples.size()) continue;
            if (samples[i - 1].switchesAfter || samples[i].switchesAfter) continue;
            auto turn = turnAround(samples[i - 1], samples[i], samples[i + 1]);
            if (!turn) continue;
            if (turn->x < samples[i].x)
                all.insert(all.end() - 1, *turn);
            else
                all.push_back(*turn);
        }
        return all;
    }

    /// The end of an interval between neighbors of which one holds.
    IntervalEnd end(AxisSample inside, AxisSample outside) const {
        const bool switches = inside.x < outside.x ? inside.switchesAfter : outside.switchesAfter;
        const double near = m_width * 1e-12;
        while (!switches && std::abs(outside.x - inside.x) > near) {
            const double x = inside.x + (outside.x - inside.x) / 2;
            if (x == inside.x || x == outside.x) break;
            const AxisSample middle{m_response.at(x)};
            (m_judged.holds(middle) ? inside : outside) = middle;
        }
        IntervalEnd end{inside.x, EndKind::Crossing, {}, valueOf(inside), {}};
        if (!outside.computed) {
            end.kind = EndKind::Uncomputable;
            end.rule = m_response.gapAt(outside.x);
            return end;
        }
        end.beyond = valueOf(outside);
        const bool rightward = inside.x < outside.x;
        const AxisSample& before = rightward ? inside : outside;
        const AxisSample& after = rightward ? outside : inside;
        if (m_response.differ(before, after) && isJump(valueOf(before), valueOf(after))) {
            end.kind = EndKind::Jump;
            end.rule = jumpText(m_response, before, after, m_judged.value);
        } else if (isJump(limitOf(before), limitOf(after))) {
            end.kind = EndKind::Jump;
            end.rule = "The suggested factor switches with the barriers or the panel width";
        }
        return end;
    }

  private:
    double valueOf(const Sample& sample) const { return sample.values[m_judged.value]; }
    double limitOf(const Sample& sample) const {
        return valueOf(sample) - sample.values[m_judged.margin];
    }

    /// Golden section towards the target, where the curve may reach it and turn back.
    std::optional<AxisSample> turnAround(const AxisSample& left, const AxisSample& here,
                                         const AxisSample& right) const {
        if (!left.computed || !here.computed || !right.computed) return std::nullopt;
        const bool held = m_judged.holds(here);
        if (m_judged.holds(left) != held || m_judged.holds(right) != held) return std::nullopt;
        const auto distance = [&](const Sample& sample) {
            return std::abs(sample.values[m_judged.margin]);
        };
        const double d = distance(here);
        const double toLeft = distance(left) - d, toRight = distance(right) - d;
        // What a smooth curve can still gain is less than what it has turned by.
        if (toLeft < 0 || toRight < 0 || d > toLeft + toRight) return std::nullopt;
        constexpr double golden = 0.6180339887498949;
        double a = left.x, b = right.x;
        for (int n = 0; n < 60; ++n) {
            const AxisSample first{m_response.at(b - golden * (b - a))};
            const AxisSample second{m_response.at(a + golden * (b - a))};
            if (!first.computed || !second.computed) return std::nullopt;
            for (const AxisSample& one : {first, second})
                if (m_judged.holds(one) != held) return one;
            const bool nearer = distance(first) < distance(second);
            (nearer ? b : a) = nearer ? second.x : first.x;
        }
        return std::nullopt;
    }

    const Response& m_response;
    const Judged& m_judged;
    double m_width;
};

} // namespace

std::string_view endName(EndKind kind) {
    switch (kind) {
    case EndKind::Crossing:
        return "crossing";
    case EndKind::Jump:
        return "jump";
    case EndKind::RangeEnd:
        return "range";
    case EndKind::Uncomputable:
        break;
    }
    return "uncomputable";
}

std::vector<Interval> intervalsWhere(const Response& response, std::vector<AxisSample> samples,
                                     const Judged& judged) {
    const Search search(response, judged, samples.back().x - samples.front().x);
    samples = search.withTurns(samples);
    const auto rangeEnd = [&](const Sample& sample) {
        return IntervalEnd{sample.x, EndKind::RangeEnd, {}, sample.values[judged.value], {}};
    };
    std::vector<Interval> intervals;
    bool open = false;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const bool holds = judged.holds(samples[i]);
        if (holds && !open)
            intervals.push_back(
                {i == 0 ? rangeEnd(samples[i]) : search.end(samples[i], samples[i - 1]),
                 {},
                 {},
                 {}});
        if (!holds && open) intervals.back().to = search.end(samples[i - 1], samples[i]);
        open = holds;
    }
    if (open) intervals.back().to = rangeEnd(samples.back());
    return intervals;
}

double practicalValue(double multiple, double step) {
    const double perUnit = std::nearbyint(1 / step);
    const bool whole = perUnit >= 1 && std::abs(perUnit * step - 1) < 1e-12;
    return whole ? multiple / perUnit : multiple * step;
}

void roundInwards(const Response& response, std::vector<Interval>& intervals, const Judged& judged,
                  double step) {
    for (Interval& interval : intervals) {
        double first = std::ceil(interval.from.x / step);
        while (practicalValue(first - 1, step) >= interval.from.x)
            --first;
        while (practicalValue(first, step) < interval.from.x)
            ++first;
        double last = std::floor(interval.to.x / step);
        while (practicalValue(last + 1, step) <= interval.to.x)
            ++last;
        while (practicalValue(last, step) > interval.to.x)
            --last;
        const auto holds = [&](double multiple) {
            return judged.holds(response.at(practicalValue(multiple, step)));
        };
        while (first <= last && !holds(first))
            ++first;
        while (first <= last && !holds(last))
            --last;
        if (first > last) continue;
        interval.practicalFrom = practicalValue(first, step);
        interval.practicalTo = practicalValue(last, step);
    }
}

} // namespace telvo::study
