// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ui/NumberEdit.h"

#include "base/numbers.h"
#include "base/ui/qtText.h"

#include <QFocusEvent>
#include <QPalette>
#include <QValidator>
#include <QVariant>

namespace telvo::ui {

namespace {

class NumberValidator : public QValidator {
  public:
    using QValidator::QValidator;

    State validate(QString& text, int&) const override {
        text.replace(',', '.');
        for (const QChar c : text)
            if (!QStringLiteral("0123456789.+-eEdD \t").contains(c)) {
                refused = c;
                return Invalid;
            }
        return Acceptable;
    }

    mutable QChar refused; ///< the character that made the last text invalid
};

constexpr char OwnToolTip[] = "telvoOwnToolTip";

} // namespace

NumberEdit::NumberEdit(const QString& name, QWidget* parent) : QLineEdit(parent) {
    setObjectName(name);
    setAlignment(Qt::AlignRight);
    auto* validator = new NumberValidator(this);
    setValidator(validator);
    connect(this, &QLineEdit::inputRejected, this, [this, validator] {
        if (validator->refused.isNull()) return;
        Q_EMIT characterRefused(
            tr("'%1' is not a character of a number").arg(std::exchange(validator->refused, {})));
    });
}

double NumberEdit::value() const {
    return leadingValue(fromQt(text()));
}

void NumberEdit::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    m_focusedByMouse = event->reason() == Qt::MouseFocusReason;
    selectAll();
}

void NumberEdit::mousePressEvent(QMouseEvent* event) {
    QLineEdit::mousePressEvent(event);
    // The press that gave the focus would drop the selection again.
    if (std::exchange(m_focusedByMouse, false)) selectAll();
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
    const bool dark = palette.color(QPalette::Base).lightness() < 128;
    palette.setColor(QPalette::Base, dark ? QColor(0x6b, 0x22, 0x22) : QColor(0xff, 0xdc, 0xd6));
    palette.setColor(QPalette::Text, dark ? QColor(0xff, 0xee, 0xee) : QColor(0x70, 0x00, 0x00));
    control.setPalette(palette);
}

} // namespace telvo::ui
