// SPDX-License-Identifier: GPL-3.0-or-later
#include "explain/Worksheet.h"

#include "base/numbers.h"
#include "engine/quantityNames.h"
#include "project/inputFields.h"

#include <algorithm>
#include <cassert>
#include <cctype>

namespace telvo::explain {

using namespace engine;

namespace {

bool isLetter(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) != 0;
}
bool isWordCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

/// A quantity that the results hold once, as the last pass left it.
bool hasNoPass(std::string_view key) {
    return key.find(".development") == std::string_view::npos &&
           key.find(".retreat") == std::string_view::npos;
}

} // namespace

Worksheet::Worksheet(const report::ReportSource& source, const AnalysisResults& development,
                     int digits)
    : m_units(source.current.Units), m_digits(std::clamp(digits, 1, MostDigits)) {
    const int pillars = source.results.NumberPillars;
    project::visitInputFields(source.current.Input, [&](const char* name, project::FieldKind kind,
                                                        const auto& field) {
        flatten(
            "inputs." + std::string(name), field, pillars, [&](const std::string& key, auto value) {
                const std::string_view unit = project::fieldUnit(kind, m_units);
                m_known[key] = {static_cast<double>(value), unit == "degrees" ? "deg" : unit,
                                kind == project::FieldKind::Length ? Kind::Length : Kind::Number};
                m_reported.push_back(key);
            });
    });
    visitQuantities(source.results, [&](const char* name, Kind kind, const auto& field) {
        flatten(name, field, pillars, [&](const std::string& key, auto value) {
            know(key, static_cast<double>(value), kind);
            m_reported.push_back(key);
        });
    });
    visitQuantities(development, [&](const char* name, Kind kind, const auto& field) {
        flatten(name, field, pillars, [&](const std::string& key, auto value) {
            if (hasNoPass(key)) know(key + "@development", static_cast<double>(value), kind);
        });
    });
}

void Worksheet::know(const std::string& key, double value, Kind kind) {
    m_known[key] = {value, unitName(kind, m_units), kind};
}

void Worksheet::chapter(std::string title) {
    m_chapters.push_back({std::move(title), {}, {}});
}

void Worksheet::set(std::string_view symbol, const At& at, double value, Kind kind) {
    know(meaningOf(symbol, at).key, value, kind);
}

double Worksheet::value(std::string_view symbol, const At& at) const {
    return m_known.at(meaningOf(symbol, at).key).value;
}

Kind Worksheet::kindOf(const std::string& key) const {
    return m_known.at(key).kind;
}

std::string Worksheet::numberText(double value, std::string_view unit) const {
    std::string text = generalNumber(value, m_digits);
    if (!unit.empty()) text.append(" ").append(unit);
    return text;
}

Step& Worksheet::newStep(const std::string& key, std::string title) {
    const Quantity& quantity = m_known.at(key);
    m_written.insert(key);
    Step& step = m_chapters.back().steps.emplace_back();
    step.key = key;
    step.title = std::move(title);
    step.value = quantity.value;
    step.unit = quantity.unit;
    step.result = numberText(quantity.value, quantity.unit);
    return step;
}

void Worksheet::add(std::string_view symbol, const At& at, const std::string& formula,
                    std::string rule, const std::string& condition) {
    Meaning meaning = meaningOf(symbol, at);
    Step& step = newStep(meaning.key, std::move(meaning.title));
    step.symbol = symbol;
    step.formula = formula;
    step.condition = condition;
    step.rule = std::move(rule);
    step.substituted = substituted(formula, at, step.operands);
    step.conditionShown = substituted(condition, at, step.operands);
}

void Worksheet::add(std::string_view symbol, const At& at, double value, Kind kind,
                    const std::string& formula, std::string rule, const std::string& condition) {
    set(symbol, at, value, kind);
    add(symbol, at, formula, std::move(rule), condition);
}

void Worksheet::given(const std::string& key, std::string rule) {
    Name name = nameOf(key);
    Step& step = newStep(key, std::move(name.title));
    step.symbol = name.symbol;
    step.rule = std::move(rule);
}

std::string Worksheet::substituted(const std::string& formula, const At& at,
                                   std::vector<Operand>& operands) const {
    std::string out;
    for (std::size_t i = 0; i < formula.size();) {
        std::size_t end = i;
        if (std::isdigit(static_cast<unsigned char>(formula[i]))) { // with a unit behind it
            while (end < formula.size() && (isWordCharacter(formula[end]) || formula[end] == '.'))
                ++end;
            if (formula.compare(end, 4, " deg") == 0) end += 4;
            out += formula.substr(i, end - i);
        } else if (isLetter(formula[i])) {
            while (end < formula.size() && isWordCharacter(formula[end]))
                ++end;
            const std::string name = formula.substr(i, end - i);
            if (end < formula.size() && formula[end] == '(') {
                out += name;
            } else {
                const Meaning meaning = meaningOf(name, at);
                assert(m_known.contains(meaning.key));
                const Quantity& quantity = m_known.at(meaning.key);
                const bool raised = formula.compare(end, 1, "^") == 0;
                const bool fraction = quantity.unit.find('/') != std::string_view::npos;
                const bool apart = raised || fraction || quantity.value < 0;
                out += (apart ? "(" : "") + numberText(quantity.value, quantity.unit) +
                       (apart ? ")" : "");
                if (std::none_of(operands.begin(), operands.end(),
                                 [&](const Operand& known) { return known.symbol == name; }))
                    operands.push_back(
                        {name, meaning.key, quantity.value, std::string(quantity.unit)});
            }
        } else {
            out += formula[end++];
        }
        i = end;
    }
    return out;
}

std::vector<std::string> Worksheet::unwritten() const {
    std::vector<std::string> keys;
    for (const std::string& key : m_reported)
        if (!m_written.contains(key)) keys.push_back(key);
    return keys;
}

void Worksheet::addUnexplained(const std::string& key, std::string rule) {
    newStep(key, nameOf(key).title).rule = std::move(rule);
}

} // namespace telvo::explain
