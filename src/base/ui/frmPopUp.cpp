// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ui/frmPopUp.h"

#include "base/note.h"
#include "base/ui/qtText.h"

#include <QApplication>
#include <QClipboard>
#include <QFontMetrics>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace telvo::ui {

frmPopUp::frmPopUp(const QString& title, std::string_view text, const QString& helpTopic,
                   const FormServices& services, QWidget* parent)
    : Form("frmPopUp", {}, helpTopic, services, parent) {
    setWindowTitle(title);
    auto* layout = new QVBoxLayout(this);
    auto* box = new QPlainTextEdit(toQtLines(text).trimmed(), this);
    box->setObjectName("txtPopUp");
    box->setAccessibleName(title);
    box->setToolTip(tr("Select text and press Ctrl+C to copy a part of it"));
    box->setReadOnly(true);
    box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box->setTabChangesFocus(true);
    layout->addWidget(box);

    auto* buttons = makeButtons();
    auto* copy = addButton(*buttons, "cmdCopy", tr("&Copy"), QDialogButtonBox::ActionRole);
    copy->setToolTip(tr("Copies the whole text to the clipboard"));
    connect(copy, &QPushButton::clicked, this, [this, box] {
        QApplication::clipboard()->setText(box->toPlainText());
        telvo::note(messages(), "Text copied to clipboard");
    });
    auto* close = addButton(*buttons, "cmdClose", tr("C&lose"), QDialogButtonBox::AcceptRole);
    close->setToolTip(tr("Closes this window"));
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    layout->addWidget(buttons);

    const QFontMetrics metrics(box->font());
    resize(metrics.averageCharWidth() * 90, metrics.lineSpacing() * 26);
    close->setFocus();
}

} // namespace telvo::ui
