// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "table/exactNumbers.h"
#include "table/sheets.h"
#include "table/workbookBook.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace telvo::table {

namespace {

// Pale, so that figures stay readable in print.
constexpr lxw_color_t InputColor = 0xFFF2CC;
constexpr lxw_color_t FixedColor = 0xD9D9D9;
constexpr lxw_color_t ChapterColor = 0xDDEBF7;
constexpr lxw_color_t FaintInk = 0x7F7F7F;
constexpr std::size_t Looks = 7;

/// One format for each look, as CellLook counts them.
std::array<lxw_format*, Looks> formatsOf(Book& book) {
    std::array<lxw_format*, Looks> formats{};
    for (lxw_format*& format : formats) {
        format = book.addFormat();
        format_set_align(format, LXW_ALIGN_VERTICAL_TOP);
    }
    const auto of = [&](CellLook look) { return formats[static_cast<std::size_t>(look)]; };
    format_set_bold(of(CellLook::Heading));
    format_set_bottom(of(CellLook::Heading), LXW_BORDER_THIN);
    format_set_bold(of(CellLook::Chapter));
    format_set_bg_color(of(CellLook::Chapter), ChapterColor);
    format_set_bg_color(of(CellLook::Input), InputColor);
    format_set_border(of(CellLook::Input), LXW_BORDER_HAIR);
    format_set_unlocked(of(CellLook::Input));
    format_set_bg_color(of(CellLook::Fixed), FixedColor);
    format_set_font_color(of(CellLook::Faint), FaintInk);
    format_set_text_wrap(of(CellLook::Wrapped));
    return formats;
}

/// Lines that the wrapped texts of a row take; not every program finds that out by itself.
double linesOf(const Sheet& sheet, std::size_t row) {
    double most = 1;
    const std::size_t columns = std::min(sheet.rows[row].size(), sheet.widths.size());
    for (std::size_t column = 0; column < columns; ++column)
        if (const SheetCell& cell = sheet.rows[row][column]; cell.look == CellLook::Wrapped)
            most = std::max(
                most, std::ceil(static_cast<double>(cell.text.size()) / sheet.widths[column]));
    return most;
}

/// Returned: whether the number is marked, for exactNumbers() to put it in.
bool writeCell(Book& book, lxw_worksheet* sheet, lxw_row_t row, lxw_col_t column,
               const SheetCell& cell, lxw_format* format) {
    if (cell.isBlank()) {
        book.check(worksheet_write_blank(sheet, row, column, format), "");
    } else if (!cell.formula.empty()) {
        const std::string formula = "=" + cell.formula;
        book.check(cell.number ? worksheet_write_formula_num(sheet, row, column, formula.c_str(),
                                                             format, *cell.number)
                               : worksheet_write_formula_str(sheet, row, column, formula.c_str(),
                                                             format, cell.text.c_str()),
                   formula);
    } else if (cell.number) {
        const std::string text = generalNumber(*cell.number);
        if (needsExactNumber(text)) {
            const std::string marked = std::string(ExactNumberMark) + text;
            book.check(worksheet_write_string(sheet, row, column, marked.c_str(), format), text);
            return true;
        }
        book.check(worksheet_write_number(sheet, row, column, *cell.number, format), text);
    } else {
        book.check(
            worksheet_write_string(sheet, row, column, escapedText(cell.text).c_str(), format),
            cell.text);
    }
    return false;
}

} // namespace

Result<std::string> writeSheets(std::span<const Sheet> sheets) {
    bool marked = false;
    auto bytes = bookBytes([&](Book& book) {
        const auto formats = formatsOf(book);
        for (std::size_t n = 0; n < sheets.size() && !book.fault(); ++n) {
            const Sheet& of = sheets[n];
            lxw_worksheet* sheet = book.addSheet(of.name.c_str());
            for (std::size_t i = 0; i < of.widths.size(); ++i)
                worksheet_set_column(sheet, static_cast<lxw_col_t>(i), static_cast<lxw_col_t>(i),
                                     of.widths[i], nullptr);
            worksheet_freeze_panes(sheet, static_cast<lxw_row_t>(of.frozenRows), 0);
            worksheet_set_landscape(sheet);
            worksheet_fit_to_pages(sheet, 1, 0);
            if (of.locked) worksheet_protect(sheet, nullptr, nullptr);
            for (std::size_t row = 0; row < of.rows.size(); ++row) {
                const double lines = linesOf(of, row);
                if (lines > 1)
                    worksheet_set_row(sheet, static_cast<lxw_row_t>(row),
                                      lines * LXW_DEF_ROW_HEIGHT, nullptr);
                for (std::size_t column = 0; column < of.rows[row].size(); ++column) {
                    const SheetCell& cell = of.rows[row][column];
                    const bool mark = writeCell(book, sheet, static_cast<lxw_row_t>(row),
                                                static_cast<lxw_col_t>(column), cell,
                                                formats[static_cast<std::size_t>(cell.look)]);
                    marked = marked || mark;
                }
            }
        }
    });
    if (!bytes || !marked) return bytes;
    return withExactNumbers(*bytes, sheets.size());
}

} // namespace telvo::table
