// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/elementary.h"

namespace telvo::bench {

enum class Elementary { Ln, Sine, Tangent, Exponential, InverseNormal };

template <class N>
TELVO_INLINE N elementary(Elementary function, const N& x) {
    switch (function) {
    case Elementary::Ln:
        return ln(x);
    case Elementary::Sine:
        return sine(x);
    case Elementary::Tangent:
        return tangent(x);
    case Elementary::Exponential:
        return exponential(x);
    case Elementary::InverseNormal:
        return inverseNormal(x);
    }
    return x;
}

/// One loop per function: the switch is not in it.
template <class N, Elementary function>
TELVO_INLINE void elementaryLoop(const double* in, double* out, int count) {
    if constexpr (std::is_same_v<N, double>) {
        for (int i = 0; i < count; ++i) {
            double x = in[i];
            asm volatile("" : "+m"(x)); // one at a time: the compiler makes no packs of them
            out[i] = elementary<N>(function, x);
        }
    } else {
        for (int i = 0; i < count; i += N::Lanes)
            elementary<N>(function, N::load(in + i)).store(out + i);
    }
}

template <class N>
TELVO_INLINE void elementaryLoop(Elementary function, const double* in, double* out, int count) {
    switch (function) {
    case Elementary::Ln:
        return elementaryLoop<N, Elementary::Ln>(in, out, count);
    case Elementary::Sine:
        return elementaryLoop<N, Elementary::Sine>(in, out, count);
    case Elementary::Tangent:
        return elementaryLoop<N, Elementary::Tangent>(in, out, count);
    case Elementary::Exponential:
        return elementaryLoop<N, Elementary::Exponential>(in, out, count);
    case Elementary::InverseNormal:
        return elementaryLoop<N, Elementary::InverseNormal>(in, out, count);
    }
}

void elementaryLoopAvx2(Elementary function, const double* in, double* out, int count);

} // namespace telvo::bench
