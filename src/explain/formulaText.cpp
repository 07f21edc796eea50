// SPDX-License-Identifier: GPL-3.0-or-later
#include "explain/formulaText.h"

#include "base/numbers.h"
#include "explain/nomenclature.h"
#include "project/inputFields.h"

#include <algorithm>
#include <utility>

namespace telvo::explain {

namespace {

// How tight an expression holds together.
constexpr int Sum = 1, Product = 2, Power = 3, Atom = 4;

std::string_view signOf(Relation relation) {
    switch (relation) {
    case Relation::Less:
        return " < ";
    case Relation::LessOrEqual:
        return " <= ";
    case Relation::Equal:
        return " = ";
    case Relation::GreaterOrEqual:
        return " >= ";
    case Relation::Greater:
        return " > ";
    default:
        return {};
    }
}

Relation oppositeOf(Relation relation) {
    switch (relation) {
    case Relation::Less:
        return Relation::GreaterOrEqual;
    case Relation::LessOrEqual:
        return Relation::Greater;
    case Relation::Equal:
        return Relation::NotEqual;
    case Relation::NotEqual:
        return Relation::Equal;
    case Relation::GreaterOrEqual:
        return Relation::Less;
    case Relation::Greater:
        return Relation::LessOrEqual;
    default:
        return relation;
    }
}

/// The single comparison that settles a test: the one that holds of those of which one is enough,
/// the one that fails of those that all have to hold, else the first.
const Test& decisive(const Test& test) {
    if (test.relation == Relation::Not) return decisive(*test.first);
    if (test.relation != Relation::And && test.relation != Relation::Or) return test;
    const bool enough = test.relation == Relation::Or;
    const bool second = test.holds == enough && test.first->holds != enough;
    return decisive(second ? *test.second : *test.first);
}

} // namespace

std::string numberText(double value, std::string_view unit, int digits) {
    std::string text = generalNumber(value, digits);
    if (!unit.empty()) text.append(" ").append(unit);
    return text;
}

Measure measureOf(std::string_view key, engine::Kind otherwise, std::int16_t units) {
    constexpr std::string_view inputs = "inputs.";
    const bool input = key.starts_with(inputs);
    if (input) key.remove_prefix(inputs.size());
    const std::string_view name = key.substr(0, key.find('.'));
    if (input) {
        for (const project::InputField& field : project::InputFields)
            if (field.name == name) {
                const std::string_view unit = project::fieldUnit(field.kind, units);
                return {field.kind == project::FieldKind::Length ? engine::Kind::Length
                                                                 : engine::Kind::Number,
                        unit == "degrees" ? "deg" : unit};
            }
        return {};
    }
    static const engine::AnalysisResults any;
    engine::visitQuantities(any, [&](const char* known, engine::Kind kind, const auto&) {
        if (name == known) otherwise = kind;
    });
    return {otherwise, engine::unitName(otherwise, units)};
}

/// A piece of the text, by symbols and by numbers.
struct FormulaText::Piece {
    std::string text, numbers;
    int binds = Atom;
    const Node* number = nullptr; ///< a literal and nothing else
    bool symbol = false;          ///< a symbol and nothing else
    std::vector<const Node*> symbols;

    bool isZero() const { return number && number->value == 0; }

    void bracket(int least) {
        if (binds >= least) return;
        text = "(" + text + ")";
        numbers = "(" + numbers + ")";
        binds = Atom;
    }
    /// Takes the symbols of another piece that stands behind.
    void take(const Piece& other) {
        symbols.insert(symbols.end(), other.symbols.begin(), other.symbols.end());
        number = nullptr;
        symbol = false;
    }
};

FormulaText::FormulaText(const TracedStep& step, std::int16_t units, int digits, Shown shown)
    : m_step(step), m_units(units), m_digits(digits), m_shown(std::move(shown)) {
    countSymbols(step.tree);
    const Piece piece = pieceOf(step.tree);
    m_formula = piece.text;
    m_substituted = piece.numbers;
    keep(piece);
}

/// A symbol of several pillars carries its number on each.
void FormulaText::countSymbols(const NodePtr& node) {
    if (!node) return;
    if (node->op == Op::Symbol) {
        if (meaningOf(node->symbol).symbol->numbered == Numbered::ByPillar &&
            node->where.pillar != m_step.where.pillar)
            m_ofOthers.push_back(node->symbol);
        return;
    }
    if (node->op != Op::Choice || node->yes) countSymbols(node->a);
    if (node->op != Op::Choice || !node->yes) countSymbols(node->b);
}

std::string FormulaText::printedSymbol(const Node& node) const {
    std::string text(m_shown(node.symbol, node.where));
    switch (meaningOf(node.symbol).symbol->numbered) {
    case Numbered::ByPillar:
        if (std::find(m_ofOthers.begin(), m_ofOthers.end(), node.symbol) != m_ofOthers.end())
            text += std::to_string(node.where.pillar);
        break;
    case Numbered::BySide:
        if (node.where.side != m_step.where.side)
            text += std::to_string(node.where.side - engine::FirstSide + 1);
        break;
    case Numbered::No:
        break;
    }
    return text;
}

/// The pass of a symbol that belongs to both is that of the step.
static Where whereOf(const Node& node, const TracedStep& step) {
    Where where = node.where;
    if (where.pass == 0) where.pass = step.where.pass;
    return where;
}

void FormulaText::keep(const Piece& piece) {
    for (const Node* node : piece.symbols) {
        const Meaning meaning = meaningOf(m_shown(node->symbol, node->where));
        Operand operand{printedSymbol(*node), meaning.key(whereOf(*node, m_step)), node->value, {}};
        operand.unit = measureOf(operand.key, meaning.symbol->kind, m_units).unit;
        if (std::none_of(m_operands.begin(), m_operands.end(),
                         [&](const Operand& known) { return known.symbol == operand.symbol; }))
            m_operands.push_back(std::move(operand));
    }
}

FormulaText::Piece FormulaText::symbolPiece(const Node& node) const {
    Piece piece;
    piece.text = printedSymbol(node);
    const Meaning meaning = meaningOf(m_shown(node.symbol, node.where));
    const std::string_view unit =
        measureOf(meaning.key(whereOf(node, m_step)), meaning.symbol->kind, m_units).unit;
    piece.numbers = numberText(node.value, unit, m_digits);
    if (node.value < 0 || unit.find('/') != std::string_view::npos)
        piece.numbers = "(" + piece.numbers + ")";
    piece.symbol = true;
    piece.symbols.push_back(&node);
    return piece;
}

FormulaText::Piece FormulaText::powered(Piece base, const char* exponent) {
    base.bracket(Atom);
    if (base.symbol && base.numbers.front() != '(') base.numbers = "(" + base.numbers + ")";
    base.text += exponent;
    base.numbers += exponent;
    base.binds = Power;
    base.symbol = false;
    base.number = nullptr;
    return base;
}

FormulaText::Piece FormulaText::called(const char* function, const Piece& a, const Piece* b) {
    Piece piece;
    const auto with = [&](std::string Piece::*of) {
        piece.*of = std::string(function) + "(" + a.*of + (b ? ", " + b->*of : "") + ")";
    };
    with(&Piece::text);
    with(&Piece::numbers);
    piece.take(a);
    if (b) piece.take(*b);
    return piece;
}

FormulaText::Piece FormulaText::operation(const Node& node, Piece a, Piece b) {
    const char* sign = " + ";
    int binds = Sum, right = Sum;
    switch (node.op) {
    case Op::Add:
        if (a.isZero()) return b;
        if (b.isZero()) return a;
        break;
    case Op::Subtract:
        if (b.isZero()) return a;
        sign = " - ";
        right = Product;
        break;
    case Op::Multiply:
        if (a.isZero()) return a;
        if (b.isZero()) return b;
        sign = " * ";
        binds = right = Product;
        break;
    default:
        if (a.isZero()) return a;
        sign = " / ";
        binds = Product;
        right = Power;
        break;
    }
    a.bracket(binds);
    b.bracket(right);
    a.text += sign + b.text;
    a.numbers += sign + b.numbers;
    a.binds = binds;
    a.take(b);
    return a;
}

/// The bound comes first where a rule sets it. Of a plain number only what it comes to is said.
FormulaText::Piece FormulaText::bounded(const Node& node) {
    if (node.rule != Rule::Count) m_decisions.push_back({node.rule, node.yes, {}});
    const Piece a = pieceOf(node.a), b = pieceOf(node.b);
    if (a.number && (b.number || !node.yes)) return node.yes ? b : a;
    const char* function = node.op == Op::Least ? "min" : "max";
    return node.rule == Rule::Count ? called(function, a, &b) : called(function, b, &a);
}

FormulaText::Piece FormulaText::pieceOf(const NodePtr& node) {
    switch (node->op) {
    case Op::Literal: {
        Piece piece;
        piece.text = piece.numbers = generalNumber(node->value, MostDigits);
        if (node->value < 0) piece.binds = Sum;
        piece.number = node.get();
        return piece;
    }
    case Op::Constant: {
        Piece piece;
        piece.text = piece.numbers = node->symbol;
        return piece;
    }
    case Op::Symbol:
        return symbolPiece(*node);
    case Op::Add:
    case Op::Subtract:
    case Op::Multiply:
    case Op::Divide: {
        Piece a = pieceOf(node->a); // in the order of the text, for the decisions on the way
        return operation(*node, std::move(a), pieceOf(node->b));
    }
    case Op::Negate: {
        Piece piece = pieceOf(node->a);
        piece.bracket(Product);
        piece.text.insert(0, "-");
        piece.numbers.insert(0, "-");
        piece.binds = Sum;
        piece.symbol = false;
        piece.number = nullptr;
        return piece;
    }
    case Op::Square:
        return powered(pieceOf(node->a), "^2");
    case Op::Cube:
        return powered(pieceOf(node->a), "^3");
    case Op::Root:
        return called("sqrt", pieceOf(node->a));
    case Op::Log:
        return called("ln", pieceOf(node->a));
    case Op::Sine:
        return called("sin", pieceOf(node->a));
    case Op::Tangent:
        return called("tan", pieceOf(node->a));
    case Op::Radians: // angles are marked "deg"
    case Op::Single:
        return pieceOf(node->a);
    case Op::Hundredths: {
        Piece two;
        two.text = two.numbers = "2";
        return called("round", pieceOf(node->a), &two);
    }
    case Op::Least:
    case Op::Greatest:
        return bounded(*node);
    case Op::Choice:
        m_decisions.push_back({node->rule, node->yes, node->test});
        return pieceOf(node->yes ? node->a : node->b);
    }
    return {};
}

FormulaText::Condition FormulaText::condition(const Test& test) {
    const Test& one = decisive(test);
    const std::string_view sign = signOf(one.holds ? one.relation : oppositeOf(one.relation));
    if (sign.empty()) return {};
    countSymbols(one.a);
    countSymbols(one.b);
    const std::vector<Decided> decisions = m_decisions; // those of a comparison do not count
    const Piece a = pieceOf(one.a), b = pieceOf(one.b);
    m_decisions = decisions;
    keep(a);
    keep(b);
    return {a.text + std::string(sign) + b.text, a.numbers + std::string(sign) + b.numbers};
}

} // namespace telvo::explain
