// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/inputs.h"

#include "base/files.h"
#include "base/text.h"
#include "cli/InOrder.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <chrono>
#include <deque>
#include <filesystem>
#include <system_error>
#include <thread>

namespace telvo::cli {

namespace {

namespace fs = std::filesystem;

constexpr char Protection = '\x01';

/// Names in a list: a line each, or ended by NUL characters as "find -print0" writes them.
std::vector<std::string> listedNames(std::string_view bytes) {
    std::vector<std::string> names;
    const bool byNul = bytes.find('\0') != std::string_view::npos;
    while (!bytes.empty()) {
        const auto end = std::min(bytes.find(byNul ? '\0' : '\n'), bytes.size());
        std::string_view name = bytes.substr(0, end);
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
        if (!byNul && name.ends_with('\r')) name.remove_suffix(1);
        if (!name.empty()) names.emplace_back(name);
    }
    return names;
}

bool isFolder(const std::string& name) {
    std::error_code error;
    return fs::is_directory(pathFromUtf8(name), error);
}

std::vector<std::string> casesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator file(pathFromUtf8(folder), error), end; !error && file != end;
         file.increment(error)) {
        const std::string name = utf8FromPath(file->path());
        std::error_code none;
        if (endingOf(name) == ".tlv" && !file->is_directory(none)) names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// A line that tells on the terminal how many cases are done, after the first second. It is written
/// over by whatever comes next.
class Progress {
  public:
    Progress(Console& console, std::size_t of)
        : m_console(console), m_of(of), m_shows(console.showsProgress()) {}
    Progress(const Progress&) = delete;
    ~Progress() {
        if (m_told) m_console.showProgress({});
    }

    void step(std::size_t file) {
        ++m_done;
        const auto now = std::chrono::steady_clock::now();
        if (!m_shows || now - m_last < std::chrono::seconds(1)) return;
        m_last = now;
        m_told = true;
        std::string text = std::to_string(m_done) + " cases";
        if (m_of > 1) text += ", file " + std::to_string(file + 1) + " of " + std::to_string(m_of);
        m_console.showProgress(text);
    }

  private:
    Console& m_console;
    std::size_t m_of;
    std::size_t m_done = 0;
    bool m_shows;
    bool m_told = false;
    std::chrono::steady_clock::time_point m_last = std::chrono::steady_clock::now();
};

} // namespace

CLI::Option* literal(CLI::Option* option) {
    return option->transform(
        [](const std::string& text) { return text.substr(text.starts_with(Protection) ? 1 : 0); });
}

void protectNames(std::vector<std::string>& arguments) {
    for (std::string& argument : arguments) {
        const bool list = argument.starts_with('[') && argument.ends_with(']');
        if (list || argument == "++" || argument.starts_with(Protection))
            argument.insert(argument.begin(), Protection);
    }
}

std::string withoutProtection(std::string message) {
    std::erase(message, Protection);
    return message;
}

void addInputs(CLI::App& command, Inputs& inputs) {
    literal(command.add_option("CASE", inputs.given,
                               "case files, case tables, FILE#ROW for one row, folders of case "
                               "files; - reads standard input"));
    literal(command.add_option("--files-from", inputs.listFile,
                               "read more of them from this file, a line each or ended by NUL; - "
                               "is standard input"))
        ->option_text("FILE");
}

std::optional<std::vector<std::string>> namesOf(Console& console, const Inputs& inputs,
                                                ExitStatus& status) {
    std::vector<std::string> named = inputs.given;
    if (!inputs.listFile.empty()) {
        const auto bytes = inputs.listFile == "-" ? console.readInput() : readFile(inputs.listFile);
        if (!bytes) {
            console.complain(faultText(bytes.fault()));
            raise(status, FileTrouble);
            return std::nullopt;
        }
        const auto listed = listedNames(*bytes);
        named.insert(named.end(), listed.begin(), listed.end());
        if (named.empty()) {
            console.complain(inputs.listFile + ": the list names no case");
            raise(status, FileTrouble);
            return std::nullopt;
        }
    }
    if (named.empty()) {
        console.complain("CASE is required: a case file, a table or a folder");
        raise(status, WrongUsage);
        return std::nullopt;
    }
    std::vector<std::string> read = named;
    if (inputs.listFile == "-") read.push_back(inputs.listFile);
    if (readsInputTwice(console, read)) {
        raise(status, WrongUsage);
        return std::nullopt;
    }
    std::vector<std::string> names;
    for (std::string& name : named) {
        if (!isFolder(name)) {
            names.push_back(std::move(name));
            continue;
        }
        auto cases = casesIn(name);
        if (cases.empty()) {
            console.complain(name + ": the folder has no case files (.TLV)");
            raise(status, FileTrouble);
        }
        std::move(cases.begin(), cases.end(), std::back_inserter(names));
    }
    return names;
}

Made madeOf(const CaseOutcome& outcome) {
    Made made;
    made.said = sayings(outcome);
    made.status = outcome.status;
    made.hasRun = outcome.run.has_value();
    return made;
}

void visitAll(Console& console, const std::vector<std::string>& names,
              const std::function<void(CaseOutcome& outcome)>& visit) {
    Progress progress(console, names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        visitCases(console, names[i], [&](CaseOutcome& outcome) {
            for (const std::string& remark : outcome.remarks)
                console.complain(remark);
            visit(outcome);
            progress.step(i);
        });
}

void makeInOrder(Console& console, const std::vector<std::string>& names, unsigned jobs,
                 const std::function<Made(CaseOutcome& outcome)>& make,
                 const std::function<void(const Made& made)>& take) {
    Progress progress(console, names.size());
    std::deque<std::size_t> files; // of the cases under way
    InOrder<CaseOutcome, Made> pipeline(jobs, make, [&](const Made& made) {
        for (const std::string& said : made.said)
            console.complain(said);
        take(made);
        progress.step(files.front());
        files.pop_front();
    });
    for (std::size_t i = 0; i < names.size(); ++i)
        visitCases(console, names[i], [&](CaseOutcome& outcome) {
            files.push_back(i);
            pipeline.add(std::move(outcome));
        });
    pipeline.finish();
}

void addJobs(CLI::App& command, unsigned& jobs) {
    command
        .add_option("--jobs", jobs,
                    "cases computed at once; as many as there are cores if not given")
        ->check(CLI::Range(1U, MostJobs))
        ->option_text("N");
}

unsigned defaultJobs() {
    return std::clamp(std::thread::hardware_concurrency(), 1U, MostJobs);
}

} // namespace telvo::cli
