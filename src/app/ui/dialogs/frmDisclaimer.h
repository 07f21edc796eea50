// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/dialogs/SettingsForm.h"

namespace telvo::app::ui {

/// The disclaimer. Its check box keeps it from being shown at start.
class frmDisclaimer : public SettingsForm {
    Q_OBJECT
  public:
    frmDisclaimer(SettingsStore& store, const telvo::ui::FormServices& services,
                  QWidget* parent = nullptr);

    /// However it is closed, the check box counts.
    void done(int result) override;
};

} // namespace telvo::app::ui
