// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace telvo {

/// A file open for reading. Only what is a file is opened: a pipe or a device may never come to an
/// end, and nobody would know what is waited for. A pipe that the caller of the program has opened
/// (/dev/stdin, /dev/fd/3) is taken.
class InputFile {
  public:
    static Result<InputFile> open(const std::string& path);

    InputFile(InputFile&& other) noexcept;
    InputFile& operator=(InputFile&&) = delete;
    ~InputFile();

    /// Bytes that the system says the file has; those of a pipe are not known and told as 0.
    std::uint64_t size() const { return m_size; }

    /// Reads at most `most` bytes; 0 at the end.
    Result<std::size_t> read(char* into, std::size_t most);

  private:
    InputFile() = default;

    std::string m_name; ///< as the caller named it, for messages
    std::uint64_t m_size = 0;
    std::intptr_t m_handle = -1;
};

} // namespace telvo
