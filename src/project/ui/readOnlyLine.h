// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLineEdit>

namespace telvo::project::ui {

/// A line that shows a value for reading and copying; reached by the keyboard like an entry.
/// Given: meaning  what the value is, for screen readers and as the tool tip
QLineEdit* makeReadOnlyLine(const QString& name, const QString& meaning, QWidget* parent);

} // namespace telvo::project::ui
