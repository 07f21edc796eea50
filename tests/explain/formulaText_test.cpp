// SPDX-License-Identifier: GPL-3.0-or-later
// What the printer makes of an expression.
#include "explain/formulaText.h"

#include <gtest/gtest.h>

namespace telvo::explain {
namespace {

Traced H() {
    return symbolOf("H", {}, 900);
}
Traced W() {
    return symbolOf("Wb", {0, engine::FirstSide}, 60);
}
Traced C(int pillar) {
    return symbolOf("C", {0, 0, pillar}, 70.0 + pillar);
}
Traced load() {
    return symbolOf("Ls", {0, engine::FirstSide}, 250);
}

FormulaText textOf(const Traced& x, const Where& where = {}) {
    return {{"D", where, x.value, x.tree()},
            0,
            DefaultDigits,
            [](std::string_view symbol, const Where&) { return symbol; }};
}

TEST(FormulaText, BracketsStandWhereTheyAreNeeded) {
    const struct {
        Traced x;
        const char *formula, *substituted;
    } cases[] = {
        {H() - (W() - 2), "H - (Wb - 2)", "900 ft - (60 ft - 2)"},
        {H() - W() - 2, "H - Wb - 2", "900 ft - 60 ft - 2"},
        {H() / (W() * 2), "H / (Wb * 2)", "900 ft / (60 ft * 2)"},
        {H() / W() * 2, "H / Wb * 2", "900 ft / 60 ft * 2"},
        {2 * (H() + W()), "2 * (H + Wb)", "2 * (900 ft + 60 ft)"},
        {square(W()), "Wb^2", "(60 ft)^2"},
        {cube(H() / W()), "(H / Wb)^3", "(900 ft / 60 ft)^3"},
        {square(load()), "Ls^2", "(250 lb/ft)^2"},
        {H() * -W(), "H * (-Wb)", "900 ft * (-60 ft)"},
        {root(H() + 1), "sqrt(H + 1)", "sqrt(900 ft + 1)"},
        {lesser(H(), W()) / 2, "min(H, Wb) / 2", "min(900 ft, 60 ft) / 2"},
        {hundredths(1 - 0.28 * ln(H() / W())), "round(1 - 0.28 * ln(H / Wb), 2)",
         "round(1 - 0.28 * ln(900 ft / 60 ft), 2)"},
    };
    for (const auto& [x, formula, substituted] : cases) {
        const FormulaText text = textOf(x);
        EXPECT_EQ(text.formula(), formula);
        EXPECT_EQ(text.substituted(), substituted);
    }
}

TEST(FormulaText, TermsThatAreNothingFallAway) {
    const FormulaText text = textOf(0 + H() + 0.0 * W() - 0);
    EXPECT_EQ(text.formula(), "H");
    ASSERT_EQ(text.operands().size(), 1U); // Wb is spoken of nowhere
    EXPECT_EQ(text.operands()[0].key, "inputs.DepthCover");
    EXPECT_EQ(textOf(0 / H() + 0 * W()).formula(), "0");
    EXPECT_EQ(textOf(H() * symbolOf("Sl", {0, engine::FirstSide}, 0)).substituted(),
              "900 ft * 0 ft");
}

TEST(FormulaText, ASymbolOfSeveralPillarsIsNumbered) {
    EXPECT_EQ(textOf(C(2) + 1, {0, 0, 2}).formula(), "C + 1");
    EXPECT_EQ(textOf(C(1) + C(2), {0, 0, 2}).formula(), "C1 + C2");
    EXPECT_EQ(textOf(symbolOf("Sl", {0, engine::SecondSide}, 1) + 1, {}).formula(), "Sl2 + 1");
}

TEST(FormulaText, OnlyTheBranchThatWasTakenIsSpokenOf) {
    Explaining c;
    const auto chosen = [&](const Traced& depth) {
        return c.choose(Rule::NoBarrier, W() == 0 || !(depth > 100), H(),
                        c.atMost(Rule::RFactorFull, depth - W(), 1));
    };
    const Traced deep = symbolOf("H", {}, 101), shallow = symbolOf("H", {}, 99);
    FormulaText one = textOf(chosen(deep));
    EXPECT_EQ(one.formula(), "min(1, H - Wb)");
    ASSERT_EQ(one.decisions().size(), 2U);
    EXPECT_FALSE(one.decisions()[0].yes);
    EXPECT_TRUE(one.decisions()[1].yes);
    EXPECT_TRUE(one.condition(*one.decisions()[0].test).text.empty()); // "Wb is not 0" says nothing

    FormulaText other = textOf(chosen(shallow));
    ASSERT_EQ(other.decisions().size(), 1U);
    const auto condition = other.condition(*other.decisions()[0].test);
    EXPECT_EQ(condition.text, "H <= 100");
    EXPECT_EQ(condition.shown, "99 ft <= 100");
}

} // namespace
} // namespace telvo::explain
