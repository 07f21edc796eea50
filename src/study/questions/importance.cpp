// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/importance.h"

#include "base/numbers.h"
#include "sampling/shapley.h"
#include "study/questions/sampleBlock.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>
#include <utility>

namespace telvo::study {

using sampling::Sampler;

namespace {

constexpr std::size_t MostLookedAt = std::size_t{1} << 17;
constexpr std::size_t ImportanceBins = 10;

/// The samples that are looked at, by input and outcome, and which of them miss.
struct LookedAt {
    std::vector<std::vector<double>> columns;
    std::vector<double> values;
    std::vector<std::uint8_t> misses;
};

LookedAt lookedAt(const Uncertainty& result, std::size_t criterion) {
    const std::size_t stride = result.samples.perReplicate;
    const std::size_t per = std::min(stride, MostLookedAt / result.samples.replicates);
    const std::size_t inputs = result.sampler->inputs().size();
    LookedAt looked;
    looked.columns.resize(inputs);
    std::vector<std::vector<double>> drawn(inputs, std::vector<double>(SamplesPerBlock));
    for (std::size_t r = 0; r < result.samples.replicates; ++r)
        for (std::size_t from = 0; from < per; from += SamplesPerBlock) {
            const std::size_t count = std::min(SamplesPerBlock, per - from);
            std::vector<double*> out;
            for (auto& one : drawn)
                out.push_back(one.data());
            result.sampler->block(result.samples.firstReplicate + r, from, count, out);
            for (std::size_t i = 0; i < count; ++i) {
                const std::size_t s = r * stride + from + i;
                const double value = result.samples.outcomes[criterion][s];
                if (!result.isComputed(s) || std::isnan(value)) continue;
                looked.values.push_back(value);
                looked.misses.push_back((result.samples.missed[s] >> criterion & 1) != 0);
                for (std::size_t j = 0; j < inputs; ++j)
                    looked.columns[j].push_back(drawn[j][i]);
            }
        }
    return looked;
}

/// A second sample of the same inputs, independent ones, with dimensions and names of its own.
Result<Sampler> secondSampler(const ReadyToDraw& first, const sampling::Plan& plan) {
    std::vector<sampling::Scattered> others = first.sampler->inputs();
    for (sampling::Scattered& input : others) {
        input.dimension += sampling::SobolDimensions / 2;
        input.name += " (second sample)";
    }
    return Sampler::prepare(std::move(others), {}, plan);
}

void setBins(Importance& one, const std::vector<double>& ranks, const std::vector<double>& values,
             const sampling::Moments& all) {
    // By rank without another sort: midranks are halves at the finest.
    std::vector<std::uint32_t> order(values.size());
    std::iota(order.begin(), order.end(), std::uint32_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return ranks[a] < ranks[b]; });
    double between = 0;
    for (std::size_t bin = 0; bin < ImportanceBins; ++bin) {
        const std::size_t from = order.size() * bin / ImportanceBins,
                          to = order.size() * (bin + 1) / ImportanceBins;
        if (from == to) continue;
        double sum = 0;
        for (std::size_t i = from; i < to; ++i)
            sum += values[order[i]];
        const double mean = sum / static_cast<double>(to - from);
        one.binMeans.push_back(mean);
        between += static_cast<double>(to - from) * (mean - all.mean) * (mean - all.mean);
    }
    one.betweenBins = all.squares > 0 ? between / all.squares : 0;
    // Steps back of less than a twentieth of the whole swing are what a sample of this size does.
    const auto [least, most] = std::minmax_element(one.binMeans.begin(), one.binMeans.end());
    double back = 0, forth = 0;
    for (std::size_t b = 1; b < one.binMeans.size(); ++b) {
        const double step = one.binMeans[b] - one.binMeans[b - 1];
        (step < 0 ? back : forth) += std::abs(step);
    }
    one.turnsBack = !one.binMeans.empty() && *least < *most &&
                    std::min(back, forth) > 0.05 * (*most - *least) && one.betweenBins > 0.01;
}

} // namespace

std::vector<Importance> importance(const Uncertainty& result, std::size_t criterion,
                                   const UncertaintyRequest& request) {
    const LookedAt looked = lookedAt(result, criterion);
    const std::vector<double> valueRanks = sampling::midranks(looked.values);
    const sampling::Moments all = sampling::Moments::of(looked.values);
    std::vector<Importance> found;
    for (std::size_t j = 0; j < looked.columns.size(); ++j) {
        Importance one;
        const std::vector<double>& column = looked.columns[j];
        const std::vector<double> ranks = sampling::midranks(column);
        one.rankCorrelation = sampling::correlationOf(ranks, valueRanks);
        setBins(one, ranks, looked.values, all);
        double sum = 0;
        std::size_t count = 0;
        for (std::size_t i = 0; i < column.size(); ++i)
            if (looked.misses[i]) {
                sum += column[i];
                ++count;
            }
        const sampling::Distribution& distribution = request.inputs[j].distribution;
        if (count > 0)
            one.missesAt =
                (sum / static_cast<double>(count) - distribution.mean()) / distribution.sd();
        found.push_back(std::move(one));
    }
    return found;
}

std::string whereMissesLie(const std::vector<Importance>& importance,
                           const UncertaintyRequest& request) {
    constexpr double leastShown = 0.2; // standard deviations
    constexpr std::size_t mostShown = 3;
    std::vector<std::size_t> order;
    for (std::size_t j = 0; j < importance.size(); ++j)
        if (importance[j].missesAt && std::abs(*importance[j].missesAt) >= leastShown)
            order.push_back(j);
    if (order.empty()) return {};
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return std::abs(*importance[a].missesAt) > std::abs(*importance[b].missesAt);
    });
    std::string text = "In the samples that miss it, ";
    for (std::size_t n = 0; n < std::min(order.size(), mostShown); ++n) {
        const double at = *importance[order[n]].missesAt;
        const UncertainInput& input = request.inputs[order[n]];
        const auto several = variableNamed(input.shownName());
        text.append(n > 0 ? ", " : "")
            .append((several ? *several : input.variable).label())
            .append(n > 0 ? " " : " was ")
            .append(generalNumber(std::round(std::abs(at) * 10) / 10))
            .append(n > 0 ? "" : " standard deviations")
            .append(at > 0 ? " above" : " below")
            .append(" its mean");
    }
    return text;
}

Result<ShapleyStudy> shapleyStudy(const project::ProjectCase& base,
                                  const UncertaintyRequest& request, std::size_t criterion,
                                  int RoundTELVOSF, unsigned threads) {
    UncertaintyRequest asked = request;
    asked.criteria = {request.criteria.at(criterion)};
    const std::size_t subsets = sampling::shapleySubsets(asked.inputs.size());
    // Some four million runs in all; a sample of a replicate fits one block.
    constexpr std::size_t runsOfReplicate = std::size_t{1} << 18;
    const std::size_t most =
        std::clamp(runsOfReplicate / subsets, std::size_t{16}, SamplesPerBlock);
    asked.plan.bits = std::min(asked.plan.bits, static_cast<int>(std::bit_width(most)) - 1);
    if (asked.plan.method == sampling::Method::LatinHypercube)
        asked.plan.method = sampling::Method::Sobol;
    auto first = readyToDraw(base, asked, RoundTELVOSF);
    if (!first) return first.fault();
    auto second = secondSampler(*first, asked.plan);
    if (!second) return second.fault();
    const auto per = static_cast<std::size_t>(asked.plan.perReplicate());
    const std::size_t inputs = asked.inputs.size(), replicates = asked.plan.replicates;
    const sampling::Matrix correlation = first->sampler->correlation()
                                             ? first->sampler->correlation()->used
                                             : sampling::Matrix::identity(inputs);
    std::vector<std::vector<double>> outcome(replicates), misses(replicates);
    std::vector<std::uint8_t> failed(replicates);
    inParallel(replicates, threads, {}, [&](std::size_t r) {
        SampleBlock block(*first, asked.criteria);
        const auto scoresOf = [&](const Sampler& sampler) {
            std::vector<std::vector<double>> scores(inputs, std::vector<double>(per));
            std::vector<double*> out;
            for (auto& column : scores)
                out.push_back(column.data());
            sampler.scores(r, 0, per, out);
            return scores;
        };
        const auto drawn = scoresOf(*first->sampler), fresh = scoresOf(*second);
        for (const bool ofMisses : {false, true}) {
            const sampling::OutcomesOf outcomesOf = [&](const auto& scores, auto& to) {
                std::vector<double*> columns;
                for (std::size_t j = 0; j < inputs; ++j) {
                    std::copy(scores[j].begin(), scores[j].end(), block.drawn(j).begin());
                    columns.push_back(block.drawn(j).data());
                }
                first->sampler->ofScores(per, columns);
                block.compute(per);
                for (std::size_t i = 0; i < per; ++i)
                    to[i] = !block.isComputed(i) ? std::nan("")
                            : ofMisses           ? (block.misses(0, i) ? 1 : 0)
                                                 : block.margin(0, i);
            };
            std::vector<double> own(per);
            outcomesOf(drawn, own);
            const auto effects = sampling::shapleyEffects({correlation, drawn, fresh, own},
                                                          outcomesOf, {asked.plan.seed, 0, r});
            if (effects)
                (ofMisses ? misses : outcome)[r] = *effects;
            else
                failed[r] = 1;
        }
    });
    if (std::find(failed.begin(), failed.end(), 1) != failed.end())
        return Fault{"These correlations contradict each other", ""};
    ShapleyStudy study;
    study.runs = 2 * replicates * per * (subsets + 1);
    for (std::size_t j = 0; j < inputs; ++j) {
        const auto over = [&](const std::vector<std::vector<double>>& effects) {
            std::vector<double> values;
            for (const auto& own : effects)
                values.push_back(own[j]);
            return sampling::overReplicates(values);
        };
        study.outcome.push_back(over(outcome));
        study.misses.push_back(over(misses));
    }
    return study;
}

Result<SobolStudy> sobolStudy(const project::ProjectCase& base, const UncertaintyRequest& request,
                              std::size_t criterion, int RoundTELVOSF, unsigned threads) {
    if (!request.correlated.empty())
        return Fault{"Indices of Sobol' need inputs that are independent", ""};
    UncertaintyRequest asked = request;
    asked.criteria = {request.criteria.at(criterion)};
    auto first = readyToDraw(base, asked, RoundTELVOSF);
    if (!first) return first.fault();
    auto second = secondSampler(*first, asked.plan);
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
        SampleBlock block(*first, asked.criteria);
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
            for (std::size_t matrix = 0; matrix < inputs + 2; ++matrix) {
                for (std::size_t j = 0; j < inputs; ++j)
                    block.drawn(j) = matrix == 1 || matrix == j + 2 ? inB[j] : inA[j];
                block.compute(count);
                for (std::size_t i = 0; i < count; ++i)
                    margins[matrix][i] = block.isComputed(i) ? block.margin(0, i) : std::nan("");
            }
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
        const auto missed = [&](const std::vector<double>& values) {
            std::vector<double> flags;
            for (const double margin : values)
                flags.push_back(block.missesBy(0, margin) ? 1 : 0);
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

} // namespace telvo::study
