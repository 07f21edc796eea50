// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Pack.h"
#include "batch/columns.h"
#include "criteria/assess.h"
#include "engine/InputsOf.h"
#include "engine/quantities.h"
#include "engine/rules/feasibility.h"
#include "engine/rules/pass.h"
#include "engine/rules/preparation.h"
#include "project/automaticRules.h"

/// The road of a pack of cases. Included by one source per instruction set and by nobody else.
namespace telvo::batch {

/// Calls visit(number) for what is asked for, in a fixed order of slots.
template <Wanted W, class N, class Visit>
TELVO_INLINE void visitWanted(const engine::RunResultsOf<N>& run, Visit&& visit) {
    using namespace engine;
    const auto& development = run.pass[Development];
    const auto& retreat = run.pass[Retreat];
    visit(development.TELVOSF);
    visit(retreat.TELVOSF);
    if constexpr (W == Wanted::Study) {
        const auto passes = [&](const PerSideOf<N>& a, const PerSideOf<N>& b) {
            for (const int k : AllSides)
                visit(a[k]);
            for (const int k : AllSides)
                visit(b[k]);
        };
        passes(development.BarrierSF, retreat.BarrierSF);
        for (const int k : AllSides)
            visit(retreat.RemnantSF[k]);
        passes(development.LTRANSREM, retreat.LTRANSREM);
        passes(development.LTRANSBAR, retreat.LTRANSBAR);
        visit(run.panel.ArchFactor);
    }
}

/// Everything that a pack of cases goes through, kept between packs so that nothing is set up twice.
template <class Isa>
struct Road {
    using N = Pack<Isa>;
    engine::InputsOf<N> in;
    engine::SymbolsOf<N> s;
    engine::RunResultsOf<N> run;
    engine::AnalysisResultsOf<N> flat;
};

template <Wanted W, class Isa>
[[gnu::noinline]] void runColumns(const Columns& b, std::size_t from, std::size_t to) {
    using N = Pack<Isa>;
    using C = Plain<N>;
    using engine::Development, engine::Retreat;
    constexpr auto lanes = static_cast<std::size_t>(N::Lanes);
    Road<Isa> road;
    engine::InputsOf<N>& in = road.in;
    in.AMZ = b.AMZ;
    in.Arch = b.Arch;
    for (std::size_t i = 0; i < MostInputs; ++i)
        *numberIn(in, b.fields[i]) = b.uniform[i];
    N* varying[MostInputs];
    for (std::size_t j = 0; j < b.inputs; ++j)
        varying[j] = numberIn(in, b.fields[b.places[j]]);
    const N *limited[sizeof b.limits / sizeof b.limits[0]],
        *others[sizeof b.limits / sizeof b.limits[0]];
    for (std::size_t j = 0; j < b.limitCount; ++j) {
        limited[j] = numberIn(in, b.limits[j].field);
        others[j] = numberIn(in, b.limits[j].other);
    }
    {
        C once;
        engine::rules::prepareAngles(once, in, road.s);
    }
    for (std::size_t i = from; i < to; i += lanes) {
        C c;
        Mask<Isa> tame = true;
        for (std::size_t j = 0; j < b.inputs; ++j) {
            N x = N::load(b.in[j] + i);
            if (b.single[j]) x = toSingle(x);
            *varying[j] = x;
            tame = tame && engine::isTame(x);
        }
        if (b.breadthFollows)
            in.BreadthAMZ = project::automaticAMZBreadth(c, b.frame.english(), in.DepthCover);
        if (b.archFactorFollows) {
            N width = 0;
            for (int pillar = 1; pillar <= b.frame.NumberPillars; ++pillar)
                width = width + in.XcutCenters[pillar];
            in.ArchFactor = project::formArchFactor(c, b.frame.english(), width, in.DepthCover);
        }
        for (std::size_t j = 0; j < b.limitCount; ++j) {
            const Limit& limit = b.limits[j];
            const N& x = *limited[j];
            Mask<Isa> refused = false;
            switch (limit.kind) {
            case Limit::Within:
                refused = x < limit.low || x > limit.high;
                break;
            case Limit::Above:
                refused = !(x > limit.low);
                break;
            case Limit::AboveOther:
                refused = !(x > *others[j]);
                break;
            case Limit::UpToOther:
                refused = x > *others[j];
                break;
            }
            c.demand(Stop::InputRefused, !refused);
        }
        engine::rules::prepareSizes(c, b.frame, in, road.s);
        if (b.anglesVary) engine::rules::prepareAngles(c, in, road.s);
        engine::rules::computeRun(c, b.frame, road.s, road.run);
        engine::rules::visitImpossible(
            b.frame, b.entries, road.s, road.run.panel.PillarLength,
            [&](engine::rules::Impossible, const Where&, const Mask<Isa>& holds) {
                c.demand(Stop::InputRefused, !holds);
            });

        // From tame inputs only factors leave the range of their type; NaN fails the comparison.
        constexpr double largest = 3.4028234663852886e38;
        for (int p = Development; p <= Retreat; ++p) {
            const auto& pass = road.run.pass[p];
            c.demand(Stop::Unbounded, absolute(pass.TELVOSF) <= largest);
            for (const int k : b.frame.sidesInUse())
                c.demand(Stop::Unbounded, absolute(pass.BarrierSF[k]) <= largest);
        }
        for (const int k : b.frame.sidesInUse())
            c.demand(Stop::Unbounded, absolute(road.run.pass[Retreat].RemnantSF[k]) <= largest);

        const auto store = [&](std::size_t column, const N& x) { x.store(b.out[column] + i); };
        std::size_t column = 0, slot = 0; // columns are in the order of their slots
        if constexpr (W == Wanted::Everything) {
            engine::rules::plotStresses(c, b.frame, road.s, road.run.panel, road.run.pass[Retreat],
                                        road.run.stresses);
            engine::makeFlat(b.frame, road.s, road.run, road.flat);
            engine::visitQuantities(road.flat, [&](const char*, engine::Kind, const auto& field) {
                engine::visitNumbers(field, [&](const N& x) {
                    for (; column < b.outputs && b.slots[column] == slot; ++column)
                        store(column, x);
                    ++slot;
                });
            });
        } else {
            visitWanted<W>(road.run, [&](const N& x) {
                for (; column < b.outputs && b.slots[column] == slot; ++column)
                    store(column, x);
                ++slot;
            });
        }
        if constexpr (W != Wanted::Factors) {
            if (b.flags) {
                criteria::FactorsOf<N> factors;
                for (int p = Development; p <= Retreat; ++p) {
                    factors.panel[p] = road.run.pass[p].TELVOSF;
                    factors.barrier[p] = road.run.pass[p].BarrierSF;
                }
                const auto figures = criteria::figures(c, b.frame, road.s, factors, b.rounding);
                const PackBits<Isa> flags =
                    criteria::flags(c, b.frame, in, figures, factors, b.rounding);
                std::uint64_t words[lanes];
                flags.store(words);
                for (std::size_t lane = 0; lane < lanes; ++lane)
                    b.flags[i + lane] = static_cast<std::uint16_t>(words[lane]);
            }
        }
        std::uint64_t words[lanes];
        (bitWhere(c.computes, 1) | bitWhere(!tame, 2)).store(words);
        for (std::size_t lane = 0; lane < lanes; ++lane)
            b.status[i + lane] = static_cast<std::uint8_t>(words[lane]);
    }
}

template <class Isa>
void compute(const Columns& b, Wanted wanted, std::size_t from, std::size_t to) {
    switch (wanted) {
    case Wanted::Factors:
        return runColumns<Wanted::Factors, Isa>(b, from, to);
    case Wanted::Study:
        return runColumns<Wanted::Study, Isa>(b, from, to);
    case Wanted::Everything:
        return runColumns<Wanted::Everything, Isa>(b, from, to);
    }
}

} // namespace telvo::batch
