// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/codePage.h"

#include <windows.h>

namespace telvo {

std::optional<std::string> inCodePage(std::string_view utf8) {
    const int size = static_cast<int>(utf8.size());
    std::wstring wide(utf8.size(), L'\0');
    const int wideSize =
        ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(), size, wide.data(), size);
    if (wideSize <= 0) return std::nullopt;
    std::string bytes(utf8.size() * 2 + 2, '\0');
    BOOL lost = FALSE;
    const int got =
        ::WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.data(), wideSize, bytes.data(),
                              static_cast<int>(bytes.size()), nullptr, &lost);
    if (got <= 0 || lost) return std::nullopt;
    bytes.resize(static_cast<std::size_t>(got));
    return bytes;
}

} // namespace telvo
