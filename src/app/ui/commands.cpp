// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands.h"

#include "app/association.h"
#include "app/ui/dialogs/frmAbout.h"
#include "app/ui/dialogs/frmDisclaimer.h"
#include "app/ui/dialogs/frmSet.h"
#include "app/ui/dialogs/frmTELVOOpts.h"
#include "app/ui/dialogs/frmUpdate.h"
#include "app/ui/frmMain.h"
#include "app/ui/layoutPicture.h"
#include "app/ui/Program.h"
#include "base/files.h"
#include "base/titles.h"
#include "base/ui/qtText.h"
#include "library/ui/frmResource.h"
#include "library/ui/frmTextBrow.h"
#include "project/keptItems.h"
#include "project/ui/frmConvert.h"
#include "project/ui/frmTELVODesc.h"
#include "project/ui/frmTELVOParm.h"
#include "project/ui/frmUnits.h"
#include "project/units.h"
#include "report/ui/frmPreview.h"
#include "table/tableFile.h"
#include "table/ui/frmCaseTable.h"
#include "table/ui/readInBackground.h"

#include <cstdlib>
#include <QApplication>
#include <QClipboard>
#include <QPrinter>
#include <QTextDocument>
#include <utility>

namespace telvo::app::ui {

using project::ui::frmConvert;
using project::ui::frmTELVODesc;
using project::ui::frmTELVOParm;
using project::ui::frmUnits;
using report::ui::frmPreview;
using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

constexpr std::string_view PdfManual = "TELVO.PDF";

} // namespace

Commands::Commands(Program& program, frmMain& window)
    : m_program(program), m_window(window),
      m_caseStudies(program.messages(), program.fileDialogs()) {}

Commands::~Commands() = default;

void Commands::note(std::string_view action) {
    m_program.messages().history(action);
    m_program.messages().status(action);
}

// --- File

void Commands::fileNew() {
    if (!m_program.session().newCommand()) return;
    if (m_program.settings().values().ShowInputScreenOnLoad == 1) editParameters();
}

void Commands::fileOpen() {
    m_program.session().openCommand();
}

void Commands::fileSave(bool saveAs) {
    m_program.session().FileMenuSave(saveAs);
}

void Commands::importKORV() {
    m_program.session().importCommand();
}

void Commands::viewSourceFiles() {
    note("Text browser");
    Settings& s = m_program.settings().values();
    library::ui::BrowseActions actions;
    actions.openOutside = [this](const std::string& path) { m_program.openInEditor(path); };
    actions.print = [this](const QTextDocument& text, const std::string& path, QWidget* parent) {
        printDocument(text, path, parent);
    };
    const library::ui::BrowseOptions before{s.BrowseFontName,      s.BrowseFontSize,
                                            s.BrowseFontBold,      s.BrowseFontItalic,
                                            s.BrowseDefaultFilter, s.BrowseUseNotepad};
    actions.keep = [&](const library::ui::BrowseOptions& now) {
        if (now == before) return;
        s.BrowseFontName = now.BrowseFontName;
        s.BrowseFontSize = now.BrowseFontSize;
        s.BrowseFontBold = now.BrowseFontBold;
        s.BrowseFontItalic = now.BrowseFontItalic;
        s.BrowseDefaultFilter = now.BrowseDefaultFilter;
        s.BrowseUseNotepad = now.BrowseUseNotepad;
        const Status saved = m_program.settings().SaveSettings(SettingsSaveMode::TextBrowse);
        if (!saved) m_program.messages().tell(faultText(saved.fault()));
    };
    library::ui::frmTextBrow(before, s.DataPath, s.FileExtension, std::move(actions),
                             m_program.formServices(), &m_window)
        .exec();
}

void Commands::printDocument(const QTextDocument& text, const std::string& name, QWidget* parent) {
    const bool printed =
        m_program.printer().print(name, parent, QObject::tr("Print"), [&text](QPrinter& printer) {
            text.print(&printer);
            return printer.printerState() != QPrinter::Error;
        });
    note(printed ? "Text printed" : "Printing aborted");
}

void Commands::openRecent(int slot) {
    m_program.session().openRecent(slot);
}

void Commands::openNamed(const std::string& path) {
    m_program.session().openNamed(path);
}

void Commands::newCase(std::int16_t units) {
    if (m_program.session().newCommand(units)) editParameters();
}

void Commands::bringBack(const KeptCopy& copy) {
    ProjectSession& session = m_program.session();
    if (!session.settleUnsaved()) return;
    m_program.recovery().bringBack(copy, [&](UnsavedCase kept) {
        if (copy.discarded)
            session.acceptDiscarded(std::move(kept));
        else
            session.acceptRecovered(std::move(kept));
    });
    m_window.showCase(); // the copy is no longer among those in the menu
}

void Commands::printerSetup() {
    note(m_program.printer().setUp(&m_window) ? "Printer set up" : "Printer setup cancelled");
}

report::ui::PrintJob Commands::inputEchoJob() const {
    return {{m_program.session().inputEcho()}, sheetHeading()};
}

report::SheetHeading Commands::sheetHeading() const {
    const project::ProjectCase& current = m_program.session().project();
    const bool header = m_program.settings().values().PrintModuleHeader == 1;
    return {current.FileName,
            current.Units,
            header ? std::string(run::ModuleBuild) : std::string(),
            {}};
}

void Commands::print() {
    if (!m_program.session().mayPrint()) {
        note("Printing aborted");
        return;
    }
    const bool printed = m_program.printer().print(inputEchoJob(), &m_window, "Print");
    note(printed ? "Input printed" : "Printing aborted");
}

void Commands::preview() {
    if (!m_program.session().mayPrint()) {
        note("Print preview cancelled");
        return;
    }
    m_program.messages().history("Print preview");
    frmPreview(inputEchoJob(), m_program.formServices(), m_program.printer(), &m_window).exec();
}

// --- Input

void Commands::editDescription() {
    frmTELVODesc form(m_program.session().project(), m_program.formServices(), &m_window);
    m_description = &form;
    QObject::connect(&form, &frmTELVODesc::edited, &m_window,
                     [this] { m_program.recovery().touch(); });
    if (form.exec() == QDialog::Accepted)
        m_program.session().acceptDescription(form.title(), form.description());
    m_description.clear();
    m_program.recovery().touch(); // a draft that was given up goes
}

void Commands::editParameters() {
    project::ui::ParameterActions actions;
    actions.accept = [this](const project::ProjectInput& values) {
        return m_program.session().acceptParameters(values);
    };
    actions.results = [this](const project::ProjectCase& trial) { return showResults(trial); };
    actions.figures = [this](const project::ProjectCase& trial) {
        return m_program.session().figuresOfOpen(trial);
    };
    actions.makePicture = [this](QWidget* parent) {
        return layoutPicture(m_program.settings(), parent);
    };
    m_edited = {m_program.session().project(), {}, m_program.session().kept()};
    auto* form = new frmTELVOParm(m_edited, m_program.settings().values().IssueWarningCancel == 1,
                                  std::move(actions), m_program.formServices(), &m_window);
    form->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(form, &frmTELVOParm::edited, &m_window, [this] {
        m_program.recovery().touch();
        markOutdated();
    });
    QObject::connect(form, &QDialog::finished, &m_window, [this] {
        m_parameters.clear();
        m_window.setBlockedBy(nullptr);
        m_program.recovery().touch();
        markOutdated();
    });
    m_parameters = form;
    m_window.setBlockedBy(form);
    form->show();
}

std::optional<project::ProjectCase> Commands::draft() const {
    if (!m_parameters && !m_description) return std::nullopt;
    project::ProjectCase draft = m_program.session().project();
    if (m_parameters) draft.Input = m_parameters->values();
    if (m_description) {
        draft.Title = m_description->title();
        draft.Description = m_description->description();
    }
    if (draft == m_program.session().project()) return std::nullopt;
    return draft;
}

// --- Output

void Commands::stabilityFactors() {
    ProjectSession& session = m_program.session();
    if (!session.mayRun()) return;
    if (const auto refused = showResults(session.project()))
        m_program.messages().tell(refused->message,
                                  std::string(titles::ProjectParameters) + refused->title);
}

void Commands::closeResults() {
    delete m_results.data();
}

void Commands::closeViews() {
    closeResults();
    for (const auto& view : m_views)
        delete view.data();
    m_views.clear();
}

QWidget* Commands::viewParent() {
    return m_program.settings().values().ViewChildWindow == 1 ? &m_window : nullptr;
}

// --- Utilities

void Commands::settings() {
    frmSet form(m_program.settings(), m_program.folders().DataFolder, m_program.fileDialogs(),
                m_program.formServices(), &m_window);
    const Settings before = m_program.settings().values();
    QObject::connect(&form, &frmSet::settingsChanged, &m_window, [this, &before] {
        const Settings& now = m_program.settings().values();
        // The untouched case on screen is one of the new projects that the units are for.
        if (now.DefaultUnits != before.DefaultUnits && m_program.session().isUntouched())
            m_program.session().FileNew();
        m_window.applySettings();
        m_window.applyHistoryFont();
    });
    form.exec();
}

void Commands::options() {
    frmTELVOOpts(m_program.settings(), fromQt(QCoreApplication::applicationFilePath()),
                 userDataHome(std::getenv("XDG_DATA_HOME"), std::getenv("HOME")),
                 m_program.formServices(), &m_window)
        .exec();
    m_window.showCase(); // factors are shown in the chosen rounding
}

void Commands::unitConversion() {
    note("Unit conversion");
    frmUnits(m_program.formServices(), &m_window).exec();
}

void Commands::fileConversion() {
    ProjectSession& session = m_program.session();
    if (!session.mayConvert()) return;
    note("File conversion");
    frmConvert form(session.project(), m_program.formServices(), &m_window);
    if (form.exec() != QDialog::Accepted) return;
    const auto remark = project::archFactorRemark(session.project(), form.converted());
    session.acceptConverted(form.converted());
    if (remark) m_program.messages().history(*remark);
    m_program.messages().status("Case converted: " + session.displayName());
}

void Commands::copyHistory() {
    QString text;
    for (const std::string& line : m_program.messages().lines().lines())
        text += toQt(line) + '\n';
    QApplication::clipboard()->setText(text);
    m_program.messages().status("History copied to clipboard"); // no line: it would change it
}

// --- Help

void Commands::helpContents() {
    m_program.showHelp({});
}

void Commands::helpIndex() {
    m_program.showHelp(QStringLiteral("Index"));
}

void Commands::helpPdf() {
    m_program.openDocument(m_program.folders().InstallFolder + std::string(PdfManual));
}

void Commands::tutorial() {
    m_program.showHelp(QStringLiteral("Tutorial1.htm"));
}

void Commands::resourceFiles() {
    note("Resource files");
    library::ui::ResourceActions actions;
    actions.open = [this](const std::string& path) { m_program.openDocument(path); };
    actions.confirmSpreadsheet = [this](QWidget* parent) { return confirmSpreadsheet(parent); };
    actions.importCase = [this](QWidget* parent) { return importCase(parent); };
    library::ui::frmResource(m_program.folders().InstallFolder, std::move(actions),
                             m_program.formServices(), &m_window)
        .exec();
}

bool Commands::confirmSpreadsheet(QWidget*) {
    return m_program.settings().values().AskOfficeInstall != 1 ||
           m_program.messages().ask("The document opens in the spreadsheet program of this "
                                    "computer. Is one installed?",
                                    Buttons::YesNo, Answer::Yes,
                                    std::string(titles::ResourceFiles).append(titles::Message)) ==
               Answer::Yes;
}

bool Commands::importCase(QWidget* parent) {
    DesktopMessages& messages = m_program.messages();
    const auto path =
        m_program.fileDialogs().openFile("Import Case", m_program.settings().values().DataPath,
                                         {"Case Tables (*.xlsx *.csv *.txt)", "All Files (*.*)"});
    if (!path) return false;
    auto done = table::ui::readInBackground(
        *path,
        [file = *path](const table::ReadWatch& watch) { return table::readTableFile(file, watch); },
        parent);
    if (!done) return false;
    auto& read = *done;
    if (!read) {
        const std::string text = faultText(read.fault());
        messages.tell(text, std::string(titles::Import).append(titles::Error));
        return false;
    }
    ProjectSession& session = m_program.session();
    table::ui::frmCaseTable form(
        std::move(*read), m_program.formServices(), parent,
        [&session](const project::ProjectCase& current) { return session.figures(current); });
    if (!session.isEmpty())
        form.addToCompare = [this, name = withoutFolder(*path)](const table::CaseRow& row) {
            addToCompare({name + ", row " + std::to_string(row.number), row.current});
        };
    if (form.exec() != QDialog::Accepted || !form.chosen() || !session.settleUnsaved())
        return false;
    session.acceptImported(*form.chosen(), *path);
    return true;
}

void Commands::disclaimer() {
    note("Disclaimer");
    frmDisclaimer(m_program.settings(), m_program.formServices(), &m_window).exec();
}

void Commands::update() {
    note("Program updates");
    frmUpdate(m_program.settings(), m_program.formServices(), &m_window).exec();
}

void Commands::about() {
    note("About the program");
    frmAbout(m_program.formServices(), &m_window).exec();
}

} // namespace telvo::app::ui
