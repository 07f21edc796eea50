// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/number.h"

namespace telvo {

/// The nearest whole number as formatPattern() with "0" rounds: half up, and what counts as a half
/// is decided by the number's 15 significant decimal digits. 2.4999999999999996, whose digits are
/// 2.50000000000000, is 3.
/// Given: x  0 or more; from 1E15 on, where the pattern would keep 15 digits and fill up with
///           zeros, it stays
template <class N>
TELVO_INLINE N wholeOfDecimals(const N& x) {
    const N nearest = nearestEven(x);
    const N below = nearest - select(nearest > x, N(1), N(0));
    // How far below a half the last of the 15 digits still rounds up; ten times as far per decade.
    constexpr double decades[] = {1e0, 1e1, 1e2, 1e3,  1e4,  1e5,  1e6,
                                  1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13};
    constexpr double slacks[] = {5e-15, 5e-14, 5e-13, 5e-12, 5e-11, 5e-10, 5e-9,
                                 5e-8,  5e-7,  5e-6,  5e-5,  5e-4,  5e-3,  5e-2};
    N slack = 5e-16;
    for (int i = 0; i < 14; ++i)
        slack = select(x >= decades[i], N(slacks[i]), slack);
    const N halfUp = below + select(x - below >= 0.5 - slack, N(1), N(0));
    return select(x < 1e14, halfUp, nearest);
}

} // namespace telvo
