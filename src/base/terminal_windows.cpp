// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/terminal.h"

#include <fcntl.h>
#include <io.h>

namespace telvo {

bool isTerminal(std::FILE* stream) {
    return _isatty(_fileno(stream)) != 0;
}

void setBinary(std::FILE* stream) {
    _setmode(_fileno(stream), _O_BINARY);
}

} // namespace telvo
