// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "study/file/runStudy.h"
#include "study/file/sha256.h"
#include "study/file/Study.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The record of a run: what was asked of which cases, in full, and the digits of what came of it.
/// Whoever has it can run it again, on any machine, and see whether the digits are the same.
namespace telvo::study {

struct RecordedCase {
    std::string name; ///< as the study names it
    std::string text; ///< of the case file
};

/// A study as it was run.
struct RecordedStudy {
    std::string name; ///< of its table among several; of the file of the study
    std::string text; ///< of the study
    std::vector<RecordedCase> cases;
};

struct RunRecord {
    std::string program; ///< "TELVO 0.1.0"
    std::string moduleBuild;
    std::vector<RecordedStudy> studies; ///< more than one: their tables were joined
    Tally tally;
    std::size_t rows = 0;
    std::string digest; ///< SHA-256 of the table as CSV
    std::string table;  ///< the table as CSV; empty where it is too large to be kept here
    std::string file;   ///< beside the record: what was exported; empty: nothing that is checked
    std::string fileDigest; ///< SHA-256 of that file; that of the table where it is just this

    // Not compared.
    std::string time; ///< "2024-05-01T12:00:00Z"
    std::string machine;
    unsigned threads = 1;
    double seconds = 0;
};

/// A study with its cases, as text.
/// Faults: a case that cannot be written
Result<RecordedStudy> recorded(const Study& study, std::string name,
                               std::span<const NamedCase> cases);

/// The study with its cases again.
/// Faults: texts that cannot be read, a case that is missing
Result<std::pair<Study, std::vector<NamedCase>>> restored(const RecordedStudy& recorded);

/// What a record keeps of a table, taken while it is written as CSV.
class TableDigits {
  public:
    /// Of a table that is not written.
    static TableDigits of(const ResultTable& table);

    void add(std::string_view piece);
    /// Fills table, rows and digest. Nothing can be added afterwards.
    void into(RunRecord& record, std::size_t rows);

  private:
    Sha256 m_sum;
    std::string m_text;
    bool m_kept = true; ///< the text, being small
};

std::string recordText(const RunRecord& record);
/// Faults: text that is no such record, or whose texts do not have the digits that it tells
Result<RunRecord> readRecord(std::string_view bytes, const std::string& name);

/// The table of all studies of a record: that of one, or several joined.
ResultTable joinedTable(std::vector<std::pair<std::string, ResultTable>> tables);

/// What running a record again showed.
struct Verified {
    bool same = false;
    std::string difference; ///< the first cell that differs, in a sentence
    Tally tally;
};
/// Given: exported  the bytes of the file that was exported; empty where there is none
/// Faults: a study or a case that cannot be read or run any more
Result<Verified> verify(const RunRecord& record, std::string_view exported, unsigned threads = 1);

} // namespace telvo::study
