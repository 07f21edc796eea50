// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "explain/Explaining.h"

#include <functional>
#include <set>
#include <string>

namespace telvo::explain {

/// An expression as a spreadsheet writes it, with both branches of every decision.
class SheetFormula {
  public:
    /// What stands for a symbol: its cell, or its name.
    using Leaf = std::function<std::string(const Node& symbol)>;
    /// Takes an expression into a cell of its own and says which: what stands several times in a
    /// formula, as a number does that is rounded.
    using Apart = std::function<std::string(const std::string& expression, double value)>;

    /// Given: apart  none for a formula that is only read
    explicit SheetFormula(Leaf leaf, Apart apart = {})
        : m_leaf(std::move(leaf)), m_apart(std::move(apart)) {}

    std::string operator()(const NodePtr& node);
    std::string operator()(const Test& test) const;

  private:
    struct Text {
        std::string text;
        int binds;
        bool zero = false;
    };
    Text textOf(const NodePtr& node) const;
    Text choice(const NodePtr& node) const;
    Text rounded(const Node& node) const;
    Text operation(const Node& node) const;
    std::string bracketed(const NodePtr& node, int least) const;

    Leaf m_leaf;
    Apart m_apart;
    std::set<const Node*> m_shared; ///< decisions that stand several times in the expression
};

/// The decisions that stand several times in a tree.
std::set<const Node*> sharedDecisions(const NodePtr& tree);

/// Which rule applies and why.
struct SheetReason {
    std::string expression; ///< follows the branches; empty where every one goes without saying
    std::string_view now;   ///< what it comes to
};
/// Given: symbol  of the quantity
SheetReason sheetReason(const NodePtr& node, std::string_view symbol, const SheetFormula& formula);

/// A text as an expression of a spreadsheet has it.
std::string sheetText(std::string_view text);

/// Every symbol of a tree, on whatever branch.
void visitSheetSymbols(const NodePtr& node, const std::function<void(const Node&)>& visit);

} // namespace telvo::explain
