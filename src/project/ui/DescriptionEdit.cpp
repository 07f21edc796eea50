// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/ui/DescriptionEdit.h"

#include "base/ui/qtText.h"
#include "project/CaseFile.h"
#include "project/description.h"

#include <algorithm>
#include <cmath>
#include <QFontDatabase>
#include <QMimeData>
#include <QScrollBar>
#include <QTextDocument>

namespace telvo::project::ui {

DescriptionEdit::DescriptionEdit(const QString& name, QWidget* parent) : QPlainTextEdit(parent) {
    setObjectName(name);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setTabChangesFocus(true);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    // The bar is always there, so that its coming does not take columns away.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    const QFontMetricsF metrics(font());
    const double text = metrics.horizontalAdvance(QString(DescriptionColumns, 'M'));
    const double margins = 2 * document()->documentMargin() + 2 * frameWidth();
    const int bar = verticalScrollBar()->sizeHint().width();
    setFixedWidth(static_cast<int>(std::ceil(text + margins)) + cursorWidth() + bar);
    setMinimumHeight(static_cast<int>(std::ceil(8 * metrics.lineSpacing() + margins)));
}

void DescriptionEdit::insertFromMimeData(const QMimeData* source) {
    const QString text = source->text();
    const auto held = document()->characterCount() - 1 - textCursor().selectedText().size();
    const auto room = std::clamp<qsizetype>(static_cast<qsizetype>(MaxDescriptionCharacters) - held,
                                            0, text.size());
    QString taken = text.left(room);
    if (!taken.isEmpty() && taken.back().isHighSurrogate()) taken.chop(1);
    insertPlainText(telvo::ui::toQt(plainLines(telvo::ui::fromQt(taken))));
    ensureCursorVisible();
    if (room < text.size()) Q_EMIT pasteCut();
}

bool DescriptionEdit::canInsertFromMimeData(const QMimeData* source) const {
    return source->hasText();
}

} // namespace telvo::project::ui
