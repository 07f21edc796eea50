// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/sweep.h"

#include "base/numbers.h"
#include "base/text.h"
#include "study/questions/intervals.h"
#include "study/questions/ranges.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <deque>
#include <map>
#include <thread>
#include <utility>

namespace telvo::study {

namespace {

constexpr std::size_t RowsPerBlock = 16384;
/// Messages are made case by case; beyond this many they are counted together.
constexpr std::size_t MostMessages = 10'000;

Fault notAList(std::string_view text, const std::string& why) {
    return {why, std::string(text)};
}

/// Appends "6" or "600:1200:50".
std::optional<std::string> appendValues(std::vector<double>& values, std::string_view part) {
    std::vector<std::string_view> numbers;
    for (std::size_t from = 0; from <= part.size();) {
        const std::size_t to = std::min(part.find(':', from), part.size());
        numbers.push_back(part.substr(from, to - from));
        from = to + 1;
    }
    std::vector<double> read;
    for (const std::string_view number : numbers) {
        const auto value = numberOf(number);
        if (!value) return "Not a number: \"" + std::string(trimmed(number)) + "\"";
        read.push_back(*value);
    }
    if (read.size() == 1) {
        values.push_back(read[0]);
        return std::nullopt;
    }
    if (read.size() != 3) return "Values are written as from:to:step, or one by one with commas";
    const double from = read[0], to = read[1], step = read[2];
    if (step == 0) return "A step of 0 goes nowhere";
    const double count = (to - from) / step;
    if (count < 0)
        return "A step of " + generalNumber(step) + " leads away from " + generalNumber(to);
    if (!(count < static_cast<double>(MostSweepRows)))
        return "A step of " + generalNumber(step) + " makes more than 10,000,000 values";
    const auto steps = static_cast<std::size_t>(std::floor(count + 1e-9));
    // Values of round steps are round.
    const double first = from / step;
    const bool round = std::abs(first - std::nearbyint(first)) < 1e-9 && step > 0;
    for (std::size_t i = 0; i <= steps; ++i) {
        const auto k = static_cast<double>(i);
        values.push_back(round ? practicalValue(std::nearbyint(first) + k, step) : from + k * step);
    }
    return std::nullopt;
}

std::size_t rowsOf(const SweepRequest& request) {
    if (request.linked) return request.axes.front().values.size();
    std::size_t rows = 1;
    for (const SweepAxis& axis : request.axes) {
        if (axis.values.size() > MostSweepRows / rows) return MostSweepRows + 1;
        rows *= axis.values.size();
    }
    return rows;
}

std::optional<Fault> refused(const project::ProjectCase& base, const SweepRequest& request) {
    if (request.axes.empty() || request.axes.size() > SweepRequest::mostAxes)
        return Fault{"A table of values varies one to four inputs", ""};
    for (const SweepAxis& axis : request.axes) {
        const std::string name = axis.variable.name();
        if (const std::string why = whyWithoutEffect(base, axis.variable); !why.empty())
            return Fault{axis.variable.label() + " changes nothing in this case: " + why, name};
        if (axis.values.empty()) return Fault{"There are no values", name};
        for (const double value : axis.values)
            if (!std::isfinite(value)) return Fault{"A value is no number", name};
        if (request.linked && axis.values.size() != request.axes.front().values.size())
            return Fault{
                "Linked inputs need lists of one length: " + std::to_string(axis.values.size()) +
                    " and " + std::to_string(request.axes.front().values.size()) + " values",
                name};
    }
    if (request.outcomes.empty()) return Fault{"No result is asked for", ""};
    if (rowsOf(request) > MostSweepRows)
        return Fault{"These combinations make more than 10,000,000 rows", ""};
    return std::nullopt;
}

} // namespace

Result<std::vector<double>> parseValues(std::string_view text) {
    std::vector<double> values;
    for (std::size_t from = 0; from <= text.size();) {
        const std::size_t to = std::min(text.find(',', from), text.size());
        if (auto why = appendValues(values, text.substr(from, to - from)))
            return notAList(text, *why);
        if (values.size() > MostSweepRows)
            return notAList(text, "These are more than 10,000,000 values");
        from = to + 1;
    }
    return values;
}

double Sweep::input(std::size_t row, std::size_t axis) const {
    if (request.linked) return request.axes[axis].values[row];
    for (std::size_t a = request.axes.size() - 1; a > axis; --a)
        row /= request.axes[a].values.size();
    return request.axes[axis].values[row % request.axes[axis].values.size()];
}

std::vector<double> Sweep::inputs(std::size_t row) const {
    std::vector<double> values(request.axes.size());
    for (std::size_t axis = 0; axis < values.size(); ++axis)
        values[axis] = input(row, axis);
    return values;
}

std::string Sweep::message(std::size_t row) const {
    return computed[row] ? std::string() : evaluator->whyNot(inputs(row));
}

project::ProjectCase Sweep::caseOf(std::size_t row) const {
    return evaluator->caseOf(inputs(row));
}

Result<Sweep> sweep(const project::ProjectCase& base, const SweepRequest& request, int RoundTELVOSF,
                    unsigned threads, std::stop_token stop, const Progress& progress) {
    if (auto fault = refused(base, request)) return std::move(*fault);
    std::vector<Variable> variables;
    for (const SweepAxis& axis : request.axes)
        variables.push_back(axis.variable);
    auto evaluator = Evaluator::prepare(base, std::move(variables), request.outcomes, RoundTELVOSF);
    if (!evaluator) return evaluator.fault();

    Sweep table;
    table.request = request;
    table.evaluator = std::make_shared<const Evaluator>(std::move(*evaluator));
    const std::size_t rows = rowsOf(request);
    table.outcomes.assign(request.outcomes.size(), std::vector<double>(rows));
    table.flags.resize(rows);
    table.computed.resize(rows);

    const std::size_t blocks = (rows + RowsPerBlock - 1) / RowsPerBlock;
    std::vector<std::uint8_t> done(blocks);
    std::atomic<std::size_t> next = 0, rowsDone = 0;
    const auto work = [&] {
        std::vector<std::vector<double>> columns(request.axes.size());
        for (std::size_t block = next++; block < blocks && !stop.stop_requested(); block = next++) {
            const std::size_t from = block * RowsPerBlock;
            const std::size_t count = std::min(RowsPerBlock, rows - from);
            std::vector<const double*> in;
            for (std::size_t a = 0; a < columns.size(); ++a) {
                columns[a].resize(count);
                for (std::size_t i = 0; i < count; ++i)
                    columns[a][i] = table.input(from + i, a);
                in.push_back(columns[a].data());
            }
            std::vector<double*> out;
            for (auto& outcome : table.outcomes)
                out.push_back(outcome.data() + from);
            table.evaluator->compute(count, in, out, table.flags.data() + from,
                                     table.computed.data() + from);
            done[block] = 1;
            if (progress) progress(rowsDone += count, rows);
        }
    };
    {
        std::vector<std::jthread> others;
        for (unsigned i = 1; i < threads && i < blocks; ++i)
            others.emplace_back(work);
        work();
    }
    const auto broken =
        static_cast<std::size_t>(std::find(done.begin(), done.end(), 0) - done.begin());
    if (broken < blocks) {
        table.stopped = true;
        const std::size_t kept = broken * RowsPerBlock;
        for (auto& outcome : table.outcomes)
            outcome.resize(kept);
        table.flags.resize(kept);
        table.computed.resize(kept);
    }
    table.tally.runs = table.rows();
    std::size_t told = 0, untold = 0;
    for (std::size_t row = 0; row < table.rows(); ++row) {
        if (table.computed[row]) continue;
        if (told++ < MostMessages)
            table.tally.leaveOut(table.message(row));
        else
            ++untold;
    }
    if (untold > 0) table.tally.leaveOut("Not looked into", untold);
    return table;
}

std::vector<ContourSegment> contour(const Sweep& sweep, std::size_t outcome, double level) {
    std::vector<ContourSegment> segments;
    if (!sweep.isMap()) return segments;
    const std::vector<double>& xs = sweep.request.axes[0].values;
    const std::vector<double>& ys = sweep.request.axes[1].values;
    const std::vector<double>& z = sweep.outcomes[outcome];
    const auto at = [&](std::size_t i, std::size_t j) { return z[i * ys.size() + j] - level; };
    for (std::size_t i = 0; i + 1 < xs.size(); ++i)
        for (std::size_t j = 0; j + 1 < ys.size(); ++j) {
            // Corners around the cell, each with the next one. Of an edge that two cells share
            // both compute the very same point: from its lower end.
            const double x[] = {xs[i], xs[i + 1], xs[i + 1], xs[i]};
            const double y[] = {ys[j], ys[j], ys[j + 1], ys[j + 1]};
            const double v[] = {at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1)};
            double px[4], py[4];
            std::size_t count = 0;
            bool whole = true;
            for (std::size_t k = 0; k < 4; ++k) {
                whole = whole && !std::isnan(v[k]);
                const std::size_t next = (k + 1) % 4;
                const std::size_t a = k < 2 ? k : next, b = k < 2 ? next : k;
                if ((v[a] >= 0) == (v[b] >= 0)) continue;
                const double part = v[a] / (v[a] - v[b]);
                px[count] = x[a] + part * (x[b] - x[a]);
                py[count] = y[a] + part * (y[b] - y[a]);
                ++count;
            }
            if (!whole) continue;
            if (count == 2) segments.push_back({px[0], py[0], px[1], py[1]});
            if (count == 4) { // a saddle: its middle tells which corners belong together
                const bool middle = v[0] + v[1] + v[2] + v[3] >= 0;
                const std::size_t a = middle == (v[0] >= 0) ? 1 : 3;
                segments.push_back({px[0], py[0], px[a], py[a]});
                segments.push_back({px[2], py[2], px[4 - a], py[4 - a]});
            }
        }
    return segments;
}

std::vector<Stretch> joined(const std::vector<ContourSegment>& segments) {
    using Place = std::pair<double, double>;
    std::multimap<Place, std::size_t> ends; // of segments that are not yet in a line
    const auto startOf = [&](std::size_t i) { return Place(segments[i].x0, segments[i].y0); };
    const auto endOf = [&](std::size_t i) { return Place(segments[i].x1, segments[i].y1); };
    for (std::size_t i = 0; i < segments.size(); ++i) {
        ends.emplace(startOf(i), i);
        ends.emplace(endOf(i), i);
    }
    const auto take = [&](std::size_t which) {
        for (const Place& place : {startOf(which), endOf(which)})
            for (auto [at, last] = ends.equal_range(place); at != last; ++at)
                if (at->second == which) {
                    ends.erase(at);
                    break;
                }
    };
    std::vector<bool> used(segments.size(), false);
    std::vector<Stretch> lines;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        if (used[i]) continue;
        std::deque<Place> line{startOf(i), endOf(i)};
        used[i] = true;
        take(i);
        for (const bool forward : {true, false})
            for (;;) {
                const Place tip = forward ? line.back() : line.front();
                const auto next = ends.find(tip);
                if (next == ends.end()) break;
                const std::size_t which = next->second;
                const Place other = startOf(which) == tip ? endOf(which) : startOf(which);
                used[which] = true;
                take(which);
                forward ? line.push_back(other) : line.push_front(other);
            }
        Stretch& made = lines.emplace_back();
        for (const auto& [x, y] : line)
            made.push_back({x, y});
    }
    return lines;
}

} // namespace telvo::study
