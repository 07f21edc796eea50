// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/frmDisclaimer.h"

#include "app/reminders.h"
#include "base/ui/qtText.h"

#include <QCheckBox>
#include <QPlainTextEdit>
#include <QPushButton>

namespace telvo::app::ui {

using telvo::ui::describe;

frmDisclaimer::frmDisclaimer(SettingsStore& store, const telvo::ui::FormServices& services,
                             QWidget* parent)
    : SettingsForm(store, SettingsSaveMode::Settings, "frmDisclaimer",
                   "Disclaimer: ", "Disclaimer.htm", services, parent) {
    auto* layout = new QVBoxLayout(this);
    // It scrolls where the screen is small, and shows all of itself elsewhere.
    auto* text = new QPlainTextEdit(telvo::ui::toQt(DisclaimerText).replace('\n', "\n\n"));
    describe(*text, "txtDisclaimer", tr("Disclaimer"),
             tr("What results are and what they are not"));
    text->setReadOnly(true);
    text->setTabChangesFocus(true);
    layout->addWidget(text);
    addSwitch(
        *layout, "chkNoShow", {&Settings::ShowDisclaim, 0, 1}, tr("&Do not show this again"),
        tr("Leaves the disclaimer out when the program starts; the Help menu still shows it"));
    auto* buttons = makeButtons();
    auto* ok = addButton(*buttons, "cmdOK", tr("OK"), QDialogButtonBox::AcceptRole);
    connect(ok, &QPushButton::clicked, this, &frmDisclaimer::accept);
    layout->addWidget(buttons);
    ok->setFocus();
    resize(fontMetrics().averageCharWidth() * 90, fontMetrics().lineSpacing() * 24);
    showValues();
}

void frmDisclaimer::done(int result) {
    keepChanges();
    SettingsForm::done(result);
}

} // namespace telvo::app::ui
