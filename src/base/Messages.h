// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace telvo {

enum class Buttons { Ok, YesNo, YesNoCancel };
enum class Answer { Ok, Yes, No, Cancel };

/// The one way to the user. Every program has its own: the desktop program logs and shows boxes,
/// the tests record and answer from a list.
class Messages {
  public:
    virtual ~Messages() = default;

    /// Leaves historyLine() in the history, then asks. `preset` is the answer of a hasty Return.
    virtual Answer ask(std::string_view text, Buttons buttons, Answer preset,
                       std::string_view title) = 0;
    /// One line of the history pane.
    virtual void history(std::string_view line) = 0;
    /// The status line.
    virtual void status(std::string_view line) = 0;

    void tell(std::string_view text, std::string_view title = {}) {
        ask(text, Buttons::Ok, Answer::Ok, title);
    }
};

/// What a message leaves in the history: its title, or "Message", then ": " and the text.
inline std::string historyLine(std::string_view text, std::string_view title) {
    return std::string(title.empty() ? "Message" : title).append(": ").append(text);
}

} // namespace telvo
