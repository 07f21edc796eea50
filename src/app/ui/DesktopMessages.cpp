// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/DesktopMessages.h"

#include "base/titles.h"
#include "base/ui/qtText.h"

#include <algorithm>
#include <QApplication>
#include <QGridLayout>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
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
    // Without a title of its own a box tells of something that was refused or failed.
    return title.ends_with(titles::Message) ? QMessageBox::Information : QMessageBox::Warning;
}

/// The window that a box belongs to: the one at work, or what the user comes back to from it.
QWidget* parentOfBox() {
    for (QWidget* window : {QApplication::activeModalWidget(), QApplication::activeWindow()})
        if (window && window->isVisible()) return window;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->objectName() == QLatin1String("frmMain")) return window;
    return nullptr;
}

/// Makes a box as wide as its title, as far as the screen allows; by itself it follows its text.
void makeRoomForTitle(QMessageBox& box) {
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    if (!grid) return;
    // The font of the frame is not known; its icon and button stand beside the title.
    QFont bold = QApplication::font();
    bold.setBold(true);
    const QFontMetrics metrics(bold);
    const int title = metrics.horizontalAdvance(box.windowTitle()) + 6 * metrics.height();
    grid->addItem(
        new QSpacerItem(std::min(title, box.screen()->availableSize().width() * 9 / 10), 0),
        grid->rowCount(), 0, 1, grid->columnCount());
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
                    buttonsOf(buttons), parentOfBox());
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
    makeRoomForTitle(box);
    int pressed = box.exec();
    for (; pressed == QMessageBox::Help; pressed = box.exec())
        help();
    for (const auto& [answer, button] : AnswerButtons)
        if (pressed == button) return answer;
    return preset;
}

} // namespace telvo::app::ui
