// SPDX-License-Identifier: GPL-3.0-or-later
#include "sampling/sobol.h"

#include "sampling/sobolTable.h"

#include <bit>
#include <cassert>

namespace telvo::sampling {

SobolCoordinate::SobolCoordinate(std::size_t dimension) {
    assert(dimension < SobolDimensions);
    // m[k] of the direction number m[k] / 2^(k+1): P. Bratley and B. L. Fox, ACM TOMS 14 (1988) 88.
    std::array<std::uint64_t, MostSobolBits + 1> m{};
    m.fill(1);
    if (dimension > 0) {
        const SobolRow& row = SobolRows[dimension - 1];
        const auto degree = static_cast<std::size_t>(row.degree);
        for (std::size_t k = 0; k < m.size(); ++k) {
            if (k < degree) {
                m[k] = row.m[k];
                continue;
            }
            m[k] = m[k - degree] ^ m[k - degree] << degree;
            for (std::size_t j = 1; j < degree; ++j)
                if ((row.polynomial >> (degree - j) & 1) != 0) m[k] ^= m[k - j] << j;
        }
    }
    for (std::size_t k = 0; k < m.size(); ++k)
        m_directions[k] = m[k] << (SobolBits - 1 - static_cast<int>(k));
}

SobolCoordinate::SobolCoordinate(std::size_t dimension, const Stream& stream)
    : SobolCoordinate(dimension) {
    // Row r of the matrix gives digit r of the result from the digits up to r; its own digit stays.
    std::array<std::uint64_t, SobolBits> rows{};
    for (std::size_t r = 0; r < rows.size(); ++r) {
        const std::uint64_t digit = std::uint64_t{1} << (SobolBits - 1 - static_cast<int>(r));
        const std::uint64_t above = ~(2 * digit - 1) & ((std::uint64_t{1} << SobolBits) - 1);
        rows[r] = (stream.word(Purpose::Scramble, r) & above) | digit;
    }
    for (std::uint64_t& direction : m_directions) {
        std::uint64_t scrambled = 0;
        for (const std::uint64_t row : rows)
            scrambled =
                scrambled << 1 | static_cast<std::uint64_t>(std::popcount(row & direction) & 1);
        direction = scrambled;
    }
    m_shift = stream.word(Purpose::Shift, 0) >> (64 - SobolBits);
}

} // namespace telvo::sampling
