// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/ui/frmPrintPlotReminder.h"

#include "base/titles.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace telvo::plot::ui {

using telvo::ui::Form;
using telvo::ui::FormServices;

frmPrintPlotReminder::frmPrintPlotReminder(const FormServices& services, QWidget* parent)
    : Form("frmPrintPlotReminder", titles::Plots, "Plots.htm", services, parent) {
    setWindowTitle(tr("Print Plot"));
    auto* layout = new QVBoxLayout(this);
    auto* words = new QLabel(tr("The plot fills one page, in landscape unless you choose "
                                "otherwise in the print dialog. Check the printer and the "
                                "paper before you print."),
                             this);
    words->setObjectName("lblReminder");
    words->setWordWrap(true);
    words->setMinimumWidth(fontMetrics().averageCharWidth() * 50);
    layout->addWidget(words);
    m_last = new QCheckBox(tr("&Do not show this again"), this);
    m_last->setObjectName("chkDoNotShow");
    m_last->setAccessibleName(tr("Do not show this again"));
    m_last->setToolTip(tr("Plots are then printed without this reminder; the output options "
                          "bring it back"));
    layout->addWidget(m_last);
    layout->addStretch(1);

    auto* buttons = makeButtons();
    auto* go = addButton(*buttons, "cmdOK", tr("&Print..."), QDialogButtonBox::AcceptRole);
    go->setToolTip(tr("Goes on to the print dialog (Enter)"));
    auto* cancel = addButton(*buttons, "cmdCancel", tr("Cancel"), QDialogButtonBox::RejectRole);
    cancel->setToolTip(tr("Prints nothing (Esc)"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    go->setFocus();
}

bool frmPrintPlotReminder::isLast() const {
    return m_last->isChecked();
}

} // namespace telvo::plot::ui
