// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "project/inputFields.h"
#include "project/ProjectInput.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The columns of a case table, in order: Title, Description, Units, then the input fields in
/// record order, the center-to-center distances as XcutCenters.1 to XcutCenters.9.
namespace telvo::table {

inline constexpr std::size_t TitleColumn = 0;
inline constexpr std::size_t DescriptionColumn = 1;
inline constexpr std::size_t UnitsColumn = 2;
inline constexpr std::size_t FirstFieldColumn = 3;

/// One column of a table.
struct Column {
    std::string name;
    std::string meaning;
    project::FieldKind kind = project::FieldKind::Number;
    std::string valid;        ///< what the cells may hold
    double low = 0, high = 0; ///< limits of whole numbers; both 0: none
    bool whole = false;
    bool flag = false; ///< 0 or 1
    bool text = false; ///< Title, Description
};

/// All columns.
const std::vector<Column>& columns();

/// The column that a heading names: capitals, blanks, line breaks, points and parentheses do not
/// count.
std::optional<std::size_t> columnOf(std::string_view heading);

/// The column of a number of the record, and back.
std::size_t columnOf(project::FieldId id);
constexpr project::FieldId fieldOf(std::size_t column) {
    return project::RecordNumbers[column - FirstFieldColumn];
}

/// How a spreadsheet names a column counted from 0: A, Z, AA.
std::string columnLetters(std::size_t index);

/// Why a number cannot stand in a column; nothing where it can.
/// Given: shown  the number as messages quote it
std::optional<std::string> refusedNumber(const Column& column, double value,
                                         std::string_view shown);

/// What a cell of a written table holds.
struct CellValue {
    bool isNumber = false;
    bool blank = false;
    double number = 0; ///< of a Single: what its short form reads as
    std::string text;  ///< the number in its shortest form, or the text, lines ended by LF
};

/// The cells of a case in the order of the columns.
/// Faults: a value that no reader of tables would accept, such as 11 entries. `where` is the
/// column.
Result<std::vector<CellValue>> cellsOf(const project::ProjectCase& current);

/// What a column of a case holds, as a text.
std::string cellText(const project::ProjectCase& current, std::size_t column);

/// Title and description as a case holds them: one line; lines without the blank ones, joined by
/// CR LF and counted.
void setTitle(project::ProjectCase& current, std::string_view text);
void setDescription(project::ProjectCase& current, std::string_view text);

} // namespace telvo::table
