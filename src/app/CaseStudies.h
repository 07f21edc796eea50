// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileDialogs.h"
#include "base/Messages.h"
#include "project/ProjectInput.h"
#include "study/file/StudySettings.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace telvo::app {

/// The studies of the cases that were open since the program started: read from NAME.study beside
/// the file of a case when they are first shown, kept in memory while the program runs, and written
/// only when the user says so. A study file is never overwritten unasked when it is not as it was
/// read, and one that cannot be taken stays as it is.
class CaseStudies {
  public:
    CaseStudies(Messages& messages, FileDialogs& dialogs)
        : m_messages(messages), m_dialogs(dialogs) {}

    /// The case that the program has open.
    struct OpenCase {
        const project::ProjectCase& current;
        std::size_t number = 0; ///< another one of every case that was opened
        bool hasFile = false;
        int RoundTELVOSF = 0;
    };

    /// The case changed, its name, or which one is open. A saved case keeps its studies under its
    /// new name, a converted one has them in its units.
    void follow(const OpenCase& now);
    /// The next case that is opened goes on with the studies of this one.
    void passOn() { m_passesOn = true; }

    /// Reads the study file of the case where that was not done yet; what is wrong is told.
    void load();
    /// Whether the studies of the case are others than those that were asked for last: the fields
    /// of their pages begin anew.
    void renew() { m_renewed = true; }
    bool takeRenewed() { return std::exchange(m_renewed, false); }
    study::StudySettings& settings() { return entry().settings; }
    /// Whether they ask for something that is in no file.
    bool isChanged() const { return isChanged(entry()); }
    /// "panel.study"; empty of a case without a file.
    std::string fileName() const;

    /// Writes the studies of a case that has a file. Returned: whether they are in it now.
    bool save();
    /// Takes the studies of a file that is asked for.
    void open();
    /// Asks about every case whose studies are not saved. Returned: whether the program may end.
    bool mayClose();

  private:
    struct Entry {
        project::ProjectCase current; ///< as it was last
        std::string path;             ///< of the study file; empty: the case has no file
        int RoundTELVOSF = 0;
        study::StudySettings settings;
        study::StudySettings saved;
        std::vector<study::Study> read;   ///< studies as files gave them
        std::optional<std::string> bytes; ///< of the study file, as it was read or written last
        bool loaded = false;
    };

    Entry& entry() { return m_path.empty() ? m_untitled : m_named[m_path]; }
    const Entry& entry() const { return m_path.empty() ? m_untitled : m_named.at(m_path); }
    void begin(Entry entry);
    bool isChanged(const Entry& entry) const;
    bool save(Entry& entry);
    bool mayReplace(const Entry& entry, const std::vector<study::Study>& studies) const;
    std::optional<std::vector<study::Study>> readOrTell(const std::string& path,
                                                        const std::string& bytes);

    Messages& m_messages;
    FileDialogs& m_dialogs;
    std::map<std::string, Entry> m_named; ///< by the path of the study file
    Entry m_untitled;
    std::string m_path; ///< of the case that is open
    std::optional<std::size_t> m_number;
    bool m_passesOn = false;
    bool m_renewed = true;
};

} // namespace telvo::app
