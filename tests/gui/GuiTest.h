// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/RecordedMessages.h"
#include "base/FileDialogs.h"

#include <cstdio>
#include <cstdlib>
#include <deque>
#include <QTest>
#include <QWidget>

/// What the tests of windows share: finding controls by object name, typing, recorded dialogs.
namespace telvo::test {

/// Answers file dialogs from a list (Cancel when it is empty) and remembers what was asked.
struct RecordedDialogs : FileDialogs {
    std::deque<std::optional<std::string>> answers;
    std::vector<std::string> asked; // "title|folder or proposal|first filter"

    std::optional<std::string> openFile(std::string_view title, std::string_view folder,
                                        const std::vector<std::string>& filters) override {
        return next(title, folder, filters.empty() ? "" : filters.front());
    }
    std::optional<std::string> saveFile(std::string_view title, std::string_view proposal,
                                        const std::vector<std::string>& filters,
                                        std::string_view) override {
        return next(title, proposal, filters.empty() ? "" : filters.front());
    }
    std::optional<std::string> chooseFolder(std::string_view title,
                                            std::string_view folder) override {
        return next(title, folder, "");
    }

  private:
    std::optional<std::string> next(std::string_view title, std::string_view start,
                                    std::string_view filter) {
        asked.push_back(std::string(title) + '|' + std::string(start) + '|' + std::string(filter));
        if (answers.empty()) return std::nullopt;
        auto answer = answers.front();
        answers.pop_front();
        return answer;
    }
};

/// The control of that name, which has to exist.
template <typename Control = QWidget>
Control& control(const QWidget& window, const char* name) {
    auto* found = window.findChild<Control*>(QString::fromUtf8(name));
    if (!found) {
        std::fprintf(stderr, "no control %s in %s\n", name,
                     window.objectName().toUtf8().constData());
        std::abort();
    }
    return *found;
}

/// Clicks a button or a check box as a user would.
inline void click(const QWidget& window, const char* name) {
    QTest::mouseClick(&control(window, name), Qt::LeftButton, {},
                      QPoint(8, control(window, name).height() / 2));
}

/// Goes into a text box and types over what it holds.
inline void typeInto(QWidget& box, const QString& text) {
    box.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&box, Qt::Key_Delete);
    QTest::keyClicks(&box, text);
}
inline void type(const QWidget& window, const char* name, const QString& text) {
    typeInto(control(window, name), text);
}

/// Shows a window and makes it the active one, so that its controls can have the focus.
inline void show(QWidget& window) {
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
}

} // namespace telvo::test
