// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/find.h"

#include "base/numbers.h"
#include "base/text.h"
#include "engine/driver.h"
#include "engine/questions.h"
#include "study/questions/ranges.h"
#include "study/questions/searchGrid.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace telvo::study {

namespace {

/// Counts the runs of a search.
class Counting final : public Response {
  public:
    explicit Counting(const Runner& runner) : m_runner(runner) {}

    Sample at(double x) const override {
        ++m_runs;
        return m_runner.at(x);
    }
    bool differ(const Sample& a, const Sample& b) const override { return m_runner.differ(a, b); }
    double rounded(std::size_t rounding, double x) const override {
        return m_runner.rounded(rounding, x);
    }
    std::string switchText(const Sample& before, const Sample& after,
                           std::size_t value) const override {
        return m_runner.switchText(before, after, value);
    }
    std::string gapAt(double x) const override { return m_runner.gapAt(x); }

    std::size_t runs() const { return m_runs; }

  private:
    const Runner& m_runner;
    mutable std::size_t m_runs = 0;
};

constexpr std::size_t MostOthersTold = 3;

/// The safe answer in words.
class Headline {
  public:
    Headline(const FindRequest& request, const Found& found, std::int16_t units)
        : m_request(request), m_found(found), m_units(units) {}

    std::string text() const {
        const auto& all = m_found.intervals;
        if (all.empty()) return nowhere();
        const bool atLow = all.front().from.kind == EndKind::RangeEnd;
        const bool atHigh = all.back().to.kind == EndKind::RangeEnd;
        if (all.size() == 1 && atLow && atHigh)
            return "It holds everywhere from " + shown(m_request.in.low) + " to " +
                   value(m_request.in.high);
        if (all.size() > 1 && atLow && atHigh)
            return "Up to " + shown(toOf(all.front())) + " and from " + value(fromOf(all.back())) +
                   " on it holds, but not everywhere between" + others(1, all.size() - 1);
        if (atHigh)
            return "From " + value(fromOf(all.back())) + " on it always holds (up to " +
                   value(m_request.in.high) + ")" + others(0, all.size() - 1);
        if (atLow)
            return "Up to " + value(toOf(all.front())) + " it always holds (from " +
                   value(m_request.in.low) + " on)" + others(1, all.size());
        const auto widest = std::max_element(all.begin(), all.end(), [](auto& a, auto& b) {
            return a.to.x - a.from.x < b.to.x - b.from.x;
        });
        const auto place = static_cast<std::size_t>(widest - all.begin());
        std::string text = "It holds only " + span(*widest);
        for (std::size_t i = 0; i < all.size() && all.size() <= MostOthersTold; ++i)
            if (i != place) text += " and " + span(all[i]);
        if (all.size() > MostOthersTold)
            text += " and in " + std::to_string(all.size() - 1) + " narrower intervals";
        return text;
    }

  private:
    std::string shown(double x) const { return generalNumber(x, 8); }
    std::string value(double x) const { return m_request.variable.text(x, m_units, 8); }
    static double fromOf(const Interval& one) { return one.practicalFrom.value_or(one.from.x); }
    static double toOf(const Interval& one) { return one.practicalTo.value_or(one.to.x); }

    std::string span(const Interval& one) const {
        const bool single = shown(fromOf(one)) == shown(toOf(one));
        std::string text = single ? "at " + value(fromOf(one))
                                  : "from " + shown(fromOf(one)) + " to " + value(toOf(one));
        std::vector<std::string> rules;
        for (const IntervalEnd& end : {one.from, one.to})
            if (!end.rule.empty() && std::find(rules.begin(), rules.end(), end.rule) == rules.end())
                rules.push_back(end.rule);
        for (const std::string& rule : rules)
            text.append(" (").append(inSentence(rule)).append(")");
        return text;
    }
    std::string others(std::size_t from, std::size_t to) const {
        if (from >= to) return {};
        if (to - from > MostOthersTold)
            return "; it also holds in " + std::to_string(to - from) + " other intervals";
        std::string text;
        for (std::size_t i = from; i < to; ++i)
            text.append(i == from ? "; it also holds " : " and ")
                .append(span(m_found.intervals[i]));
        return text;
    }
    std::string nowhere() const {
        const std::string range =
            "from " + shown(m_request.in.low) + " to " + value(m_request.in.high);
        std::optional<GraphPoint> nearest;
        const bool least = m_request.criterion.sense == Criterion::Sense::AtMost;
        for (const Stretch& stretch : m_found.curve)
            for (const GraphPoint& point : stretch)
                if (!nearest || (least ? point.y < nearest->y : point.y > nearest->y))
                    nearest = point;
        if (!nearest)
            return "Nothing " + range + " can be computed" +
                   (m_found.tally.left.empty() ? "" : ": " + m_found.tally.left.front().message);
        return "It never holds " + range + ": " + inSentence(m_request.criterion.outcome.label()) +
               " is at " + (least ? "least " : "most ") +
               m_request.criterion.outcome.text(nearest->y, m_units) + ", at " +
               m_request.variable.text(nearest->x, m_units, 6);
    }

    const FindRequest& m_request;
    const Found& m_found;
    std::int16_t m_units;
};

/// A practical value that is safe: the ends that hold to the end of the range first, the one nearer
/// to the case's own value where there are two; else what is nearest to it in the widest interval.
std::optional<double> safeAnswer(const std::vector<Interval>& intervals, double own) {
    if (intervals.empty()) return std::nullopt;
    const Interval& first = intervals.front();
    const Interval& last = intervals.back();
    const bool atLow = first.from.kind == EndKind::RangeEnd && first.practicalTo;
    const bool atHigh = last.to.kind == EndKind::RangeEnd && last.practicalFrom;
    const auto nearestIn = [own](const Interval& one) {
        return std::clamp(own, *one.practicalFrom, *one.practicalTo);
    };
    if (atLow && atHigh && intervals.size() == 1) return nearestIn(first);
    if (atLow && atHigh)
        return std::abs(own - *first.practicalTo) < std::abs(*last.practicalFrom - own)
                   ? first.practicalTo
                   : last.practicalFrom;
    if (atHigh) return last.practicalFrom;
    if (atLow) return first.practicalTo;
    const Interval* widest = nullptr;
    for (const Interval& one : intervals)
        if (one.practicalFrom && (!widest || one.to.x - one.from.x > widest->to.x - widest->from.x))
            widest = &one;
    if (!widest) return std::nullopt;
    return own < *widest->practicalFrom ? widest->practicalFrom
           : own > *widest->practicalTo ? widest->practicalTo
                                        : std::optional(*widest->practicalFrom);
}

} // namespace

Result<Found> find(const project::ProjectCase& base, const FindRequest& request, int RoundTELVOSF) {
    const Variable& variable = request.variable;
    auto grid = searchGrid(base, variable, request.in, request.step);
    if (!grid) return grid.fault();
    const engine::Frame frame = engine::frameOf(base.Input, base.Units, engine::DevelopmentLoad);
    project::ProjectInput wide = base.Input; // a barrier of width 0 may be what is varied
    wide.BarrierFirstGob = std::max(wide.BarrierFirstGob, 1.0);
    wide.BarrierSecondGob = std::max(wide.BarrierSecondGob, 1.0);
    if (!request.criterion.outcome.isDefined(frame, wide))
        return Fault{"This case has no " + request.criterion.outcome.name(), variable.name()};

    const int lastPass = engine::lastPass(frame.AnalysisCase, base.Input.ExtentActiveGob);
    const Runner runner(base, variable, {request.criterion.outcome, request.criterion.margin()},
                        lastPass, RoundTELVOSF);
    const Counting response(runner);
    const double width = request.in.high - request.in.low;
    const std::vector<AxisSample> samples = alongAxis(response, *grid, width * SwitchResolution);
    const Judged judged{0, 1, request.criterion.sense};

    Found found;
    found.intervals = intervalsWhere(response, samples, judged);
    roundInwards(response, found.intervals, judged, request.step);
    for (const AxisSample& sample : samples)
        if (!sample.computed && !sample.located) found.tally.leaveOut(runner.gapAt(sample.x));
    CutCurve cut = cutAtJumps(response, samples, judged.value);
    found.curve = std::move(cut.stretches);
    found.jumps = std::move(cut.jumps);
    for (const AxisSample& sample : samples)
        if (sample.computed) found.limit.push_back({sample.x, sample.values[0] - sample.values[1]});
    const double own = runner.ownValue();
    if (request.in.contains(own))
        if (const Sample sample = runner.own(); sample.computed)
            found.own = GraphPoint{own, sample.values[0]};

    found.answer = safeAnswer(found.intervals, own);
    if (found.answer) found.answerValue = response.at(*found.answer).values[0];
    found.tally.runs = response.runs();
    found.headline = Headline(request, found, base.Units).text();
    found.searched =
        "Searched at every " +
        variable.text(std::min(request.step, width / (FewestPoints - 1)), base.Units, 4) +
        " and at every switch of a rule between; windows narrower than that can be "
        "missed";
    return found;
}

} // namespace telvo::study
