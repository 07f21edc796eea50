// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ProjectSession.h"

#include "app/settingsOptions.h"
#include "base/files.h"
#include "base/numbers.h"
#include "base/titles.h"
#include "engine/driver.h"
#include "project/keptItems.h"
#include "report/keyFigures.h"
#include "report/sections.h"
#include "run/faultWords.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace telvo::app {

namespace {

constexpr std::string_view Untitled = "Untitled";
constexpr std::int16_t ProjectFileMode = 0;
constexpr std::string_view EmptyMessage = "Current file is empty";

/// Why a case of a damaged file has no factors.
constexpr std::string_view UnsettledMessage =
    "A part of this case is not from its file. Look at it under Input, Project Parameters and "
    "accept it there with OK; until then no stability factors are shown";

constexpr std::string_view OlderLevel =
    "The file is of an older level; items that are not in it keep their previous values";

/// Of a file dialog: files with the extension, then all.
std::vector<std::string> filtersOf(const std::string& extension) {
    if (extension.empty()) return {"All Files (*.*)"}; // project files have none then
    return {extension + " Files (*." + extension + ")", "All Files (*.*)"};
}

std::string quoted(const std::string& path) {
    return '"' + path + '"';
}

bool says(const Fault& fault, std::errc error) {
    return fault.message.find(std::make_error_code(error).message()) != std::string::npos;
}

/// Why a save failed, in words that name what a user can change.
std::string savingTrouble(const std::string& path, const Fault& fault) {
    std::error_code error;
    const std::filesystem::path folder = pathFromUtf8(path).parent_path();
    if (!folder.empty() && !std::filesystem::exists(folder, error))
        return "The folder does not exist: " + utf8FromPath(folder);
    if (says(fault, std::errc::read_only_file_system)) return "The disk can only be read: " + path;
    if (says(fault, std::errc::no_space_on_device)) return "The disk is full: " + path;
    if (says(fault, std::errc::permission_denied) ||
        says(fault, std::errc::operation_not_permitted))
        return std::filesystem::exists(pathFromUtf8(path), error)
                   ? "The file may only be read, or its folder may not be written to: " + path
                   : "You may not write to the folder: " + utf8FromPath(folder);
    return faultText(fault);
}

} // namespace

ProjectSession::ProjectSession(SettingsStore& settings, Messages& messages, FileDialogs& dialogs)
    : m_settings(settings), m_messages(messages), m_dialogs(dialogs),
      m_document({project::newCase(settings.values().DefaultUnits)}) {}

std::string ProjectSession::displayName() const {
    return withoutFolder(project().FileName);
}

std::string ProjectSession::windowTitle() const {
    return displayName() + (isSaved() ? "" : "*");
}

void ProjectSession::changed() {
    // The axes of the graphs are in the units of the case at hand until the user wants others.
    if (project().Units != m_graphUnitsOf) {
        m_graphUnitsOf = project().Units;
        m_settings.values().GraphUnits = m_graphUnitsOf;
    }
    if (onChange) onChange();
}

bool ProjectSession::isUntouched() const {
    return isEmpty() && isSaved() && !state().named && project().Title.empty() &&
           project().Description.empty();
}

void ProjectSession::FileNew(std::optional<std::int16_t> units) {
    CaseState fresh{project()}; // a reserved value of the record stays
    project::newCase(fresh.Project, units.value_or(m_settings.values().DefaultUnits), true);
    m_document.open(std::move(fresh), true);
    m_messages.history("New project");
    m_messages.status("File initialized. Use Edit-Project Parameters to enter data");
    changed();
}

std::optional<std::string> ProjectSession::readOrTell(const std::string& path) {
    auto bytes = readFile(path);
    if (bytes) return std::move(*bytes);
    const Fault& fault = bytes.fault();
    // A missing file is named by its message already.
    const bool named = fault.message.find(path) != std::string::npos;
    m_messages.tell(named ? fault.message : faultText(fault));
    m_messages.status("File not opened");
    return std::nullopt;
}

project::KeptItems ProjectSession::keptOf(const project::CaseReading& reading) const {
    if (reading.kept.empty()) return {};
    return {reading.kept, isEmpty() ? std::string() : displayName(), project().Units,
            reading.fault.has_value()};
}

void ProjectSession::tellDamage(const Fault& fault, const project::KeptItems& kept,
                                const project::ProjectCase& record) {
    m_messages.tell(faultText(fault) + "\nThe items before it were read. The case is untitled." +
                    "\n\nFrom the file: " + project::givenItemsText(kept, record) +
                    "\n\nNot from the file, but from " + project::keptOrigin(kept, record) + ": " +
                    project::keptItemsText(kept, record) + "\n\n" + std::string(UnsettledMessage) +
                    '.');
    m_messages.status("File read in part");
}

void ProjectSession::tellOlderLevel() {
    if (project().FileVersion >= project::CurrentLevel) return;
    std::string line(OlderLevel);
    if (!kept().items.empty())
        line += ", those of " + project::keptOrigin(kept(), project()) + ": " +
                project::keptItemsText(kept(), project());
    m_messages.history(line);
}

bool ProjectSession::LoadKORVFile(const std::string& path) {
    m_messages.status("Importing: " + path);
    m_messages.history("Importing: " + path);
    const auto bytes = readOrTell(path);
    if (!bytes) return false;
    project::ProjectCase record = project();
    const project::CaseReading reading = project::readCaseSection(*bytes, path, record);
    if (!reading.accepted) {
        m_messages.tell("Invalid file format\n" + path);
        m_messages.status("File not imported");
        return false;
    }
    const project::KeptItems kept = keptOf(reading);
    acceptImported(record, path, kept);
    if (reading.fault) tellDamage(*reading.fault, kept, record);
    return !reading.fault;
}

void ProjectSession::acceptImported(project::ProjectCase imported, const std::string& from,
                                    project::KeptItems kept) {
    imported.FileName = Untitled;
    m_document.open({std::move(imported), std::move(kept), false, false}, false);
    tellOlderLevel();
    m_messages.history("Imported as an untitled case: " + from);
    m_messages.status("File imported: " + from);
    changed();
}

void ProjectSession::acceptStudied(project::ProjectCase studied, const std::string& what) {
    const std::string from = displayName();
    studied.FileName = Untitled;
    m_document.open({std::move(studied), {}, false, false}, false);
    m_messages.history("Opened from a study of " + from + " as an untitled case: " + what);
    m_messages.status("Case of the study opened: " + what);
    changed();
}

bool ProjectSession::LoadProjFile(const std::string& path) {
    m_messages.status("Opening: " + path);
    m_messages.history("Opening: " + path);
    auto bytes = readOrTell(path);
    if (!bytes) return false;
    project::ProjectCase record = project();
    const project::CaseReading reading = project::readCaseText(*bytes, path, record);
    if (!reading.accepted) {
        m_messages.tell((reading.fault ? reading.fault->message : "Invalid file format") + '\n' +
                        path);
        m_messages.status("File not opened");
        return false;
    }
    project::KeptItems kept = keptOf(reading);
    if (reading.fault) {
        // What was read is kept, but under no name: a save cannot replace the damaged file.
        record.FileName = Untitled;
        m_document.open({std::move(record), kept, false, false}, false);
        changed(); // no factor of it may be seen behind the box
        tellDamage(*reading.fault, kept, project());
        return false;
    }
    record.FileName = path;
    m_document.open({std::move(record), std::move(kept), false, true}, true, std::move(*bytes));
    tellOlderLevel();
    for (const std::string& remark : reading.remarks)
        m_messages.tell(path + ": " + remark);
    m_messages.status("File opened: " + displayName());
    if (updateRecentFiles(m_settings.values(), {displayName(), ProjectFileMode, path}))
        (void)m_settings.SaveSettings(SettingsSaveMode::FileMenu);
    changed();
    return true;
}

std::vector<std::string> ProjectSession::fileFilters() const {
    return filtersOf(m_settings.values().FileExtension);
}

std::optional<std::string> ProjectSession::askSavePath() {
    const bool hasFolder = pathFromUtf8(project().FileName).has_parent_path();
    const std::string proposal =
        hasFolder ? project().FileName : m_settings.values().DataPath + project().FileName;
    return m_dialogs.saveFile("Save Project As", proposal, fileFilters(),
                              m_settings.values().FileExtension);
}

bool ProjectSession::changedOnDisk(const std::string& path) const {
    const std::string* known = m_document.bytesOnDisk();
    if (!known || path != project().FileName) return false;
    std::error_code error;
    if (!std::filesystem::exists(pathFromUtf8(path), error)) return false; // a save brings it back
    const auto bytes = readFile(path);
    return !bytes || *bytes != *known;
}

bool ProjectSession::confirmUnsettled() {
    return !isUnsettled() ||
           m_messages.ask("A part of this case is not from its file: " +
                              project::keptItemsText(kept(), project()) +
                              "\nSave it all the same? The new file will not tell.",
                          Buttons::YesNo, Answer::No, {}) == Answer::Yes;
}

bool ProjectSession::FileMenuSave(bool saveAs) {
    if (!confirmUnsettled()) {
        m_messages.status("File not saved");
        return false;
    }
    std::string path = project().FileName;
    if (saveAs || !state().named) {
        const auto chosen = askSavePath();
        if (!chosen) {
            m_messages.status("File not saved");
            return false;
        }
        path = *chosen;
    }
    if (changedOnDisk(path) &&
        m_messages.ask("The file was changed on disk since it was read: " + path +
                           "\nReplace it with the case in the program?",
                       Buttons::YesNo, Answer::No, {}) != Answer::Yes) {
        m_messages.status("File not saved");
        return false;
    }
    return saveTo(path);
}

bool ProjectSession::saveTo(const std::string& path) {
    m_messages.status("Saving: " + path);
    std::vector<std::string> remarks;
    project::ProjectCase written = project();
    if (const Status saved = project::saveCaseFile(written, path, Existing::Replace, &remarks);
        !saved) {
        m_messages.status("File not saved");
        const bool again =
            m_messages.ask("The file was not saved. " + savingTrouble(path, saved.fault()) +
                               "\nSave the case under another name?",
                           Buttons::YesNo, Answer::Yes, {}) == Answer::Yes;
        const auto other = again ? askSavePath() : std::nullopt;
        return other && saveTo(*other);
    }
    auto bytes = readFile(path);
    m_document.saved(std::move(written), bytes ? std::optional(std::move(*bytes)) : std::nullopt);
    m_messages.history("File saved: " + path);
    for (const std::string& remark : remarks)
        m_messages.history(path + ": " + remark);
    m_messages.status("File saved: " + displayName());
    if (updateRecentFiles(m_settings.values(), {displayName(), ProjectFileMode, path}))
        (void)m_settings.SaveSettings(SettingsSaveMode::FileMenu);
    changed();
    return true;
}

bool ProjectSession::settleUnsaved() {
    return settleUnsaved(Answer::No);
}

bool ProjectSession::settleUnsaved(Answer preset) {
    if (isSaved()) return true;
    switch (m_messages.ask("Save changes to: " + project().FileName + "?", Buttons::YesNoCancel,
                           preset, {})) {
    case Answer::Yes:
        return FileMenuSave(false);
    case Answer::No:
        if (onDiscard) onDiscard(unsaved());
        m_messages.history("Changes discarded: " + project().FileName);
        return true;
    default:
        return false;
    }
}

bool ProjectSession::newCommand(std::optional<std::int16_t> units) {
    if (!settleUnsaved()) return false;
    FileNew(units);
    return true;
}

bool ProjectSession::openCommand() {
    const auto path =
        m_dialogs.openFile("Open Project File", m_settings.values().DataPath, fileFilters());
    return path && settleUnsaved() && LoadProjFile(*path);
}

bool ProjectSession::importCommand() {
    const auto path = m_dialogs.openFile("Import KORV Project Files", m_settings.values().DataPath,
                                         filtersOf(std::string(project::SiblingExtension)));
    return path && settleUnsaved() && LoadKORVFile(*path);
}

bool ProjectSession::openRecent(int slot) {
    if (slot < 1 || slot > 4) return false;
    const std::string path =
        m_settings.values().RecentFiles[static_cast<std::size_t>(slot - 1)].LastFileLong;
    return !path.empty() && settleUnsaved() && LoadProjFile(path);
}

bool ProjectSession::openNamed(const std::string& path) {
    std::string extension = utf8FromPath(pathFromUtf8(path).extension());
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    if (!settleUnsaved()) return false;
    return extension == '.' + std::string(project::SiblingExtension) ? LoadKORVFile(path)
                                                                     : LoadProjFile(path);
}

bool ProjectSession::mayClose() {
    return settleUnsaved(Answer::Yes);
}

bool ProjectSession::acceptParameters(const project::ProjectInput& values, std::string_view what) {
    CaseState next{project(), {}, false, state().named};
    next.Project.Input = values;
    return change(std::move(next), what);
}

bool ProjectSession::acceptDescription(std::string_view title, std::string_view description) {
    CaseState next = state();
    next.Project.Title = title;
    next.Project.Description = description;
    return change(std::move(next), "Project description");
}

void ProjectSession::acceptConverted(project::ProjectCase converted) {
    const std::string_view units =
        converted.Units == project::English ? "English units" : "metric units";
    m_document.change({std::move(converted), {}, isEmpty(), false},
                      "Conversion to " + std::string(units));
    m_messages.history("Case converted to " + std::string(units) + ": " + displayName());
    changed();
}

bool ProjectSession::change(CaseState next, std::string_view what) {
    const bool modified = m_document.change(std::move(next), what);
    changed();
    return modified;
}

void ProjectSession::takeRecovered(UnsavedCase recovered) {
    const bool empty = recovered.current.Input == project::newCase(recovered.current.Units).Input;
    m_document.open({std::move(recovered.current), std::move(recovered.kept), empty, false}, false);
}

void ProjectSession::acceptRecovered(UnsavedCase recovered) {
    takeRecovered(std::move(recovered));
    m_messages.history("Unsaved case recovered: " + quoted(project().FileName));
    m_messages.status("Unsaved case recovered");
    changed();
}

void ProjectSession::acceptDiscarded(UnsavedCase discarded) {
    const std::string name = discarded.current.FileName;
    discarded.current.FileName = Untitled;
    takeRecovered(std::move(discarded));
    m_messages.history("Discarded case brought back as an untitled case: " + quoted(name));
    m_messages.status("Discarded case brought back");
    changed();
}

bool ProjectSession::mayRun() {
    if (isEmpty()) {
        m_messages.status("No stability factors: the current file is empty");
        m_messages.tell(std::string(EmptyMessage));
    }
    return !isEmpty();
}

bool ProjectSession::mayShowFactors() {
    if (!isUnsettled()) return true;
    m_messages.status("No stability factors: a part of the case is not from its file");
    m_messages.tell(std::string(UnsettledMessage) +
                    ".\nNot from the file: " + project::keptItemsText(kept(), project()));
    return false;
}

bool ProjectSession::mayConvert() {
    const bool refused = isEmpty() || !isSaved();
    if (refused) m_messages.status("File not converted");
    if (isEmpty())
        m_messages.tell(std::string(EmptyMessage));
    else if (!isSaved())
        m_messages.tell("Save Current File before accessing this option");
    else if (isUnsettled())
        m_messages.tell(std::string(UnsettledMessage) + '.');
    return !refused && !isUnsettled();
}

bool ProjectSession::mayPrint() {
    return !isEmpty() || m_messages.ask("Current file is empty. Continue?", Buttons::YesNo,
                                        Answer::No, {}) == Answer::Yes;
}

std::optional<Refusal> ProjectSession::graphRefusal() const {
    if (!isEmpty() && !isUnsettled()) return std::nullopt;
    return Refusal{isEmpty() ? std::string(EmptyMessage) : std::string(UnsettledMessage) + '.',
                   std::string(titles::Error),
                   {}};
}

report::ReportOptions ProjectSession::reportOptions() const {
    return app::reportOptions(m_settings.values());
}

run::RunOutcome ProjectSession::run(const project::ProjectCase& current) {
    run::RunOutcome outcome = run::runCase(current, m_previousAnalysisCase);
    if (const auto* done = std::get_if<run::Run>(&outcome))
        m_previousAnalysisCase = done->results.AnalysisCase;
    return outcome;
}

project::KeyFigures ProjectSession::figures(const project::ProjectCase& current) const {
    const run::RunOutcome outcome = run::runCase(current, m_previousAnalysisCase);
    if (const auto* done = std::get_if<run::Run>(&outcome))
        return report::keyFigures(*done, reportOptions());
    project::KeyFigures figures;
    const auto* stopped = std::get_if<Fault>(&outcome);
    const Refusal refused =
        stopped ? run::asRefusal(*stopped, current.Units) : std::get<Refusal>(outcome);
    figures.why = refused.message;
    figures.whyControl = refused.control;
    // Known before anything else is.
    if (const double width = project::panelWidth(current.Input); width > 0)
        figures.PanelWidth = generalNumber(width, 10);
    return figures;
}

project::KeyFigures ProjectSession::figuresOfOpen(const project::ProjectCase& trial) const {
    project::KeyFigures all = figures(trial);
    if (!isUnsettled()) return all;
    project::KeyFigures width;
    width.PanelWidth = std::move(all.PanelWidth);
    width.why = "The values that are not from the file are to be checked in Input, Project "
                "Parameters first";
    return width;
}

std::string ProjectSession::inputEcho() const {
    const project::ProjectInput& input = project().Input;
    const auto prepared = engine::PrepareAnalysis(input, project().Units, m_previousAnalysisCase);
    const auto* in = std::get_if<engine::WorkingInputs>(&prepared);
    return report::inputEchoPage(project(),
                                 engine::analysisCase(input.Anal, m_previousAnalysisCase),
                                 in ? engine::archFactorUsed(*in) : 0);
}

} // namespace telvo::app
