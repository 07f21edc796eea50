// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CaseStudies.h"

#include "base/files.h"
#include "base/text.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace telvo::app {

using study::Study;
using study::StudySettings;

namespace {

std::string unitsText(std::int16_t units) {
    return units == project::English ? "English" : "metric";
}

std::string studyPathOf(const std::string& caseFile) {
    std::filesystem::path path = pathFromUtf8(caseFile);
    return utf8FromPath(path.replace_extension(".study"));
}

std::string folderPath(const std::string& path) {
    return utf8FromPath(pathFromUtf8(path).parent_path());
}

bool exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(pathFromUtf8(path), error);
}

/// What a study asks, whatever stands about it in its file.
std::string askedText(Study study) {
    study.comments.clear();
    study.caseFile.clear();
    study.units = project::English;
    study.RoundTELVOSF = 0;
    return studyText(study);
}

std::string askedText(const std::vector<Study>& studies) {
    std::string text;
    for (const Study& one : studies)
        text += askedText(one);
    return text;
}

/// Whether lines below the top hold notes, which a study does not keep.
bool hasInnerComments(const std::string& bytes) {
    bool top = true;
    for (const std::string_view line : splitLines(bytes)) {
        const bool comment = trimmed(line).starts_with('#');
        if (comment && !top) return true;
        top = top && comment;
    }
    return false;
}

study::StudyPlace placeOf(const project::ProjectCase& current, const std::string& path,
                          int RoundTELVOSF) {
    return {current, withoutFolder(current.FileName), folderPath(path), RoundTELVOSF};
}

} // namespace

std::string CaseStudies::fileName() const {
    return withoutFolder(m_path);
}

void CaseStudies::begin(Entry next) {
    m_path = next.path;
    entry() = std::move(next);
}

void CaseStudies::follow(const OpenCase& now) {
    const std::string path = now.hasFile ? studyPathOf(now.current.FileName) : std::string();
    const bool another = m_number != now.number;
    if (another && m_passesOn && m_number) {
        Entry next;
        next.settings = entry().settings;
        next.loaded = true;
        begin(std::move(next));
    } else if (another) {
        m_path = path;
        if (path.empty())
            m_untitled = {};
        else if (const auto known = m_named.find(path);
                 known == m_named.end() || !isChanged(known->second))
            m_named[path] = {}; // read anew: the file may be another one by now
        m_renewed = true;
    } else if (path != m_path) {
        load(); // what lies beside the case under its former name goes on, too
        Entry next = entry();
        const bool converted = now.current.Units != next.current.Units;
        if (!converted) m_named.erase(m_path);
        next.path = path;
        next.read.clear();
        next.bytes.reset();
        next.saved = {};
        if (converted) {
            next.settings = study::convertedSettings(next.settings, next.current.Units);
            m_renewed = true;
        }
        m_path = path;
        entry() = std::move(next);
    } else if (m_number && now.current.Units != entry().current.Units) {
        Entry& own = entry(); // a converted case without a file
        own.settings = study::convertedSettings(own.settings, own.current.Units);
        m_renewed = true;
    }
    m_number = now.number;
    m_passesOn = false;
    Entry& own = entry();
    own.path = path;
    own.current = now.current;
    own.RoundTELVOSF = now.RoundTELVOSF;
}

bool CaseStudies::isChanged(const Entry& entry) const {
    const study::StudyPlace place = placeOf(entry.current, entry.path, entry.RoundTELVOSF);
    return askedText(studiesOf(entry.settings, place)) != askedText(studiesOf(entry.saved, place));
}

std::optional<std::vector<Study>> CaseStudies::readOrTell(const std::string& path,
                                                          const std::string& bytes) {
    auto studies = study::readStudies(bytes, path);
    if (studies) return std::move(*studies);
    m_messages.status("Study not opened");
    m_messages.tell(faultText(studies.fault()) +
                    "\nThe file stays as it is; the studies of the case begin as usual.");
    return std::nullopt;
}

void CaseStudies::load() {
    Entry& own = entry();
    if (std::exchange(own.loaded, true) || own.path.empty() || !exists(own.path)) return;
    auto bytes = readFile(own.path, study::MaxStudyBytes);
    if (!bytes) {
        m_messages.status("Study not opened");
        m_messages.tell(faultText(bytes.fault()));
        return;
    }
    const auto studies = readOrTell(own.path, *bytes);
    if (!studies) return;
    const Study& first = studies->front();
    const std::string caseName = withoutFolder(own.current.FileName);
    std::string other;
    if (first.caseFile != caseName)
        other = "is a study of " + first.caseFile + ", not of " + caseName;
    else if ((first.units == project::English) != (own.current.Units == project::English))
        other = "is in " + unitsText(first.units) + " units, the case in " +
                unitsText(own.current.Units) + " ones";
    if (!other.empty()) {
        m_messages.status("Study not opened");
        return m_messages.tell(own.path + ": " + other +
                               "\nThe file stays as it is; the studies of the case begin as usual. "
                               "Open Study takes it all the same.");
    }
    for (const Study& one : *studies)
        takeStudy(own.settings, one, folderPath(own.path));
    own.saved = own.settings;
    own.read = *studies;
    own.bytes = std::move(*bytes);
    m_renewed = true;
    m_messages.history("Study opened: " + own.path);
    if (first.RoundTELVOSF != own.RoundTELVOSF)
        m_messages.history(fileName() + ": round_sf is " + std::to_string(first.RoundTELVOSF) +
                           " there; here the option of the program counts");
}

/// The text of the file as the user wants it; asks before anything of an older one is lost.
bool CaseStudies::mayReplace(const Entry& own, const std::vector<Study>& studies) const {
    if (!exists(own.path)) return true;
    const auto present = readFile(own.path, study::MaxStudyBytes);
    const bool same = present && own.bytes && *present == *own.bytes;
    std::string question;
    if (!own.bytes)
        question = "The study file is there already and was not read: " + own.path +
                   "\nReplace it with the studies in the program?";
    else if (!same)
        question = "The study file was changed on disk since it was read: " + own.path +
                   "\nReplace it with the studies in the program?";
    else if (studies.empty())
        question = "All studies of the case are as they begin: a study file would be empty."
                   "\nRemove the file? " +
                   own.path;
    else if (hasInnerComments(*own.bytes))
        question = "Only the comments at the top of the study file are kept: " + own.path +
                   "\nSave it without the others?";
    return question.empty() ||
           m_messages.ask(question, Buttons::YesNo, Answer::No, {}) == Answer::Yes;
}

bool CaseStudies::save() {
    return save(entry());
}

bool CaseStudies::save(Entry& own) {
    const study::StudyPlace place = placeOf(own.current, own.path, own.RoundTELVOSF);
    std::vector<Study> studies = studiesOf(own.settings, place);
    // What was not changed stays as it came, also where no page shows all of it.
    for (const Study& one : own.read) {
        const auto now = std::find_if(studies.begin(), studies.end(), [&](const Study& other) {
            return other.request.index() == one.request.index();
        });
        StudySettings alone;
        takeStudy(alone, one, place.folder);
        const std::vector<Study> asIs = studiesOf(alone, place);
        const auto same = std::find_if(asIs.begin(), asIs.end(), [&](const Study& other) {
            return other.request.index() == one.request.index();
        });
        if (now != studies.end() && same != asIs.end() && askedText(*now) == askedText(*same)) {
            now->request = one.request;
            now->view = one.view;
        }
    }
    if (!own.read.empty() && !studies.empty()) studies.front().comments = own.read.front().comments;

    if (!mayReplace(own, studies)) {
        m_messages.status("Study not saved");
        return false;
    }
    std::vector<std::string> remarks;
    Status done = success();
    std::string text;
    if (studies.empty()) {
        std::error_code error;
        std::filesystem::remove(pathFromUtf8(own.path), error);
        if (error) done = Fault{error.message(), own.path};
    } else {
        text = studiesText(studies);
        // A name or a path that no study can have is found before the old file goes.
        if (const auto again = study::readStudies(text, own.path); !again)
            done = again.fault();
        else
            done = writeFile(own.path, text, Existing::Replace, &remarks);
    }
    if (!done) {
        m_messages.status("Study not saved");
        m_messages.tell("The study was not saved. " + faultText(done.fault()));
        return false;
    }
    own.bytes = text.empty() ? std::nullopt : std::optional(text);
    own.read = studies;
    own.saved = own.settings;
    m_messages.history((text.empty() ? "Study file removed: " : "Study saved: ") + own.path);
    for (const std::string& remark : remarks)
        m_messages.history(own.path + ": " + remark);
    m_messages.status((text.empty() ? "Study file removed: " : "Study saved: ") +
                      withoutFolder(own.path));
    return true;
}

void CaseStudies::open() {
    Entry& own = entry();
    const auto path = m_dialogs.openFile("Open Study", folderPath(own.path),
                                         {"Studies (*.study)", "All Files (*.*)"});
    if (!path) return;
    const auto bytes = readFile(*path, study::MaxStudyBytes);
    auto studies =
        bytes ? study::readStudies(*bytes, *path) : Result<std::vector<Study>>(bytes.fault());
    if (!studies) {
        m_messages.status("Study not opened");
        return m_messages.tell(faultText(studies.fault()));
    }
    const std::string caseName = withoutFolder(own.current.FileName);
    const Study& first = studies->front();
    const bool converts =
        (first.units == project::English) != (own.current.Units == project::English);
    std::string question;
    if (withoutFolder(first.caseFile) != caseName)
        question += "It is a study of " + first.caseFile + ", not of " + caseName + ". ";
    if (converts)
        question += "It is in " + unitsText(first.units) + " units; its numbers are converted. ";
    if (isChanged(own)) question += "Studies of this case that are not saved may be replaced. ";
    if (!question.empty() && m_messages.ask(*path + "\n" + question + "Take what it asks?",
                                            Buttons::YesNo, Answer::No, {}) != Answer::Yes)
        return m_messages.status("Study not opened");
    StudySettings taken;
    for (const Study& one : *studies)
        takeStudy(taken, one, folderPath(*path));
    if (converts) {
        taken = study::convertedSettings(taken, first.units);
        const std::string folder = folderPath(*path);
        *studies = studiesOf(taken, {own.current, caseName, folder, own.RoundTELVOSF});
    }
    for (const Study& one : *studies)
        takeStudy(own.settings, one, folderPath(*path));
    m_renewed = true;
    m_messages.history("Study opened: " + *path);
    m_messages.status("Study opened: " + withoutFolder(*path));
}

bool CaseStudies::mayClose() {
    for (auto& [path, own] : m_named) {
        if (own.path.empty() || !isChanged(own)) continue;
        switch (m_messages.ask("Save the studies of " + own.current.FileName +
                                   "?\nThey are kept beside it in " + withoutFolder(path) + ".",
                               Buttons::YesNoCancel, Answer::Yes, {})) {
        case Answer::Yes:
            if (!save(own)) return false;
            break;
        case Answer::No:
            m_messages.history("Changes of studies discarded: " + path);
            break;
        default:
            return false;
        }
    }
    return true;
}

} // namespace telvo::app
