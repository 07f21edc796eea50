// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "batch/batch.h"
#include "study/Outcome.h"
#include "study/tally.h"
#include "study/Variable.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::study {

/// Many cases of one panel, each with its own values of the variables, read by outcomes. Values and
/// refusals are those of one case alone; automatic values follow the variables as in the parameter
/// form. Constant once it is prepared, so that threads may share it.
class Evaluator {
  public:
    /// Faults: variables that share an input, an outcome that the case does not have
    static Result<Evaluator> prepare(const project::ProjectCase& base,
                                     std::vector<Variable> variables, std::vector<Outcome> outcomes,
                                     int RoundTELVOSF = 0);

    /// Given: in        one pointer per variable, to `cases` numbers each
    ///        out       one pointer per outcome; NaN where the case cannot be computed or has no
    ///                  such outcome, as a barrier of width 0 has no factor
    ///        flags     bit i of a case is flag i of its warnings; nullptr: not asked for
    ///        computed  1 or 0 per case
    void compute(std::size_t cases, std::span<const double* const> in, std::span<double* const> out,
                 std::uint16_t* flags, std::uint8_t* computed) const;

    /// Why there is no result; empty where there is one.
    /// Given: values  one number per variable
    std::string whyNot(std::span<const double> values) const;
    /// The case of a row, as it is opened.
    project::ProjectCase caseOf(std::span<const double> values) const;

    const std::vector<Variable>& variables() const { return m_variables; }
    const std::vector<Outcome>& outcomes() const { return m_outcomes; }
    const project::ProjectCase& base() const { return m_base; }
    int RoundTELVOSF() const { return m_rounding; }

  private:
    explicit Evaluator(batch::Batch batch) : m_batch(std::move(batch)) {}
    std::optional<std::string_view> leftOut(std::span<const double> values) const;
    double suggested(std::span<const double> values, std::span<const double> barrierFactors) const;
    void spread(std::span<const double> values, std::span<double> inputs) const;
    void block(std::size_t from, std::size_t cases, std::span<const double* const> in,
               std::span<double* const> out, std::uint16_t* flags, std::uint8_t* computed) const;

    batch::Batch m_batch;
    project::ProjectCase m_base;
    std::vector<Variable> m_variables;
    std::vector<Outcome> m_outcomes;
    std::vector<std::size_t> m_variableOf; ///< of each input of the batch
    engine::Frame m_frame;
    std::size_t m_quantities = 0;
    int m_rounding = 0;
    bool m_asksForSuggested = false;
};

} // namespace telvo::study
