// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/ProjectInput.h"

#include <map>
#include <QString>
#include <string>

class QWidget;

namespace telvo::project::ui {

/// Marks the controls of the parameter form whose values the case file did not give, and lists them
/// on top of the form. A mark goes with the first change of its control.
class KeptMarks {
  public:
    /// Call it when the form shows the case.
    KeptMarks(QWidget& form, const OpenCase& open);

    /// What is to be said of a numeric box; empty when its value is the file's or was changed.
    QString messageOf(const std::string& control, const QString& text) const;

  private:
    void markOther(QWidget& form, const std::string& control);

    QString m_message;
    std::map<std::string, QString> m_texts; ///< of numeric boxes as they came up
};

} // namespace telvo::project::ui
