// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "explain/Traced.h"

#include <functional>
#include <vector>

namespace telvo::explain {

/// A quantity with the expression that it was computed by.
struct TracedStep {
    std::string_view symbol;
    Where where;
    double value = 0;
    NodePtr tree;
};

/// Writes down every quantity that a rule names; from there on it stands under its symbol.
struct Explaining {
    using Number = Traced;
    using Truth = explain::Truth;

    Where here;
    std::vector<TracedStep> steps;
    /// Quantities that are no step of their own: their number stands in the formulas of others.
    std::function<bool(std::string_view symbol, const Where& where, const Traced& x)> leftOut;

    void at(const Where& where) { here = where; }

    Traced choose(Rule rule, const Truth& yes, const Traced& a, const Traced& b) {
        if (!yes.test) return yes.yes ? a : b;
        return decided(Op::Choice, rule, yes.yes, yes.yes ? a.value : b.value, a, b, yes.test);
    }
    Traced atMost(Rule rule, const Traced& x, const Traced& limit) {
        const bool held = x.value > limit.value;
        return decided(Op::Least, rule, held, held ? limit.value : x.value, x, limit);
    }
    Traced atLeast(Rule rule, const Traced& x, const Traced& limit) {
        const bool held = x.value < limit.value;
        return decided(Op::Greatest, rule, held, held ? limit.value : x.value, x, limit);
    }
    Traced stepped(Rule, const Traced& rounded) { return rounded; }
    Traced named(std::string_view symbol, const Traced& x) {
        if (leftOut && leftOut(symbol, here, x)) return x.value;
        steps.push_back({symbol, here, x.value, x.tree()});
        return symbolOf(symbol, here, x.value);
    }
    /// A reader sees the number that the symbol has.
    Traced shownAs(std::string_view symbol, const Traced& x) {
        Traced shown = symbolOf(symbol, here, x.value);
        for (const TracedStep& step : steps)
            if (step.symbol == symbol && step.where == here)
                shown.node = symbolOf(symbol, here, step.value).node;
        return shown;
    }
    static Traced constant(std::string_view words, double x) {
        return {x, std::make_shared<const Node>(Node{Op::Constant, x, {}, {}, words})};
    }
    static void demand(Stop, const Truth&) {}

  private:
    static Traced decided(Op op, Rule rule, bool yes, double value, const Traced& a,
                          const Traced& b, TestPtr test = {}) {
        return {value, std::make_shared<const Node>(Node{
                           op, value, a.tree(), b.tree(), {}, {}, rule, yes, std::move(test)})};
    }
};

} // namespace telvo::explain
