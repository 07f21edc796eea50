// SPDX-License-Identifier: GPL-3.0-or-later
//
// Tables of 10,000 cases. Written or read as CSV they have to take at most 1 s, as a workbook 3 s.
#include "table/csvTable.h"
#include "table/workbookReader.h"
#include "table/workbookWriter.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

using namespace telvo;

namespace {

/// Metric cases with numbers of all lengths, a third of them with 17 digits.
std::vector<project::ProjectCase> manyCases() {
    std::vector<project::ProjectCase> cases(10'000, project::newCase(project::Metric));
    int number = 0;
    for (project::ProjectCase& each : cases) {
        ++number;
        each.Title = "Panel " + std::to_string(number);
        each.Description = "One of many\r\nwith two lines";
        each.Input.DepthCover = 100 + number / 7.0;
        each.Input.EntryHeight = 2 + number % 10 * 0.1;
        each.Input.NumberEntries = 10;
        for (int i = 1; i <= 9; ++i)
            each.Input.XcutCenters[i] = 20 + number / (3.0 + i);
    }
    return cases;
}

void writeText(benchmark::State& state) {
    const auto cases = manyCases();
    for (auto _ : state)
        benchmark::DoNotOptimize(table::writeCsv(cases, ','));
}
BENCHMARK(writeText)->Unit(benchmark::kMillisecond);

void readText(benchmark::State& state) {
    const auto written = table::writeCsv(manyCases(), ';');
    for (auto _ : state)
        if (table::readCsv(written->bytes, "t")->rows.size() != 10'000) std::abort();
}
BENCHMARK(readText)->Unit(benchmark::kMillisecond);

void writeBook(benchmark::State& state) {
    const auto cases = manyCases();
    for (auto _ : state)
        benchmark::DoNotOptimize(table::writeWorkbook(cases));
}
BENCHMARK(writeBook)->Unit(benchmark::kMillisecond);

void readBook(benchmark::State& state) {
    const auto written = table::writeWorkbook(manyCases());
    for (auto _ : state)
        if (table::readWorkbook(*written, "t")->rows.size() != 10'000) std::abort();
}
BENCHMARK(readBook)->Unit(benchmark::kMillisecond);

} // namespace
