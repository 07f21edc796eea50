// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/codePage.h"

namespace telvo {

std::optional<std::string> inCodePage(std::string_view) {
    return std::nullopt;
}

} // namespace telvo
