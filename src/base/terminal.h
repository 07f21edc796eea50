// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdio>
#include <string>

namespace telvo {

/// Whether someone may read along what is written there.
bool isTerminal(std::FILE* stream);

/// A stream that hands on bytes as they are, where the system would change the ends of lines.
void setBinary(std::FILE* stream);

/// What leaves a line of the terminal empty that has a short text, and begins it anew.
inline std::string clearedLine() {
    return "\r" + std::string(60, ' ') + "\r";
}

} // namespace telvo
