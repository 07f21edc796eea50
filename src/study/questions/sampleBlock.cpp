// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/sampleBlock.h"

#include "base/numbers.h"
#include "study/questions/ranges.h"

#include <algorithm>
#include <atomic>
#include <thread>

namespace telvo::study {

using sampling::Estimate, sampling::Sampler;

namespace {

constexpr std::size_t MostCriteria = 15;

/// The place of an input among all that may vary: its Sobol' dimension, whatever else scatters.
std::size_t dimensionOf(const Variable& variable) {
    static const std::vector<Variable> all = variables();
    return static_cast<std::size_t>(std::find(all.begin(), all.end(), variable) - all.begin());
}

} // namespace

bool inParallel(std::size_t count, unsigned threads, const std::stop_token& stop,
                const std::function<void(std::size_t)>& work) {
    std::atomic<std::size_t> next = 0, done = 0;
    const auto run = [&] {
        for (std::size_t i = next++; i < count && !stop.stop_requested(); i = next++) {
            work(i);
            ++done;
        }
    };
    {
        std::vector<std::jthread> others;
        for (unsigned t = 1; t < threads && t < count; ++t)
            others.emplace_back(run);
        run();
    }
    return done == count;
}

std::vector<DrawnColumn> drawnColumns(const project::ProjectCase& base,
                                      const std::vector<UncertainInput>& inputs) {
    std::vector<DrawnColumn> columns;
    for (std::size_t j = 0; j < inputs.size(); ++j) {
        const double own = inputs[j].variable.of(base.Input);
        columns.push_back({j, true, own, own, false});
        for (const Variable& other : inputs[j].also)
            columns.push_back({j, false, other.of(base.Input), own, inputs[j].asRatio});
    }
    return columns;
}

Result<ReadyToDraw> readyToDraw(const project::ProjectCase& base, const UncertaintyRequest& request,
                                int RoundTELVOSF, const std::vector<Variable>& also) {
    if (request.criteria.empty() || request.criteria.size() > MostCriteria)
        return Fault{"A study of uncertainty has one to fifteen limits", ""};
    std::vector<sampling::Scattered> scattered;
    std::vector<Variable> varied;
    for (const UncertainInput& input : request.inputs) {
        scattered.push_back(
            {input.variable.name(), dimensionOf(input.variable), input.distribution});
        varied.push_back(input.variable);
        varied.insert(varied.end(), input.also.begin(), input.also.end());
        if (input.asRatio && !input.also.empty() && input.variable.of(base.Input) == 0)
            return Fault{"An input of 0 has no error in percent", input.shownName()};
    }
    for (const Variable& variable : varied)
        if (const std::string why = whyWithoutEffect(base, variable); !why.empty())
            return Fault{variable.label() + " changes nothing in this case: " + why,
                         variable.name()};
    varied.insert(varied.end(), also.begin(), also.end());
    std::optional<sampling::Matrix> ranks;
    if (!request.correlated.empty()) {
        ranks = sampling::Matrix::identity(scattered.size());
        for (const RankPair& pair : request.correlated) {
            if (pair.first >= scattered.size() || pair.second >= scattered.size() ||
                pair.first == pair.second)
                return Fault{"A correlation is between two of the inputs that scatter", ""};
            ranks->at(pair.first, pair.second) = ranks->at(pair.second, pair.first) = pair.rank;
        }
    }
    auto sampler = Sampler::prepare(std::move(scattered), ranks, request.plan);
    if (!sampler) return sampler.fault();
    std::vector<Outcome> outcomes;
    for (const Criterion& criterion : request.criteria) {
        outcomes.push_back(criterion.outcome);
        if (!criterion.target) outcomes.push_back(criterion.margin());
    }
    auto evaluator = Evaluator::prepare(base, std::move(varied), std::move(outcomes), RoundTELVOSF);
    if (!evaluator) return evaluator.fault();
    return ReadyToDraw{std::make_shared<const Sampler>(std::move(*sampler)),
                       std::make_shared<const Evaluator>(std::move(*evaluator)),
                       drawnColumns(base, request.inputs)};
}

SampleBlock::SampleBlock(const ReadyToDraw& ready, const std::vector<Criterion>& criteria)
    : m_ready(ready), m_criteria(criteria) {
    const std::vector<double> empty(SamplesPerBlock);
    m_drawn.assign(ready.sampler->inputs().size(), empty);
    m_in.assign(ready.evaluator->variables().size(), empty);
    m_out.assign(ready.evaluator->outcomes().size(), empty);
    m_computed.resize(SamplesPerBlock);
    std::size_t place = 0;
    for (const Criterion& criterion : criteria) {
        m_place.push_back(place);
        place += criterion.target ? 1 : 2;
    }
}

void SampleBlock::draw(std::size_t replicate, std::uint64_t from, std::size_t count) {
    std::vector<double*> columns;
    for (auto& column : m_drawn)
        columns.push_back(column.data());
    m_ready.sampler->block(replicate, from, count, columns);
}

void SampleBlock::compute(std::size_t count) {
    std::vector<const double*> in;
    for (std::size_t k = 0; k < m_in.size(); ++k) {
        if (k < m_ready.columns.size()) {
            const DrawnColumn& column = m_ready.columns[k];
            if (column.asDrawn) {
                in.push_back(m_drawn[column.input].data());
                continue;
            }
            for (std::size_t i = 0; i < count; ++i)
                m_in[k][i] = column.of(m_drawn[column.input][i]);
        }
        in.push_back(m_in[k].data());
    }
    std::vector<double*> out;
    for (auto& column : m_out)
        out.push_back(column.data());
    m_ready.evaluator->compute(count, in, out, nullptr, m_computed.data());
}

Estimate shareOfReplicates(std::span<const ReplicateCount> counts, std::size_t points, bool* few) {
    constexpr std::uint64_t fewest = 30;
    std::uint64_t all = 0, hits = 0;
    bool none = counts.size() < 2, whole = true;
    std::vector<double> shares;
    for (const ReplicateCount& one : counts) {
        all += one.computed;
        hits += one.misses;
        none = none || one.misses == 0 || one.misses == one.computed;
        whole = whole && one.computed == points;
        if (one.computed > 0)
            shares.push_back(static_cast<double>(one.misses) / static_cast<double>(one.computed));
    }
    const bool isFew = none || hits < fewest || all - hits < fewest;
    if (few) *few = isFew;
    if (isFew) return sampling::wilson(hits, all);
    Estimate estimate = sampling::overReplicates(shares);
    // Replicates of different sizes: the share is that of all samples.
    if (!whole) {
        const double half = estimate.halfWidth();
        const double value = static_cast<double>(hits) / static_cast<double>(all);
        estimate = {value, value - half, value + half};
    }
    estimate.low = std::max(estimate.low, 0.0);
    estimate.high = std::min(estimate.high, 1.0);
    return estimate;
}

std::vector<ReplicateCount> countsOf(const Samples& samples, std::uint16_t mask, std::size_t points,
                                     std::size_t stride) {
    std::vector<ReplicateCount> counts(samples.replicates);
    for (std::size_t r = 0; r < counts.size(); ++r)
        for (std::size_t i = 0; i < points; ++i) {
            const std::uint16_t missed = samples.missed[r * stride + i];
            if (missed == Samples::NotComputed) continue;
            ++counts[r].computed;
            counts[r].misses += (missed & mask) != 0;
        }
    return counts;
}

std::string percentText(double share) {
    return generalNumber(100 * share, share < 0.001 ? 2 : 3);
}

} // namespace telvo::study
