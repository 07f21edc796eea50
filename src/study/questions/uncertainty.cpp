// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/uncertainty.h"

#include "engine/driver.h"
#include "study/output/factors.h"
#include "study/questions/ranges.h"
#include "study/questions/sampleBlock.h"

#include <algorithm>
#include <utility>

namespace telvo::study {

using sampling::Method, sampling::Plan;

namespace {

constexpr std::size_t MostSampleBytes = std::size_t{4} << 30; // of the numbers that are kept

constexpr int CoarsestBits = 9; // 2^9 samples of each replicate come first

/// Sizes of a replicate, each twice the one before: what is complete at each of them is a study.
std::vector<std::size_t> sizesOf(const Plan& plan) {
    std::vector<std::size_t> sizes;
    // The first points of a Latin hypercube are none by themselves.
    const bool whole = plan.method == Method::LatinHypercube;
    for (int bits = whole ? plan.bits : std::min(CoarsestBits, plan.bits); bits <= plan.bits;
         ++bits)
        sizes.push_back(std::size_t{1} << bits);
    return sizes;
}

bool areNarrow(const Samples& samples, std::size_t criteria, std::size_t points, std::size_t stride,
               double halfWidth) {
    for (std::size_t c = 0; c < criteria; ++c) {
        const auto counts = countsOf(samples, static_cast<std::uint16_t>(1U << c), points, stride);
        if (!isNarrow(shareOfReplicates(counts, points), halfWidth)) return false;
    }
    return true;
}

/// Leaves the first points of the first replicates.
void shrink(Samples& samples, std::size_t replicates, std::size_t points) {
    const std::size_t stride = samples.perReplicate;
    const auto keep = [&](auto& column) {
        for (std::size_t r = 1; r < replicates && points < stride; ++r)
            std::copy_n(column.begin() + static_cast<std::ptrdiff_t>(r * stride), points,
                        column.begin() + static_cast<std::ptrdiff_t>(r * points));
        column.resize(replicates * points);
    };
    for (auto& column : samples.outcomes)
        keep(column);
    keep(samples.missed);
    samples.replicates = replicates;
    samples.perReplicate = points;
}

std::optional<std::size_t> placeOf(const UncertaintyRequest& request, const Variable& variable) {
    for (std::size_t j = 0; j < request.inputs.size(); ++j) {
        const UncertainInput& one = request.inputs[j];
        if (one.variable == variable || one.name == variable.name()) return j;
        if (std::find(one.also.begin(), one.also.end(), variable) != one.also.end()) return j;
    }
    return std::nullopt;
}

} // namespace

std::vector<Criterion> usualLimits(const project::ProjectCase& base) {
    std::vector<Criterion> limits;
    for (const Outcome& outcome : factorsOf(base)) {
        const Criterion criterion{outcome, Criterion::Sense::AtLeast, {}};
        const engine::Frame frame =
            engine::frameOf(base.Input, base.Units, engine::DevelopmentLoad);
        if (outcome.marginToSuggested() && outcome.isDefined(frame, base.Input))
            limits.push_back(criterion);
    }
    // Retreat before development: it decides, and headlines speak of the first.
    std::stable_sort(limits.begin(), limits.end(), [](const Criterion& a, const Criterion& b) {
        return a.outcome.pass() > b.outcome.pass();
    });
    return limits;
}

bool isNarrow(const sampling::Estimate& share, double halfWidth) {
    constexpr double least = 0.01;
    return share.halfWidth() <= halfWidth * std::max(share.value, least);
}

Result<UncertaintyRequest> requestOf(const AskedUncertainty& asked,
                                     const project::ProjectCase& base,
                                     const std::optional<Variable>& without) {
    UncertaintyRequest request;
    request.plan = asked.plan;
    request.halfWidth = asked.halfWidth;
    if (asked.halfWidth && !(*asked.halfWidth > 0 && *asked.halfWidth < 1))
        return Fault{"A half width is a part of the share, between 0 and 1", ""};
    if (asked.plan.replicates < 1) return Fault{"A study takes 1 to 1024 replicates", ""};
    request.criteria = asked.limits.empty() ? usualLimits(base) : asked.limits;
    std::vector<ScatteredInput> inputs = asked.vary;
    if (inputs.empty()) {
        const auto fieldsWithout =
            without ? without->fields(base.Input) : std::vector<project::FieldId>();
        for (const ScatteredInput& one : usualInputs(base)) {
            const auto fields = one.variables.front().fields(base.Input);
            if (std::none_of(fields.begin(), fields.end(), [&](project::FieldId id) {
                    return std::find(fieldsWithout.begin(), fieldsWithout.end(), id) !=
                           fieldsWithout.end();
                }))
                inputs.push_back(one);
        }
    }
    for (const ScatteredInput& one : inputs) {
        const bool several = one.variables.size() > 1;
        std::vector<std::vector<Variable>> groups; // of those that share an error
        for (const Variable& variable : one.variables) {
            // What stands for several numbers of the case gives them one error, not one value.
            std::vector<Variable> fields;
            for (const project::FieldId id : variable.fields(base.Input))
                fields.emplace_back(id);
            if (one.shared && !groups.empty())
                groups.front().insert(groups.front().end(), fields.begin(), fields.end());
            else
                groups.push_back(std::move(fields));
        }
        for (std::size_t g = 0; g < groups.size(); ++g) {
            const Variable first = groups[g].front();
            const Scatter scatter = one.scatter ? *one.scatter : usualScatter(first, base.Units);
            for (const Variable& variable : groups[g])
                if (const std::string why = whyWithoutEffect(base, variable); !why.empty())
                    return Fault{variable.label() + " changes nothing in this case: " + why,
                                 variable.name()};
            auto distribution = distributionOf(scatter, first, base.Input);
            if (!distribution) return distribution.fault();
            UncertainInput input{first, std::move(*distribution), {}, false, {}};
            input.also.assign(groups[g].begin() + 1, groups[g].end());
            input.asRatio =
                scatter.cov.has_value() ||
                (!scatter.points.empty() && scatter.pointsAre == Scatter::Points::Percent);
            if (!(several && one.shared)) input.name = one.variables[g].name();
            request.inputs.push_back(std::move(input));
        }
    }
    for (const AskedUncertainty::Together& pair : asked.correlated) {
        const auto first = placeOf(request, pair.first), second = placeOf(request, pair.second);
        for (const auto& [place, variable] :
             {std::pair(first, pair.first), std::pair(second, pair.second)})
            if (!place)
                return Fault{"A correlation is between two of the inputs that scatter",
                             variable.name()};
        if (!(pair.rank >= -1 && pair.rank <= 1))
            return Fault{"A rank correlation is between -1 and 1", pair.first.name()};
        request.correlated.push_back({*first, *second, pair.rank});
    }
    return request;
}

Result<Samples> drawSamples(const project::ProjectCase& base, const UncertaintyRequest& request,
                            const Part& part, int RoundTELVOSF, unsigned threads,
                            std::stop_token stop) {
    auto ready = readyToDraw(base, request, RoundTELVOSF);
    if (!ready) return ready.fault();
    std::vector<double> own;
    for (const Variable& variable : ready->evaluator->variables())
        own.push_back(variable.of(base.Input));
    if (std::string why = ready->evaluator->whyNot(own); !why.empty())
        return Fault{"The case itself cannot be computed: " + why, base.FileName};
    const Plan& plan = request.plan;
    if (part.k < 1 || part.k > part.n || part.n > plan.replicates)
        return Fault{"There are as many parts as replicates at most: " +
                         std::to_string(plan.replicates),
                     ""};

    const auto per = static_cast<std::size_t>(plan.perReplicate());
    const std::size_t criteria = request.criteria.size();
    Samples samples;
    samples.firstReplicate = plan.replicates * (part.k - 1) / part.n;
    samples.replicates = plan.replicates * part.k / part.n - samples.firstReplicate;
    samples.perReplicate = per;
    if (samples.size() > MostSampleBytes / (sizeof(double) * criteria + sizeof(std::uint16_t)))
        return Fault{groupedCount(samples.size()) +
                         " samples take more than 4 GB of memory: take fewer, or run the study in "
                         "parts",
                     ""};
    samples.outcomes.assign(criteria, std::vector<double>(samples.size()));
    samples.missed.resize(samples.size());
    std::size_t from = 0;
    for (const std::size_t to : sizesOf(plan)) {
        const std::size_t blocks = (to - from + SamplesPerBlock - 1) / SamplesPerBlock;
        std::vector<std::uint8_t> done(samples.replicates * blocks);
        inParallel(done.size(), threads, stop, [&](std::size_t b) {
            const std::size_t replicate = b / blocks;
            const std::size_t first = from + b % blocks * SamplesPerBlock;
            const std::size_t count = std::min(SamplesPerBlock, to - first);
            SampleBlock block(*ready, request.criteria);
            block.draw(samples.firstReplicate + replicate, first, count);
            block.compute(count);
            const std::size_t sample = replicate * per + first;
            for (std::size_t c = 0; c < criteria; ++c) {
                std::copy_n(block.values(c).begin(), count,
                            samples.outcomes[c].begin() + static_cast<std::ptrdiff_t>(sample));
                for (std::size_t i = 0; i < count; ++i)
                    if (block.misses(c, i))
                        samples.missed[sample + i] |= static_cast<std::uint16_t>(1U << c);
            }
            for (std::size_t i = 0; i < count; ++i)
                if (!block.isComputed(i)) samples.missed[sample + i] = Samples::NotComputed;
            done[b] = 1;
        });
        const auto broken = std::find(done.begin(), done.end(), 0);
        if (broken != done.end()) {
            samples.stopped = true;
            const auto whole = static_cast<std::size_t>(broken - done.begin()) / blocks;
            if (from > 0)
                shrink(samples, samples.replicates, from);
            else if (whole > 0)
                shrink(samples, whole, to);
            else
                return Fault{"Stopped before anything was computed", ""};
            return samples;
        }
        from = to;
        if (request.halfWidth && part.n == 1 && to < per &&
            areNarrow(samples, criteria, to, per, *request.halfWidth)) {
            shrink(samples, samples.replicates, to);
            break;
        }
    }
    return samples;
}

Result<Samples> joinSamples(std::vector<Samples> parts, const UncertaintyRequest& request) {
    const auto per = static_cast<std::size_t>(request.plan.perReplicate());
    std::sort(parts.begin(), parts.end(), [](const Samples& a, const Samples& b) {
        return a.firstReplicate < b.firstReplicate;
    });
    Samples all;
    all.perReplicate = per;
    all.outcomes.resize(request.criteria.size());
    for (Samples& part : parts) {
        if (part.perReplicate != per || part.outcomes.size() != request.criteria.size())
            return Fault{"A part belongs to another study", ""};
        if (part.firstReplicate != all.replicates)
            return Fault{part.firstReplicate < all.replicates ? "A part comes twice"
                                                              : "A part is missing",
                         ""};
        for (std::size_t c = 0; c < all.outcomes.size(); ++c)
            all.outcomes[c].insert(all.outcomes[c].end(), part.outcomes[c].begin(),
                                   part.outcomes[c].end());
        all.missed.insert(all.missed.end(), part.missed.begin(), part.missed.end());
        all.replicates += part.replicates;
        part = {};
    }
    if (all.replicates != request.plan.replicates) return Fault{"A part is missing", ""};
    if (!request.halfWidth) return all;
    for (const std::size_t points : sizesOf(request.plan))
        if (points < per && areNarrow(all, all.outcomes.size(), points, per, *request.halfWidth)) {
            shrink(all, all.replicates, points);
            break;
        }
    return all;
}

Result<Uncertainty> uncertainty(const project::ProjectCase& base, const UncertaintyRequest& request,
                                int RoundTELVOSF, unsigned threads, std::stop_token stop) {
    auto samples = drawSamples(base, request, {}, RoundTELVOSF, threads, std::move(stop));
    if (!samples) return samples.fault();
    return assess(base, request, std::move(*samples), RoundTELVOSF);
}

double Uncertainty::joint(std::size_t a, std::size_t b) const {
    std::uint64_t both = 0, all = 0;
    for (std::size_t mask = 0; mask < byMask.size(); ++mask) {
        all += byMask[mask];
        if ((mask >> a & 1) != 0 && (mask >> b & 1) != 0) both += byMask[mask];
    }
    return static_cast<double>(both) / static_cast<double>(all);
}

std::vector<double> Uncertainty::inputs(std::size_t sample) const {
    std::vector<double> values(sampler->inputs().size());
    std::vector<double*> out;
    for (double& value : values)
        out.push_back(&value);
    sampler->block(sample / samples.perReplicate, sample % samples.perReplicate, 1, out);
    return values;
}

std::vector<double> Uncertainty::variables(std::size_t sample) const {
    const std::vector<double> drawn = inputs(sample);
    std::vector<double> values;
    for (const DrawnColumn& column : drawnColumns(evaluator->base(), scattered))
        values.push_back(column.of(drawn[column.input]));
    return values;
}

project::ProjectCase Uncertainty::caseOf(std::size_t sample) const {
    return evaluator->caseOf(variables(sample));
}

} // namespace telvo::study
