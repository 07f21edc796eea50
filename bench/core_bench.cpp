// SPDX-License-Identifier: GPL-3.0-or-later
//
// The road of one case, step by step, on a panel of five entries between two side gobs.

#include "engine/driver.h"
#include "project/CaseFile.h"
#include "report/sections.h"
#include "run/caseRun.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

using namespace telvo;

namespace {

const std::string CasePath = TELVO_EXAMPLES_DIR "/two-side-gobs.TLV";

project::ProjectCase fiveEntries() {
    project::ProjectCase current = project::newCase(project::English);
    if (project::readCaseFile(CasePath, current).fault) std::abort();
    return current;
}

void readCaseFile(benchmark::State& state) {
    for (auto _ : state) {
        project::ProjectCase current = project::newCase(project::English);
        benchmark::DoNotOptimize(project::readCaseFile(CasePath, current));
        benchmark::DoNotOptimize(current);
    }
}
BENCHMARK(readCaseFile)->Unit(benchmark::kMicrosecond);

void prepareAndCompute(benchmark::State& state) {
    const project::ProjectCase current = fiveEntries();
    for (auto _ : state) {
        const auto prepared = engine::PrepareAnalysis(current.Input, current.Units);
        auto results = engine::ComputeAnalysis(std::get<engine::WorkingInputs>(prepared));
        benchmark::DoNotOptimize(results);
    }
}
BENCHMARK(prepareAndCompute)->Unit(benchmark::kNanosecond);

void sixPages(benchmark::State& state) {
    const project::ProjectCase current = fiveEntries();
    const auto outcome = run::runCase(current);
    const auto& run = std::get<run::Run>(outcome);
    const report::ReportOptions options;
    for (auto _ : state) {
        benchmark::DoNotOptimize(report::makeReport(run, options));
    }
}
BENCHMARK(sixPages)->Unit(benchmark::kMicrosecond);

void wholeRoad(benchmark::State& state) {
    const project::ProjectCase current = fiveEntries();
    for (auto _ : state)
        benchmark::DoNotOptimize(report::makeReport(std::get<run::Run>(run::runCase(current))));
}
BENCHMARK(wholeRoad)->Unit(benchmark::kMicrosecond);

} // namespace
