// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/reminders.h"
#include "app/ui/dialogs/SettingsForm.h"

namespace telvo::app::ui {

/// The reminder of updates, with the address of their page. Its check box switches it off.
class frmUpdate : public SettingsForm {
    Q_OBJECT
  public:
    frmUpdate(SettingsStore& store, const telvo::ui::FormServices& services,
              QWidget* parent = nullptr, std::string_view page = UpdatePage);

    /// However it is closed, the check box counts.
    void done(int result) override;
};

} // namespace telvo::app::ui
