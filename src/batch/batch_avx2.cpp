// SPDX-License-Identifier: GPL-3.0-or-later
// Compiled with -mavx2.
#include "batch/kernel.h"

namespace telvo::batch {

void computeAvx2(const Columns& columns, Wanted wanted, std::size_t from, std::size_t to) {
    compute<Avx2>(columns, wanted, from, to);
}

} // namespace telvo::batch
