// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/RecordedDialogs.h"
#include "app/RecordedMessages.h"

#include <cstdio>
#include <cstdlib>
#include <QApplication>
#include <QPointer>
#include <QStringList>
#include <QTest>
#include <QTimer>
#include <QWidget>

/// What the tests of windows share: finding controls by object name, typing, recorded dialogs.
namespace telvo::test {

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

/// Names of the modal windows that tests are waiting for.
inline QStringList& awaitedModals() {
    static QStringList names;
    return names;
}

/// Acts in the modal window or menu of that name which a command shows, once it is the one that
/// waits for the user; the test fails when it does not come. It is closed where the act leaves it.
template <typename Command, typename Act>
void inModal(const char* name, Command command, Act act) {
    const QString wanted = QString::fromUtf8(name);
    bool came = false;
    awaitedModals() << wanted;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        QWidget* waiting = QApplication::activePopupWidget();
        if (!waiting) waiting = QApplication::activeModalWidget();
        if (!waiting || waiting->objectName() != wanted || !waiting->isVisible()) return;
        look.stop();
        came = true;
        const QPointer<QWidget> window(waiting);
        act(*waiting);
        if (window && window->isVisible()) window->close();
    });
    look.start(1);
    command();
    awaitedModals().removeOne(wanted);
    QVERIFY2(came, qPrintable("no modal window " + wanted));
}

} // namespace telvo::test
