// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/Form.h"

class QCheckBox;

namespace telvo::plot::ui {

/// Reminds of printer and orientation before a plot is printed.
class frmPrintPlotReminder : public telvo::ui::Form {
    Q_OBJECT
  public:
    explicit frmPrintPlotReminder(const telvo::ui::FormServices& services,
                                  QWidget* parent = nullptr);

    /// Whether it is not to be shown again.
    bool isLast() const;

  private:
    QCheckBox* m_last = nullptr;
};

} // namespace telvo::plot::ui
