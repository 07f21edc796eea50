// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace telvo {

/// What becomes of a file that has the name already.
enum class Existing { Replace, Refuse };

/// A file that takes its place in one step. It is written beside its target under a temporary name
/// and gets the target's name in commit(), after its bytes have reached the disk; until then, and
/// when anything fails, an old file stays whole. What is not committed is removed on destruction
/// and, after removeTemporaryFilesOnSignals(), when a signal ends the program.
///
/// Existing::Refuse holds against other programs, too: of two that write one name at once the
/// second gets a fault. A link that leads nowhere counts as an existing name.
/// Existing::Replace follows links where the system does, and keeps owner, permissions, access list
/// and attributes of the old file; what it cannot keep it tells in remarks(). Where only the file
/// may be written, but no other one put into its folder or in its place, the file is written where
/// it is, and brought back from a copy when that fails.
/// A terminal, a pipe or a device for characters is written as it is.
class AtomicFile {
  public:
    static Result<AtomicFile> create(const std::string& path,
                                     Existing existing = Existing::Replace);

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

    /// What the new file does not have from the old one, as sentences; complete after commit().
    const std::vector<std::string>& remarks() const { return m_remarks; }

  private:
    AtomicFile() = default;
    Fault fault(std::string_view step) const;
    Fault exists() const;
    bool isClosed() const { return m_descriptor < 0; }
    /// Makes and opens the temporary file. Returned: whether there is one, else errno tells why.
    bool openTemporary(const std::filesystem::path& folder, bool secret);
    Status writeInPlace();
    void removeTemporary();

    static constexpr std::size_t NoSlot = static_cast<std::size_t>(-1);

    std::string m_name; ///< as the caller named it, for messages
    std::filesystem::path m_target;
    std::filesystem::path m_temporary;
    std::vector<std::string> m_remarks;
    std::size_t m_slot = NoSlot; ///< of the temporary file among those that a signal removes
    int m_descriptor = -1;
    Existing m_existing = Existing::Replace;
    bool m_inPlace = false; ///< the folder takes no new file
};

} // namespace telvo
