// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPlainTextEdit>

namespace telvo::project::ui {

/// A box for plain text of 60 columns in a fixed-pitch font. Lines are wrapped at blanks as a save
/// breaks them; what is pasted comes in without control characters and cut to the longest
/// description; Tab goes to the next control.
class DescriptionEdit : public QPlainTextEdit {
    Q_OBJECT
  public:
    explicit DescriptionEdit(const QString& name, QWidget* parent = nullptr);

  Q_SIGNALS:
    /// A pasted text was too long and came in shortened.
    void pasteCut();

  protected:
    void insertFromMimeData(const QMimeData* source) override;
    bool canInsertFromMimeData(const QMimeData* source) const override;
};

} // namespace telvo::project::ui
