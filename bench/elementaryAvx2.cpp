// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Pack.h"
#include "elementaryLoops.h"

namespace telvo::bench {

void elementaryLoopAvx2(Elementary function, const double* in, double* out, int count) {
    elementaryLoop<Pack<Avx2>>(function, in, out, count);
}

} // namespace telvo::bench
