// SPDX-License-Identifier: GPL-3.0-or-later
//
// The windows of a run: report, plots and working, and whether they still belong to the case.
#include "app/settingsOptions.h"
#include "app/ui/commands.h"
#include "app/ui/frmMain.h"
#include "app/ui/layoutPicture.h"
#include "app/ui/Program.h"
#include "base/titles.h"
#include "base/ui/qtText.h"
#include "explain/ui/frmExplain.h"
#include "plot/ui/frmPlots.h"
#include "project/ui/frmTELVOParm.h"
#include "report/sections.h"
#include "run/faultWords.h"

#include <QPushButton>
#include <utility>

namespace telvo::app::ui {

using plot::ui::frmPlots;
using report::ShownRun;
using report::ui::frmResTxtPlt;
using telvo::ui::toQt;

namespace {

ShownRun shownRun(run::Run run, const report::ReportOptions& options) {
    return {std::make_shared<const run::Run>(std::move(run)), options};
}

ShownCase caseOf(const ShownRun& shown) {
    return {shown.run->current, shown.options};
}

} // namespace

ShownCase Commands::onScreen() const {
    ShownCase now{m_program.session().project(), m_program.session().reportOptions()};
    if (m_parameters) now.current.Input = m_parameters->values();
    return now;
}

void Commands::watch(RunWindow watched, std::function<void()> runAgain) {
    watched.window->setRunAgain(std::move(runAgain));
    m_runs.push_back(std::move(watched));
}

void Commands::markOutdated() {
    studiesFollow();
    std::erase_if(m_runs, [](const RunWindow& closed) { return closed.window.isNull(); });
    if (m_runs.empty()) return;
    const ShownCase now = onScreen();
    for (RunWindow& run : m_runs) {
        const std::string why = outdatedBecause(run.shown, now);
        run.window->setOutdated(toQt(why));
        if (!why.empty() || run.shown.current.FileName == now.current.FileName) continue;
        run.shown.current.FileName = now.current.FileName;
        run.rename(now.current.FileName);
    }
}

std::optional<ShownRun> Commands::runOnScreen() {
    if (!m_program.session().mayShowFactors()) return std::nullopt;
    const ShownCase now = onScreen();
    DesktopMessages& messages = m_program.messages();
    run::RunOutcome outcome = m_program.session().run(now.current);
    if (const auto* refused = std::get_if<Refusal>(&outcome)) {
        messages.tell(refused->message, std::string(titles::ProjectParameters) + refused->title);
        return std::nullopt;
    }
    if (const auto* fault = std::get_if<Fault>(&outcome)) {
        const Refusal stopped = run::asRefusal(*fault, now.current.Units);
        messages.tell(stopped.message, std::string(titles::ProjectParameters) + stopped.title);
        return std::nullopt;
    }
    messages.history("TELVO stability factors calculated: " + m_program.session().displayName());
    messages.status("TELVO stability factors calculated");
    return shownRun(std::move(std::get<run::Run>(outcome)), now.options);
}

std::optional<Refusal> Commands::showResults(const project::ProjectCase& current) {
    if (!m_program.session().mayShowFactors()) return std::nullopt;
    DesktopMessages& messages = m_program.messages();
    run::RunOutcome outcome = m_program.session().run(current);
    if (auto* refused = std::get_if<Refusal>(&outcome)) {
        messages.status("No stability factors: an input is refused");
        return std::move(*refused);
    }
    if (const auto* fault = std::get_if<Fault>(&outcome)) {
        messages.status("No stability factors: the analysis stopped");
        return run::asRefusal(*fault, current.Units);
    }
    const ShownRun shown =
        shownRun(std::move(std::get<run::Run>(outcome)), m_program.session().reportOptions());
    report::Report report = report::makeReport(*shown.run, shown.options);
    messages.history("TELVO stability factors calculated: " + m_program.session().displayName());
    messages.status("TELVO stability factors calculated");

    keepRun(shown.run->current);
    closeResults();
    m_results = new frmResTxtPlt(
        {std::move(report.pages), report.warnings.WarningSummary, shown.run->notes, sheetHeading(),
         [this, shown] { viewPlots(shown); }, [this, shown] { showWorking(shown); }},
        m_program.formServices(), m_program.printer(), viewParent());
    m_results->setAttribute(Qt::WA_DeleteOnClose);
    watch({m_results.data(), caseOf(shown),
           [results = m_results, run = shown.run](const std::string& name) {
               project::ProjectCase renamed = run->current;
               renamed.FileName = name;
               results->setCaseName(name, report::inputEchoPage(renamed, run->results.AnalysisCase,
                                                                run->results.ArchFactor));
           }},
          [this] { runResultsAgain(); });
    m_results->load();
    m_results->raise(); // also above a form that is open
    m_results->activateWindow();
    for (const std::string& note : shown.run->notes)
        messages.tell(note, std::string(titles::Results).append(titles::Message));
    return std::nullopt;
}

void Commands::runResultsAgain() {
    // A form that is open has the case; its button checks what was typed.
    auto* trial = m_parameters ? m_parameters->findChild<QPushButton*>("cmdResults") : nullptr;
    if (trial)
        trial->click();
    else
        stabilityFactors();
}

void Commands::viewPlots(const ShownRun& shown) {
    const SettingsStore& settings = m_program.settings();
    const auto viewOf = [&settings](const ShownRun& run) {
        return plot::ui::PlotsView{run, planOptions(settings.values()),
                                   settings.values().PrintPlotReminder == 1};
    };
    plot::ui::PlotActions actions{pictureActions(), [this] { stopReminding(); }};
    QPointer window(
        new frmPlots(viewOf(shown), std::move(actions), m_program.formServices(), viewParent()));
    keep(*window);
    const auto rename = [window](const std::string& name) { window->setCaseName(name); };
    watch({window.data(), caseOf(shown), rename}, [this, window, rename, viewOf] {
        if (!window) return;
        if (const auto again = runOnScreen(); again && window) {
            window->setRun(viewOf(*again));
            showsNow(*window, *again);
        }
    });
    window->load();
    window->raise();
    window->activateWindow();
    m_program.messages().history("Plots: " + m_program.session().displayName());
    markOutdated();
}

void Commands::showWorking(const ShownRun& shown) {
    QPointer window(new explain::ui::frmExplain(shown, m_program.formServices(),
                                                m_program.printer(), m_program.fileDialogs(),
                                                viewParent()));
    keep(*window);
    watch({window.data(), caseOf(shown),
           [window](const std::string& name) { window->setCaseName(name); }},
          [this, window] {
              if (!window) return;
              if (const auto again = runOnScreen(); again && window) {
                  window->setRun(*again);
                  showsNow(*window, *again);
              }
          });
    window->show();
    window->raise();
    window->activateWindow();
    note("Show working: " + m_program.session().displayName());
    markOutdated();
}

void Commands::showsNow(const telvo::ui::Form& window, const ShownRun& shown) {
    for (RunWindow& run : m_runs)
        if (run.window == &window) run.shown = caseOf(shown);
    markOutdated();
}

} // namespace telvo::app::ui
