// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace telvo {

/// Appends a cell of a table in text: in quotes where it holds the separator, a quote or a line
/// end, or begins or ends with a blank that some readers drop.
void appendCsvCell(std::string& out, std::string_view text, char separator = ',');

} // namespace telvo
