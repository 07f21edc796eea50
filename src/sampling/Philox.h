// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

/// Random bits that are a function of where they are wanted: no order, no thread and no other input
/// moves a sample.
namespace telvo::sampling {

using Words = std::array<std::uint64_t, 4>;
using Key = std::array<std::uint64_t, 2>;

/// Philox4x64 with 10 rounds: J. K. Salmon, M. A. Moraes, R. O. Dror, D. E. Shaw, Parallel random
/// numbers: as easy as 1, 2, 3 (2011).
inline Words philox(Words counter, Key key) {
    __extension__ using Wide = unsigned __int128;
    for (int round = 0; round < 10; ++round) {
        const Wide a = Wide{0xD2E7470EE14C6C93U} * counter[0];
        const Wide b = Wide{0xCA5A826395121157U} * counter[2];
        counter = {static_cast<std::uint64_t>(b >> 64) ^ counter[1] ^ key[0],
                   static_cast<std::uint64_t>(b),
                   static_cast<std::uint64_t>(a >> 64) ^ counter[3] ^ key[1],
                   static_cast<std::uint64_t>(a)};
        key[0] += 0x9E3779B97F4A7C15U;
        key[1] += 0xBB67AE8584CAA73BU;
    }
    return counter;
}

/// What random bits are for; a part of the key, so that no two uses share any.
enum class Purpose : std::uint64_t {
    Samples = 1,
    Scramble = 2,
    Shift = 3,
    Permutation = 4,
    Order = 5
};

/// A number that belongs to a name for good (FNV-1a).
constexpr std::uint64_t numberOfName(std::string_view name) {
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char c : name) {
        hash ^= static_cast<unsigned char>(c);
        hash *= 0x100000001b3U;
    }
    return hash;
}

/// The random bits of one input in one replicate.
struct Stream {
    std::uint64_t seed = 1;
    std::uint64_t input = 0; ///< numberOfName() of the input's own name
    std::uint64_t replicate = 0;

    /// Given: i  from 0; each gives four words
    Words words(Purpose purpose, std::uint64_t i) const {
        return philox({i, input, replicate, 0}, {seed, static_cast<std::uint64_t>(purpose)});
    }
    std::uint64_t word(Purpose purpose, std::uint64_t i) const {
        return words(purpose, i / 4)[i % 4];
    }
};

/// A number between 0 and 1, neither of which it reaches; 1 - u is exact as well.
constexpr double between0and1(std::uint64_t word) {
    return (static_cast<double>(word >> 12) + 0.5) * 0x1p-52;
}

} // namespace telvo::sampling
