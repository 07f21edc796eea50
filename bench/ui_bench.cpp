// SPDX-License-Identifier: GPL-3.0-or-later
//
// What the desktop program's user waits for, on a real main window in a home of its own.
#include "app/ui/frmMain.h"
#include "app/ui/Program.h"
#include "base/ui/PrintDialogs.h"
#include "plot/panelPlan.h"
#include "plot/ui/PlanView.h"
#include "project/CaseFile.h"
#include "study/graph/sfGraph.h"
#include "study/ui/GraphView.h"

#include <benchmark/benchmark.h>
#include <memory>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace telvo;

namespace {

struct NoFiles : FileDialogs {
    std::optional<std::string> openFile(std::string_view, std::string_view,
                                        const std::vector<std::string>&) override {
        return std::nullopt;
    }
    std::optional<std::string> saveFile(std::string_view, std::string_view,
                                        const std::vector<std::string>&,
                                        std::string_view) override {
        return std::nullopt;
    }
    std::optional<std::string> chooseFolder(std::string_view, std::string_view) override {
        return std::nullopt;
    }
};

/// The running program with an example open.
class Desk {
  public:
    Desk() {
        QDir().mkpath(m_home.filePath("MyBODRA/Temp"));
        {
            QFile settings(m_home.filePath("MyBODRA/TELVO.INI"));
            if (settings.open(QFile::WriteOnly))
                settings.write("[Version]\nINIFileVersion=050817\n[Settings]\nDisplayHistoryWin=1\n"
                               "EnableMainMenuToolbar=1\n");
        }
        const std::string home = m_home.path().toStdString();
        app::SystemFolders system;
        system.program = home;
        system.documents = home;
        app::ui::Surroundings around{system,
                                     TELVO_EXAMPLES_DIR "/two-side-gobs.TLV",
                                     [] { return std::chrono::year{2014} / 1 / 1; },
                                     [](auto, auto, Answer preset, auto) { return preset; },
                                     m_files,
                                     m_print};
        program = std::make_unique<app::ui::Program>(std::move(around));
        program->start();
        QApplication::processEvents();
    }
    QAction& action(app::ui::MenuEntry entry) { return program->window().action(entry); }

    std::unique_ptr<app::ui::Program> program;

  private:
    QTemporaryDir m_home;
    NoFiles m_files;
    telvo::ui::QtPrintDialogs m_print;
};

/// From the command to the painted report, the older results window going first.
void pressResults(benchmark::State& state) {
    Desk desk;
    QAction& stabilityFactors = desk.action(app::ui::MenuEntry::StabilityFactors);
    for (auto _ : state) {
        stabilityFactors.trigger();
        QApplication::processEvents();
    }
}
BENCHMARK(pressResults)->Unit(benchmark::kMillisecond);

/// From the command to the painted parameter form.
void openParameters(benchmark::State& state) {
    Desk desk;
    QAction& parameters = desk.action(app::ui::MenuEntry::Parameters);
    for (auto _ : state) {
        parameters.trigger();
        QApplication::processEvents();
        state.PauseTiming();
        for (QWidget* top : QApplication::topLevelWidgets())
            if (top->objectName() == "frmTELVOParm") delete top;
        desk.program->window().setBlockedBy(nullptr);
        state.ResumeTiming();
    }
}
BENCHMARK(openParameters)->Unit(benchmark::kMillisecond);

project::ProjectCase readExample(const std::string& name) {
    project::ProjectCase current;
    if (project::readCaseFile(TELVO_EXAMPLES_DIR "/" + name, current).fault) std::abort();
    return current;
}

/// A plan with everything on it: painted again, and after an input that was typed computed, placed
/// and painted.
void repaintPlan(benchmark::State& state, QSize size, bool typed) {
    const project::ProjectCase current = readExample("bleeder-rows-c-d.TLV");
    telvo::plot::ui::PlanView view("plan");
    view.resize(size);
    view.setDrawing(std::get<plot::Drawing>(plot::panelPlan(current, {})));
    view.show();
    QApplication::processEvents(); // only a window on the screen is painted
    for (auto _ : state) {
        if (typed) view.setDrawing(std::get<plot::Drawing>(plot::panelPlan(current, {})));
        view.repaint();
    }
}
BENCHMARK_CAPTURE(repaintPlan, asItWas, QSize(900, 700), false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(repaintPlan, typed, QSize(900, 700), true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(repaintPlan, fullScreen, QSize(1600, 1000), true)->Unit(benchmark::kMillisecond);

/// A graph of an example: computed, composed and painted, in a new window of the usual size.
void drawGraph(benchmark::State& state, const char* example, study::GraphKind kind) {
    const project::ProjectCase current = readExample(example);
    study::GraphOptions options;
    options.GridStyle = 3;
    options.XAxisTitle = options.YAxisTitle = options.GraphTitle = "Title";
    for (auto _ : state) {
        auto made = study::sfGraph(current, kind, {}, {});
        study::ui::GraphView view("graph", std::move(std::get<study::SfGraph>(made)), "caption",
                                  options);
        view.resize(view.sizeHint());
        view.show();
        QApplication::processEvents();
    }
}
BENCHMARK_CAPTURE(drawGraph, depth, "two-side-gobs.TLV", study::GraphKind::DepthCover)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawGraph, height, "metric-two-side-gobs.TLV", study::GraphKind::EntryHeight)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(drawGraph, barrier, "two-side-gobs.TLV", study::GraphKind::SecondBarrier)
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
