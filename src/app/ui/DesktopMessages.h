// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/MessageLog.h"
#include "base/Messages.h"

#include <functional>
#include <string>

namespace telvo::app::ui {

/// The message routine of the desktop program: the history line first, then the box. Lines that
/// come before the main window wait in the history.
class DesktopMessages : public Messages {
  public:
    /// Shows a box and returns the button pressed; tests put their own in its place, and where
    /// there is none the desktop's is shown.
    using Box = std::function<Answer(std::string_view text, Buttons buttons, Answer preset,
                                     std::string_view title)>;
    explicit DesktopMessages(Box box);

    Answer ask(std::string_view text, Buttons buttons, Answer preset,
               std::string_view title) override;
    void history(std::string_view line) override;
    void status(std::string_view line) override;

    MessageLog& lines() { return m_history; }
    const std::string& lastStatus() const { return m_status; }

    std::function<void(const std::string& line, std::size_t dropped)> onLine;
    std::function<void(const std::string& status)> onStatus;
    /// What opens the explanation of a message; an empty one where there is none.
    std::function<std::function<void()>(std::string_view text)> helpOf;

  private:
    /// The box of the desktop, with a button for help where the message is explained.
    Answer showBox(std::string_view text, Buttons buttons, Answer preset,
                   std::string_view title) const;

    Box m_box;
    MessageLog m_history;
    std::string m_status;
};

} // namespace telvo::app::ui
