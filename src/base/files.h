// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/AtomicFile.h"
#include "base/Result.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace telvo {

/// Path named by a UTF-8 text, as users and other programs give it.
std::filesystem::path pathFromUtf8(std::string_view utf8);
std::string utf8FromPath(const std::filesystem::path& path);
/// A file name without its folder, whichever way the folder is separated: case files and settings
/// come from other systems, too.
std::string withoutFolder(std::string_view path);

/// Largest file that is read into memory.
inline constexpr std::size_t MaxFileBytes = std::size_t{256} << 20;

/// A larger file is none of settings; every line of it would take room and time.
inline constexpr std::size_t MaxSettingsBytes = std::size_t{1} << 20;

/// Whole content of a file.
/// Faults: a missing file ("Requested File not found: " and the path), a directory, a pipe or
/// device, a file without permission, one larger than `most` bytes. `where` is the path.
Result<std::string> readFile(const std::string& path, std::size_t most = MaxFileBytes);

/// Writes `bytes` to the file in one atomic step, and removes what ended programs left in its
/// folder.
/// Given: remarks  takes what AtomicFile could not keep of an old file; may be null
Status writeFile(const std::string& path, std::string_view bytes,
                 Existing existing = Existing::Replace,
                 std::vector<std::string>* remarks = nullptr);

} // namespace telvo
