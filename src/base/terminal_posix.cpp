// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/terminal.h"

#include <unistd.h>

namespace telvo {

bool isTerminal(std::FILE* stream) {
    return ::isatty(::fileno(stream)) != 0;
}

void setBinary(std::FILE*) {}

} // namespace telvo
