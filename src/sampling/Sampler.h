// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "sampling/correlation.h"
#include "sampling/Distribution.h"
#include "sampling/sobol.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace telvo::sampling {

/// A number that scatters.
struct Scattered {
    std::string name;          ///< its own, which its random bits belong to
    std::size_t dimension = 0; ///< of the Sobol' points, below SobolDimensions; its own, too
    Distribution distribution;
};

enum class Method { Sobol, LatinHypercube, MonteCarlo };

struct Plan {
    Method method = Method::Sobol;
    std::size_t replicates = 16;
    int bits = 13; ///< 2^bits samples per replicate
    std::uint64_t seed = 1;

    std::uint64_t perReplicate() const { return std::uint64_t{1} << bits; }
    std::uint64_t samples() const { return replicates * perReplicate(); }
};

/// Samples of inputs that scatter, each a function of seed, replicate and index alone: blocks may be
/// made in any order, by any number of threads or machines. Constant once it is prepared.
class Sampler {
  public:
    /// Given: ranks  rank correlations in the order of the inputs; nothing: independent
    /// Faults: no input, two of one name or dimension, no replicate, more than 2^20 samples in a
    ///         replicate, correlations that contradict each other
    static Result<Sampler> prepare(std::vector<Scattered> inputs,
                                   const std::optional<Matrix>& ranks, const Plan& plan);

    /// Samples `from` to before `from` + `count` of a replicate.
    /// Given: out  one pointer per input, to `count` numbers each
    void block(std::size_t replicate, std::uint64_t from, std::size_t count,
               std::span<double* const> out) const;

    /// Normal scores of samples with their correlations, and the values that scores mean: what block()
    /// is made of, but for a Latin hypercube.
    void scores(std::size_t replicate, std::uint64_t from, std::size_t count,
                std::span<double* const> out) const;
    void ofScores(std::size_t count, std::span<double* const> columns) const;

    const std::vector<Scattered>& inputs() const { return m_inputs; }
    const Plan& plan() const { return m_plan; }
    /// Nothing where inputs are independent.
    const std::optional<Correlation>& correlation() const { return m_correlation; }

  private:
    struct Phi;
    struct Place { ///< of an input in a replicate
        SobolCoordinate coordinate;
        Stream stream;
        std::vector<std::uint32_t> order; ///< of Latin hypercubes: cell of each sample
    };

    Sampler() = default;
    const Place& place(std::size_t replicate, std::size_t input) const {
        return m_places[replicate * m_inputs.size() + input];
    }
    void uniform(const Place& place, std::uint64_t from, std::size_t count, double* out) const;
    void orderCells();
    std::vector<Scattered> m_inputs;
    Plan m_plan;
    std::optional<Correlation> m_correlation;
    std::vector<Place> m_places;
    std::shared_ptr<const Phi> m_phi; ///< of all that asks for scores
};

} // namespace telvo::sampling
