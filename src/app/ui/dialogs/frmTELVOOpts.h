// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/dialogs/SettingsForm.h"

class QFormLayout;
class QLineEdit;

namespace telvo::app::ui {

/// The program options: what happens around input, how results are given, what plots show.
class frmTELVOOpts : public SettingsForm {
    Q_OBJECT
  public:
    /// Given: program   full path of the program file, which the file extension is associated with
    ///        dataHome  folder of the user's desktop files: userDataHome()
    frmTELVOOpts(SettingsStore& store, std::string program, std::string dataHome,
                 const telvo::ui::FormServices& services, QWidget* parent = nullptr);

    void accept() override;
    void done(int result) override;

  private:
    QWidget* makeInputPage();
    QWidget* makeOutputPage();
    QWidget* makeRangeGroup();
    QWidget* makePlotPage();
    QLineEdit* addPercent(QFormLayout& form, const QString& name, const QString& caption,
                          const QString& toolTip);
    OptionsTexts texts() const;

    std::string m_program;
    std::string m_dataHome;
    QLineEdit* m_rangeMin = nullptr;
    QLineEdit* m_rangeMax = nullptr;
    bool m_modified = false;
};

} // namespace telvo::app::ui
