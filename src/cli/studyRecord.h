// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"
#include "study/file/Recorder.h"

#include <string>

/// The record that lies beside the exported result of a study.
namespace telvo::cli {

/// What was written as the result of studies.
struct WrittenResult {
    std::string file;
    const study::ResultTable* table = nullptr;
    study::TableDigits* digits = nullptr; ///< where the file is this table as CSV
    unsigned threads = 1;
    bool force = false;
};

/// Writes the record and says what goes wrong.
/// Given: target  file of the record
ExitStatus writeRecord(Console& console, study::Recorder& recorder, const std::string& target,
                       const WrittenResult& result);

} // namespace telvo::cli
