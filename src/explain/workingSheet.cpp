// SPDX-License-Identifier: GPL-3.0-or-later
#include "explain/workingSheet.h"

#include "base/files.h"
#include "explain/chapters.h"
#include "explain/nomenclature.h"
#include "explain/sheetFormula.h"
#include "explain/words.h"
#include "project/units.h"
#include "report/sheets.h"

#include <algorithm>
#include <cassert>
#include <map>
#include <set>

namespace telvo::explain {

using namespace engine;
using table::CellLook;
using table::Sheet;
using table::SheetCell;

namespace {

// Columns of the sheet of quantities.
constexpr std::size_t ValueColumn = 3, FirstAsideColumn = 8;
constexpr std::string_view Headings[] = {"Name",
                                         "Quantity",
                                         "Symbol",
                                         "Value",
                                         "Unit",
                                         "Formula",
                                         "Rule that applies",
                                         "Note",
                                         "Parts of the formula"};
constexpr double Widths[] = {40, 66, 9, 20, 7, 60, 60, 60, 20, 20, 20};

std::string cellName(std::size_t column, std::size_t row) {
    return std::string(1, static_cast<char>('A' + column)) + std::to_string(row + 1);
}

SheetCell textCell(std::string_view text, CellLook look = CellLook::Plain) {
    SheetCell cell;
    cell.text = text;
    cell.look = look;
    return cell;
}

class SheetMaker {
  public:
    SheetMaker(const run::Run& run, const report::ReportOptions& options)
        : m_options(options),
          m_written(tracedChapters(run, options, DefaultDigits, Extent::OfEveryInput)) {}

    Sheet make() {
        placeRows();
        m_sheet.name = "Working";
        m_sheet.widths.assign(std::begin(Widths), std::end(Widths));
        m_sheet.frozenRows = 1;
        m_sheet.locked = true;
        auto& headings = m_sheet.rows.emplace_back();
        for (const std::string_view heading : Headings)
            headings.push_back(textCell(heading, CellLook::Heading));
        for (const Chapter& chapter : m_written.chapters) {
            auto& row = m_sheet.rows.emplace_back();
            row.push_back(textCell(chapter.title, CellLook::Chapter));
            row.resize(FirstAsideColumn, textCell({}, CellLook::Chapter));
            for (const Step& step : chapter.steps)
                addRow(step);
        }
        return std::move(m_sheet);
    }

  private:
    void placeRows() {
        std::size_t row = 1;
        for (const Chapter& chapter : m_written.chapters) {
            ++row;
            for (const Step& step : chapter.steps)
                m_rows[step.key] = row++;
        }
        for (const auto& written : m_written.expressions) {
            const TracedStep& step = written.second;
            visitSheetSymbols(step.tree,
                              [&](const Node& node) { m_used.insert(keyOf(node, step)); });
        }
    }

    /// The pass of a symbol that belongs to both is that of the step.
    static std::string keyOf(const Node& node, const TracedStep& step) {
        Where where = node.where;
        if (where.pass == 0) where.pass = step.where.pass;
        return meaningOf(node.symbol).key(where);
    }

    /// As the working prints it; where that would be ambiguous, the name of the quantity.
    std::string symbolIn(const Node& node, const TracedStep& step, bool pillarsNumbered) const {
        const Symbol& symbol = *meaningOf(node.symbol).symbol;
        std::string text(node.symbol);
        if (symbol.numbered == Numbered::ByPillar)
            return pillarsNumbered ? text + std::to_string(node.where.pillar) : text;
        if (node.where.pass != 0 && node.where.pass != step.where.pass && step.where.pass != 0)
            return keyOf(node, step);
        if (node.where.side < FirstSide || node.where.side == step.where.side) return text;
        if (symbol.numbered == Numbered::BySide)
            return text + std::to_string(node.where.side - FirstSide + 1);
        return symbol.key.find("{k}") == std::string_view::npos &&
                       symbol.key.find("{K}") == std::string_view::npos
                   ? text
                   : keyOf(node, step);
    }

    void addRow(const Step& step) {
        const auto found = m_written.expressions.find(step.key);
        std::vector<SheetCell> row = {textCell(step.key), textCell(step.title),
                                      textCell(step.symbol), SheetCell{}, textCell(step.unit)};
        row[ValueColumn].number = step.value;
        if (found == m_written.expressions.end()) {
            const bool changeable = m_used.contains(step.key);
            row[ValueColumn].look = changeable ? CellLook::Input : CellLook::Fixed;
            row.push_back(
                textCell(changeable ? "input: may be changed" : "fixed", CellLook::Faint));
            row.push_back({});
            row.push_back(textCell(step.rule));
        } else {
            addFormula(row, found->second);
        }
        m_sheet.rows.push_back(std::move(row));
    }

    void addFormula(std::vector<SheetCell>& row, const TracedStep& step) {
        const std::size_t number = m_sheet.rows.size();
        std::vector<SheetCell> aside;
        SheetFormula cells(
            [&](const Node& node) { return cellName(ValueColumn, m_rows.at(keyOf(node, step))); },
            [&](const std::string& expression, double value) {
                // The same expression stands in one cell only.
                for (std::size_t i = 0; i < aside.size(); ++i)
                    if (aside[i].formula == expression)
                        return cellName(FirstAsideColumn + i, number);
                SheetCell cell;
                cell.formula = expression;
                cell.number = value;
                cell.look = CellLook::Faint;
                aside.push_back(std::move(cell));
                return cellName(FirstAsideColumn + aside.size() - 1, number);
            });
        bool others = false;
        visitSheetSymbols(step.tree, [&](const Node& node) {
            others = others || (node.where.pillar != 0 && node.where.pillar != step.where.pillar);
        });
        SheetFormula symbols([&](const Node& node) { return symbolIn(node, step, others); });
        row[ValueColumn].formula = cells(step.tree);
        // With parts that repeat themselves it would be no help to read.
        const bool readable = sharedDecisions(step.tree).empty();
        row.push_back(textCell(readable ? symbols(step.tree) : ""));
        const SheetReason why = sheetReason(step.tree, step.symbol, cells);
        SheetCell reason = textCell(why.now);
        reason.formula = why.expression;
        row.push_back(reason);
        row.push_back(textCell(noteOn(step, m_written.frame, m_options.RoundTELVOSF)));
        for (SheetCell& cell : aside)
            row.push_back(std::move(cell));
    }

    const report::ReportOptions& m_options;
    TracedChapters m_written;
    std::map<std::string, std::size_t> m_rows; ///< of the keys, from 0
    std::set<std::string> m_used;              ///< keys that a formula speaks of
    Sheet m_sheet;
};

Sheet guide(const project::ProjectCase& current, const AnalysisResults& results,
            const std::string& program) {
    Sheet sheet;
    sheet.name = "Guide";
    sheet.widths = {22, 100};
    const auto line = [&](std::string_view what, std::string_view text, CellLook look) {
        sheet.rows.push_back({textCell(what, CellLook::Heading), textCell(text, look)});
    };
    const auto say = [&](std::string_view text) {
        sheet.rows.push_back({SheetCell{}, textCell(text, CellLook::Wrapped)});
    };
    line("Working of", withoutFolder(current.FileName), CellLook::Plain);
    line("Title", current.Title, CellLook::Plain);
    line("Units", current.Units == project::English ? "English" : "metric", CellLook::Plain);
    line("Loading condition",
         project::LoadingConditionNames[static_cast<std::size_t>(results.AnalysisCase - 1)],
         CellLook::Plain);
    line("Written by", program, CellLook::Plain);
    sheet.rows.emplace_back();
    line("What may be changed", "", CellLook::Plain);
    sheet.rows.push_back({textCell("input", CellLook::Input),
                          textCell("The numbers in cells of this color on the sheet Working: every "
                                   "value follows.",
                                   CellLook::Wrapped)});
    sheet.rows.push_back(
        {textCell("fixed", CellLook::Fixed),
         textCell("Cells of this color are fixed. Loading condition, number of entries, rows that "
                  "are left and what is automatic decide which formulas there are: change them in "
                  "TELVO and write the workbook again. Other inputs are gray where nothing "
                  "depends on them.",
                  CellLook::Wrapped)});
    say("That sheet is protected, without a password: no formula is overwritten by accident.");
    sheet.rows.emplace_back();
    line("What to know", "", CellLook::Plain);
    say("TELVO checks the inputs before it computes; this workbook does not. It is for following "
        "the working, and no substitute for a run and its report with the warnings.");
    if (current.Input.AMZ == 1)
        say("The breadth of the AMZ is automatic in this case. Here it stays as it is when the "
            "depth of cover changes: enter it anew, as the parameter form shows it.");
    say("What TELVO holds in single precision is cut to the same digits here, and two decimals go "
        "to the even digit on a tie: the columns Parts of the formula have the number before.");
    say("Quantities that are 0 whatever the inputs under this loading condition are left out.");
    return sheet;
}

} // namespace

WorkingSheets workingSheets(const run::Run& run, const report::ReportOptions& options,
                            const std::string& program) {
    WorkingSheets sheets;
    sheets.sheets.push_back(guide(run.current, run.results, program));
    sheets.sheets.push_back(SheetMaker(run, options).make());
    return sheets;
}

} // namespace telvo::explain
