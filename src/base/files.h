// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace telvo {

/// Path named by a UTF-8 text, as users and other programs give it.
std::filesystem::path pathFromUtf8(std::string_view utf8);
std::string utf8FromPath(const std::filesystem::path& path);

/// Largest file that is read into memory.
inline constexpr std::size_t MaxFileBytes = std::size_t{256} << 20;

/// Whole content of a file.
/// Faults: a missing file ("Requested File not found: " and the path), a directory, a file without
/// permission, one larger than MaxFileBytes. `where` is the path.
Result<std::string> readFile(const std::string& path);

/// A file that replaces its target in one step. It is written beside the target under a temporary
/// name and takes the target's place in commit(), after its bytes have reached the disk; until
/// then, and when anything fails, the old file stays whole. Links are followed, the permissions of
/// an existing target are kept. What is not committed is removed on destruction. A target that is
/// no regular file (a terminal, a pipe) is written as it is.
class AtomicFile {
  public:
    static Result<AtomicFile> create(const std::string& path);

    AtomicFile(AtomicFile&& other) noexcept;
    AtomicFile& operator=(AtomicFile&&) = delete;
    ~AtomicFile();

    Status write(std::string_view bytes);
    Status commit();

    /// Ends the writing without waiting for the disk. For thousands of files: close each, then
    /// flush their folder once, then commit() each, which only puts it in place.
    Status close();
    /// Waits until the disk has what was written to the file system of a folder.
    static Status flush(const std::filesystem::path& folder);

    /// Where the bytes are until commit(); empty when the target is written directly.
    const std::filesystem::path& temporaryPath() const { return m_temporary; }

  private:
    AtomicFile() = default;
    Fault fault(std::string_view step) const;
    bool isClosed() const { return m_descriptor < 0; }

    std::string m_name; ///< as the caller named it, for messages
    std::filesystem::path m_target;
    std::filesystem::path m_temporary;
    int m_descriptor = -1;
};

/// Writes `bytes` to the file in one atomic step.
Status writeFile(const std::string& path, std::string_view bytes);

} // namespace telvo
