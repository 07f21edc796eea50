// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Pack.h"
#include "batch/packOperations.h"

namespace telvo::batch {

void packOperationAvx2(int operation, const double* a, const double* b, double* out) {
    using Number = Pack<Avx2>;
    packOperation(operation, Number::load(a), Number::load(b)).store(out);
}

} // namespace telvo::batch
