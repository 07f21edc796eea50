// SPDX-License-Identifier: GPL-3.0-or-later
#include "sampling/shapley.h"

#include <bit>
#include <cmath>
#include <map>
#include <numeric>
#include <optional>
#include <utility>

namespace telvo::sampling {

namespace {

constexpr std::size_t RandomOrders = 48;

/// Samples in which some inputs are drawn again, given the others.
class Redrawn {
  public:
    explicit Redrawn(const ShapleySample& sample) : m_sample(sample) {}

    /// Given: mask  inputs that are drawn again
    /// Faults: correlations that are not positive definite
    Result<std::vector<std::vector<double>>> scores(std::uint64_t mask) const {
        const std::size_t n = m_sample.correlation.order();
        // The kept ones first: the triangle then has the redrawn ones given these.
        std::vector<std::size_t> order;
        for (const bool redrawn : {false, true})
            for (std::size_t j = 0; j < n; ++j)
                if ((mask >> j & 1) == (redrawn ? 1U : 0U)) order.push_back(j);
        Matrix permuted(n);
        for (std::size_t a = 0; a < n; ++a)
            for (std::size_t b = 0; b < n; ++b)
                permuted.at(a, b) = m_sample.correlation.at(order[a], order[b]);
        const auto lower = cholesky(permuted);
        if (!lower) return lower.fault();
        std::vector<std::vector<double>> all(m_sample.base.begin(), m_sample.base.end());
        const std::size_t kept = n - static_cast<std::size_t>(std::popcount(mask));
        std::vector<double> e(n);
        for (std::size_t i = 0; i < all.front().size(); ++i)
            for (std::size_t a = 0; a < n; ++a) {
                double sum = 0;
                for (std::size_t b = 0; b < a; ++b)
                    sum += lower->at(a, b) * e[b];
                const std::size_t j = order[a];
                if (a < kept) {
                    e[a] = (m_sample.base[j][i] - sum) / lower->at(a, a);
                } else {
                    e[a] = m_sample.fresh[j][i];
                    all[j][i] = sum + lower->at(a, a) * e[a];
                }
            }
        return all;
    }

  private:
    const ShapleySample& m_sample;
};

} // namespace

std::size_t shapleySubsets(std::size_t inputs) {
    return inputs <= MostInputsExact ? (std::size_t{1} << inputs) - 1 : RandomOrders * inputs;
}

Result<std::vector<double>> shapleyEffects(const ShapleySample& sample,
                                           const OutcomesOf& outcomesOf, const Stream& stream) {
    const std::size_t n = sample.correlation.order();
    const Redrawn redrawn(sample);
    std::map<std::uint64_t, double> known{{0, 0.0}};
    std::vector<double> outcomes(sample.outcomes.size());
    std::optional<Fault> fault;
    const auto partOf = [&](std::uint64_t mask) {
        if (const auto at = known.find(mask); at != known.end()) return at->second;
        const auto scores = redrawn.scores(mask);
        if (!scores) {
            fault = scores.fault();
            return 0.0;
        }
        outcomesOf(*scores, outcomes);
        double squares = 0;
        std::size_t count = 0;
        for (std::size_t i = 0; i < outcomes.size(); ++i) {
            const double by = outcomes[i] - sample.outcomes[i];
            if (std::isnan(by)) continue;
            squares += by * by;
            ++count;
        }
        const double part = count > 0 ? squares / (2 * static_cast<double>(count)) : 0;
        known.emplace(mask, part);
        return part;
    };
    std::vector<double> effects(n);
    const std::uint64_t all = (std::uint64_t{1} << n) - 1;
    if (n <= MostInputsExact) {
        // Each subset without an input counts as often as orders begin with it.
        std::vector<double> weight(n); // by size
        double ways = 1;               // (n - 1 over size)
        for (std::size_t size = 0; size < n; ++size) {
            weight[size] = 1 / (static_cast<double>(n) * ways);
            ways = ways * static_cast<double>(n - 1 - size) / static_cast<double>(size + 1);
        }
        for (std::size_t j = 0; j < n; ++j)
            for (std::uint64_t mask = 0; mask <= all; ++mask)
                if ((mask >> j & 1) == 0)
                    effects[j] += weight[static_cast<std::size_t>(std::popcount(mask))] *
                                  (partOf(mask | std::uint64_t{1} << j) - partOf(mask));
    } else {
        std::vector<std::size_t> order(n);
        for (std::size_t o = 0; o < RandomOrders; ++o) {
            std::iota(order.begin(), order.end(), std::size_t{0});
            for (std::size_t i = n - 1; i > 0; --i) {
                __extension__ using Wide = unsigned __int128;
                const std::uint64_t word = stream.word(Purpose::Order, o * n + i);
                std::swap(order[i], order[static_cast<std::size_t>(Wide{word} * (i + 1) >> 64)]);
            }
            std::uint64_t mask = 0;
            for (const std::size_t j : order) {
                const double before = partOf(mask);
                mask |= std::uint64_t{1} << j;
                effects[j] += (partOf(mask) - before) / double{RandomOrders};
            }
        }
    }
    if (fault) return *fault;
    const double whole = partOf(all);
    for (double& effect : effects)
        effect = whole > 0 ? effect / whole : 0;
    return effects;
}

} // namespace telvo::sampling
