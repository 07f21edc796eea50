// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/quantities.h"
#include "explain/nomenclature.h"
#include "explain/Working.h"
#include "report/sections.h"

#include <map>
#include <set>
#include <string>
#include <string_view>

namespace telvo::explain {

/// Puts numbers and units in the place of the symbols of a formula, and writes the steps down. The
/// one place where a substitution is made, so that it cannot depart from its formula.
class Worksheet {
  public:
    /// Given: source       the run that is explained
    ///        development  the same run, stopped after its development pass
    Worksheet(const report::ReportSource& source, const engine::AnalysisResults& development,
              int digits);

    void chapter(std::string title);

    /// Makes a number known that the results do not hold.
    void set(std::string_view symbol, const At& at, double value,
             engine::Kind kind = engine::Kind::Number);

    /// Writes the next step: what a symbol stands for, how it comes about, and why so.
    /// Given: condition  for which the formula holds, a comparison by < <= = >= or >
    void add(std::string_view symbol, const At& at, const std::string& formula,
             std::string rule = {}, const std::string& condition = {});
    /// The two together.
    void add(std::string_view symbol, const At& at, double value, engine::Kind kind,
             const std::string& formula, std::string rule = {}, const std::string& condition = {});
    /// Writes an input down as given.
    void given(const std::string& key, std::string rule = {});

    double value(std::string_view symbol, const At& at) const;
    bool has(std::string_view key) const { return m_written.contains(std::string(key)); }
    engine::Kind kindOf(const std::string& key) const;
    /// A number with its unit.
    std::string numberText(double value, std::string_view unit) const;

    /// Every key of inputs and results that has no step yet.
    std::vector<std::string> unwritten() const;
    /// Writes such a quantity down without a formula.
    void addUnexplained(const std::string& key, std::string rule);

    Chapters& chapters() { return m_chapters; }

  private:
    struct Quantity {
        double value = 0;
        std::string_view unit;
        engine::Kind kind = engine::Kind::Number;
    };
    void know(const std::string& key, double value, engine::Kind kind);
    Step& newStep(const std::string& key, std::string title);
    std::string substituted(const std::string& formula, const At& at,
                            std::vector<Operand>& operands) const;

    std::int16_t m_units;
    int m_digits;
    std::map<std::string, Quantity, std::less<>> m_known;
    std::vector<std::string> m_reported; ///< keys in the order of the results
    std::set<std::string> m_written;
    Chapters m_chapters;
};

} // namespace telvo::explain
