// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>

class QDialog;
class QWidget;

namespace telvo::ui {

/// The largest size of a window's content with which it lies on its screen, frame and title bar
/// taken off.
QSize roomOnScreen(const QWidget& window);

/// Where a dialog needs more room than its screen has: puts its content, but not its row of
/// buttons, into a scroll area. Returned: whether that was needed. The dialog's layout is, and
/// stays, a QVBoxLayout.
bool makeScrollableOnSmallScreens(QDialog& dialog);

/// Keeps a window, from now on, from being made so low that the wrapped texts in its layout lose
/// lines; a layout by itself counts only what a text needs in the width that it likes best.
void keepTextsWhole(QWidget& window);

} // namespace telvo::ui
