// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/csv.h"

#include "base/text.h"

namespace telvo {

void appendCsvCell(std::string& out, std::string_view text, char separator) {
    const char special[] = {separator, '"', '\r', '\n'};
    if (text.find_first_of(std::string_view(special, 4)) == std::string_view::npos &&
        trimmed(text).size() == text.size()) {
        out += text;
        return;
    }
    out += '"';
    for (const char c : text) {
        if (c == '"') out += '"';
        out += c;
    }
    out += '"';
}

} // namespace telvo
