// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/Form.h"

#include <functional>
#include <string>

class QListWidget;

namespace telvo::library::ui {

/// What the list of documents has done for it.
struct ResourceActions {
    /// Opens a document with the desktop's program for it; tells when it is missing.
    std::function<void(const std::string& path)> open;
    /// Whether a table may be opened outside: asks, when the user wants to be asked.
    std::function<bool(QWidget* parent)> confirmSpreadsheet;
    /// Lets the user choose a case from a table. Returned: whether one was loaded.
    std::function<bool(QWidget* parent)> importCase;
};

/// The reference documents: manuals, notes, the template of case tables.
class frmResource : public telvo::ui::Form {
    Q_OBJECT
  public:
    /// Given: folder  where the documents and their list are, ended by a separator
    frmResource(const std::string& folder, ResourceActions actions,
                const telvo::ui::FormServices& services, QWidget* parent = nullptr);

    /// Tells why there is no list, when there is none.
    int exec() override;

  private:
    void fill();
    void openChosen();

    std::string m_folder;
    ResourceActions m_actions;
    std::string m_trouble; ///< why the list is empty
    QListWidget* m_list = nullptr;
    QPushButton* m_open = nullptr;
};

} // namespace telvo::library::ui
