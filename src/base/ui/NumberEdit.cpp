// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ui/NumberEdit.h"

#include "base/numbers.h"
#include "base/ui/qtText.h"
#include "base/writtenNumber.h"

#include <algorithm>
#include <memory>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QPalette>
#include <QValidator>
#include <QVariant>

namespace telvo::ui {

namespace {

/// Puts the decimal sign right and takes everything else as it is typed: what is no number marks
/// the box and is spoken of when the box is left.
class DecimalSign : public QValidator {
  public:
    using QValidator::QValidator;

    State validate(QString& text, int&) const override {
        text.replace(',', '.');
        for (QChar& c : text)
            if (c < QChar(' ') && c != QChar('\t')) c = ' ';
        return Acceptable;
    }
};

constexpr char OwnToolTip[] = "telvoOwnToolTip";

QChar wrongCharacter(const QString& text) {
    static const QString allowed = QStringLiteral("0123456789.+-eEdD \t");
    const auto wrong =
        std::find_if(text.begin(), text.end(), [](QChar c) { return !allowed.contains(c); });
    return wrong == text.end() ? QChar() : *wrong;
}

} // namespace

NumberEdit::NumberEdit(const QString& name, QWidget* parent) : QLineEdit(parent) {
    setObjectName(name);
    setAlignment(Qt::AlignRight);
    setValidator(new DecimalSign(this));
    connect(this, &QLineEdit::textChanged, this, &NumberEdit::showState);
    showState();
}

double NumberEdit::value() const {
    return leadingValue(fromQt(text()));
}

bool NumberEdit::hasWrongCharacter() const {
    return !wrongCharacter(text()).isNull();
}

QString NumberEdit::objection() const {
    if (const QChar wrong = wrongCharacter(text()); !wrong.isNull())
        return tr("'%1' is not a character of a number").arg(wrong);
    const auto partly = partlyRead(fromQt(text()));
    return partly ? toQt(*partly) : QString();
}

void NumberEdit::setRefusal(const QString& message) {
    m_refusal = message;
    showState();
}

void NumberEdit::showState() {
    const QString objected = objection();
    const QString message = m_refusal.isEmpty() || !objected.isEmpty() ? objected : m_refusal;
    markRefused(*this, message);
    if (message.isEmpty()) {
        // What is set automatically is read as often as what is typed.
        QPalette look;
        look.setColor(QPalette::Disabled, QPalette::Text,
                      look.color(QPalette::Active, QPalette::Text));
        setPalette(look);
    }
    // A long number that was not typed shows its first digits.
    if (!hasFocus() && !isModified()) setCursorPosition(0);
}

std::optional<QString> NumberEdit::plainNumber(const QString& pasted) {
    const WrittenNumber read = readWrittenNumber(fromQt(pasted));
    if (read.why.empty() && read.unit.empty()) return toQt(read.number);
    const QString quoted = pasted.simplified().left(40);
    Q_EMIT pasteRefused(read.why.empty()
                            ? tr("'%1' is not taken: a number without a unit is wanted").arg(quoted)
                            : tr("'%1' is not taken: %2").arg(quoted, toQt(read.why)));
    return std::nullopt;
}

void NumberEdit::pasteText(const QString& pasted) {
    if (isReadOnly() || pasted.trimmed().isEmpty()) return;
    const bool selected = hasSelectedText();
    const auto from = selected ? selectionStart() : cursorPosition();
    const auto to = selected ? selectionEnd() : from;
    const QString whole = text().left(from) + pasted + text().mid(to);
    const auto taken = m_reader ? m_reader(whole) : plainNumber(whole);
    if (!taken) return;
    selectAll();
    insert(*taken);
}

void NumberEdit::paste() {
    pasteText(QApplication::clipboard()->text());
}

void NumberEdit::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    m_focusedByMouse = event->reason() == Qt::MouseFocusReason;
    if (event->reason() != Qt::PopupFocusReason) selectAll(); // its own menu leaves it as it was
}

void NumberEdit::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason)
        return;
    setCursorPosition(0);
    if (!hasWrongCharacter()) {
        m_objectedText.clear();
    } else if (text() != m_objectedText) {
        m_objectedText = text();
        Q_EMIT wrongCharacterLeft(objection());
    }
}

void NumberEdit::mousePressEvent(QMouseEvent* event) {
    QLineEdit::mousePressEvent(event);
    // The press that gave the focus would drop the selection again.
    if (std::exchange(m_focusedByMouse, false)) selectAll();
}

void NumberEdit::mouseReleaseEvent(QMouseEvent* event) {
    QClipboard* clipboard = QApplication::clipboard();
    if (event->button() == Qt::MiddleButton && clipboard->supportsSelection()) {
        deselect();
        setCursorPosition(cursorPositionAt(event->position().toPoint()));
        pasteText(clipboard->text(QClipboard::Selection));
        return;
    }
    QLineEdit::mouseReleaseEvent(event);
}

void NumberEdit::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Paste))
        paste();
    else
        QLineEdit::keyPressEvent(event);
}

void NumberEdit::contextMenuEvent(QContextMenuEvent* event) {
    const std::unique_ptr<QMenu> menu(createStandardContextMenu());
    for (QAction* action : menu->actions()) {
        if (action->objectName() != QLatin1String("edit-paste")) continue;
        action->disconnect();
        connect(action, &QAction::triggered, this, &NumberEdit::paste);
    }
    menu->exec(event->globalPos());
}

void NumberEdit::dropEvent(QDropEvent* event) {
    if (!event->mimeData()->hasText()) return;
    setFocus(Qt::OtherFocusReason); // selects the text, which the drop replaces
    pasteText(event->mimeData()->text());
    event->acceptProposedAction();
}

bool NumberEdit::event(QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange) showState();
    return QLineEdit::event(event);
}

QColor refusedColor(QPalette::ColorRole role) {
    const bool dark = QPalette().color(QPalette::Base).lightness() < 128;
    if (role == QPalette::Base) return dark ? QColor(0x6b, 0x22, 0x22) : QColor(0xff, 0xdc, 0xd6);
    return dark ? QColor(0xff, 0xee, 0xee) : QColor(0x70, 0x00, 0x00);
}

void markRefused(QWidget& control, const QString& message) {
    const QVariant kept = control.property(OwnToolTip);
    if (message.isEmpty()) {
        if (!kept.isValid()) return;
        control.setToolTip(kept.toString());
        control.setAccessibleDescription({});
        control.setProperty(OwnToolTip, {});
        control.setPalette({});
        return;
    }
    if (!kept.isValid()) control.setProperty(OwnToolTip, control.toolTip());
    control.setToolTip(message + '\n' + control.property(OwnToolTip).toString());
    control.setAccessibleDescription(message);
    QPalette palette;
    palette.setColor(QPalette::Base, refusedColor(QPalette::Base));
    palette.setColor(QPalette::Text, refusedColor(QPalette::Text));
    control.setPalette(palette);
}

} // namespace telvo::ui
