// SPDX-License-Identifier: GPL-3.0-or-later
#include "sampling/columnKernel.h"

namespace telvo::sampling {

ColumnWork avx2Columns() {
    return {[](double* values, std::size_t count) { scoresOn<Avx2>(values, count); },
            [](double* values, std::size_t count, double a, double b) {
                exponentialsOn<Avx2>(values, count, a, b);
            },
            [](double* const* columns, std::size_t number, std::size_t count,
               const double* factors) { sumOn<Avx2>(columns, number, count, factors); }};
}

} // namespace telvo::sampling
