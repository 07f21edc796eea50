// SPDX-License-Identifier: GPL-3.0-or-later
//
// The windows beside the report: graphs of the Output menu, plots and working of a run.
#include "app/ui/commands.h"
#include "app/ui/dialogs/frmGraphOpts.h"
#include "app/ui/frmMain.h"
#include "app/ui/layoutPicture.h"
#include "app/ui/Program.h"
#include "base/titles.h"
#include "explain/ui/frmExplain.h"
#include "plot/ui/frmPlots.h"
#include "plot/ui/picture.h"

#include <algorithm>
#include <utility>

namespace telvo::app::ui {

using study::ui::frmGraph;
using telvo::ui::Picture;

namespace {

bool isOfBarrier(study::GraphKind kind) {
    return kind == study::GraphKind::FirstBarrier || kind == study::GraphKind::SecondBarrier;
}

} // namespace

study::GraphOptions Commands::graphOptions(study::GraphKind kind) const {
    const Settings& s = m_program.settings().values();
    return {s.GridStyle,
            s.GraphStyle,
            s.CurveLegend,
            s.SymbolSize,
            s.GraphUnits,
            s.GraphTitle,
            s.XAxisTitle[static_cast<std::size_t>(kind)],
            s.YAxisTitle[isOfBarrier(kind) ? 1 : 0],
            s.RoundTELVOSF};
}

void Commands::printPicture(const Picture& picture, QWidget* parent) {
    const bool printed = m_program.printer().print(
        picture.name, parent, QObject::tr("Print"),
        [&picture](QPrinter& printer) { return telvo::ui::printPicture(picture, printer); });
    note(printed ? "Picture printed" : "Printing aborted");
}

telvo::ui::PictureActions Commands::pictureActions() {
    telvo::ui::PictureActions actions;
    actions.copyPicture = [](const Picture& picture, QWidget*) { telvo::ui::copyPicture(picture); };
    actions.exportPicture = [this](const Picture& picture, QWidget* parent) {
        telvo::ui::exportCommand(picture, m_program.fileDialogs(), m_program.messages(),
                                 m_program.settings().values().DataPath, parent);
    };
    actions.printPicture = [this](const Picture& picture, QWidget* parent) {
        printPicture(picture, parent);
    };
    return actions;
}

study::ui::GraphActions Commands::graphActions(const project::ProjectCase& current,
                                               const study::SfGraph& graph) {
    study::ui::GraphActions actions{pictureActions(), {}, {}};
    // The window keeps the case that its graph was computed for.
    actions.valuesAt = [current, graph](double target) {
        return study::valuesAt(current, graph, target);
    };
    actions.editOptions = [this, kind = graph.kind](QWidget* parent) {
        frmGraphOpts form(m_program.settings(), m_program.formServices(), parent);
        return form.exec() == QDialog::Accepted ? std::optional(graphOptions(kind)) : std::nullopt;
    };
    return actions;
}

void Commands::keep(QWidget& view) {
    view.setAttribute(Qt::WA_DeleteOnClose);
    std::erase_if(m_views, [](const auto& closed) { return closed.isNull(); });
    m_views.emplace_back(&view);
}

void Commands::stopReminding() {
    m_program.settings().values().PrintPlotReminder = 0;
    const Status saved = m_program.settings().SaveSettings(SettingsSaveMode::TELVOOptions);
    if (!saved) m_program.messages().tell(faultText(saved.fault()));
}

void Commands::viewPlots(const ShownRun& run) {
    const SettingsStore& settings = m_program.settings();
    telvo::ui::PlotActions actions{pictureActions(), [this] { stopReminding(); }};
    auto* window =
        new telvo::ui::frmPlots({run.current, run.results, run.options, planOptions(settings),
                                 settings.values().PrintPlotReminder == 1},
                                std::move(actions), m_program.formServices(), viewParent());
    keep(*window);
    window->load();
    window->raise();
    window->activateWindow();
    m_program.messages().history("Plots: " + m_program.session().displayName());
}

void Commands::showWorking(const ShownRun& run) {
    auto* window =
        new explain::ui::frmExplain({run.current, run.results, run.options},
                                    m_program.formServices(), m_program.printer(), viewParent());
    keep(*window);
    window->show();
    window->raise();
    window->activateWindow();
    note("Show working: " + m_program.session().displayName());
}

void Commands::graph(study::GraphKind kind) {
    const ProjectSession& session = m_program.session();
    const Settings& settings = m_program.settings().values();
    if (settings.GraphSetParams == 1 &&
        frmGraphOpts(m_program.settings(), m_program.formServices(), &m_window).exec() !=
            QDialog::Accepted)
        return;
    const project::ProjectCase current = session.project();
    auto made = study::sfGraph(
        current, kind,
        {static_cast<double>(settings.PlotRangeMin), static_cast<double>(settings.PlotRangeMax)},
        session.reportOptions());
    if (const auto* refused = std::get_if<Refusal>(&made)) {
        m_program.messages().tell(refused->message,
                                  std::string(titles::Graph).append(titles::Error));
        return;
    }
    const study::SfGraph& graph = std::get<study::SfGraph>(made);
    auto* window =
        new frmGraph({graph, session.displayName(), study::graphCsv(graph)}, graphOptions(kind),
                     graphActions(current, graph), m_program.formServices(), viewParent());
    keep(*window);
    window->show();
    note("Graph " + std::string(study::GraphCaptions[static_cast<std::size_t>(kind)]) + ": " +
         session.displayName());
}

} // namespace telvo::app::ui
