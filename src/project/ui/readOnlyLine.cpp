// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/ui/readOnlyLine.h"

namespace telvo::project::ui {

QLineEdit* makeReadOnlyLine(const QString& name, const QString& meaning, QWidget* parent) {
    auto* line = new QLineEdit(parent);
    line->setObjectName(name);
    line->setReadOnly(true);
    line->setAccessibleName(meaning);
    line->setToolTip(meaning);
    // The colour of the window tells that nothing is typed here.
    line->setBackgroundRole(QPalette::Window);
    QPalette palette;
    palette.setBrush(QPalette::Base, palette.window());
    line->setPalette(palette);
    return line;
}

} // namespace telvo::project::ui
