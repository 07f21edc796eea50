// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/tableCommand.h"

#include "base/files.h"
#include "project/CaseFile.h"
#include "table/caseFiles.h"
#include "table/csvTable.h"

#include <CLI/CLI.hpp>

#include <filesystem>

namespace telvo::cli {

namespace {

constexpr std::string_view WorkbookFileEnding = ".xlsx";

char separatorOf(const TableRequest& request) {
    if (request.separator.empty()) return endingOf(request.target) == ".tsv" ? '\t' : ',';
    if (request.separator == "comma") return ',';
    return request.separator == "semicolon" ? ';' : '\t';
}

int wrongUsage(const std::string& message) {
    complain(message);
    return WrongUsage;
}

constexpr const char* NoWorkbooks = ": this build does not write workbooks";

/// Writes a table to its file, or text to standard output.
ExitStatus writeTable(const TableRequest& request, std::span<const project::ProjectCase> cases) {
    std::string bytes;
    if (endingOf(request.target) == WorkbookFileEnding) {
        auto written = request.workbooks.write(cases);
        if (!written) {
            complain(faultText(written.fault()));
            return FileTrouble;
        }
        bytes = std::move(*written);
    } else {
        auto written = table::writeCsv(cases, separatorOf(request));
        if (!written) {
            complain(faultText(written.fault()));
            return FileTrouble;
        }
        for (const std::string& note : written->notes)
            complain(request.target + ": " + note);
        bytes = std::move(written->bytes);
    }
    if (request.target == "-") {
        print(bytes);
        return finishOutput();
    }
    return writeOrComplain(request.target, bytes);
}

/// The case files of an import. So many of them are put in place at once that waiting for the disk
/// takes no time beside writing them.
class NewFiles {
  public:
    NewFiles(const std::filesystem::path& folder, ExitStatus& status)
        : m_folder(folder), m_status(status) {}

    void add(const std::string& source, project::ProjectCase& current, const std::string& path) {
        const auto text = project::writeCaseText(current);
        if (!text) return failed(source, text.fault());
        auto file = AtomicFile::create(path);
        if (!file) return failed(source, file.fault());
        Status written = file->write(*text);
        if (written) written = file->close();
        if (!written) return failed(source, written.fault());
        m_waiting.push_back({source, path, std::move(*file)});
        constexpr std::size_t most = 4096; // unfinished files that a crash would leave behind
        if (m_waiting.size() == most) commit();
    }

    void commit() {
        if (m_waiting.empty()) return;
        const Status flushed = AtomicFile::flush(m_folder);
        for (Waiting& each : m_waiting) {
            const Status done = flushed ? each.file.commit() : flushed;
            if (done)
                print(each.source + " -> " + each.path + "\n");
            else
                failed(each.source, done.fault());
        }
        m_waiting.clear();
    }

  private:
    struct Waiting {
        std::string source;
        std::string path;
        AtomicFile file;
    };

    void failed(const std::string& source, const Fault& fault) {
        complain(source + ": " + faultText(fault));
        raise(m_status, FileTrouble);
    }

    const std::filesystem::path& m_folder;
    ExitStatus& m_status;
    std::vector<Waiting> m_waiting;
};

} // namespace

TableCommands addTableCommands(CLI::App& app, TableRequest& request) {
    CLI::App* command = app.add_subcommand("table", "keep many cases in one table, a row each");
    command->require_subcommand(1);
    command->footer(
        "A table is CSV (comma, semicolon or tab) or an XLSX workbook, known by what it "
        "holds. Its\ncolumns are the input fields, Title, Description and Units. report, "
        "results and check\ntake tables, too: FILE is every row, FILE#7 the row that a "
        "spreadsheet numbers 7, and - a\ntable from a pipe. The other commands take "
        "FILE#7.\n\nBlank cells and missing columns take the values of a new case, which is "
        "reported. Where\nAMZ or Arch is 1, a BreadthAMZ or ArchFactor that is blank or 0 "
        "is computed.");
    CLI::App* exporting = command->add_subcommand("export", "write cases into one table");
    exporting
        ->add_option("CASE", request.files,
                     "case files and case tables, FILE#ROW for one row; - reads standard input")
        ->required();
    exporting
        ->add_option("-o,--output", request.target,
                     "file to write: .csv, .tsv or .xlsx; - is CSV on standard output")
        ->required();
    exporting
        ->add_option("--separator", request.separator,
                     "between the cells of CSV: comma, semicolon or tab")
        ->check(CLI::IsMember({"comma", "semicolon", "tab"}));
    exporting->add_flag("--force", request.force, "overwrite an existing file");
    exporting->footer("Example:\n  telvo-cli table export *.TLV -o panels.xlsx");

    CLI::App* importing = command->add_subcommand("import", "write a case file for every row");
    importing->add_option("TABLE", request.files, "table, or TABLE#ROW for one row")
        ->required()
        ->expected(1);
    importing
        ->add_option("-o,--output", request.target,
                     "folder of the case files, made where it is missing")
        ->required();
    importing->footer("The files are named after the titles, or the rows where there is none. No "
                      "file is replaced.\n\nExample:\n  telvo-cli table import panels.csv -o "
                      "panels");

    CLI::App* making = command->add_subcommand(
        "template", "write a workbook with the headings, what they mean and a first row");
    making->add_option("-o,--output", request.target, "file to write: .xlsx")->required();
    making->add_flag("--force", request.force, "overwrite an existing file");
    making->footer("Example:\n  telvo-cli table template -o panels.xlsx");
    return {exporting, importing, making};
}

int runTableExport(const TableRequest& request) {
    const std::string ending = endingOf(request.target);
    const bool workbook = ending == WorkbookFileEnding;
    if (request.target != "-" && ending != ".csv" && ending != ".tsv" && !workbook)
        return wrongUsage(request.target + ": the file name has to end in .csv, .tsv or .xlsx");
    if (workbook && !request.separator.empty())
        return wrongUsage("--separator: a workbook has none");
    if (workbook && !request.workbooks.write) return wrongUsage(request.target + NoWorkbooks);
    if (readsInputTwice(request.files)) return WrongUsage;
    if (request.target != "-" && !mayWrite(request.target, request.force)) return FileTrouble;
    ExitStatus status = AllGood;
    std::vector<project::ProjectCase> cases;
    for (const std::string& file : request.files)
        visitCases(file, request.workbooks, [&](CaseOutcome& outcome) {
            raise(status, outcome.status);
            if (outcome.current)
                cases.push_back(std::move(*outcome.current));
            else
                complainOf(outcome);
        });
    if (!cases.empty()) raise(status, writeTable(request, cases));
    return status;
}

int runTableImport(const TableRequest& request) {
    const std::filesystem::path folder = pathFromUtf8(request.target);
    ExitStatus status = AllGood;
    table::CaseFileNames names;
    NewFiles files(folder, status);
    visitCases(request.files.front(), request.workbooks, [&](CaseOutcome& outcome) {
        raise(status, outcome.status);
        if (!outcome.current) return complainOf(outcome);
        if (!outcome.row) {
            complain(outcome.file + ": is no table");
            raise(status, FileTrouble);
            return;
        }
        std::error_code error;
        std::filesystem::create_directories(folder, error); // a fault shows when a file is written
        table::CaseRow row;
        row.number = *outcome.row;
        row.current = std::move(*outcome.current);
        const std::string name = names.next(row, [&](const std::string& each) {
            return std::filesystem::symlink_status(folder / pathFromUtf8(each), error).type() !=
                   std::filesystem::file_type::not_found;
        });
        files.add(outcome.file, row.current, utf8FromPath(folder / pathFromUtf8(name)));
    });
    files.commit();
    raise(status, finishOutput());
    return status;
}

int runTableTemplate(const TableRequest& request) {
    if (endingOf(request.target) != WorkbookFileEnding)
        return wrongUsage(request.target + ": the file name has to end in .xlsx");
    if (!request.workbooks.makeTemplate) return wrongUsage(request.target + NoWorkbooks);
    if (!mayWrite(request.target, request.force)) return FileTrouble;
    const auto bytes = request.workbooks.makeTemplate();
    if (bytes) return writeOrComplain(request.target, *bytes);
    complain(faultText(bytes.fault()));
    return FileTrouble;
}

} // namespace telvo::cli
