// SPDX-License-Identifier: GPL-3.0-or-later
#include "sampling/columns.h"

#include "sampling/columnKernel.h"

namespace telvo::sampling {

namespace {

const ColumnWork& columnWork() {
    static const ColumnWork work = [] {
#if defined(TELVO_SAMPLING_AVX2)
        if (__builtin_cpu_supports("avx2")) return avx2Columns();
#endif
        return baselineColumns();
    }();
    return work;
}

} // namespace

void toScores(double* values, std::size_t count) {
    columnWork().scores(values, count);
}

void toExponentials(double* values, std::size_t count, double a, double b) {
    columnWork().exponentials(values, count, a, b);
}

void toSum(std::span<double* const> columns, std::size_t count, const double* factors) {
    columnWork().sum(columns.data(), columns.size(), count, factors);
}

} // namespace telvo::sampling
