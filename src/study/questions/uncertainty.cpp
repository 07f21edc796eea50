// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/uncertainty.h"

#include "base/numbers.h"
#include "study/questions/ranges.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <functional>
#include <thread>
#include <utility>

namespace telvo::study {

using sampling::Estimate, sampling::Method, sampling::Plan, sampling::Sampler;

namespace {

constexpr std::size_t SamplesPerBlock = 1024;
constexpr std::size_t MostCriteria = 16;
constexpr std::size_t MostMessagesMade = 1000;
constexpr int CoarsestConvergence = 6; // 2^6 samples per replicate

/// The place of an input among all that may vary: its Sobol' dimension, whatever else scatters.
std::size_t dimensionOf(const Variable& variable) {
    static const std::vector<Variable> all = variables();
    return static_cast<std::size_t>(std::find(all.begin(), all.end(), variable) - all.begin());
}

/// Does work(i) for every i below `count` on some threads.
void inParallel(std::size_t count, unsigned threads, const std::stop_token& stop,
                const std::function<void(std::size_t)>& work) {
    std::atomic<std::size_t> next = 0;
    const auto run = [&] {
        for (std::size_t i = next++; i < count && !stop.stop_requested(); i = next++)
            work(i);
    };
    std::vector<std::jthread> others;
    for (unsigned t = 1; t < threads && t < count; ++t)
        others.emplace_back(run);
    run();
}

struct Prepared {
    std::shared_ptr<const Sampler> sampler;
    std::shared_ptr<const Evaluator> evaluator;
};

Result<Prepared> prepared(const project::ProjectCase& base, const UncertaintyRequest& request,
                          int RoundTELVOSF, const std::vector<Variable>& also = {}) {
    if (request.criteria.empty() || request.criteria.size() > MostCriteria)
        return Fault{"A study of uncertainty has one to sixteen criteria", ""};
    std::vector<sampling::Scattered> scattered;
    std::vector<Variable> varied;
    for (const UncertainInput& input : request.inputs) {
        if (const std::string why = whyWithoutEffect(base, input.variable); !why.empty())
            return Fault{input.variable.label() + " changes nothing in this case: " + why,
                         input.variable.name()};
        scattered.push_back(
            {input.variable.name(), dimensionOf(input.variable), input.distribution});
        varied.push_back(input.variable);
    }
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
    return Prepared{std::make_shared<const Sampler>(std::move(*sampler)),
                    std::make_shared<const Evaluator>(std::move(*evaluator))};
}

/// The cases of a block of samples.
class Block {
  public:
    Block(const Prepared& prepared, const std::vector<Criterion>& criteria)
        : m_prepared(prepared), m_criteria(criteria) {
        const std::size_t inputs = prepared.evaluator->variables().size();
        m_in.assign(inputs, std::vector<double>(SamplesPerBlock));
        m_out.assign(prepared.evaluator->outcomes().size(), std::vector<double>(SamplesPerBlock));
        m_computed.resize(SamplesPerBlock);
    }

    std::vector<double>& input(std::size_t j) { return m_in[j]; }
    std::span<const double> outcome(std::size_t o) const { return m_out[o]; }
    bool isComputed(std::size_t i) const { return m_computed[i] != 0; }

    void draw(std::size_t replicate, std::uint64_t from, std::size_t count) {
        std::vector<double*> columns;
        for (std::size_t j = 0; j < m_prepared.sampler->inputs().size(); ++j)
            columns.push_back(m_in[j].data());
        m_prepared.sampler->block(replicate, from, count, columns);
    }
    void compute(std::size_t count) {
        std::vector<const double*> in;
        for (const auto& column : m_in)
            in.push_back(column.data());
        std::vector<double*> out;
        for (auto& column : m_out)
            out.push_back(column.data());
        m_prepared.evaluator->compute(count, in, out, nullptr, m_computed.data());
    }
    /// Calls visit(criterion, value, margin) for each criterion of a sample.
    template <class Visit>
    void judge(std::size_t i, Visit&& visit) const {
        std::size_t o = 0;
        for (std::size_t c = 0; c < m_criteria.size(); ++c) {
            const double value = m_out[o++][i];
            const double margin =
                m_criteria[c].target ? value - *m_criteria[c].target : m_out[o++][i];
            visit(c, value, margin);
        }
    }

  private:
    const Prepared& m_prepared;
    const std::vector<Criterion>& m_criteria;
    std::vector<std::vector<double>> m_in, m_out;
    std::vector<std::uint8_t> m_computed;
};

/// A barrier that is not there misses nothing.
bool misses(const Criterion& criterion, double margin) {
    return !std::isnan(margin) && !criterion.holds(margin);
}

std::string percentText(double share) {
    return generalNumber(100 * share, share < 0.001 ? 2 : 3);
}

std::string headlineOf(const Uncertainty& result, const UncertaintyRequest& request) {
    const CriterionShare& first = result.criteria.front();
    const std::string samples =
        std::to_string(result.computed.size()) + " samples miss " + request.criteria.front().text();
    if (first.misses == 0)
        return "None of " + samples + " (below " + percentText(first.missed.high) + " %)";
    return percentText(first.missed.value) + " % of " + samples + " (" +
           percentText(first.missed.low) + " to " + percentText(first.missed.high) + " %)";
}

} // namespace

std::vector<double> Uncertainty::inputs(std::size_t sample) const {
    const auto per = static_cast<std::size_t>(sampler->plan().perReplicate());
    std::vector<double> values(sampler->inputs().size());
    std::vector<double*> out;
    for (double& value : values)
        out.push_back(&value);
    sampler->block(sample / per, sample % per, 1, out);
    return values;
}

project::ProjectCase Uncertainty::caseOf(std::size_t sample) const {
    return evaluator->caseOf(inputs(sample));
}

Result<Uncertainty> uncertainty(const project::ProjectCase& base, const UncertaintyRequest& request,
                                int RoundTELVOSF, unsigned threads, std::stop_token stop) {
    auto ready = prepared(base, request, RoundTELVOSF);
    if (!ready) return ready.fault();
    std::vector<double> own;
    for (const UncertainInput& input : request.inputs)
        own.push_back(input.variable.of(base.Input));
    if (std::string why = ready->evaluator->whyNot(own); !why.empty())
        return Fault{"The case itself cannot be computed: " + why, base.FileName};

    const Plan& plan = request.plan;
    const auto per = static_cast<std::size_t>(plan.perReplicate());
    const std::size_t blocksPer = (per + SamplesPerBlock - 1) / SamplesPerBlock;
    const std::size_t criteria = request.criteria.size();
    Uncertainty result;
    result.sampler = ready->sampler;
    result.evaluator = ready->evaluator;
    result.outcomes.assign(criteria, std::vector<double>(plan.samples()));
    result.computed.resize(plan.samples());
    std::vector<std::uint32_t> missed(plan.samples()); // bit c: misses criterion c
    std::vector<std::uint8_t> done(plan.replicates * blocksPer);
    inParallel(done.size(), threads, stop, [&](std::size_t b) {
        const std::size_t replicate = b / blocksPer, from = b % blocksPer * SamplesPerBlock;
        const std::size_t count = std::min(SamplesPerBlock, per - from);
        Block block(*ready, request.criteria);
        block.draw(replicate, from, count);
        block.compute(count);
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t sample = replicate * per + from + i;
            result.computed[sample] = block.isComputed(i);
            block.judge(i, [&](std::size_t c, double value, double margin) {
                result.outcomes[c][sample] = value;
                if (block.isComputed(i) && misses(request.criteria[c], margin))
                    missed[sample] |= 1U << c;
            });
        }
        done[b] = 1;
    });
    const auto broken =
        static_cast<std::size_t>(std::find(done.begin(), done.end(), 0) - done.begin()) / blocksPer;
    const std::size_t replicates = std::min(broken, plan.replicates);
    if (replicates < plan.replicates) {
        result.stopped = true;
        for (auto& column : result.outcomes)
            column.resize(replicates * per);
        result.computed.resize(replicates * per);
        if (replicates == 0) return Fault{"Stopped before anything was computed", ""};
    }

    result.byMask.assign(std::size_t{1} << criteria, 0);
    const std::size_t samples = result.computed.size();
    std::size_t left = 0;
    for (std::size_t s = 0; s < samples; ++s) {
        if (result.computed[s]) {
            ++result.byMask[missed[s]];
        } else if (left++ < MostMessagesMade) {
            result.tally.leaveOut(result.evaluator->whyNot(result.inputs(s)));
        } else {
            result.tally.leaveOut("Not looked into");
        }
    }
    result.tally.runs = samples;
    if (left == samples)
        return Fault{"None of the samples can be computed: " + result.tally.left.front().message,
                     base.FileName};

    // Shares over the computed samples of each replicate, at every doubling.
    const auto share = [&](std::uint32_t mask, std::size_t points) {
        std::vector<std::uint64_t> counts;
        std::vector<double> shares;
        std::uint64_t all = 0, hits = 0;
        for (std::size_t r = 0; r < replicates; ++r) {
            std::uint64_t computed = 0, hit = 0;
            for (std::size_t i = 0; i < points; ++i) {
                const std::size_t s = r * per + i;
                computed += result.computed[s];
                hit += (missed[s] & mask) != 0;
            }
            counts.push_back(hit);
            all += computed;
            hits += hit;
            if (computed > 0)
                shares.push_back(static_cast<double>(hit) / static_cast<double>(computed));
        }
        // Where every sample was computed, replicates are of one size.
        if (all == replicates * points) return sampling::shareOf(counts, points);
        constexpr std::uint64_t few = 30;
        const bool none = std::find(counts.begin(), counts.end(), 0U) != counts.end();
        if (hits < few || all - hits < few || none || shares.size() < 2)
            return sampling::wilson(hits, all);
        Estimate estimate = sampling::overReplicates(shares);
        estimate.low = std::max(estimate.low, 0.0);
        estimate.high = std::min(estimate.high, 1.0);
        return estimate;
    };
    for (std::size_t c = 0; c < criteria; ++c) {
        CriterionShare one;
        const std::uint32_t mask = 1U << c;
        for (std::size_t m = 0; m < result.byMask.size(); ++m)
            if ((m & mask) != 0) one.misses += result.byMask[m];
        one.missed = share(mask, per);
        std::vector<double> means;
        sampling::Moments all;
        for (std::size_t r = 0; r < replicates; ++r) {
            std::vector<double> values;
            for (std::size_t i = 0; i < per; ++i)
                if (const double value = result.outcomes[c][r * per + i];
                    result.computed[r * per + i] && !std::isnan(value))
                    values.push_back(value);
            const sampling::Moments moments = sampling::Moments::of(values);
            if (moments.count > 0) means.push_back(moments.mean);
            all.join(moments);
        }
        one.mean = sampling::overReplicates(means);
        one.sd = std::sqrt(all.variance());
        result.criteria.push_back(one);
        result.convergence.emplace_back();
        for (int bits = std::min(CoarsestConvergence, plan.bits); bits <= plan.bits; ++bits) {
            const std::size_t points = std::size_t{1} << bits;
            // The first points of a Latin hypercube are none by themselves.
            if (plan.method == Method::LatinHypercube && bits < plan.bits) continue;
            result.convergence.back().push_back({replicates * points, share(mask, points)});
        }
    }
    result.any = share(~0U, per);
    result.headline = headlineOf(result, request);
    return result;
}

std::vector<Importance> importance(const Uncertainty& result, std::size_t criterion,
                                   const UncertaintyRequest& request) {
    constexpr std::size_t bins = 10;
    const auto per = static_cast<std::size_t>(result.sampler->plan().perReplicate());
    const std::size_t inputs = result.sampler->inputs().size();
    std::vector<double> values;
    std::vector<std::vector<double>> columns(inputs);
    std::vector<double> column(per);
    for (std::size_t r = 0; r * per < result.computed.size(); ++r) {
        std::vector<std::vector<double>> drawn(inputs, std::vector<double>(per));
        std::vector<double*> out;
        for (auto& one : drawn)
            out.push_back(one.data());
        result.sampler->block(r, 0, per, out);
        for (std::size_t i = 0; i < per; ++i) {
            const double value = result.outcomes[criterion][r * per + i];
            if (!result.computed[r * per + i] || std::isnan(value)) continue;
            values.push_back(value);
            for (std::size_t j = 0; j < inputs; ++j)
                columns[j].push_back(drawn[j][i]);
        }
    }
    const std::vector<double> valueRanks = sampling::midranks(values);
    const sampling::Moments all = sampling::Moments::of(values);
    const Criterion& asked = request.criteria[criterion];
    std::vector<Importance> found;
    for (std::size_t j = 0; j < inputs; ++j) {
        Importance one;
        const std::vector<double> ranks = sampling::midranks(columns[j]);
        one.rankCorrelation = sampling::correlationOf(ranks, valueRanks);
        std::vector<std::size_t> order(values.size());
        for (std::size_t i = 0; i < order.size(); ++i)
            order[i] = i;
        std::stable_sort(order.begin(), order.end(),
                         [&](std::size_t a, std::size_t b) { return ranks[a] < ranks[b]; });
        double between = 0;
        for (std::size_t bin = 0; bin < bins; ++bin) {
            const std::size_t from = order.size() * bin / bins,
                              to = order.size() * (bin + 1) / bins;
            if (from == to) continue;
            double sum = 0;
            for (std::size_t i = from; i < to; ++i)
                sum += values[order[i]];
            const double mean = sum / static_cast<double>(to - from);
            one.binMeans.push_back(mean);
            between += static_cast<double>(to - from) * (mean - all.mean) * (mean - all.mean);
        }
        one.betweenBins = all.squares > 0 ? between / all.squares : 0;
        if (asked.target) {
            double sum = 0;
            std::size_t count = 0;
            for (std::size_t i = 0; i < values.size(); ++i)
                if (misses(asked, values[i] - *asked.target)) {
                    sum += columns[j][i];
                    ++count;
                }
            const sampling::Distribution& distribution = result.sampler->inputs()[j].distribution;
            if (count > 0)
                one.missesAt =
                    (sum / static_cast<double>(count) - distribution.mean()) / distribution.sd();
        }
        found.push_back(std::move(one));
    }
    return found;
}

Result<SobolStudy> sobolStudy(const project::ProjectCase& base, const UncertaintyRequest& request,
                              std::size_t criterion, int RoundTELVOSF, unsigned threads) {
    if (!request.correlated.empty())
        return Fault{"Indices of Sobol' need inputs that are independent", ""};
    UncertaintyRequest asked = request;
    asked.criteria = {request.criteria.at(criterion)};
    auto first = prepared(base, asked, RoundTELVOSF);
    if (!first) return first.fault();
    // The second sample has dimensions and names of its own.
    std::vector<sampling::Scattered> others = first->sampler->inputs();
    for (sampling::Scattered& input : others) {
        input.dimension += sampling::SobolDimensions / 2;
        input.name += " (second sample)";
    }
    auto second = Sampler::prepare(std::move(others), {}, asked.plan);
    if (!second) return second.fault();

    const auto per = static_cast<std::size_t>(asked.plan.perReplicate());
    const std::size_t inputs = asked.inputs.size(), replicates = asked.plan.replicates;
    struct Of {
        std::vector<sampling::SobolIndices> outcome, misses;
        std::uint64_t dropped = 0;
    };
    std::vector<Of> byReplicate(replicates);
    inParallel(replicates, threads, {}, [&](std::size_t r) {
        std::vector<double> a, b;
        std::vector<std::vector<double>> mixed(inputs);
        Block block(*first, asked.criteria);
        std::vector<std::vector<double>> inA(inputs, std::vector<double>(SamplesPerBlock)),
            inB = inA;
        std::vector<std::vector<double>> margins(inputs + 2, std::vector<double>(SamplesPerBlock));
        for (std::size_t from = 0; from < per; from += SamplesPerBlock) {
            const std::size_t count = std::min(SamplesPerBlock, per - from);
            std::vector<double*> outA, outB;
            for (std::size_t j = 0; j < inputs; ++j) {
                outA.push_back(inA[j].data());
                outB.push_back(inB[j].data());
            }
            first->sampler->block(r, from, count, outA);
            second->block(r, from, count, outB);
            const auto compute = [&](std::size_t matrix, std::vector<double>& to) {
                for (std::size_t j = 0; j < inputs; ++j)
                    block.input(j) = matrix == 1 || matrix == j + 2 ? inB[j] : inA[j];
                block.compute(count);
                for (std::size_t i = 0; i < count; ++i)
                    block.judge(i, [&](std::size_t, double, double margin) {
                        to[i] = block.isComputed(i) ? margin : std::nan("");
                    });
            };
            for (std::size_t matrix = 0; matrix < inputs + 2; ++matrix)
                compute(matrix, margins[matrix]);
            for (std::size_t i = 0; i < count; ++i) {
                const bool whole = std::none_of(margins.begin(), margins.end(),
                                                [&](const auto& m) { return std::isnan(m[i]); });
                if (!whole) {
                    ++byReplicate[r].dropped;
                    continue;
                }
                a.push_back(margins[0][i]);
                b.push_back(margins[1][i]);
                for (std::size_t j = 0; j < inputs; ++j)
                    mixed[j].push_back(margins[j + 2][i]);
            }
        }
        const Criterion& one = asked.criteria.front();
        const auto missed = [&](const std::vector<double>& values) {
            std::vector<double> flags;
            for (const double margin : values)
                flags.push_back(misses(one, margin) ? 1 : 0);
            return flags;
        };
        const std::vector<double> missedA = missed(a), missedB = missed(b);
        for (std::size_t j = 0; j < inputs; ++j) {
            byReplicate[r].outcome.push_back(sampling::sobolIndices(a, b, mixed[j]));
            byReplicate[r].misses.push_back(
                sampling::sobolIndices(missedA, missedB, missed(mixed[j])));
        }
    });
    SobolStudy study;
    study.runs = replicates * per * (inputs + 2);
    for (const Of& one : byReplicate)
        study.dropped += one.dropped;
    for (std::size_t j = 0; j < inputs; ++j) {
        const auto over = [&](auto member, auto index) {
            std::vector<double> values;
            for (const Of& one : byReplicate)
                values.push_back((one.*member)[j].*index);
            return sampling::overReplicates(values);
        };
        using sampling::SobolIndices;
        study.outcome.push_back(
            {over(&Of::outcome, &SobolIndices::first), over(&Of::outcome, &SobolIndices::total)});
        study.misses.push_back(
            {over(&Of::misses, &SobolIndices::first), over(&Of::misses, &SobolIndices::total)});
    }
    return study;
}

Result<std::vector<ShareCurvePoint>> shareCurve(const project::ProjectCase& base,
                                                const UncertaintyRequest& request,
                                                std::size_t criterion, const Variable& over,
                                                const std::vector<double>& values, int RoundTELVOSF,
                                                unsigned threads) {
    UncertaintyRequest asked = request;
    asked.criteria = {request.criteria.at(criterion)};
    auto ready = prepared(base, asked, RoundTELVOSF, {over});
    if (!ready) return ready.fault();
    if (const std::string why = whyWithoutEffect(base, over); !why.empty())
        return Fault{over.label() + " changes nothing in this case: " + why, over.name()};
    if (values.empty()) return Fault{"There are no values", over.name()};
    const auto per = static_cast<std::size_t>(asked.plan.perReplicate());
    const std::size_t replicates = asked.plan.replicates, inputs = asked.inputs.size();
    struct Count {
        std::uint64_t misses = 0, computed = 0;
    };
    std::vector<std::vector<Count>> counts(values.size(), std::vector<Count>(replicates));
    inParallel(replicates, threads, {}, [&](std::size_t r) {
        Block block(*ready, asked.criteria);
        for (std::size_t from = 0; from < per; from += SamplesPerBlock) {
            const std::size_t count = std::min(SamplesPerBlock, per - from);
            block.draw(r, from, count);
            for (std::size_t v = 0; v < values.size(); ++v) {
                std::fill(block.input(inputs).begin(), block.input(inputs).end(), values[v]);
                block.compute(count);
                for (std::size_t i = 0; i < count; ++i) {
                    counts[v][r].computed += block.isComputed(i);
                    block.judge(i, [&](std::size_t, double, double margin) {
                        counts[v][r].misses +=
                            block.isComputed(i) && misses(asked.criteria.front(), margin);
                    });
                }
            }
        }
    });
    std::vector<ShareCurvePoint> curve;
    for (std::size_t v = 0; v < values.size(); ++v) {
        std::uint64_t all = 0, hits = 0;
        std::vector<std::uint64_t> misses;
        for (const Count& one : counts[v]) {
            all += one.computed;
            hits += one.misses;
            misses.push_back(one.misses);
        }
        ShareCurvePoint point{values[v], {}, replicates * per - all};
        point.missed =
            all == replicates * per ? sampling::shareOf(misses, per) : sampling::wilson(hits, all);
        curve.push_back(point);
    }
    return curve;
}

} // namespace telvo::study
