// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/frmAbout.h"

#include "app/ui/dialogs/programIcon.h"
#include "base/titles.h"
#include "base/ui/qtText.h"
#include "run/Run.h"

#include <QFormLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace telvo::app::ui {

frmAbout::frmAbout(const telvo::ui::FormServices& services, QWidget* parent)
    : Form("frmAbout", "About the Program: ", "About.htm", services, parent) {
    auto* layout = new QVBoxLayout(this);
    auto* name = new QLabel(telvo::ui::toQt(titles::Program));
    name->setObjectName("lblName");
    QFont large = name->font();
    large.setPointSizeF(large.pointSizeF() * 2);
    large.setBold(true);
    name->setFont(large);
    auto* heading = new QHBoxLayout;
    auto* picture = new QLabel;
    picture->setObjectName("imgProgram");
    picture->setPixmap(programIcon().pixmap(QSize(48, 48), devicePixelRatio()));
    heading->addWidget(picture);
    heading->addSpacing(fontMetrics().averageCharWidth());
    heading->addWidget(name, 1);
    layout->addLayout(heading);
    layout->addWidget(new QLabel(tr("Stability of room-and-pillar retreat mining panels in coal")));

    auto* form = new QFormLayout;
    form->setContentsMargins(0, fontMetrics().height() / 2, 0, fontMetrics().height() / 2);
    const auto addRow = [&](const QString& caption, const QString& labelName, const QString& text) {
        auto* label = new QLabel(text);
        label->setObjectName(labelName);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        form->addRow(caption, label);
    };
    addRow(tr("Version:"), "lblVersion", TELVO_VERSION);
    addRow(tr("Module build:"), "lblBuild", telvo::ui::toQt(run::ModuleBuild));
    addRow(tr("Qt:"), "lblQt", QString::fromLatin1(qVersion()));
    addRow(tr("License:"), "lblLicence", "GPL-3.0-or-later");
    layout->addLayout(form);
    auto* warranty = new QLabel(tr("This is free software; you may change and pass it on under "
                                   "the terms of its license. There is no warranty."));
    warranty->setWordWrap(true);
    layout->addWidget(warranty);
    layout->addStretch();
    auto* buttons = makeButtons();
    connect(addButton(*buttons, "cmdOK", tr("OK"), QDialogButtonBox::AcceptRole),
            &QPushButton::clicked, this, &frmAbout::accept);
    layout->addWidget(buttons);
}

} // namespace telvo::app::ui
