// SPDX-License-Identifier: GPL-3.0-or-later
//
// The parametric graphs of a panel between two side gobs. Painted, each has to take less than 20
// ms; the depth graph, with every step of arch factor and AMZ breadth located, is the longest.
#include "project/CaseFile.h"
#include "study/graph/sfGraph.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

using namespace telvo;

namespace {

project::ProjectCase betweenTwoGobs() {
    project::ProjectCase current = project::newCase(project::English);
    if (project::readCaseFile(TELVO_EXAMPLES_DIR "/two-side-gobs.TLV", current).fault) std::abort();
    return current;
}

void graph(benchmark::State& state) {
    const project::ProjectCase current = betweenTwoGobs();
    const auto kind = static_cast<study::GraphKind>(state.range(0));
    state.SetLabel(std::string(study::rowOf(kind).caption));
    for (auto _ : state)
        benchmark::DoNotOptimize(study::sfGraph(current, kind, {}, {}));
}
BENCHMARK(graph)->DenseRange(0, study::GraphKinds - 1)->Unit(benchmark::kMillisecond);

void valuesAtTarget(benchmark::State& state) {
    const project::ProjectCase current = betweenTwoGobs();
    const auto outcome = study::sfGraph(current, study::GraphKind::DepthCover, {}, {});
    for (auto _ : state)
        benchmark::DoNotOptimize(study::valuesAt(current, std::get<study::SfGraph>(outcome), 1.5));
}
BENCHMARK(valuesAtTarget)->Unit(benchmark::kMillisecond);

} // namespace
