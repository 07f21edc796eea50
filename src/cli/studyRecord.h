// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"
#include "study/file/Record.h"

#include <chrono>
#include <string>
#include <utility>
#include <vector>

/// The record that lies beside the exported result of a study.
namespace telvo::cli {

/// "table.study.json" for the result "table.csv".
std::string recordFileOf(const std::string& result);

/// What a record is made of while studies run.
class Recorder {
  public:
    /// A fault is kept until write() tells it.
    void add(const study::Study& study, const std::string& name,
             std::span<const study::NamedCase> cases, const study::Tally& tally);

    /// Writes the record and says what goes wrong.
    /// Given: target  file of the record   result  file of the result
    ///        csv     whether the result is this table as CSV
    ExitStatus write(Console& console, const std::string& target, const std::string& result,
                     const study::ResultTable& table, bool csv, unsigned threads, bool force);

  private:
    study::RunRecord m_record;
    std::vector<Fault> m_faults;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

} // namespace telvo::cli
