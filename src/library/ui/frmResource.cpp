// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/ui/frmResource.h"

#include "base/titles.h"
#include "base/ui/qtText.h"
#include "library/resourceList.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

namespace telvo::library::ui {

using telvo::ui::describe;
using telvo::ui::fromQt;
using telvo::ui::toQt;

frmResource::frmResource(const std::string& folder, ResourceActions actions,
                         const telvo::ui::FormServices& services, QWidget* parent)
    : Form("frmResource", titles::ResourceFiles, "ResourceFiles.htm", services, parent),
      m_folder(folder), m_actions(std::move(actions)) {
    setWindowTitle(tr("Resource Files"));
    auto* layout = new QVBoxLayout(this);
    m_list = new QListWidget;
    describe(*m_list, "lstResources", tr("Reference documents"),
             tr("Reference documents; Enter or a double click opens one"));
    m_list->setMinimumSize(fontMetrics().averageCharWidth() * 50, fontMetrics().height() * 12);
    auto* label = new QLabel(tr("&Documents:"));
    label->setBuddy(m_list);
    layout->addWidget(label);
    layout->addWidget(m_list, 1);

    auto* buttons = makeButtons();
    m_open = addButton(*buttons, "cmdOpen", tr("&Open"), QDialogButtonBox::ActionRole);
    m_open->setToolTip(tr("Opens the document with the desktop's program for it (Enter)"));
    m_open->setDefault(true);
    connect(m_open, &QPushButton::clicked, this, &frmResource::openChosen);
    auto* import =
        addButton(*buttons, "cmdImport", tr("&Import Case..."), QDialogButtonBox::ActionRole);
    import->setToolTip(tr("Loads a case from a row of a table, .csv or .xlsx"));
    connect(import, &QPushButton::clicked, this, [this] {
        if (m_actions.importCase(this)) accept();
    });
    auto* close = addButton(*buttons, "cmdClose", tr("C&lose"), QDialogButtonBox::RejectRole);
    close->setToolTip(tr("Closes this window (Esc)"));
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    layout->addWidget(buttons);

    // Enter in the list presses the default button.
    connect(m_list, &QListWidget::itemDoubleClicked, this, &frmResource::openChosen);
    fill();
    m_list->setFocus();
}

void frmResource::fill() {
    const auto resources = readResourceList(m_folder + std::string(ResourceListFile));
    if (!resources) {
        // A missing file is named by its message already.
        const Fault& fault = resources.fault();
        m_trouble =
            fault.message.find(m_folder) == std::string::npos ? faultText(fault) : fault.message;
    } else {
        for (const Resource& one : *resources) {
            auto* item = new QListWidgetItem(toQt(one.title), m_list);
            item->setData(Qt::UserRole, toQt(one.file));
            item->setToolTip(toQt(one.file));
        }
        m_list->setCurrentRow(0);
    }
    m_open->setEnabled(m_list->count() > 0);
}

int frmResource::exec() {
    if (!m_trouble.empty()) tell(m_trouble, titles::Error);
    return Form::exec();
}

void frmResource::openChosen() {
    const QListWidgetItem* item = m_list->currentItem();
    if (!item) return;
    const std::string file = fromQt(item->data(Qt::UserRole).toString());
    if (isTable(file) && !m_actions.confirmSpreadsheet(this)) return;
    m_actions.open(m_folder + file);
}

} // namespace telvo::library::ui
