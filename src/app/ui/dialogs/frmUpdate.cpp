// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/frmUpdate.h"

#include "base/ui/qtText.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>

namespace telvo::app::ui {

using telvo::ui::describe;

frmUpdate::frmUpdate(SettingsStore& store, const telvo::ui::FormServices& services, QWidget* parent,
                     std::string_view page)
    : SettingsForm(store, SettingsSaveMode::Settings, "frmUpdate",
                   "Program Updates: ", "ProgramUpdates.htm", services, parent) {
    auto* layout = new QVBoxLayout(this);
    auto* message = new QLabel(telvo::ui::toQt(UpdateMessage));
    message->setObjectName("lblMessage");
    message->setTextFormat(Qt::PlainText);
    message->setWordWrap(true);
    message->setMinimumWidth(fontMetrics().averageCharWidth() * 60);
    layout->addWidget(message);

    auto* address = new QLabel(tr("(address not set)"));
    describe(*address, "lblURL", tr("Update page"), tr("Address of the page with updates"));
    if (!page.empty()) {
        const QString link = telvo::ui::toQt(page).toHtmlEscaped();
        address->setText(QString("<a href=\"%1\">%1</a>").arg(link));
        address->setTextInteractionFlags(Qt::TextBrowserInteraction);
        address->setOpenExternalLinks(true);
    }
    layout->addWidget(address);
    auto* version = new QLabel(
        tr("Installed is version %1.").arg(QCoreApplication::applicationVersion()) +
        (page.empty() ? ' ' + tr("It names no page with updates: a newer version comes from where "
                                 "you had this one.")
                      : QString()));
    version->setObjectName("lblVersion");
    version->setTextFormat(Qt::PlainText);
    version->setWordWrap(true);
    layout->addWidget(version);
    layout->addStretch();
    addSwitch(*layout, "chkNoRemind", {&Settings::RemindAnnualUpdates, 0, 1},
              tr("&Do not remind me again"),
              tr("Leaves the reminder out when the program starts; the Help menu still shows it"));
    auto* buttons = makeButtons();
    connect(addButton(*buttons, "cmdOK", tr("OK"), QDialogButtonBox::AcceptRole),
            &QPushButton::clicked, this, &frmUpdate::accept);
    layout->addWidget(buttons);
    showValues();
}

void frmUpdate::done(int result) {
    keepChanges();
    SettingsForm::done(result);
}

} // namespace telvo::app::ui
