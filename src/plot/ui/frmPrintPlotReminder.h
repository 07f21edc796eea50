// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/Form.h"

class QCheckBox;

namespace telvo::ui {

/// Reminds of printer and orientation before a plot is printed.
class frmPrintPlotReminder : public Form {
    Q_OBJECT
  public:
    explicit frmPrintPlotReminder(const FormServices& services, QWidget* parent = nullptr);

    /// Whether it is not to be shown again.
    bool isLast() const;

  private:
    QCheckBox* m_last = nullptr;
};

} // namespace telvo::ui
