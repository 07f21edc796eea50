// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/questions/uncertainty.h"

#include <cmath>
#include <functional>
#include <memory>
#include <span>
#include <stop_token>
#include <vector>

/// What the studies of uncertainty share: samples as cases, block by block.
namespace telvo::study {

inline constexpr std::size_t SamplesPerBlock = 1024;

/// Does work(i) for every i below `count` on some threads. Returned: nothing was left out.
bool inParallel(std::size_t count, unsigned threads, const std::stop_token& stop,
                const std::function<void(std::size_t)>& work);

/// A number of the evaluator, made of an input that was drawn.
struct DrawnColumn {
    std::size_t input = 0;
    bool asDrawn = true;
    double own = 0, ownOfFirst = 0; ///< of the case, for those that take the error of another one
    bool asRatio = false;

    double of(double drawn) const {
        if (asDrawn) return drawn;
        return asRatio ? own * (drawn / ownOfFirst) : own + (drawn - ownOfFirst);
    }
};

/// A study ready to draw.
struct ReadyToDraw {
    std::shared_ptr<const sampling::Sampler> sampler;
    std::shared_ptr<const Evaluator> evaluator;
    std::vector<DrawnColumn> columns; ///< of the evaluator's first variables
};

/// Given: also  variables that are set otherwise, after those that scatter
Result<ReadyToDraw> readyToDraw(const project::ProjectCase& base, const UncertaintyRequest& request,
                                int RoundTELVOSF, const std::vector<Variable>& also = {});

/// The numbers of the evaluator for inputs that were drawn.
std::vector<DrawnColumn> drawnColumns(const project::ProjectCase& base,
                                      const std::vector<UncertainInput>& inputs);

/// The cases of a block of samples.
class SampleBlock {
  public:
    SampleBlock(const ReadyToDraw& ready, const std::vector<Criterion>& criteria);

    /// As drawn, by input.
    std::vector<double>& drawn(std::size_t j) { return m_drawn[j]; }
    /// Values of what is not drawn, counted from those.
    std::vector<double>& other(std::size_t k) { return m_in[m_ready.columns.size() + k]; }
    bool isComputed(std::size_t i) const { return m_computed[i] != 0; }

    void draw(std::size_t replicate, std::uint64_t from, std::size_t count);
    void compute(std::size_t count);

    /// Value of a criterion's outcome in a sample, and how far it is from its target.
    double value(std::size_t c, std::size_t i) const { return m_out[m_place[c]][i]; }
    double margin(std::size_t c, std::size_t i) const {
        return m_criteria[c].target ? value(c, i) - *m_criteria[c].target
                                    : m_out[m_place[c] + 1][i];
    }
    bool misses(std::size_t c, std::size_t i) const { return missesBy(c, margin(c, i)); }
    /// A barrier that is not there misses nothing.
    bool missesBy(std::size_t c, double margin) const {
        return !std::isnan(margin) && !m_criteria[c].holds(margin);
    }
    const std::vector<double>& values(std::size_t c) const { return m_out[m_place[c]]; }

  private:
    const ReadyToDraw& m_ready;
    const std::vector<Criterion>& m_criteria;
    std::vector<std::size_t> m_place; ///< of each criterion's outcome
    std::vector<std::vector<double>> m_drawn, m_in, m_out;
    std::vector<std::uint8_t> m_computed;
};

/// What a replicate came to.
struct ReplicateCount {
    std::uint64_t computed = 0, misses = 0;
};
/// The share of those that miss, with an interval that holds: of the replicates, or of a count where
/// few miss or few hold.
/// Given: points  of each replicate
sampling::Estimate shareOfReplicates(std::span<const ReplicateCount> counts, std::size_t points,
                                     bool* few = nullptr);
/// Counts of the first points of each replicate.
/// Given: mask    criteria of which one at least is missed
///        stride  from the first point of a replicate to that of the next
std::vector<ReplicateCount> countsOf(const Samples& samples, std::uint16_t mask, std::size_t points,
                                     std::size_t stride);

/// "12.3", "0.0042": a share in percent.
std::string percentText(double share);

} // namespace telvo::study
