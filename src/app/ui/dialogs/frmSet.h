// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/dialogs/SettingsForm.h"
#include "base/FileDialogs.h"

class QLineEdit;

namespace telvo::app::ui {

/// The settings dialog: what the program does at start, where files are, the history window.
class frmSet : public SettingsForm {
    Q_OBJECT
  public:
    /// Given: DataFolder  the user's data folder, named in the note on example files
    frmSet(SettingsStore& store, const std::string& DataFolder, FileDialogs& dialogs,
           const telvo::ui::FormServices& services, QWidget* parent = nullptr);

    void accept() override;
    void done(int result) override;

  private:
    QWidget* makeGeneralPage();
    QWidget* makeFilesPage(const std::string& DataFolder);
    QWidget* makeHistoryPage();
    QWidget* makeFontGroup();
    void chooseDataPath();
    SettingsTexts texts() const;

    FileDialogs& m_dialogs;
    QLineEdit* m_dataPath = nullptr;
    QLineEdit* m_historySize = nullptr;
    QLineEdit* m_extension = nullptr;
    bool m_modified = false;
};

} // namespace telvo::app::ui
