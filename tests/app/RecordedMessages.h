// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Messages.h"

#include <deque>
#include <string>
#include <vector>

namespace telvo::test {

/// Remembers what the user would see. Questions are answered from a list, and with their preset
/// when it is used up.
struct RecordedMessages : Messages {
    std::vector<std::string> lines;    // of the history
    std::vector<std::string> asked;    // message boxes, "title: text"
    std::vector<std::string> statuses; // of the status line
    std::deque<Answer> answers;

    Answer ask(std::string_view text, Buttons, Answer preset, std::string_view title) override {
        lines.push_back(historyLine(text, title));
        asked.push_back(lines.back());
        if (answers.empty()) return preset;
        const Answer answer = answers.front();
        answers.pop_front();
        return answer;
    }
    void history(std::string_view line) override { lines.emplace_back(line); }
    void status(std::string_view line) override { statuses.emplace_back(line); }

    std::string lastStatus() const { return statuses.empty() ? "" : statuses.back(); }
};

} // namespace telvo::test
