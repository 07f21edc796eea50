// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/Form.h"

namespace telvo::app::ui {

/// Name, version, build and licence of the program.
class frmAbout : public telvo::ui::Form {
    Q_OBJECT
  public:
    explicit frmAbout(const telvo::ui::FormServices& services, QWidget* parent = nullptr);
};

} // namespace telvo::app::ui
