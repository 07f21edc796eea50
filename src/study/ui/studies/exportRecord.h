// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "study/file/Record.h"
#include "study/ui/studies/StudyTable.h"

#include <string>
#include <vector>

namespace telvo::study::ui {

/// A study and its cases as they were run, for the record of the run.
struct Asked {
    Study study;
    std::vector<NamedCase> cases;
    unsigned threads = 1;
};

/// A table that was exported.
struct ExportedTable {
    std::string path;
    const StudyTable& table;
    const RowOrder& order;
    TableDigits digits; ///< of the bytes of the file
    Tally tally;
};

/// Writes the record of the run beside an exported table, as the console program does. What the
/// file does not have row for row as the console writes it is computed once more for it.
/// Faults: those of running the study and of writing; a file of that name that is no record
Status writeRecordOf(const Asked& asked, ExportedTable exported);

} // namespace telvo::study::ui
