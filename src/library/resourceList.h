// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// The reference documents that the program offers.
namespace telvo::library {

/// Name of the list, in the folder of the documents.
inline constexpr std::string_view ResourceListFile = "Resources.lst";

inline constexpr std::size_t MaxResources = 64;

struct Resource {
    std::string file; ///< name without folder
    std::string title;
    bool operator==(const Resource&) const = default;
};

/// The entries of a list. A line is a file name, ";" and a title; blank lines and lines that begin
/// with "#" are passed over. Files are named without folder, so that a list cannot lead elsewhere.
/// Faults: a line of another shape, a name with a folder, too many entries; `where` has the line.
Result<std::vector<Resource>> readResourceText(std::string_view bytes, std::string_view name);

/// The same of a file.
Result<std::vector<Resource>> readResourceList(const std::string& path);

/// Whether a document is a table that a spreadsheet program opens, by its extension.
bool isTable(std::string_view file);

} // namespace telvo::library
