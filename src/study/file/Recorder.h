// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/file/Record.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace telvo::study {

/// File of the record that lies beside a result: "table.study.json" for "table.csv".
std::string recordFileOf(const std::string& result);

/// What a record is made of while studies run.
class Recorder {
  public:
    /// A fault is kept until text() tells it.
    void add(const Study& study, const std::string& name, std::span<const NamedCase> cases,
             const Tally& tally);

    /// The result is a file beside the record that is checked with it.
    /// Given: file    its name
    ///        digest  SHA-256 of its bytes; empty where it is the table itself as CSV
    void exported(const std::string& file, std::string digest = {});

    /// The record.
    /// Given: digits  of the table   threads  that computed it
    /// Faults: a case that cannot be written
    Result<std::string> text(TableDigits digits, std::size_t rows, unsigned threads);

  private:
    RunRecord m_record;
    std::optional<Fault> m_fault;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

} // namespace telvo::study
