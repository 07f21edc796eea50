// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/quantities.h"
#include "explain/Explaining.h"
#include "explain/Working.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::explain {

/// A number with its unit.
std::string numberText(double value, std::string_view unit, int digits);

/// What a quantity measures, by its key; angles have "deg".
struct Measure {
    engine::Kind kind = engine::Kind::Number;
    std::string_view unit;
};
Measure measureOf(std::string_view key, engine::Kind otherwise, std::int16_t units);

/// A decision on the way to a value: the rule, which way it went, and the comparison behind it.
struct Decided {
    Rule rule = Rule::Count;
    bool yes = false;
    TestPtr test; ///< none where a rule sets a bound
};

/// A step in words: the expression along the branches that were taken, with brackets where they are
/// needed, without terms that are 0; and the same with numbers and units for the symbols.
class FormulaText {
  public:
    /// The symbol that a reader sees in the place of another.
    using Shown = std::function<std::string_view(std::string_view symbol, const Where& where)>;

    FormulaText(const TracedStep& step, std::int16_t units, int digits, Shown shown);

    const std::string& formula() const { return m_formula; }
    const std::string& substituted() const { return m_substituted; }
    /// The decisions taken, outermost first.
    const std::vector<Decided>& decisions() const { return m_decisions; }

    /// The comparison that settled a decision, as text by symbols and by numbers; empty where it was
    /// not a single one.
    struct Condition {
        std::string text, shown;
    };
    Condition condition(const Test& test);

    /// What the texts so far speak of.
    const std::vector<Operand>& operands() const { return m_operands; }

  private:
    struct Piece;
    Piece pieceOf(const NodePtr& node);
    Piece symbolPiece(const Node& node) const;
    static Piece operation(const Node& node, Piece a, Piece b);
    Piece bounded(const Node& node);
    static Piece powered(Piece base, const char* exponent);
    static Piece called(const char* function, const Piece& a, const Piece* b = nullptr);
    void countSymbols(const NodePtr& node);
    std::string printedSymbol(const Node& node) const;
    void keep(const Piece& piece);

    TracedStep m_step;
    std::int16_t m_units;
    int m_digits;
    Shown m_shown;
    std::string m_formula, m_substituted;
    std::vector<Decided> m_decisions;
    std::vector<Operand> m_operands;
    std::vector<std::string_view> m_ofOthers; ///< symbols that are also said of other pillars
};

} // namespace telvo::explain
