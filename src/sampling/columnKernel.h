// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/elementary.h"
#include "base/Pack.h"

#include <cstddef>

/// Compiled once per instruction set, all of it forced inline (base/Pack.h).
namespace telvo::sampling {

struct ColumnWork {
    void (*scores)(double*, std::size_t);
    void (*exponentials)(double*, std::size_t, double, double);
    void (*sum)(double* const*, std::size_t, std::size_t, const double*);
};

/// What these machines have; the wide one only where the processor has it.
ColumnWork baselineColumns();
ColumnWork avx2Columns();

/// Calls work(number) for every number of a column; the last pack is filled up with halves.
template <class Isa, class Work>
TELVO_INLINE void eachPack(double* values, std::size_t count, Work work) {
    constexpr std::size_t lanes = Pack<Isa>::Lanes;
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes)
        work(Pack<Isa>::load(values + i)).store(values + i);
    if (i == count) return;
    double rest[lanes];
    for (std::size_t k = 0; k < lanes; ++k)
        rest[k] = i + k < count ? values[i + k] : 0.5;
    work(Pack<Isa>::load(rest)).store(rest);
    for (std::size_t k = 0; i + k < count; ++k)
        values[i + k] = rest[k];
}

template <class Isa>
TELVO_INLINE void scoresOn(double* values, std::size_t count) {
    eachPack<Isa>(
        values, count,
        [](const Pack<Isa>& u) __attribute__((always_inline)) { return inverseNormal(u); });
}

template <class Isa>
TELVO_INLINE void exponentialsOn(double* values, std::size_t count, double a, double b) {
    eachPack<Isa>(
        values, count, [ a, b ](const Pack<Isa>& z) __attribute__((always_inline)) {
            return exponential(a + b * z);
        });
}

template <class Isa>
TELVO_INLINE void sumOn(double* const* columns, std::size_t number, std::size_t count,
                        const double* factors) {
    constexpr std::size_t lanes = Pack<Isa>::Lanes;
    double* const last = columns[number - 1];
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        Pack<Isa> sum = factors[0] * Pack<Isa>::load(columns[0] + i);
        for (std::size_t k = 1; k < number; ++k)
            sum = sum + factors[k] * Pack<Isa>::load(columns[k] + i);
        sum.store(last + i);
    }
    for (; i < count; ++i) {
        double sum = factors[0] * columns[0][i];
        for (std::size_t k = 1; k < number; ++k)
            sum = sum + factors[k] * columns[k][i];
        last[i] = sum;
    }
}

} // namespace telvo::sampling
