// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/dialogs/SettingsForm.h"

class QFormLayout;

namespace telvo::app::ui {

/// The options of the parametric graphs: how they are drawn, and their titles.
class frmGraphOpts : public SettingsForm {
    Q_OBJECT
  public:
    frmGraphOpts(SettingsStore& store, const telvo::ui::FormServices& services,
                 QWidget* parent = nullptr);

    void accept() override;
    void done(int result) override;

  private:
    QWidget* makeDrawingPage();
    QWidget* makeCurvesGroup();
    QWidget* makeTitlesPage();
    void addTitle(QFormLayout& form, const QString& name, const QString& caption,
                  const QString& toolTip, std::function<std::string&(Settings&)> title);

    bool m_modified = false;
};

} // namespace telvo::app::ui
