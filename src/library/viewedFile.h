// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// What the text browser shows of a folder and of a file.
namespace telvo::library {

inline constexpr std::size_t MaxViewedBytes = std::size_t{10} << 20; // 10 MB

/// A text file as UTF-8 with LF line ends; what is not valid UTF-8 is taken for Windows-1252.
/// Faults: a missing file, anything but a regular file, one without permission, one above
/// MaxViewedBytes, one that is not text.
Result<std::string> readForView(const std::string& path);

/// A choice of the filter list.
struct BrowseFilter {
    std::string label;    ///< "Project Files (*.TLV)"
    std::string patterns; ///< "*.TLV"
};

/// Project files, those of the sibling program, text, all.
/// Given: extension  of project files; with an empty one they have no filter
std::vector<BrowseFilter> browseFilters(std::string_view extension);

/// The wildcard patterns in a text that was typed: parted by blanks, commas or semicolons; a bare
/// extension such as "dat" or ".dat" is "*.dat". Nothing typed is "*".
std::vector<std::string> typedPatterns(std::string_view typed);

} // namespace telvo::library
