// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ui/drawCase.h"

#include "base/files.h"
#include "base/sourceDate.h"
#include "base/titles.h"
#include "base/ui/qtText.h"
#include "chart/ui/picture.h"
#include "chart/ui/pictureFile.h"
#include "cli/outputs.h"
#include "engine/questions.h"
#include "plot/distribution.h"
#include "plot/panelPlan.h"
#include "plot/ui/DistributionChart.h"
#include "plot/ui/paintDrawing.h"
#include "report/sections.h"
#include "run/caseRun.h"
#include "study/graph/sfGraph.h"
#include "study/ui/GraphChart.h"

#include <cstdio>
#include <cstdlib>
#include <QApplication>
#include <QFileInfo>
#include <QHash>
#include <variant>

namespace telvo::cli {

namespace {

using chart::ui::Picture;

/// A picture, or why the case has none.
using Drawn = std::variant<Picture, Refusal>;

Drawn plan(const project::ProjectCase& current, const PlotOptions&) {
    auto made = plot::panelPlan(current, {});
    if (auto* refused = std::get_if<Refusal>(&made)) return std::move(*refused);
    Picture picture;
    picture.paint = [drawing = std::move(std::get<plot::Drawing>(made))](QPainter& painter,
                                                                         const QRectF& page) {
        plot::ui::paintDrawing(drawing, painter, page, chart::ui::paperPalette());
    };
    return picture;
}

/// A parametric graph, drawn as the desktop program draws it with its initial options.
template <study::GraphKind kind>
Drawn graph(const project::ProjectCase& current, const PlotOptions& options) {
    auto made = study::sfGraph(current, kind, options.range, options.report);
    if (auto* refused = std::get_if<Refusal>(&made)) return std::move(*refused);
    const auto& computed = std::get<study::SfGraph>(made);
    constexpr const study::GraphRow& row = study::rowOf(kind);
    study::GraphOptions drawing;
    drawing.GridStyle = 3;
    drawing.GraphUnits = current.Units;
    drawing.GraphTitle = titles::Program;
    drawing.XAxisTitle = row.axisTitle;
    drawing.YAxisTitle = row.isOfBarrier() ? "Barrier Stability Factor" : "Stability Factor";
    drawing.RoundTELVOSF = options.report.RoundTELVOSF;
    return study::ui::graphPicture(computed, drawing, withoutFolder(current.FileName),
                                   study::graphCsv(computed));
}

/// Bars of a distribution. The stresses are those of the last pass of the case's condition.
template <auto distribution>
Drawn bars(const project::ProjectCase& current, const PlotOptions& options) {
    const run::RunOutcome outcome = run::runCase(current);
    if (const auto* refused = std::get_if<Refusal>(&outcome)) return *refused;
    if (const auto* fault = std::get_if<Fault>(&outcome)) return Refusal{faultText(*fault), {}, {}};
    return plot::ui::distributionPicture(distribution(std::get<run::Run>(outcome), options.report),
                                         {});
}

plot::Distribution stressOfLastPass(const run::Run& run, const report::ReportOptions& options) {
    return plot::stressDistribution(run, options, engine::lastPass(run.in));
}

struct DrawnKind {
    PlotKind kind;
    Drawn (*draw)(const project::ProjectCase& current, const PlotOptions& options);
};

template <study::GraphKind kind>
constexpr DrawnKind graphKind(std::string_view name, std::string_view shows) {
    return {{.name = name,
             .shows = shows,
             .hasNumbers = true,
             .takesRange = true,
             .takesReportOptions = true},
            graph<kind>};
}

/// Everything that can be drawn; the help text follows this table.
constexpr DrawnKind Kinds[] = {
    {{.name = "plan", .shows = "plan of the panel, to scale and dimensioned"}, plan},
    {{.name = "capacity",
      .shows = "load-bearing capacity of the pillars, as bars to scale",
      .hasNumbers = true,
      .takesReportOptions = true},
     bars<plot::capacityDistribution>},
    {{.name = "stress",
      .shows = "stresses of pillars and barriers, with their strengths",
      .hasNumbers = true,
      .takesReportOptions = true},
     bars<stressOfLastPass>},
    graphKind<study::GraphKind::EntryHeight>("sf-height", "stability factor over entry height"),
    graphKind<study::GraphKind::DepthCover>("sf-depth", "stability factor over depth of cover"),
    graphKind<study::GraphKind::XcutAngle>("sf-angle", "stability factor over crosscut angle"),
    graphKind<study::GraphKind::XcutSpacing>("sf-spacing",
                                             "stability factor over crosscut spacing"),
    graphKind<study::GraphKind::FirstBarrier>("sfbar-first",
                                              "barrier factor over the first barrier's width"),
    graphKind<study::GraphKind::SecondBarrier>("sfbar-second",
                                               "barrier factor over the second barrier's width"),
};

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

PlotOutcome draw(Console& console, const project::ProjectCase& current, std::size_t kind,
                 const PlotOptions& options, const std::string& target) {
    // Whatever the user's session asks for: there may be no session when a script draws.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(onQtMessage);
    // A file that is to be made again byte for byte has its fonts in one order.
    if (sourceDate()) QHashSeed::setDeterministicGlobalSeed();
    // The arguments of the command line are not for Qt.
    int argc = 1;
    char name[] = "telvo-cli";
    char* argv[] = {name, nullptr};
    const QApplication application(argc, argv);

    Drawn drawn = Kinds[kind].draw(current, options);
    if (const auto* refused = std::get_if<Refusal>(&drawn)) return {Refused, refused->message};
    Picture& picture = std::get<Picture>(drawn);
    picture.size = {static_cast<qreal>(options.size[0]), static_cast<qreal>(options.size[1])};
    picture.name = pictureName(current, Kinds[kind].kind.name);
    const auto bytes = chart::ui::pictureFile(picture, target, options.dpi);
    if (!bytes) return {FileTrouble, faultText(bytes.fault())};
    return {writeOrComplain(console, target, *bytes, options.existing), {}};
}

} // namespace

Plotter desktopPlotter() {
    Plotter plotter;
    for (const DrawnKind& one : Kinds)
        plotter.kinds.push_back(one.kind);
    plotter.lowestDpi = chart::ui::LowestResolution;
    plotter.highestDpi = chart::ui::HighestResolution;
    plotter.defaultDpi = chart::ui::DefaultResolution;
    plotter.draw = draw;
    return plotter;
}

} // namespace telvo::cli
