// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Frame.h"
#include "project/inputFields.h"

#include <cstddef>
#include <cstdint>

/// What a batch hands to the code of an instruction set: plain pointers and numbers, nothing whose
/// functions two sets could share.
namespace telvo::batch {

/// How much of a run is asked for; each set of quantities has code of its own.
enum class Wanted {
    Factors,   // both factors of the panel
    Study,     // and of barriers and remnants, the transfers, the arch factor, the flags
    Everything // every quantity
};

inline constexpr std::size_t MostInputs = project::NumericInputCount;
/// Numbers of the flat record.
inline constexpr std::size_t MostOutputs = 256;

/// A limit of an input that is to be looked at case by case.
struct Limit {
    enum Kind { Within, Above, AboveOther, UpToOther };
    Kind kind = Within;
    project::FieldId field, other;
    double low = 0, high = 0;
};

struct Columns {
    engine::Frame frame;
    int entries = 2;
    std::int16_t AMZ = 1, Arch = 1;
    int rounding = 0;            // of the factors that the flags look at
    bool breadthFollows = false; // automatic values follow depth and distances, as in the form
    bool archFactorFollows = false;
    bool anglesVary = false;

    project::FieldId fields[MostInputs]; // project::NumericInputs
    double uniform[MostInputs] = {};     // their numbers where they do not vary
    std::size_t inputs = 0;              // columns that vary
    std::size_t places[MostInputs] = {}; // of the columns
    const double* in[MostInputs] = {};   // of the columns
    bool single[MostInputs] = {};        // the column is held in single precision

    Limit limits[2 * MostInputs + 8] = {};
    std::size_t limitCount = 0;

    std::size_t outputs = 0;
    std::size_t slots[MostOutputs] = {}; // of the columns, in the order of the quantities
    double* out[MostOutputs] = {};
    std::uint16_t* flags = nullptr; // nullptr: not asked for
    std::uint8_t* status = nullptr; // 1: the case has results
};

/// Cases `from` to before `to`. Numbers and flags of a case that is not computed mean nothing yet; bit 2
/// of a status asks for the road of one case.
void computeBaseline(const Columns& columns, Wanted wanted, std::size_t from, std::size_t to);
/// Only where the processor has AVX2.
void computeAvx2(const Columns& columns, Wanted wanted, std::size_t from, std::size_t to);

} // namespace telvo::batch
