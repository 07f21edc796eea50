// SPDX-License-Identifier: GPL-3.0-or-later
//
// Time per value of the elementary functions: one by one, in packs, and those of the C library.

#include "base/Pack.h"
#include "elementaryLoops.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

using namespace telvo;
using bench::Elementary;

namespace {

constexpr int Count = 2048; // in and out stay in the first cache

struct Row {
    const char* name;
    Elementary function;
    double from, to;
    double (*library)(double); // null: it has none
};

const Row Rows[] = {
    {"ln", Elementary::Ln, 0.05, 20, [](double x) { return std::log(x); }},
    {"sine", Elementary::Sine, 0, 1.5707963, [](double x) { return std::sin(x); }},
    {"tangent", Elementary::Tangent, 0, 1.569, [](double x) { return std::tan(x); }},
    {"exponential", Elementary::Exponential, -20, 20, [](double x) { return std::exp(x); }},
    {"inverseNormal", Elementary::InverseNormal, 1e-6, 1 - 1e-6, nullptr},
};

template <class Loop>
void perValue(benchmark::State& state, const Row& row, Loop loop) {
    std::vector<double> in(Count);
    std::vector<double> out(Count);
    for (int i = 0; i < Count; ++i) {
        const double part = std::fmod(i * 0.6180339887498949, 1);
        in[static_cast<std::size_t>(i)] = row.from + part * (row.to - row.from);
    }
    for (auto _ : state) {
        loop(in.data(), out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.counters["perValue"] = benchmark::Counter(
        Count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void add(const Row& row, const char* how, void (*run)(benchmark::State&, const Row&)) {
    benchmark::RegisterBenchmark((std::string(row.name) + '/' + how).c_str(), run, row);
}

} // namespace

int main(int argc, char** argv) {
    for (const Row& row : Rows) {
        if (row.library)
            add(row, "library", [](benchmark::State& state, const Row& r) {
                perValue(state, r, [&](const double* in, double* out) {
                    for (int i = 0; i < Count; ++i)
                        out[i] = r.library(in[i]);
                });
            });
        add(row, "oneByOne", [](benchmark::State& state, const Row& r) {
            perValue(state, r, [&](const double* in, double* out) {
                bench::elementaryLoop<double>(r.function, in, out, Count);
            });
        });
        add(row, "baseline", [](benchmark::State& state, const Row& r) {
            perValue(state, r, [&](const double* in, double* out) {
                bench::elementaryLoop<Pack<Baseline>>(r.function, in, out, Count);
            });
        });
#ifdef TELVO_BENCH_AVX2
        if (__builtin_cpu_supports("avx2"))
            add(row, "avx2", [](benchmark::State& state, const Row& r) {
                perValue(state, r, [&](const double* in, double* out) {
                    bench::elementaryLoopAvx2(r.function, in, out, Count);
                });
            });
#endif
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
