// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Console.h"

#include "base/escapes.h"
#include "base/files.h"
#include "base/terminal.h"

namespace telvo::cli {

void Console::print(std::string_view text) {
    // A failure stays in the stream's error state until finish() tells it.
    std::fwrite(text.data(), 1, text.size(), m_out);
}

void Console::flush() {
    std::fflush(m_out);
}

ExitStatus Console::finish() {
    if (std::fflush(m_out) == 0 && !std::ferror(m_out)) return AllGood;
    complain("the output could not be written");
    return FileTrouble;
}

void Console::complain(const std::string& message) {
    std::string line = "telvo-cli: " + forTerminal(message) + "\n";
    if (isTerminal(m_err)) line.insert(0, clearedLine()); // of how far a long run is
    std::fwrite(line.data(), 1, line.size(), m_err);
}

ExitStatus Console::wrongUsage(const std::string& message) {
    complain(message);
    return WrongUsage;
}

bool Console::showsProgress() const {
    return isTerminal(m_err) && !isTerminal(m_out);
}

void Console::showProgress(std::string_view text) {
    std::string line = clearedLine();
    if (!text.empty()) line.append(text).append("\r");
    std::fwrite(line.data(), 1, line.size(), m_err);
}

Result<std::string> Console::readInput() {
    setBinary(m_in);
    std::string bytes;
    char block[16384];
    while (const std::size_t got = std::fread(block, 1, sizeof block, m_in)) {
        bytes.append(block, got);
        if (bytes.size() > MaxFileBytes)
            return Fault{"is larger than " + std::to_string(MaxFileBytes >> 20) + " MB",
                         std::string(StandardInput)};
    }
    if (std::ferror(m_in)) return Fault{"cannot be read", std::string(StandardInput)};
    return bytes;
}

} // namespace telvo::cli
