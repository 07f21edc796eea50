// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/kernel.h"

namespace telvo::batch {

void computeBaseline(const Columns& columns, Wanted wanted, std::size_t from, std::size_t to) {
    compute<Baseline>(columns, wanted, from, to);
}

} // namespace telvo::batch
