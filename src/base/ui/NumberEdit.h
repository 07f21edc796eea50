// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <QLineEdit>
#include <QPalette>

namespace telvo::ui {

/// A text box for one number: the whole text is selected when it gets the focus, and a typed ","
/// becomes ".". No locale is asked. Its value is the leading number of its text; a text that is
/// not read to its end marks the box and says in its tool tip what is read. A pasted text is read
/// as one number or refused, never cut.
class NumberEdit : public QLineEdit {
    Q_OBJECT
  public:
    /// Makes of a pasted text what the box is to hold; nothing when it is refused, which is told
    /// then.
    using PasteReader = std::function<std::optional<QString>(const QString& pasted)>;

    explicit NumberEdit(const QString& name, QWidget* parent = nullptr);

    /// The leading number of the text, 0 where there is none.
    double value() const;

    /// Why the text is not one number: "'x' is not a character of a number", "'1 200' is read as
    /// 1". Empty for a number and for an empty box.
    QString objection() const;
    bool hasWrongCharacter() const;

    /// Marks the box with why its owner would refuse it; empty for a value that it would take.
    void setRefusal(const QString& message);

    /// For a box whose numbers have a unit. Without it one number alone is taken.
    void setPasteReader(PasteReader reader) { m_reader = std::move(reader); }

    /// As every other way of pasting and dropping does it.
    void paste();

  Q_SIGNALS:
    /// The focus left the box and its edited text holds what no number has.
    void wrongCharacterLeft(const QString& message);
    void pasteRefused(const QString& message);

  protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool event(QEvent* event) override;

  private:
    void pasteText(const QString& pasted);
    std::optional<QString> plainNumber(const QString& pasted);
    void showState();

    PasteReader m_reader;
    QString m_refusal;
    bool m_focusedByMouse = false;
    QString m_objectedText; ///< told already
};

/// The color of a text that would be refused, or of its ground.
QColor refusedColor(QPalette::ColorRole role);

/// Marks a control as one that would be refused, with the message in front of its tool tip, or,
/// with an empty message, brings back its own look and tool tip.
void markRefused(QWidget& control, const QString& message);

} // namespace telvo::ui
