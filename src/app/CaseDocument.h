// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/ProjectInput.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::app {

/// The open case as one value.
struct CaseState {
    project::ProjectCase Project = {};
    project::KeptItems Kept = {}; ///< what a file did not give; empty once the values were accepted
    bool empty = true;            ///< no parameters were entered yet
    bool named = false;           ///< the name is that of a file which a save may replace
};

/// The open case, how it came about and what is on disk: one entry per accepted change, undo and
/// redo among them, and the mark of the saved one. It asks and tells nothing.
class CaseDocument {
  public:
    static constexpr std::size_t MaxEntries = 1000; ///< the oldest go first

    explicit CaseDocument(CaseState state) : m_entries{{std::move(state), {}, true}} {}

    /// Another one of every case that was opened.
    std::size_t number() const { return m_number; }

    const CaseState& state() const { return m_entries[m_position].state; }
    /// Whether nothing of the case would be lost without a save.
    bool isSaved() const { return m_entries[m_position].saved; }

    /// Another case: new, read, imported or recovered. The history begins anew.
    /// Given: bytesOnDisk  of a case that is as its file is
    void open(CaseState state, bool saved, std::optional<std::string> bytesOnDisk = {});
    /// An accepted change of the case, `what` it was in a few words. A state whose case is the same
    /// takes the place of the present one: there is nothing to undo.
    /// Returned: whether the case changed.
    bool change(CaseState next, std::string_view what);
    /// The case was written as it is here, under this name. Entries of a case that was saved under
    /// another name go on under the new one, so that a later save after an undo cannot go to the
    /// file that was left. An unset `bytes`: the file could not be read back.
    void saved(project::ProjectCase asWritten, std::optional<std::string> bytes);

    bool undo();
    bool redo();
    /// What undo() takes back and redo() brings again; empty: nothing.
    std::string_view undoText() const;
    std::string_view redoText() const;

    /// The bytes of the named file as last read or written; nullptr: not known.
    const std::string* bytesOnDisk() const;

  private:
    struct Entry {
        CaseState state;
        std::string what;
        bool saved = false;
    };
    std::vector<Entry> m_entries; ///< never empty
    std::size_t m_position = 0;
    std::size_t m_number = 0;
    std::map<std::string, std::string, std::less<>> m_onDisk; ///< by file name
};

} // namespace telvo::app
