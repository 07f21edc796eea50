// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/tableImport.h"

#include "base/escapes.h"
#include "base/files.h"
#include "base/temporaryFiles.h"
#include "base/text.h"
#include "cli/inputs.h"
#include "cli/outputs.h"
#include "project/CaseFile.h"
#include "table/caseFiles.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <system_error>

namespace telvo::cli {

namespace {

/// The case files of an import. So many of them are put in place at once that waiting for the disk
/// takes no time beside writing them.
class Import {
  public:
    Import(Console& console, const TableImportRequest& request)
        : m_console(console), m_folder(pathFromUtf8(request.folder)), m_dryRun(request.dryRun) {
        if (m_dryRun) return;
        std::error_code error;
        std::filesystem::create_directories(m_folder, error); // a fault shows with the first file
        removeLeftTemporaryFiles(m_folder);
    }

    void add(CaseOutcome& outcome) {
        if (m_failures >= MostFailures) {
            ++m_untried;
            return;
        }
        if (outcome.current && !outcome.row) {
            outcome.current.reset();
            outcome.message = outcome.file + ": is no table";
            outcome.status = FileTrouble;
        }
        if (!outcome.current) return refuse(outcome);
        table::CaseRow row;
        row.number = *outcome.row;
        row.current = std::move(*outcome.current);
        const auto text = project::writeCaseText(row.current);
        if (!text) {
            outcome.message = outcome.file + ": " + faultText(text.fault());
            outcome.status = FileTrouble;
            return refuse(outcome);
        }
        bool isThere = false;
        const std::string name = m_names.next(row, [&](const std::string& each) {
            isThere = holds(each, *text);
            return !isThere && isNamed(each);
        });
        const std::string path = utf8FromPath(m_folder / pathFromUtf8(name));
        if (isThere) {
            m_console.print(forTerminal(outcome.file + " = " + path) + ", already there\n");
            ++m_there;
        } else if (m_dryRun) {
            made(outcome.file, path);
        } else {
            write(outcome.file, path, *text);
        }
    }

    ExitStatus finish() {
        commit();
        tellRepeats();
        if (m_untried > 0)
            m_console.complain("the import stops here: " + std::to_string(MostFailures) +
                               " files in a row could not be written");
        std::string summary = std::to_string(m_made) + (m_made == 1 ? " case " : " cases ") +
                              (m_dryRun ? "would be made" : "made") + ", " +
                              std::to_string(m_there) + " already there, " +
                              std::to_string(m_refused) + " refused";
        if (m_unwritten > 0) summary += ", " + std::to_string(m_unwritten) + " not written";
        if (m_untried > 0) summary += ", " + std::to_string(m_untried) + " not tried";
        m_console.print(summary + "\n");
        raise(m_status, m_console.finish());
        return m_status;
    }

  private:
    struct Waiting {
        std::string source;
        std::string path;
        AtomicFile file;
    };

    static constexpr std::size_t MostWaiting = 4096; // unfinished files at once
    static constexpr std::size_t MostFailures = 16;  // in a row: the disk is full, not one name bad

    bool isNamed(const std::string& name) const {
        std::error_code error;
        return std::filesystem::symlink_status(m_folder / pathFromUtf8(name), error).type() !=
               std::filesystem::file_type::not_found;
    }

    bool holds(const std::string& name, const std::string& text) const {
        const auto path = m_folder / pathFromUtf8(name);
        std::error_code error;
        if (std::filesystem::file_size(path, error) != text.size() || error) return false;
        const auto bytes = readFile(utf8FromPath(path));
        return bytes && *bytes == text;
    }

    void write(const std::string& source, const std::string& path, const std::string& text) {
        auto file = AtomicFile::create(path, Existing::Refuse);
        if (!file) return fail(source, file.fault());
        Status written = file->write(text);
        if (written) written = file->close();
        if (!written) return fail(source, written.fault());
        m_failures = 0;
        m_waiting.push_back({source, path, std::move(*file)});
        if (m_waiting.size() == MostWaiting) commit();
    }

    void commit() {
        if (m_waiting.empty()) return;
        const Status flushed = AtomicFile::flush(m_folder);
        for (Waiting& each : m_waiting) {
            const Status done = flushed ? each.file.commit() : flushed;
            if (done)
                made(each.source, each.path);
            else
                fail(each.source, done.fault());
        }
        m_waiting.clear();
        m_console.flush(); // what is told of a run that is cut off later
    }

    void made(const std::string& source, const std::string& path) {
        m_console.print(forTerminal(source + " -> " + path) + "\n");
        ++m_made;
    }

    void refuse(const CaseOutcome& outcome) {
        complainOf(m_console, outcome);
        raise(m_status, outcome.status);
        ++m_refused;
    }

    /// What is wrong with every file, as a full disk is, is told once.
    void fail(const std::string& source, const Fault& fault) {
        ++m_unwritten;
        ++m_failures;
        raise(m_status, FileTrouble);
        if (fault.message == m_failure) {
            ++m_repeats;
            return;
        }
        tellRepeats();
        m_failure = fault.message;
        m_console.complain(source + ": " + faultText(fault));
    }

    void tellRepeats() {
        if (m_repeats > 0)
            m_console.complain("and " + std::to_string(m_repeats) + " more: " + m_failure);
        m_repeats = 0;
    }

    Console& m_console;
    const std::filesystem::path m_folder;
    const bool m_dryRun;
    table::CaseFileNames m_names;
    std::vector<Waiting> m_waiting;
    std::string m_failure; ///< the last one told
    std::size_t m_repeats = 0, m_failures = 0;
    std::size_t m_made = 0, m_there = 0, m_refused = 0, m_unwritten = 0, m_untried = 0;
    ExitStatus m_status = AllGood;
};

} // namespace

CLI::App* addTableImport(CLI::App& tables, TableImportRequest& request) {
    CLI::App* command = tables.add_subcommand("import", "write a case file for every row");
    literal(command->add_option("TABLE", request.table, "table, or TABLE#ROW for one row"))
        ->required();
    literal(command->add_option("-o,--output", request.folder,
                                "folder of the case files, made where it is missing"))
        ->required();
    command->add_flag("--dry-run", request.dryRun, "tell what would be made, and make nothing");
    command->footer("The files are named after the titles, or the rows where there is none. No "
                    "file is replaced.\nA row whose case is there already makes no second file: an "
                    "import that was cut off\ncan be run again.\n\n"
                    "Example:\n  telvo-cli table import panels.csv -o panels");
    return command;
}

int runTableImport(Console& console, const TableImportRequest& request) {
    Import import(console, request);
    visitAll(console, {request.table}, [&](CaseOutcome& outcome) { import.add(outcome); });
    return import.finish();
}

} // namespace telvo::cli
