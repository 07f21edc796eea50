// SPDX-License-Identifier: GPL-3.0-or-later
#include "sampling/Sampler.h"

#include "base/elementary.h"
#include "sampling/columns.h"
#include "sampling/special.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <set>
#include <utility>

namespace telvo::sampling {

namespace {

constexpr std::size_t MostReplicates = 1024;

} // namespace

/// The normal distribution function from a table of its value, slope and curvature, a quintic between
/// each two knots: within 1e-15, and as monotone as numbers are.
struct Sampler::Phi {
    static constexpr int PerUnit = 64;
    static constexpr int End = 9;
    static constexpr std::size_t Count = 2 * End * PerUnit + 1;

    struct Knot {
        double value, slope, bend; ///< per step and per step squared
    };
    std::array<Knot, Count> knots;

    Phi() : knots() {
        for (std::size_t k = 0; k < Count; ++k) {
            const double z = static_cast<double>(k) / PerUnit - End;
            const double density = exponential(-z * z / 2) / 2.5066282746310002;
            knots[k] = {normalCdf(z), density / PerUnit, -z * density / (PerUnit * PerUnit)};
        }
    }
    /// Of z up to 0; above it is better asked for from the other side.
    double below(double z) const {
        const double place = std::max((z + End) * PerUnit, 0.0);
        const auto k = static_cast<std::size_t>(place);
        const double t = place - static_cast<double>(k);
        const Knot &a = knots[k], &b = knots[k + 1];
        // Hermite's quintic in powers of t.
        const double rise = b.value - a.value - a.slope - a.bend / 2;
        const double turn = b.slope - a.slope - a.bend;
        const double bend = b.bend - a.bend;
        const double c3 = 10 * rise - 4 * turn + bend / 2;
        const double c4 = -15 * rise + 7 * turn - bend;
        const double c5 = 6 * rise - 3 * turn + bend / 2;
        return a.value + t * (a.slope + t * (a.bend / 2 + t * (c3 + t * (c4 + t * c5))));
    }
};

Result<Sampler> Sampler::prepare(std::vector<Scattered> inputs, const std::optional<Matrix>& ranks,
                                 const Plan& plan) {
    if (inputs.empty()) return Fault{"No input scatters", ""};
    if (plan.replicates < 1 || plan.replicates > MostReplicates)
        return Fault{"A study takes 1 to 1024 replicates", ""};
    if (plan.bits < 0 || plan.bits > MostSobolBits)
        return Fault{"A replicate has at most 1,048,576 samples", ""};
    std::set<std::string> names;
    std::set<std::size_t> dimensions;
    for (const Scattered& input : inputs) {
        if (!names.insert(input.name).second)
            return Fault{"An input scatters twice: " + input.name, input.name};
        if (input.dimension >= SobolDimensions || !dimensions.insert(input.dimension).second)
            return Fault{"No points are left for " + input.name, input.name};
    }
    Sampler sampler;
    sampler.m_plan = plan;
    if (ranks) {
        auto correlation = sampling::correlationOf(*ranks);
        if (!correlation) return correlation.fault();
        if (correlation->used.order() != inputs.size())
            return Fault{"Correlations have to be of all inputs that scatter", ""};
        sampler.m_correlation = std::move(*correlation);
    }
    static const std::shared_ptr<const Phi> phi = std::make_shared<const Phi>();
    sampler.m_phi = phi;
    for (std::size_t r = 0; r < plan.replicates; ++r)
        for (const Scattered& input : inputs) {
            const Stream stream{plan.seed, numberOfName(input.name), r};
            sampler.m_places.push_back({SobolCoordinate(input.dimension, stream), stream, {}});
        }
    sampler.m_inputs = std::move(inputs);
    if (plan.method == Method::LatinHypercube) sampler.orderCells();
    return sampler;
}

/// Which cell of a Latin hypercube each sample is in: a permutation by R. A. Fisher and F. Yates, or
/// that of the correlated scores (R. L. Iman, W. J. Conover 1982), so that every cell is met once.
void Sampler::orderCells() {
    const auto n = static_cast<std::size_t>(m_plan.perReplicate());
    for (Place& place : m_places) {
        place.order.resize(n);
        std::iota(place.order.begin(), place.order.end(), std::uint32_t{0});
        for (std::size_t i = n - 1; i > 0; --i) {
            __extension__ using Wide = unsigned __int128;
            const std::uint64_t word = place.stream.word(Purpose::Permutation, i);
            const auto other = static_cast<std::size_t>(Wide{word} * (i + 1) >> 64);
            std::swap(place.order[i], place.order[other]);
        }
    }
    if (!m_correlation) return;
    for (std::size_t r = 0; r < m_plan.replicates; ++r) {
        std::vector<std::vector<double>> drawn(m_inputs.size(), std::vector<double>(n));
        std::vector<double*> out;
        for (auto& column : drawn)
            out.push_back(column.data());
        scores(r, 0, n, out);
        for (std::size_t j = 0; j < m_inputs.size(); ++j) {
            std::vector<std::uint32_t> byScore(n);
            std::iota(byScore.begin(), byScore.end(), std::uint32_t{0});
            std::stable_sort(byScore.begin(), byScore.end(), [&](std::uint32_t a, std::uint32_t b) {
                return drawn[j][a] < drawn[j][b];
            });
            std::vector<std::uint32_t>& order = m_places[r * m_inputs.size() + j].order;
            for (std::size_t rank = 0; rank < n; ++rank)
                order[byScore[rank]] = static_cast<std::uint32_t>(rank);
        }
    }
}

void Sampler::uniform(const Place& place, std::uint64_t from, std::size_t count,
                      double* out) const {
    switch (m_plan.method) {
    case Method::Sobol: {
        std::uint64_t bits = place.coordinate.bits(from);
        for (std::size_t i = 0; i < count; ++i) {
            out[i] = SobolCoordinate::number(bits);
            bits = place.coordinate.next(bits, from + i);
        }
        return;
    }
    case Method::MonteCarlo:
        for (std::size_t i = 0; i < count;) {
            const Words words = place.stream.words(Purpose::Samples, (from + i) / 4);
            for (std::size_t w = (from + i) % 4; w < 4 && i < count; ++w, ++i)
                out[i] = between0and1(words[w]);
        }
        return;
    case Method::LatinHypercube: {
        const auto cells = static_cast<double>(m_plan.perReplicate());
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint64_t word = place.stream.word(Purpose::Samples, from + i);
            const auto cell = static_cast<double>(place.order[static_cast<std::size_t>(from + i)]);
            out[i] = std::clamp((cell + between0and1(word)) / cells, 0x1p-53, 1 - 0x1p-53);
        }
        return;
    }
    }
}

void Sampler::scores(std::size_t replicate, std::uint64_t from, std::size_t count,
                     std::span<double* const> out) const {
    const std::size_t n = m_inputs.size();
    for (std::size_t j = 0; j < n; ++j) {
        uniform(place(replicate, j), from, count, out[j]);
        toScores(out[j], count);
    }
    if (!m_correlation) return;
    const Matrix& lower = m_correlation->lower;
    for (std::size_t j = n; j-- > 0;) // from the last: each needs those before it as they are
        toSum(out.first(j + 1), count, lower.row(j));
}

void Sampler::ofScores(std::size_t count, std::span<double* const> columns) const {
    for (std::size_t j = 0; j < m_inputs.size(); ++j) {
        double* const column = columns[j];
        const Distribution& distribution = m_inputs[j].distribution;
        if (distribution.takesScores()) {
            distribution.ofScores(column, count);
            continue;
        }
        for (std::size_t i = 0; i < count; ++i) {
            const double z = column[i];
            const double below = m_phi->below(-std::abs(z));
            column[i] =
                z <= 0 ? distribution.of(below, 1 - below) : distribution.of(1 - below, below);
        }
    }
}

void Sampler::block(std::size_t replicate, std::uint64_t from, std::size_t count,
                    std::span<double* const> out) const {
    if (m_correlation && m_plan.method != Method::LatinHypercube) {
        scores(replicate, from, count, out);
        return ofScores(count, out);
    }
    for (std::size_t j = 0; j < m_inputs.size(); ++j) {
        double* const column = out[j];
        const Distribution& distribution = m_inputs[j].distribution;
        uniform(place(replicate, j), from, count, column);
        if (distribution.takesScores()) {
            toScores(column, count);
            distribution.ofScores(column, count);
            continue;
        }
        for (std::size_t i = 0; i < count; ++i)
            column[i] = distribution.at(column[i]);
    }
}

} // namespace telvo::sampling
