// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/calc.h"

#include <cmath>
#include <memory>
#include <string_view>
#include <utility>

/// Numbers that know how they came about: what the rules of the method compute with to be explained.
namespace telvo::explain {

struct Node;
struct Test;
using NodePtr = std::shared_ptr<const Node>;
using TestPtr = std::shared_ptr<const Test>;

enum class Op {
    Literal,
    Constant, ///< a literal by the words that it is known by
    Symbol,
    Add,
    Subtract,
    Multiply,
    Divide,
    Negate,
    Square,
    Cube,
    Root,
    Log,
    Sine,
    Tangent,
    Radians,
    Single,     ///< held in single precision
    Hundredths, ///< two decimals, a tie goes to the even digit
    Least,
    Greatest,
    Choice
};

/// A place in the tree of an expression.
struct Node {
    Op op = Op::Literal;
    double value = 0;
    NodePtr a = {}, b = {};       ///< of a choice: what is taken by yes, and by no
    std::string_view symbol = {}; ///< of a symbol; the words of a constant
    Where where = {};             ///< that a symbol is said of
    Rule rule = Rule::Count;      ///< of a choice, or of a bound where a rule sets it
    bool yes = false;             ///< which way it went
    TestPtr test = {};            ///< of a choice
};

enum class Relation { Less, LessOrEqual, Equal, NotEqual, GreaterOrEqual, Greater, And, Or, Not };

/// A comparison of two expressions, or what two comparisons make together.
struct Test {
    Relation relation = Relation::Equal;
    bool holds = false;
    NodePtr a = {}, b = {};
    TestPtr first = {}, second = {};
};

/// What a comparison gives.
struct Truth {
    bool yes = false;
    TestPtr test = {}; ///< none: settled by what all cases of a frame share

    Truth() = default;
    Truth(bool settled) : yes(settled) {}
    Truth(bool holds, TestPtr known) : yes(holds), test(std::move(known)) {}
};

/// A value and its expression.
struct Traced {
    using Truth = explain::Truth;

    double value = 0;
    NodePtr node = {}; ///< none: the number itself

    Traced() = default;
    Traced(double number) : value(number) {}
    Traced(double number, NodePtr known) : value(number), node(std::move(known)) {}

    NodePtr tree() const {
        return node ? node : std::make_shared<const Node>(Node{Op::Literal, value});
    }
};

inline Traced made(double value, Op op, const Traced& a) {
    return {value, std::make_shared<const Node>(Node{op, value, a.tree()})};
}
inline Traced made(double value, Op op, const Traced& a, const Traced& b) {
    return {value, std::make_shared<const Node>(Node{op, value, a.tree(), b.tree()})};
}
/// A number that stands under a symbol.
inline Traced symbolOf(std::string_view symbol, const Where& where, double value) {
    return {value, std::make_shared<const Node>(Node{Op::Symbol, value, {}, {}, symbol, where})};
}

inline Traced operator+(const Traced& a, const Traced& b) {
    return made(a.value + b.value, Op::Add, a, b);
}
inline Traced operator-(const Traced& a, const Traced& b) {
    return made(a.value - b.value, Op::Subtract, a, b);
}
inline Traced operator*(const Traced& a, const Traced& b) {
    return made(a.value * b.value, Op::Multiply, a, b);
}
inline Traced operator/(const Traced& a, const Traced& b) {
    return made(a.value / b.value, Op::Divide, a, b);
}
inline Traced operator-(const Traced& a) {
    return made(-a.value, Op::Negate, a);
}

inline Truth compared(bool holds, Relation relation, const Traced& a, const Traced& b) {
    return {holds, std::make_shared<const Test>(Test{relation, holds, a.tree(), b.tree()})};
}
inline Truth operator<(const Traced& a, const Traced& b) {
    return compared(a.value < b.value, Relation::Less, a, b);
}
inline Truth operator<=(const Traced& a, const Traced& b) {
    return compared(a.value <= b.value, Relation::LessOrEqual, a, b);
}
inline Truth operator==(const Traced& a, const Traced& b) {
    return compared(a.value == b.value, Relation::Equal, a, b);
}
inline Truth operator!=(const Traced& a, const Traced& b) {
    return compared(a.value != b.value, Relation::NotEqual, a, b);
}
inline Truth operator>=(const Traced& a, const Traced& b) {
    return compared(a.value >= b.value, Relation::GreaterOrEqual, a, b);
}
inline Truth operator>(const Traced& a, const Traced& b) {
    return compared(a.value > b.value, Relation::Greater, a, b);
}

inline Truth joined(bool holds, Relation relation, const Truth& a, const Truth& b) {
    return {holds, std::make_shared<const Test>(Test{relation, holds, {}, {}, a.test, b.test})};
}
/// What is settled for a whole frame leaves the other side alone.
inline Truth operator&&(const Truth& a, const Truth& b) {
    if (!a.test) return a.yes ? b : a;
    if (!b.test) return b.yes ? a : b;
    return joined(a.yes && b.yes, Relation::And, a, b);
}
inline Truth operator||(const Truth& a, const Truth& b) {
    if (!a.test) return a.yes ? a : b;
    if (!b.test) return b.yes ? b : a;
    return joined(a.yes || b.yes, Relation::Or, a, b);
}
inline Truth operator!(const Truth& a) {
    if (!a.test) return {!a.yes};
    return {!a.yes, std::make_shared<const Test>(Test{Relation::Not, !a.yes, {}, {}, a.test})};
}

inline Traced square(const Traced& x) {
    return made(telvo::square(x.value), Op::Square, x);
}
inline Traced cube(const Traced& x) {
    return made(telvo::cube(x.value), Op::Cube, x);
}
inline Traced root(const Traced& x) {
    return made(telvo::root(x.value), Op::Root, x);
}
inline Traced ln(const Traced& x) {
    return made(telvo::ln(x.value), Op::Log, x);
}
inline Traced radians(const Traced& degrees) {
    return made(telvo::radians(degrees.value), Op::Radians, degrees);
}
inline Traced sine(const Traced& x) {
    return made(telvo::sine(x.value), Op::Sine, x);
}
inline Traced tangent(const Traced& x) {
    return made(telvo::tangent(x.value), Op::Tangent, x);
}
inline Traced toSingle(const Traced& x) {
    return made(telvo::toSingle(x.value), Op::Single, x);
}
inline Traced hundredths(const Traced& x) {
    return made(telvo::hundredths(x.value), Op::Hundredths, x);
}
inline Traced lesser(const Traced& a, const Traced& b) {
    return made(telvo::lesser(a.value, b.value), Op::Least, a, b);
}
/// A choice that no rule has a name for.
inline Traced select(const Truth& yes, const Traced& a, const Traced& b) {
    const double value = yes.yes ? a.value : b.value;
    if (!yes.test) return yes.yes ? a : b;
    return {value,
            std::make_shared<const Node>(Node{
                Op::Choice, value, a.tree(), b.tree(), {}, {}, Rule::Count, yes.yes, yes.test})};
}

} // namespace telvo::explain
