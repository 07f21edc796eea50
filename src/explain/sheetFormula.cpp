// SPDX-License-Identifier: GPL-3.0-or-later
#include "explain/sheetFormula.h"

#include "base/numbers.h"
#include "explain/words.h"

#include <cmath>

namespace telvo::explain {

namespace {

// How tight an expression holds together; a minus sign before a number holds tighter than a power.
constexpr int SheetSum = 1, SheetProduct = 2, SheetPower = 3, SheetAtom = 4;
constexpr int AllDigits = 17;

/// x as a whole number, a tie goes to the even one.
constexpr std::string_view Whole = "IF(ABS(x-TRUNC(x))=0.5,2*ROUND(x/2,0),ROUND(x,0))";
/// What the last of the 24 bits of single precision stands for.
constexpr std::string_view LastBit = "IF(x=0,1,2^(INT(LOG(ABS(x),2))-23))";

std::string_view sheetSign(Relation relation) {
    switch (relation) {
    case Relation::Less:
        return "<";
    case Relation::LessOrEqual:
        return "<=";
    case Relation::Equal:
        return "=";
    case Relation::NotEqual:
        return "<>";
    case Relation::GreaterOrEqual:
        return ">=";
    default:
        return ">";
    }
}

std::string replaced(std::string_view pattern, const std::string& x) {
    std::string out;
    for (const char c : pattern)
        if (c == 'x')
            out += x;
        else
            out += c;
    return out;
}

} // namespace

std::string sheetText(std::string_view text) {
    std::string out = "\"";
    for (const char c : text)
        out.append(c == '"' ? 2 : 1, c);
    return out + "\"";
}

std::set<const Node*> sharedDecisions(const NodePtr& tree) {
    std::set<const Node*> seen, shared;
    const std::function<void(const NodePtr&)> walk = [&](const NodePtr& node) {
        if (!node) return;
        if (node->op == Op::Choice && !seen.insert(node.get()).second) {
            shared.insert(node.get());
            return;
        }
        walk(node->a);
        walk(node->b);
        const std::function<void(const Test&)> of = [&](const Test& test) {
            walk(test.a);
            walk(test.b);
            if (test.first) of(*test.first);
            if (test.second) of(*test.second);
        };
        if (node->test) of(*node->test);
    };
    walk(tree);
    return shared;
}

std::string SheetFormula::operator()(const NodePtr& node) {
    m_shared = sharedDecisions(node);
    return textOf(node).text;
}

SheetFormula::Text SheetFormula::choice(const NodePtr& node) const {
    const std::string text = "IF(" + (*this)(*node->test) + "," + textOf(node->a).text + "," +
                             textOf(node->b).text + ")";
    if (m_apart && m_shared.contains(node.get())) return {m_apart(text, node->value), SheetAtom};
    return {text, SheetAtom};
}

std::string SheetFormula::operator()(const Test& test) const {
    switch (test.relation) {
    case Relation::And:
        return "AND(" + (*this)(*test.first) + "," + (*this)(*test.second) + ")";
    case Relation::Or:
        return "OR(" + (*this)(*test.first) + "," + (*this)(*test.second) + ")";
    case Relation::Not:
        return "NOT(" + (*this)(*test.first) + ")";
    default:
        return textOf(test.a).text + std::string(sheetSign(test.relation)) + textOf(test.b).text;
    }
}

std::string SheetFormula::bracketed(const NodePtr& node, int least) const {
    const Text part = textOf(node);
    return part.binds < least ? "(" + part.text + ")" : part.text;
}

SheetFormula::Text SheetFormula::operation(const Node& node) const {
    const Text a = textOf(node.a), b = textOf(node.b);
    const auto in = [](const Text& part, int least) {
        return part.binds < least ? "(" + part.text + ")" : part.text;
    };
    // On the right the same sign is bracketed, too: sums and products keep their order.
    switch (node.op) {
    case Op::Add:
        if (a.zero) return b;
        if (b.zero) return a;
        return {in(a, SheetSum) + "+" + in(b, SheetProduct), SheetSum};
    case Op::Subtract:
        if (b.zero) return a;
        return {in(a, SheetSum) + "-" + in(b, SheetProduct), SheetSum};
    case Op::Multiply:
        if (a.zero) return a;
        if (b.zero) return b;
        return {in(a, SheetProduct) + "*" + in(b, SheetPower), SheetProduct};
    default:
        if (a.zero) return a;
        return {in(a, SheetProduct) + "/" + in(b, SheetPower), SheetProduct};
    }
}

SheetFormula::Text SheetFormula::rounded(const Node& node) const {
    const std::string inner = textOf(node.a).text;
    if (!m_apart) {
        if (node.op == Op::Single) return textOf(node.a);
        return {"ROUND(" + inner + ",2)", SheetAtom};
    }
    if (node.op == Op::Single) {
        const double value = node.a->value;
        const double unit = value == 0 ? 1 : std::exp2(std::floor(std::log2(std::abs(value))) - 23);
        const std::string x = m_apart(inner, value);
        const std::string bit = m_apart(replaced(LastBit, x), unit);
        const std::string bits = m_apart(x + "/" + bit, value / unit);
        return {replaced(Whole, bits) + "*" + bit, SheetProduct};
    }
    const std::string x = m_apart("100*" + bracketed(node.a, SheetPower), 100 * node.a->value);
    return {replaced(Whole, x) + "/100", SheetProduct};
}

SheetFormula::Text SheetFormula::textOf(const NodePtr& node) const {
    const auto called = [&](const char* function) {
        return Text{std::string(function) + "(" + textOf(node->a).text + ")", SheetAtom};
    };
    switch (node->op) {
    case Op::Literal:
        return {generalNumber(node->value, AllDigits), node->value < 0 ? SheetSum : SheetAtom,
                node->value == 0};
    case Op::Constant:
        return {generalNumber(node->value, AllDigits), SheetAtom};
    case Op::Symbol:
        return {m_leaf(*node), SheetAtom};
    case Op::Add:
    case Op::Subtract:
    case Op::Multiply:
    case Op::Divide:
        return operation(*node);
    case Op::Negate:
        return {"-" + bracketed(node->a, SheetAtom), SheetSum};
    case Op::Square:
        return {bracketed(node->a, SheetAtom) + "^2", SheetPower};
    case Op::Cube:
        return {bracketed(node->a, SheetAtom) + "^3", SheetPower};
    case Op::Root:
        return called("SQRT");
    case Op::Log:
        return called("LN");
    case Op::Sine:
        return called("SIN");
    case Op::Tangent:
        return called("TAN");
    case Op::Radians:
        return called("RADIANS");
    case Op::Single:
    case Op::Hundredths:
        return rounded(*node);
    case Op::Least:
    case Op::Greatest:
        return {std::string(node->op == Op::Least ? "MIN(" : "MAX(") + textOf(node->b).text + "," +
                    textOf(node->a).text + ")",
                SheetAtom};
    case Op::Choice:
        return choice(node);
    }
    return {};
}

SheetReason sheetReason(const NodePtr& node, std::string_view symbol, const SheetFormula& formula) {
    if (!node) return {};
    const auto told = [&](bool yes) {
        const std::string_view sentence = reasonOf(node->rule, yes, symbol).sentence;
        return SheetReason{sentence.empty() ? std::string() : sheetText(sentence), sentence};
    };
    const auto decided = [&](const std::string& test, const SheetReason& yes,
                             const SheetReason& no) {
        if (yes.expression.empty() && no.expression.empty()) return SheetReason{};
        const auto part = [](const SheetReason& of) {
            return of.expression.empty() ? "\"\"" : of.expression;
        };
        return SheetReason{"IF(" + test + "," + part(yes) + "," + part(no) + ")",
                           node->yes ? yes.now : no.now};
    };
    if (node->op == Op::Choice) {
        const auto branch = [&](const NodePtr& taken, bool yes) {
            SheetReason inner = sheetReason(taken, symbol, formula);
            return inner.expression.empty() ? told(yes) : inner;
        };
        return decided(formula(*node->test), branch(node->a, true), branch(node->b, false));
    }
    if ((node->op == Op::Least || node->op == Op::Greatest) && node->rule != Rule::Count) {
        SheetReason inner = sheetReason(node->a, symbol, formula);
        if (!inner.expression.empty()) return inner;
        const Relation relation = node->op == Op::Least ? Relation::Greater : Relation::Less;
        return decided(formula(Test{relation, false, node->a, node->b}), told(true), told(false));
    }
    SheetReason first = sheetReason(node->a, symbol, formula);
    return first.expression.empty() ? sheetReason(node->b, symbol, formula) : first;
}

void visitSheetSymbols(const NodePtr& node, const std::function<void(const Node&)>& visit) {
    if (!node) return;
    if (node->op == Op::Symbol) visit(*node);
    visitSheetSymbols(node->a, visit);
    visitSheetSymbols(node->b, visit);
    const std::function<void(const Test&)> of = [&](const Test& test) {
        visitSheetSymbols(test.a, visit);
        visitSheetSymbols(test.b, visit);
        if (test.first) of(*test.first);
        if (test.second) of(*test.second);
    };
    if (node->test) of(*node->test);
}

} // namespace telvo::explain
