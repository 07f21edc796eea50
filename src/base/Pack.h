// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/number.h"

#include <cstring>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

/// Several numbers in one register: the number type of batches and of columns of samples.
///
/// A Pack names the instruction set that it is computed with, and everything on it is forced inline:
/// with one name for two sets, an inline function from a source compiled with -mavx2 could be linked
/// into the road of a machine that has no AVX2. A source for a set instantiates rules on the Pack of
/// that set alone, and uses no containers or algorithms of the standard library.
namespace telvo {

// The words of a register: numbers, bit patterns, and truths (all bits set, or none).
template <class Isa>
struct Registers;

/// The instructions that every machine has: SSE2 on x86-64, the compiler's own choice elsewhere.
struct Baseline {};

template <>
struct Registers<Baseline> {
    static constexpr int Lanes = 2;
    using Number = double __attribute__((vector_size(16)));
    using Words = std::int64_t __attribute__((vector_size(16)));
    using Bits = std::uint64_t __attribute__((vector_size(16)));

#if defined(__SSE2__)
    /// Not as the ternary below: without an instruction that blends, g++ 12 fails on it at -O2.
    TELVO_INLINE static Number select(Words yes, Number a, Number b) {
        const auto mask = reinterpret_cast<Number>(yes);
        return _mm_or_pd(_mm_and_pd(mask, a), _mm_andnot_pd(mask, b));
    }
    TELVO_INLINE static Number root(Number x) {
        return _mm_sqrt_pd(x);
    }
    TELVO_INLINE static Number toSingle(Number x) {
        return _mm_cvtps_pd(_mm_cvtpd_ps(x));
    }
#else
    TELVO_INLINE static Number select(Words yes, Number a, Number b) {
        return yes < 0 ? a : b;
    }
    TELVO_INLINE static Number root(Number x) {
        return Number{telvo::root(x[0]), telvo::root(x[1])};
    }
    TELVO_INLINE static Number toSingle(Number x) {
        return Number{telvo::toSingle(x[0]), telvo::toSingle(x[1])};
    }
#endif
};

#if defined(__AVX2__)
/// Only in sources compiled with -mavx2, and only behind a question to the processor.
struct Avx2 {};

template <>
struct Registers<Avx2> {
    static constexpr int Lanes = 4;
    using Number = double __attribute__((vector_size(32)));
    using Words = std::int64_t __attribute__((vector_size(32)));
    using Bits = std::uint64_t __attribute__((vector_size(32)));

    /// In this form g++ makes one blend of it, or an and where a side is the literal 0.
    TELVO_INLINE static Number select(Words yes, Number a, Number b) { return yes < 0 ? a : b; }
    TELVO_INLINE static Number root(Number x) { return _mm256_sqrt_pd(x); }
    TELVO_INLINE static Number toSingle(Number x) { return _mm256_cvtps_pd(_mm256_cvtpd_ps(x)); }
};
#endif

template <class Isa>
struct PackBits;
template <class Isa>
struct Pack;

/// A truth per case. && and || compute both sides.
template <class Isa>
struct Mask {
    using Words = typename Registers<Isa>::Words;
    Words m;

    Mask() = default;
    TELVO_INLINE Mask(bool yes) : m(yes ? ~Words{} : Words{}) {}
    TELVO_INLINE explicit Mask(Words words) : m(words) {}

    TELVO_INLINE friend Mask operator&&(const Mask& a, const Mask& b) { return Mask(a.m & b.m); }
    TELVO_INLINE friend Mask operator||(const Mask& a, const Mask& b) { return Mask(a.m | b.m); }
    TELVO_INLINE friend Mask operator!(const Mask& a) { return Mask(~a.m); }

    /// `bits` in the cases where `yes`, else 0.
    TELVO_INLINE friend PackBits<Isa> bitWhere(const Mask& yes, std::uint64_t bits) {
        return PackBits<Isa>(reinterpret_cast<typename Registers<Isa>::Bits>(yes.m)) &
               PackBits<Isa>(bits);
    }
};

/// The bit pattern of a number, or a set of flags, per case.
template <class Isa>
struct PackBits {
    using Bits = typename Registers<Isa>::Bits;
    Bits u;

    PackBits() = default;
    TELVO_INLINE PackBits(std::uint64_t x) : u(x - Bits{}) {}
    TELVO_INLINE explicit PackBits(Bits bits) : u(bits) {}

    TELVO_INLINE static PackBits load(const std::uint64_t* from) {
        PackBits r;
        std::memcpy(&r.u, from, sizeof r.u);
        return r;
    }
    TELVO_INLINE void store(std::uint64_t* to) const { std::memcpy(to, &u, sizeof u); }

    TELVO_INLINE friend PackBits operator+(const PackBits& a, const PackBits& b) {
        return PackBits(a.u + b.u);
    }
    TELVO_INLINE friend PackBits operator-(const PackBits& a, const PackBits& b) {
        return PackBits(a.u - b.u);
    }
    TELVO_INLINE friend PackBits operator&(const PackBits& a, const PackBits& b) {
        return PackBits(a.u & b.u);
    }
    TELVO_INLINE friend PackBits operator|(const PackBits& a, const PackBits& b) {
        return PackBits(a.u | b.u);
    }
    TELVO_INLINE friend PackBits operator^(const PackBits& a, const PackBits& b) {
        return PackBits(a.u ^ b.u);
    }
    TELVO_INLINE friend PackBits operator<<(const PackBits& a, int n) { return PackBits(a.u << n); }
    TELVO_INLINE friend PackBits operator>>(const PackBits& a, int n) { return PackBits(a.u >> n); }

    TELVO_INLINE friend Pack<Isa> numberOf(const PackBits& x) {
        return Pack<Isa>(reinterpret_cast<typename Registers<Isa>::Number>(x.u));
    }
};

/// A number per case. All functions here are friends found only by their arguments, so that literals
/// in formulas convert: 0.64 + 0.54 * w / h.
template <class Isa>
struct Pack {
    using Number = typename Registers<Isa>::Number;
    using Words = typename Registers<Isa>::Words;
    using Truth = Mask<Isa>;
    using Bits = PackBits<Isa>;
    static constexpr int Lanes = Registers<Isa>::Lanes;
    Number v;

    Pack() = default;
    TELVO_INLINE Pack(double x) : v(x - Number{}) {}
    TELVO_INLINE explicit Pack(Number number) : v(number) {}

    /// The next `Lanes` numbers; no alignment is asked of them.
    TELVO_INLINE static Pack load(const double* from) {
        Pack r;
        std::memcpy(&r.v, from, sizeof r.v);
        return r;
    }
    TELVO_INLINE void store(double* to) const { std::memcpy(to, &v, sizeof v); }

    TELVO_INLINE friend Pack operator+(const Pack& a, const Pack& b) { return Pack(a.v + b.v); }
    TELVO_INLINE friend Pack operator-(const Pack& a, const Pack& b) { return Pack(a.v - b.v); }
    TELVO_INLINE friend Pack operator*(const Pack& a, const Pack& b) { return Pack(a.v * b.v); }
    TELVO_INLINE friend Pack operator/(const Pack& a, const Pack& b) { return Pack(a.v / b.v); }
    TELVO_INLINE friend Pack operator-(const Pack& a) { return Pack(-a.v); }

    TELVO_INLINE friend Truth operator<(const Pack& a, const Pack& b) {
        return Truth(reinterpret_cast<Words>(a.v < b.v));
    }
    TELVO_INLINE friend Truth operator<=(const Pack& a, const Pack& b) {
        return Truth(reinterpret_cast<Words>(a.v <= b.v));
    }
    TELVO_INLINE friend Truth operator>(const Pack& a, const Pack& b) {
        return Truth(reinterpret_cast<Words>(a.v > b.v));
    }
    TELVO_INLINE friend Truth operator>=(const Pack& a, const Pack& b) {
        return Truth(reinterpret_cast<Words>(a.v >= b.v));
    }
    TELVO_INLINE friend Truth operator==(const Pack& a, const Pack& b) {
        return Truth(reinterpret_cast<Words>(a.v == b.v));
    }
    TELVO_INLINE friend Truth operator!=(const Pack& a, const Pack& b) {
        return Truth(reinterpret_cast<Words>(a.v != b.v));
    }

    TELVO_INLINE friend Pack select(const Truth& yes, const Pack& a, const Pack& b) {
        return Pack(Registers<Isa>::select(yes.m, a.v, b.v));
    }
    TELVO_INLINE friend Pack toSingle(const Pack& x) { return Pack(Registers<Isa>::toSingle(x.v)); }
    TELVO_INLINE friend Pack root(const Pack& x) { return Pack(Registers<Isa>::root(x.v)); }
    TELVO_INLINE friend Bits bitsOf(const Pack& x) {
        return Bits(reinterpret_cast<typename Registers<Isa>::Bits>(x.v));
    }
    TELVO_INLINE friend Pack absolute(const Pack& x) {
        return numberOf(bitsOf(x) & Bits(0x7fffffffffffffffU));
    }
};

} // namespace telvo
