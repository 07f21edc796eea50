// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/cases.h"

#include "base/escapes.h"
#include "base/files.h"
#include "base/text.h"
#include "project/CaseFile.h"
#include "run/faultWords.h"
#include "table/csvTable.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <new>
#include <utility>

namespace telvo::cli {

namespace {

constexpr std::string_view StandardStream = "-"; // as an argument

/// An argument taken apart: a file and, where one is meant, a row of the table in it.
struct Source {
    std::string file;
    std::optional<std::string> row; // its digits, which may be more than any number
};

/// The argument without "#" and the digits behind it; the whole of it where it does not end so.
std::string_view withoutRow(std::string_view argument) {
    const auto mark = argument.rfind('#');
    const bool row = mark != std::string_view::npos && mark > 0 && mark + 1 < argument.size() &&
                     argument.find_first_not_of("0123456789", mark + 1) == std::string_view::npos;
    return row ? argument.substr(0, mark) : argument;
}

bool exists(std::string_view file) {
    if (file == StandardStream) return true;
    std::error_code error;
    return std::filesystem::exists(pathFromUtf8(file), error);
}

Source sourceOf(const std::string& argument) {
    const auto file = withoutRow(argument);
    if (file.size() == argument.size() || exists(argument) || !exists(file))
        return {argument, std::nullopt};
    return {std::string(file), argument.substr(file.size() + 1)};
}

/// The number of a row; 0, which no row has, for one that no table can have.
std::uint32_t rowNumber(const std::string& digits) {
    std::uint32_t row = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), row);
    return error == std::errc() ? row : 0;
}

bool isPacked(std::string_view bytes) {
    return bytes.starts_with("PK\x03\x04") || bytes.starts_with("\xD0\xCF\x11\xE0");
}

/// A case file is one by its tag, whatever its name; a table by what it holds, so that it may come
/// through a pipe, or by its ending, so that one without headings is told as such.
bool isTable(std::string_view bytes, const std::string& file) {
    if (project::hasCaseTag(bytes)) return false;
    const std::string ending = endingOf(file);
    return isPacked(bytes) || ending == ".csv" || ending == ".tsv" || ending == ".xlsx" ||
           table::looksLikeCsv(bytes);
}

Result<table::CaseTable> readTable(std::string_view bytes, const std::string& file,
                                   const Workbooks& workbooks) {
    if (!isPacked(bytes)) return table::readCsv(bytes, file);
    if (workbooks.read) return workbooks.read(bytes, file);
    return Fault{"is a packed file, such as a workbook, which this build does not read; save the "
                 "table as CSV",
                 file};
}

CaseOutcome troubled(const std::string& argument, std::string message) {
    CaseOutcome outcome;
    outcome.file = argument;
    outcome.message = std::move(message);
    outcome.status = FileTrouble;
    return outcome;
}

/// Given: argument  the table as the command line names it
CaseOutcome outcomeOf(const std::string& file, const std::string& argument, table::CaseRow& row) {
    const std::string name = table::rowName(argument, row.number);
    if (row.good()) {
        CaseOutcome outcome;
        outcome.file = name;
        outcome.row = row.number;
        outcome.current = std::move(row.current);
        return outcome;
    }
    std::string message;
    for (const Fault& fault : row.faults)
        message += (message.empty() ? file + ", " : std::string("; ")) + faultText(fault);
    return troubled(name, std::move(message));
}

void visitTable(table::CaseTable table, const Source& source,
                const std::function<void(CaseOutcome& outcome)>& visit) {
    std::optional<std::uint32_t> wanted;
    if (source.row) wanted = rowNumber(*source.row);
    std::vector<std::string> remarks; // of the first outcome
    for (const std::string& remark : table::remarks(table, wanted))
        remarks.push_back(table.file + ": " + remark);
    if (wanted ? table.row(*wanted) == nullptr : table.rows.empty()) {
        CaseOutcome none = source.row
                               ? troubled(source.file + "#" + *source.row,
                                          table.file + ": row " + *source.row + " has no case")
                               : troubled(source.file, table.file + ": the table has no case");
        none.remarks = std::move(remarks);
        visit(none);
        return;
    }
    for (table::CaseRow& row : table.rows) {
        if (wanted && row.number != *wanted) continue;
        CaseOutcome outcome = outcomeOf(table.file, source.file, row);
        outcome.remarks = std::exchange(remarks, {});
        visit(outcome);
    }
}

CaseOutcome caseOf(std::string_view bytes, std::string_view name, const std::string& argument) {
    project::ProjectCase current = project::newCase(project::English);
    const project::CaseReading reading = project::readCaseText(bytes, name, current);
    if (reading.fault) return troubled(argument, faultText(*reading.fault));
    CaseOutcome outcome;
    for (const std::string& remark : reading.remarks)
        outcome.remarks.push_back(std::string(name) + ": " + remark);
    current.FileName = name;
    outcome.file = argument;
    outcome.current = std::move(current);
    return outcome;
}

/// A fault of reading names the file itself, with the line.
std::string whyNoRun(const CaseOutcome& outcome) {
    return outcome.status == FileTrouble ? outcome.message : outcome.file + ": " + outcome.message;
}

} // namespace

std::string endingOf(std::string_view file) {
    std::string ending = utf8FromPath(pathFromUtf8(file).extension());
    for (char& c : ending)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return ending;
}

bool mayBeWorkbook(std::string_view argument) {
    const std::string_view file = withoutRow(argument);
    const std::string ending = endingOf(file);
    if (ending == ".xlsx" || file == StandardStream) return true;
    if (ending == ".tlv" || file.starts_with('-')) return false;
    std::error_code error;
    const auto type = std::filesystem::status(pathFromUtf8(file), error).type();
    if (type != std::filesystem::file_type::regular) // a pipe can be read but once
        return type == std::filesystem::file_type::fifo;
    char begin[4] = {};
    std::ifstream(pathFromUtf8(file), std::ios::binary).read(begin, sizeof begin);
    return isPacked({begin, sizeof begin});
}

bool readsInputTwice(Console& console, const std::vector<std::string>& files) {
    const auto count = std::count_if(files.begin(), files.end(), [](const std::string& file) {
        return withoutRow(file) == StandardStream;
    });
    if (count < 2) return false;
    console.complain("- can be given only once");
    return true;
}

std::string fileOf(const std::string& argument) {
    return sourceOf(argument).file;
}

void visitCases(Console& console, const std::string& argument,
                const std::function<void(CaseOutcome& outcome)>& visit) {
    CaseOutcome outcome;
    try {
        const Source source = sourceOf(argument);
        const bool standard = source.file == StandardStream;
        const std::string name = standard ? std::string(StandardInput) : source.file;
        const auto bytes = standard ? console.readInput() : readFile(source.file);
        if (!bytes) {
            outcome = troubled(argument, faultText(bytes.fault()));
        } else if (isTable(*bytes, name)) {
            auto table = readTable(*bytes, name, console.workbooks());
            if (table) return visitTable(std::move(*table), source, visit);
            outcome = troubled(argument, faultText(table.fault()));
        } else if (source.row) {
            outcome = troubled(argument, name + ": is no table, and has no rows");
        } else {
            outcome = caseOf(*bytes, name, argument);
        }
    } catch (const std::bad_alloc&) {
        // What was taken for this file is free again, and the next one may be smaller.
        outcome = troubled(argument, argument + ": there is not enough memory to read it");
    }
    visit(outcome);
}

CaseOutcome readCase(Console& console, const std::string& argument) {
    CaseOutcome only;
    std::size_t count = 0;
    visitCases(console, argument, [&](CaseOutcome& outcome) {
        for (const std::string& remark : outcome.remarks)
            console.complain(remark);
        if (++count == 1) only = std::move(outcome);
    });
    if (count > 1)
        return troubled(argument, argument + ": is a table of " + std::to_string(count) +
                                      " cases; name one by its row, such as " +
                                      (argument == StandardStream ? "-- " : "") + only.file);
    return only;
}

void runCase(CaseOutcome& outcome) {
    if (!outcome.current) return;
    run::RunOutcome run = run::runCase(*outcome.current);
    if (auto* good = std::get_if<run::Run>(&run)) {
        outcome.run = std::move(*good);
        outcome.notes = outcome.run->notes;
        return;
    }
    outcome.notes = run::recordNotes(*outcome.current);
    outcome.status = Refused;
    if (const auto* refusal = std::get_if<Refusal>(&run))
        outcome.message = refusal->message;
    else
        outcome.message =
            faultText(run::inWords(std::get<Fault>(run), outcome.current->Units, true));
}

std::vector<std::string> sayings(const CaseOutcome& outcome) {
    std::vector<std::string> said = outcome.remarks;
    for (const std::string& note : outcome.notes)
        said.push_back(outcome.file + ": " + note);
    if (!outcome.message.empty()) said.push_back(whyNoRun(outcome));
    return said;
}

run::CaseResult resultOf(const CaseOutcome& outcome) {
    run::CaseResult result;
    result.name = outcome.file;
    if (outcome.current) result.current = &*outcome.current;
    if (outcome.run) result.run = &*outcome.run;
    result.message = outcome.message;
    result.notes = outcome.notes;
    for (std::size_t i = 0; i < outcome.warnings.WarningFlags.size(); ++i)
        if (outcome.warnings.WarningFlags[i])
            result.flags = static_cast<std::uint16_t>(result.flags | 1U << i);
    result.warnings = outcome.warnings.WarningSummary;
    return result;
}

void complainOf(Console& console, const CaseOutcome& outcome) {
    console.complain(whyNoRun(outcome));
}

void tellNotes(Console& console, const CaseOutcome& outcome) {
    for (const std::string& note : outcome.notes)
        console.complain(outcome.file + ": " + note);
}

} // namespace telvo::cli
