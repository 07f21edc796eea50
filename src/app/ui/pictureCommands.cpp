// SPDX-License-Identifier: GPL-3.0-or-later
//
// Pictures on their way out of the program, and the graphs of the Output menu.
#include "app/settingsOptions.h"
#include "app/ui/commands.h"
#include "app/ui/dialogs/frmGraphOpts.h"
#include "app/ui/frmMain.h"
#include "app/ui/layoutPicture.h"
#include "app/ui/Program.h"
#include "base/titles.h"
#include "chart/ui/picture.h"
#include "report/sheets.h"

#include <algorithm>
#include <QPrinter>
#include <utility>

namespace telvo::app::ui {

using chart::ui::Picture;
using study::ui::frmGraph;

study::GraphOptions Commands::graphOptions(study::GraphKind kind) const {
    return app::graphOptions(m_program.settings().values(), kind);
}

void Commands::printPicture(const Picture& picture, QWidget* parent) {
    // Reports stand upright; pictures lie as they look best, or as the last one was printed.
    QPrinter& printer = m_program.printer().printer();
    const auto ofReports = printer.pageLayout().orientation();
    printer.setPageOrientation(m_pictureOrientation.value_or(chart::ui::bestOrientation(picture)));
    const std::string footer = picture.caseName + "   " + report::shortDate(m_program.today()) +
                               "   " + std::string(titles::Program) + ' ' +
                               std::string(run::ModuleBuild);
    const bool printed = m_program.printer().print(
        picture.name, parent, QObject::tr("Print"),
        [&](QPrinter& chosen) { return chart::ui::printPicture(picture, chosen, footer); });
    if (printed) m_pictureOrientation = printer.pageLayout().orientation();
    printer.setPageOrientation(ofReports);
    note(printed ? "Picture printed" : "Printing aborted");
}

chart::ui::PictureActions Commands::pictureActions() {
    chart::ui::PictureActions actions;
    actions.copyPicture = [](const Picture& picture, QWidget*) { chart::ui::copyPicture(picture); };
    actions.exportPicture = [this](const Picture& picture, QWidget* parent) {
        chart::ui::exportCommand(picture, m_program.fileDialogs(), m_program.messages(),
                                 m_program.settings().values().DataPath, parent);
    };
    actions.printPicture = [this](const Picture& picture, QWidget* parent) {
        printPicture(picture, parent);
    };
    return actions;
}

study::ui::GraphActions Commands::graphActions(study::GraphKind kind,
                                               std::shared_ptr<project::ProjectCase> shown) {
    study::ui::GraphActions actions{pictureActions(), {}, {}};
    actions.ofOpenCase = [this, kind, shown] {
        auto made = graphOfOpenCase(kind);
        if (!std::holds_alternative<Refusal>(made)) *shown = m_program.session().project();
        return made;
    };
    actions.editOptions = [this, kind](QWidget* parent) {
        return editGraphOptions(parent) ? std::optional(graphOptions(kind)) : std::nullopt;
    };
    return actions;
}

/// A title is that of the case for which it was typed; other cases begin with the program's.
bool Commands::editGraphOptions(QWidget* parent) {
    settleGraphTitle();
    if (frmGraphOpts(m_program.settings(), m_program.formServices(), parent).exec() !=
        QDialog::Accepted)
        return false;
    m_titledCase = m_program.session().project().FileName;
    return true;
}

void Commands::settleGraphTitle() {
    const std::string& file = m_program.session().project().FileName;
    if (m_titledCase && *m_titledCase != file)
        m_program.settings().values().GraphTitle = titles::Program;
    m_titledCase = file;
}

std::variant<study::ui::GraphSubject, Refusal> Commands::graphOfOpenCase(study::GraphKind kind) {
    const ProjectSession& session = m_program.session();
    if (auto refused = session.graphRefusal()) return std::move(*refused);
    const Settings& settings = m_program.settings().values();
    // The window keeps the case that its graph was computed for.
    const project::ProjectCase current = session.project();
    auto made = study::sfGraph(current, kind, graphRange(settings), session.reportOptions());
    if (auto* refused = std::get_if<Refusal>(&made)) return std::move(*refused);
    const study::SfGraph& graph = std::get<study::SfGraph>(made);
    return study::ui::GraphSubject{
        graph, session.displayName(), study::graphCsv(graph),
        [current, graph](double target) { return study::valuesAt(current, graph, target); }};
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

void Commands::graphsFollow() {
    const ProjectSession& session = m_program.session();
    const project::ProjectCase& open = session.project();
    for (const GraphWindow& graph : m_graphs) {
        if (!graph.window) continue;
        const bool same = graph.shown->Input == open.Input && graph.shown->Units == open.Units;
        if (same) { // a save may have given it another name
            graph.shown->FileName = open.FileName;
            graph.window->setCaseName(session.displayName());
        }
        graph.window->caseChanged(same ? ""
                                  : graph.shown->FileName == open.FileName
                                      ? "The case has changed since."
                                      : "Another case is open: " + session.displayName() + '.');
    }
}

void Commands::graph(study::GraphKind kind) {
    settleGraphTitle();
    if (m_program.settings().values().GraphSetParams == 1 && !editGraphOptions(&m_window)) return;
    auto made = graphOfOpenCase(kind);
    if (const auto* refused = std::get_if<Refusal>(&made)) {
        m_program.messages().tell(refused->message,
                                  std::string(titles::Graph).append(titles::Error));
        return;
    }
    const auto shown = std::make_shared<project::ProjectCase>(m_program.session().project());
    auto* window =
        new frmGraph(std::get<study::ui::GraphSubject>(std::move(made)), graphOptions(kind),
                     graphActions(kind, shown), m_program.formServices(), viewParent());
    keep(*window);
    std::erase_if(m_graphs, [](const GraphWindow& graph) { return graph.window.isNull(); });
    m_graphs.push_back({window, shown});
    window->show();
    note("Graph " + std::string(study::rowOf(kind).caption) + ": " +
         m_program.session().displayName());
}

} // namespace telvo::app::ui
