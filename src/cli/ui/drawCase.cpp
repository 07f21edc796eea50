// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ui/drawCase.h"

#include "base/files.h"
#include "base/sourceDate.h"
#include "base/titles.h"
#include "base/ui/qtText.h"
#include "chart/ui/picture.h"
#include "chart/ui/pictureFile.h"
#include "cli/cases.h"
#include "cli/outputs.h"
#include "engine/questions.h"
#include "plot/ui/plotPicture.h"
#include "run/caseRun.h"
#include "study/graph/sfGraph.h"
#include "study/output/headlines.h"
#include "study/output/StudyOutput.h"
#include "study/ui/drawings/GraphChart.h"
#include "study/ui/drawings/studyDrawings.h"

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <QApplication>
#include <QFileInfo>
#include <QHash>
#include <variant>

namespace telvo::cli {

namespace {

using chart::ui::Picture;

/// A picture, or why the case has none.
using Drawn = std::variant<Picture, Refusal>;

/// A parametric graph, drawn as the desktop program draws it with its initial options.
Drawn graphOf(study::GraphKind kind, const CasePicture& asked) {
    const project::ProjectCase& current = asked.current;
    auto made = study::sfGraph(current, kind, asked.range, asked.report);
    if (auto* refused = std::get_if<Refusal>(&made)) return std::move(*refused);
    const auto& computed = std::get<study::SfGraph>(made);
    const study::GraphRow& row = study::rowOf(kind);
    study::GraphOptions drawing;
    drawing.GridStyle = 3;
    drawing.GraphUnits = current.Units;
    drawing.GraphTitle = titles::Program;
    drawing.XAxisTitle = row.axisTitle;
    drawing.YAxisTitle = row.factorTitle();
    drawing.RoundTELVOSF = asked.report.RoundTELVOSF;
    return study::ui::graphPicture(computed, drawing, withoutFolder(current.FileName),
                                   study::graphCsv(computed));
}

/// A picture of the run; what depends on the pass shows the last one of the case's condition.
Drawn runPicture(plot::PictureKind kind, const CasePicture& asked) {
    if (kind == plot::PictureKind::PanelLayout) { // which needs no run
        auto made = plot::panelPlan(asked.current, {});
        if (auto* refused = std::get_if<Refusal>(&made)) return std::move(*refused);
        return plot::ui::planPicture(std::get<plot::Drawing>(std::move(made)));
    }
    const run::RunOutcome outcome = run::runCase(asked.current);
    if (const auto* refused = std::get_if<Refusal>(&outcome)) return *refused;
    if (const auto* fault = std::get_if<Fault>(&outcome)) return Refusal{faultText(*fault), {}, {}};
    const auto& run = std::get<run::Run>(outcome);
    return plot::ui::plotPicture(kind, run, asked.report, engine::lastPass(run.in), {});
}

/// Everything that can be drawn of a case: the pictures of the plots window, then the graphs.
std::vector<PlotKind> plotKinds() {
    std::vector<PlotKind> kinds;
    for (const plot::PictureRow& row : plot::PictureRows)
        kinds.push_back({.name = row.name,
                         .shows = std::string(row.shows),
                         .hasNumbers = row.hasNumbers,
                         .takesReportOptions = row.hasNumbers});
    for (const study::GraphRow& row : study::GraphRows) {
        std::string over(row.parameter);
        over[0] = static_cast<char>(over[0] - 'A' + 'a');
        kinds.push_back(
            {.name = row.name,
             .shows =
                 (row.isOfBarrier() ? "barrier factor over " : "stability factor over ") + over,
             .hasNumbers = true,
             .takesRange = true,
             .takesReportOptions = true});
    }
    return kinds;
}

/// Given: kind  index in plotKinds()
Drawn drawKind(std::size_t kind, const CasePicture& asked) {
    if (kind < plot::PictureRows.size()) return runPicture(plot::PictureRows[kind].kind, asked);
    return graphOf(static_cast<study::GraphKind>(kind - plot::PictureRows.size()), asked);
}

/// "panel plan" for the case file panel.TLV.
std::string pictureName(const project::ProjectCase& current, std::string_view kind) {
    const QString file = QFileInfo(telvo::ui::toQt(current.FileName)).completeBaseName();
    return telvo::ui::fromQt(file).append(" ").append(kind);
}

/// Keeps Qt's remarks on surroundings that do not matter to a drawing off the terminal, and what
/// would abort the program ends it with a message.
void onQtMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type != QtFatalMsg) return;
    Console(stdin, stdout, stderr).complain(telvo::ui::fromQt(text));
    std::_Exit(FileTrouble);
}

/// What Qt needs while it draws; a program with windows has it. It ends with the picture: what is
/// left of it at the end of the program would outlive what it needs itself.
class DrawingSession {
  public:
    DrawingSession() {
        if (QCoreApplication::instance()) return;
        // Whatever the user's session asks for: there may be no session when a script draws.
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler(onQtMessage);
        // A file that is to be made again byte for byte has its fonts in one order.
        if (sourceDate()) QHashSeed::setDeterministicGlobalSeed();
        m_application.emplace(m_argc, m_argv);
    }

  private:
    // The arguments of the command line are not for Qt.
    int m_argc = 1;
    char m_name[10] = "telvo-cli";
    char* m_argv[2] = {m_name, nullptr};
    std::optional<QApplication> m_application;
};

PlotOutcome writePicture(Console& console, Picture& picture, const PictureOptions& options,
                         const std::string& target) {
    if (!options.size.empty())
        picture.size = {static_cast<qreal>(options.size[0]), static_cast<qreal>(options.size[1])};
    const auto bytes = chart::ui::pictureFile(picture, target, options.dpi);
    if (!bytes) return {FileTrouble, faultText(bytes.fault())};
    return {writeOrComplain(console, target, *bytes, options.existing), {}};
}

PlotOutcome drawCase(Console& console, const CasePicture& asked, const PictureOptions& options,
                     const std::string& target) {
    const DrawingSession session;
    Drawn drawn = drawKind(asked.kind, asked);
    if (const auto* refused = std::get_if<Refusal>(&drawn)) return {Refused, refused->message};
    Picture& picture = std::get<Picture>(drawn);
    picture.name = pictureName(asked.current, plotKinds()[asked.kind].name);
    return writePicture(console, picture, options, target);
}

PlotOutcome drawStudy(Console& console, const StudyPicture& asked, const PictureOptions& options,
                      const std::string& target) {
    const DrawingSession session;
    const study::StudyOutput& output = asked.output;
    const study::ui::Drawing drawing =
        study::ui::drawingOf(output.answer, asked.look, asked.RoundTELVOSF);
    if (!drawing.compose) return {Refused, study::ui::NoSweepPicture};
    Picture picture = study::ui::pictureOf(
        drawing, std::string(study::titleOf(output.answer)) + " - " + asked.caseName,
        study::ui::pictureSource(asked.caseName, output.tally, false));
    return writePicture(console, picture, options, target);
}

} // namespace

static_assert(LowestDpi == chart::ui::LowestResolution &&
              HighestDpi == chart::ui::HighestResolution &&
              DefaultDpi == chart::ui::DefaultResolution);

Plotter desktopPlotter() {
    Plotter plotter;
    plotter.kinds = plotKinds();
    plotter.drawCase = drawCase;
    plotter.drawStudy = drawStudy;
    return plotter;
}

} // namespace telvo::cli
