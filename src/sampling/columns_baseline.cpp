// SPDX-License-Identifier: GPL-3.0-or-later
#include "sampling/columnKernel.h"

namespace telvo::sampling {

ColumnWork baselineColumns() {
    return {[](double* values, std::size_t count) { scoresOn<Baseline>(values, count); },
            [](double* values, std::size_t count, double a, double b) {
                exponentialsOn<Baseline>(values, count, a, b);
            },
            [](double* const* columns, std::size_t number, std::size_t count,
               const double* factors) { sumOn<Baseline>(columns, number, count, factors); }};
}

} // namespace telvo::sampling
