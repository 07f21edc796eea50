// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

namespace telvo::test {

/// A pocket calculator: works out a formula whose symbols are known, or one with numbers and units
/// in their place. Units are skipped, "deg" turns degrees into radians.
class Calculator {
  public:
    explicit Calculator(std::map<std::string, double> symbols = {})
        : m_symbols(std::move(symbols)) {}

    double operator()(std::string_view text) {
        m_text = text;
        m_at = 0;
        const double value = sum();
        if (m_at != m_text.size()) fail();
        return value;
    }

  private:
    [[noreturn]] void fail() const {
        throw std::runtime_error("cannot read \"" + std::string(m_text.substr(m_at)) + "\" of " +
                                 std::string(m_text));
    }
    bool take(char c) {
        while (m_at < m_text.size() && m_text[m_at] == ' ')
            ++m_at;
        if (m_at == m_text.size() || m_text[m_at] != c) return false;
        ++m_at;
        return true;
    }
    std::string word() {
        const std::size_t start = m_at;
        while (m_at < m_text.size() && std::isalnum(static_cast<unsigned char>(m_text[m_at])))
            ++m_at;
        return std::string(m_text.substr(start, m_at - start));
    }
    double sum() {
        double value = product();
        for (;;)
            if (take('+'))
                value += product();
            else if (take('-'))
                value -= product();
            else
                return value;
    }
    double product() {
        double value = power();
        for (;;)
            if (take('*'))
                value *= power();
            else if (take('/'))
                value /= power();
            else
                return value;
    }
    double power() {
        if (take('-')) return -power();
        const double base = atom();
        return take('^') ? std::pow(base, power()) : base;
    }
    double atom() {
        if (take('(')) {
            const double value = sum();
            if (!take(')')) fail();
            return value;
        }
        if (m_at == m_text.size()) fail();
        return std::isdigit(static_cast<unsigned char>(m_text[m_at])) ? number() : named();
    }
    double number() {
        std::size_t length = 0;
        const double value = std::stod(std::string(m_text.substr(m_at)), &length);
        m_at += length;
        for (const std::string_view unit :
             {" deg", " lb/ft", " lb", " ft2", " ft", " psf", " psi", " pcf", " kN/m3", " kN/m",
              " kN", " kPa", " MPa", " m2", " m"})
            if (m_text.substr(m_at).starts_with(unit)) {
                m_at += unit.size();
                return unit == " deg" ? value * std::acos(-1.0) / 180 : value;
            }
        return value;
    }
    double named() {
        const std::string name = word();
        if (m_symbols.contains(name)) return m_symbols.at(name);
        if (!take('(')) fail();
        const double first = sum();
        const double second = take(',') ? sum() : 0;
        if (!take(')')) fail();
        if (name == "sin") return std::sin(first);
        if (name == "tan") return std::tan(first);
        if (name == "sqrt") return std::sqrt(first);
        if (name == "ln") return std::log(first);
        if (name == "min") return std::min(first, second);
        if (name == "max") return std::max(first, second);
        if (name == "round")
            return std::nearbyint(first * std::pow(10, second)) / std::pow(10, second);
        fail();
    }

    std::map<std::string, double> m_symbols;
    std::string_view m_text;
    std::size_t m_at = 0;
};

} // namespace telvo::test
