// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/ui/frmTELVODesc.h"

#include "base/titles.h"
#include "base/ui/qtText.h"
#include "project/description.h"
#include "project/ui/DescriptionEdit.h"

#include <algorithm>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QValidator>
#include <QVBoxLayout>

namespace telvo::project::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

/// Keeps a title on its one line, whatever is pasted.
class TitleValidator : public QValidator {
  public:
    using QValidator::QValidator;

    State validate(QString& text, int&) const override {
        const QString title = toQt(titleFromText(fromQt(text)));
        if (title != text) text = title;
        return Acceptable;
    }
};

} // namespace

frmTELVODesc::frmTELVODesc(const ProjectCase& current, const telvo::ui::FormServices& services,
                           QWidget* parent)
    : Form("frmTELVODesc", titles::ProjectDescription, "ProjectDescription.htm", services, parent),
      m_current(current), m_title(makeTitle()), m_description(makeDescription()),
      m_openedTitle(m_title->text()), m_openedDescription(m_description->toPlainText()) {
    auto* titleLabel = new QLabel(tr("&Title:"), this);
    titleLabel->setBuddy(m_title);
    auto* descriptionLabel = new QLabel(tr("&Description:"), this);
    descriptionLabel->setBuddy(m_description);
    auto* note =
        new QLabel(tr("A save breaks longer lines at column 60 and leaves blank lines out."), this);

    auto* buttons = makeButtons();
    auto* ok = addButton(*buttons, "cmdOK", tr("OK"), QDialogButtonBox::AcceptRole);
    ok->setToolTip(tr("Takes title and description into the case"));
    auto* cancel = addButton(*buttons, "cmdCancel", tr("Cancel"), QDialogButtonBox::RejectRole);
    cancel->setToolTip(tr("Leaves title and description as they were"));
    connect(buttons, &QDialogButtonBox::accepted, this, &frmTELVODesc::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmTELVODesc::reject);

    auto* layout = new QVBoxLayout(this);
    m_title->setFixedWidth(m_description->minimumWidth());
    layout->addWidget(titleLabel);
    layout->addWidget(m_title, 0, Qt::AlignLeft);
    layout->addWidget(descriptionLabel);
    layout->addWidget(m_description, 1, Qt::AlignLeft);
    layout->addWidget(note);
    layout->addWidget(buttons);

    note->setWordWrap(true);
    setMaximumWidth(sizeHint().width()); // more room would stay empty beside the 60 columns

    connect(m_title, &QLineEdit::textChanged, this, &frmTELVODesc::edited);
    connect(m_description, &QPlainTextEdit::textChanged, this, &frmTELVODesc::edited);
    m_title->setFocus();
    messages().status("Editing Project Description");
}

QLineEdit* frmTELVODesc::makeTitle() {
    auto* box = new QLineEdit(this);
    box->setObjectName("txtTitle");
    box->setAccessibleName(tr("Title"));
    box->setToolTip(tr("One line that names the case, up to %1 characters")
                        .arg(static_cast<int>(MaxTitleCharacters)));
    box->setValidator(new TitleValidator(box));
    const QString text = toQt(m_current.Title);
    box->setMaxLength(
        std::max(static_cast<int>(MaxTitleCharacters), static_cast<int>(text.size())));
    box->setText(text);
    box->setCursorPosition(0);
    connect(
        box, &QLineEdit::inputRejected, this, [this] { tell(TitleCutMessage, titles::Message); },
        Qt::QueuedConnection);
    return box;
}

DescriptionEdit* frmTELVODesc::makeDescription() {
    auto* box = new DescriptionEdit("txtDescription", this);
    box->setAccessibleName(tr("Description"));
    box->setToolTip(tr("Describes the case; lines of 60 columns"));
    box->setPlainText(toQt(m_current.Description));
    // Not inside a drop of another window, which waits for its end.
    connect(
        box, &DescriptionEdit::pasteCut, this,
        [this] { tell(DescriptionCutMessage, titles::Message); }, Qt::QueuedConnection);
    return box;
}

void frmTELVODesc::showEvent(QShowEvent* event) {
    Form::showEvent(event);
    // The dialog enters its first box as by Tab, and the first key would replace the whole title.
    QMetaObject::invokeMethod(
        m_title, [this] { m_title->end(false); }, Qt::QueuedConnection);
}

std::string frmTELVODesc::title() const {
    const QString text = m_title->text();
    return text == m_openedTitle ? m_current.Title : titleFromText(fromQt(text));
}

std::string frmTELVODesc::description() const {
    const QString text = m_description->toPlainText();
    return text == m_openedDescription ? m_current.Description : descriptionFromText(fromQt(text));
}

bool frmTELVODesc::changed() const {
    return title() != m_current.Title || description() != m_current.Description;
}

void frmTELVODesc::reject() {
    const bool stay = changed() && ask(DiscardQuestion, Buttons::YesNo, Answer::No,
                                       titles::Message) != Answer::Yes;
    if (!stay) Form::reject();
}

void frmTELVODesc::done(int result) {
    m_accepted = result == Accepted;
    Form::done(result);
    const char* outcome =
        modified() ? "Project Description Modified" : "Project Description Not Modified";
    messages().history(outcome);
    messages().status(outcome);
}

} // namespace telvo::project::ui
