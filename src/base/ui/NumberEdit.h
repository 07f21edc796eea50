// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLineEdit>

namespace telvo::ui {

/// A text box for one number: the whole text is selected when it gets the focus, a typed or pasted
/// "," becomes ".", and other characters than those of a number are refused. No locale is asked.
class NumberEdit : public QLineEdit {
    Q_OBJECT
  public:
    explicit NumberEdit(const QString& name, QWidget* parent = nullptr);

    /// The leading number of the text, 0 where there is none.
    double value() const;

  Q_SIGNALS:
    /// A character that no number has was typed or pasted; the text stayed as it was.
    void characterRefused(const QString& message);

  protected:
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    bool m_focusedByMouse = false;
};

/// Marks a control as one that would be refused, with the message in front of its tool tip, or,
/// with an empty message, brings back its own look and tool tip.
void markRefused(QWidget& control, const QString& message);

} // namespace telvo::ui
