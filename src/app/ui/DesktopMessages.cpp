// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/DesktopMessages.h"

#include "base/titles.h"
#include "base/ui/qtText.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <utility>

namespace telvo::app::ui {

using telvo::ui::toQt;

namespace {

// Before the settings are read; the window sets the user's own.
constexpr std::size_t FirstCapacity = 16384;

QMessageBox::StandardButtons buttonsOf(Buttons buttons) {
    switch (buttons) {
    case Buttons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case Buttons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case Buttons::Ok:
        break;
    }
    return QMessageBox::Ok;
}

constexpr std::pair<Answer, QMessageBox::StandardButton> AnswerButtons[] = {
    {Answer::Ok, QMessageBox::Ok},
    {Answer::Yes, QMessageBox::Yes},
    {Answer::No, QMessageBox::No},
    {Answer::Cancel, QMessageBox::Cancel}};

QMessageBox::Icon iconOf(Buttons buttons, std::string_view title) {
    if (buttons != Buttons::Ok) return QMessageBox::Question;
    if (title.ends_with("Error") || title.ends_with("Character")) return QMessageBox::Critical;
    if (title.ends_with("Warning") || title.ends_with("Warnings")) return QMessageBox::Warning;
    return QMessageBox::Information;
}

} // namespace

DesktopMessages::DesktopMessages(Box box) : m_box(std::move(box)), m_history(FirstCapacity) {}

Answer DesktopMessages::ask(std::string_view text, Buttons buttons, Answer preset,
                            std::string_view title) {
    history(historyLine(text, title));
    const std::string_view above = title.empty() ? titles::Program : title;
    return m_box ? m_box(text, buttons, preset, above) : showBox(text, buttons, preset, above);
}

void DesktopMessages::history(std::string_view line) {
    const std::size_t dropped = m_history.append(line);
    if (onLine) onLine(m_history.lines().back(), dropped);
}

void DesktopMessages::status(std::string_view line) {
    m_status = line;
    if (onStatus) onStatus(m_status);
}

Answer DesktopMessages::showBox(std::string_view text, Buttons buttons, Answer preset,
                                std::string_view title) const {
    const auto end = text.find_last_not_of("\r\n "); // line breaks at the end only take room
    QMessageBox box(iconOf(buttons, title), toQt(title), toQt(text.substr(0, end + 1)),
                    buttonsOf(buttons), QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    for (const auto& [answer, button] : AnswerButtons)
        if (answer == preset) box.setDefaultButton(button);
    const auto help = helpOf ? helpOf(text) : nullptr;
    if (help) {
        box.addButton(QMessageBox::Help)->setShortcut(Qt::Key_F1);
        // With a second button Escape would do nothing.
        if (buttons == Buttons::Ok) box.setEscapeButton(QMessageBox::Ok);
    }
    int pressed = box.exec();
    for (; pressed == QMessageBox::Help; pressed = box.exec())
        help();
    for (const auto& [answer, button] : AnswerButtons)
        if (pressed == button) return answer;
    return preset;
}

} // namespace telvo::app::ui
