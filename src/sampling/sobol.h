// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sampling/Philox.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace telvo::sampling {

inline constexpr std::size_t SobolDimensions = 128;
/// Bits of a coordinate; the first of them make the net, all of them are random once scrambled.
inline constexpr int SobolBits = 52;
/// Most points of a replicate, as a power of two.
inline constexpr int MostSobolBits = 20;

/// One coordinate of the Sobol' sequence in Gray order, plain or scrambled: J. Matousek's random
/// linear scrambling with a digital shift (J. Complexity 14, 1998), which leaves the net a net. Points
/// 0 to 2^m - 1 belong together: none is skipped.
class SobolCoordinate {
  public:
    /// The sequence as it is published.
    /// Given: dimension  from 0 to SobolDimensions - 1
    explicit SobolCoordinate(std::size_t dimension);
    /// Scrambled by the bits of an input in a replicate.
    SobolCoordinate(std::size_t dimension, const Stream& stream);

    /// Bits of point i behind the binary sign, the first one highest.
    std::uint64_t bits(std::uint64_t i) const {
        std::uint64_t gray = i ^ i >> 1, x = m_shift;
        for (std::size_t k = 0; gray != 0; ++k, gray >>= 1)
            if ((gray & 1) != 0) x ^= m_directions[k];
        return x;
    }
    /// The point that follows point i, whose bits are x.
    std::uint64_t next(std::uint64_t x, std::uint64_t i) const {
        return x ^ m_directions[static_cast<std::size_t>(__builtin_ctzll(i + 1))];
    }
    /// A coordinate in the open interval from 0 to 1.
    static double number(std::uint64_t bits) { return (static_cast<double>(bits) + 0.5) * 0x1p-52; }

  private:
    std::array<std::uint64_t, MostSobolBits + 1> m_directions{};
    std::uint64_t m_shift = 0;
};

} // namespace telvo::sampling
