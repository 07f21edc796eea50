// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>

class QLabel;

namespace telvo::ui {

/// The line across the top of a window whose content no longer belongs to the case on screen, with
/// a button that brings it up to date. Hidden while it has nothing to say. Forms put it up
/// themselves: Form::setOutdated().
class OutdatedBanner : public QFrame {
    Q_OBJECT
  public:
    explicit OutdatedBanner(QWidget* parent);

    /// Given: reason  one or two sentences of plain text
    void setReason(const QString& reason);

  Q_SIGNALS:
    void runAgain();

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void takeColors();

    QLabel* m_reason = nullptr;
};

} // namespace telvo::ui
