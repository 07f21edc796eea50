// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/cases.h"

#include "base/files.h"
#include "project/CaseFile.h"

#include <cstdio>
#include <filesystem>
#include <utility>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace telvo::cli {

namespace {

constexpr std::string_view StandardInput = "standard input";

Result<std::string> readStandardInput() {
#ifdef _WIN32
    _setmode(_fileno(stdin), _O_BINARY);
#endif
    std::string bytes;
    char block[16384];
    while (const std::size_t got = std::fread(block, 1, sizeof block, stdin)) {
        bytes.append(block, got);
        if (bytes.size() > MaxFileBytes)
            return Fault{"is larger than " + std::to_string(MaxFileBytes >> 20) + " MB",
                         std::string(StandardInput)};
    }
    if (std::ferror(stdin)) return Fault{"cannot be read", std::string(StandardInput)};
    return bytes;
}

} // namespace

CaseOutcome readCase(const std::string& file) {
    CaseOutcome outcome;
    outcome.file = file;
    project::ProjectCase current = project::newCase(project::English);
    project::CaseReading reading;
    if (file == "-") {
        if (const auto bytes = readStandardInput()) {
            reading = project::readCaseText(*bytes, StandardInput, current);
            current.FileName = StandardInput;
        } else {
            reading.fault = bytes.fault();
        }
    } else {
        reading = project::readCaseFile(file, current);
    }
    if (reading.fault) {
        outcome.message = faultText(*reading.fault);
        outcome.status = FileTrouble;
    } else {
        outcome.current = std::move(current);
    }
    return outcome;
}

CaseOutcome readAndRun(const std::string& file, const app::RunOptions& options) {
    CaseOutcome outcome = readCase(file);
    if (!outcome.current) return outcome;
    app::RunOutcome run = app::runCase(*outcome.current, options);
    if (auto* good = std::get_if<app::CaseRun>(&run)) {
        outcome.run = std::move(*good);
        return outcome;
    }
    outcome.status = Refused;
    if (const auto* refusal = std::get_if<Refusal>(&run))
        outcome.message = refusal->message;
    else
        outcome.message = faultText(std::get<Fault>(run));
    return outcome;
}

void complain(const std::string& message) {
    const std::string line = "telvo-cli: " + message + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void complainOf(const CaseOutcome& outcome) {
    // A fault of reading names the file itself, with the line.
    complain(outcome.status == FileTrouble ? outcome.message
                                           : outcome.file + ": " + outcome.message);
}

bool mayWrite(const std::string& target, bool force) {
    std::error_code error;
    if (force || !std::filesystem::exists(pathFromUtf8(target), error)) return true;
    complain(target + ": the file exists; --force overwrites it");
    return false;
}

void print(std::string_view text) {
    // A failure stays in the stream's error state until finishOutput() tells it.
    std::fwrite(text.data(), 1, text.size(), stdout);
}

ExitStatus finishOutput() {
    if (std::fflush(stdout) == 0 && !std::ferror(stdout)) return AllGood;
    complain("the output could not be written");
    return FileTrouble;
}

} // namespace telvo::cli
