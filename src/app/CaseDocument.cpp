// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CaseDocument.h"

#include <utility>

namespace telvo::app {

void CaseDocument::open(CaseState state, bool saved, std::optional<std::string> bytesOnDisk) {
    m_onDisk.clear();
    if (bytesOnDisk) m_onDisk[state.Project.FileName] = std::move(*bytesOnDisk);
    m_entries.clear();
    m_entries.push_back({std::move(state), {}, saved});
    m_position = 0;
    ++m_number;
}

bool CaseDocument::change(CaseState next, std::string_view what) {
    if (next.Project == state().Project) {
        m_entries[m_position].state = std::move(next);
        return false;
    }
    m_entries.resize(m_position + 1); // what was undone is gone
    m_entries.push_back({std::move(next), std::string(what), false});
    if (m_entries.size() > MaxEntries) m_entries.erase(m_entries.begin());
    m_position = m_entries.size() - 1;
    return true;
}

void CaseDocument::saved(project::ProjectCase asWritten, std::optional<std::string> bytes) {
    const std::string before = state().Project.FileName;
    const bool wasNamed = state().named;
    const std::string name = asWritten.FileName;
    if (bytes)
        m_onDisk[name] = std::move(*bytes);
    else
        m_onDisk.erase(name);
    for (Entry& entry : m_entries) {
        project::ProjectCase& one = entry.state.Project;
        if (one.FileName == before && entry.state.named == wasNamed) {
            one.FileName = name;
            entry.state.named = true;
        }
        if (one.FileName == name) entry.saved = false;
    }
    Entry& present = m_entries[m_position];
    present.state.Project = std::move(asWritten);
    present.state.named = present.saved = true;
    // The values of an older level are the file's own now; what a damaged file lacks is not.
    if (!present.state.Kept.damaged) present.state.Kept = {};
}

bool CaseDocument::undo() {
    if (m_position == 0) return false;
    --m_position;
    return true;
}

bool CaseDocument::redo() {
    if (m_position + 1 == m_entries.size()) return false;
    ++m_position;
    return true;
}

std::string_view CaseDocument::undoText() const {
    return m_position == 0 ? std::string_view() : m_entries[m_position].what;
}

std::string_view CaseDocument::redoText() const {
    return m_position + 1 == m_entries.size() ? std::string_view() : m_entries[m_position + 1].what;
}

const std::string* CaseDocument::bytesOnDisk() const {
    const auto found = m_onDisk.find(state().Project.FileName);
    return state().named && found != m_onDisk.end() ? &found->second : nullptr;
}

} // namespace telvo::app
