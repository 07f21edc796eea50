// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Messages.h"

#include <string>
#include <vector>

namespace telvo::test {

/// Remembers what the user would see and answers every question with its preset.
struct RecordedMessages : Messages {
    std::vector<std::string> lines;    // of the history
    std::vector<std::string> statuses; // of the status line

    Answer ask(std::string_view text, Buttons, Answer preset, std::string_view title) override {
        lines.push_back(historyLine(text, title));
        return preset;
    }
    void history(std::string_view line) override { lines.emplace_back(line); }
    void status(std::string_view line) override { statuses.emplace_back(line); }
};

} // namespace telvo::test
