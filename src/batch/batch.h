// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "batch/columns.h"
#include "project/inputFields.h"
#include "project/ProjectInput.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Many panels at once: a base case, columns of inputs that vary, columns of quantities asked for.
/// Every number is bit for bit what one case alone gives, whatever the instruction set.
namespace telvo::batch {

enum class InstructionSet { OneByOne, Baseline, Avx2 };

/// The best one that this processor has.
InstructionSet bestInstructionSet();

struct Options {
    int RoundTELVOSF = 0;         ///< of the factors that the flags look at
    int previousAnalysisCase = 1; ///< for an `Anal` out of range
    /// The breadth and the arch factor of the record follow where they are marked automatic and
    /// hang on an input that varies, as in the parameter form; not where they are columns of their
    /// own.
    bool automaticValuesFollow = false;
    InstructionSet instructions = bestInstructionSet();
};

/// What became of a case.
enum class Status : std::uint8_t { NotComputed = 0, Computed = 1 };

/// A batch ready to run: names are looked up and what does not vary is settled once. Constant
/// afterwards, so that threads may share it.
class Batch {
  public:
    /// Given:  inputs      the numbers that vary, of project::NumericInputs, each once
    ///         quantities  names as results have them: "TELVOSF.retreat", "PillarArea.3"
    /// Faults: an input that cannot vary or comes twice, a quantity that the case does not have
    static Result<Batch> prepare(const project::ProjectCase& base,
                                 const std::vector<project::FieldId>& inputs,
                                 const std::vector<std::string>& quantities,
                                 const Options& options = {});

    /// Computes `cases` cases without allocating anything. What cannot be computed has the status
    /// NotComputed and zeros: no infinity and no NaN comes out, whatever goes in.
    /// Given: in     one pointer per input, to `cases` numbers each
    ///        out    one pointer per quantity
    ///        flags  bit i of a case is flag i of its warnings; nullptr: not asked for
    void compute(std::size_t cases, std::span<const double* const> in, std::span<double* const> out,
                 std::uint16_t* flags, Status* status) const;

    /// Why a case is not computed, in the words of the road of one case; empty when it is.
    /// Given: values  one number per input
    std::string whyNot(std::span<const double> values) const;

    const std::vector<project::FieldId>& inputs() const { return m_inputs; }
    /// The record of one case of the batch.
    project::ProjectCase caseOf(std::span<const double> values) const;

  private:
    Batch() = default;
    void computeOne(const Columns& columns, std::size_t i) const;
    project::ProjectInput recordOf(std::span<const double> values) const;
    void settleLimits();

    project::ProjectCase m_base;
    std::vector<project::FieldId> m_inputs;
    std::vector<std::size_t> m_order;     ///< of the output columns by slot
    std::vector<std::size_t> m_everySlot; ///< per quantity, among all numbers
    Columns m_columns;
    Wanted m_wanted = Wanted::Factors;
    Options m_options;
    bool m_oneByOne = false; ///< the base is out of the sizes that packs are sure of
};

/// A column of a request.
struct InputColumn {
    project::FieldId field;
    std::span<const double> values;
};
struct OutputColumn {
    std::string quantity;
    std::span<double> values;
};

/// The whole in one call.
/// Faults: what Batch::prepare() finds, and columns of different lengths; nothing runs then
[[nodiscard]] std::optional<Fault>
computeBatch(const project::ProjectCase& base, std::span<const InputColumn> in,
             std::span<const OutputColumn> out, std::span<std::uint16_t> flags,
             std::span<Status> status, const Options& options = {});

/// Names of all numbers of a case with that many pillars, in the order of the results.
std::vector<std::string> quantityNames(int pillars);

} // namespace telvo::batch
