// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ui/Form.h"

#include "base/note.h"
#include "base/titles.h"
#include "base/ui/NumberEdit.h"
#include "base/ui/OutdatedBanner.h"
#include "base/ui/qtText.h"
#include "base/ui/screenRoom.h"
#include "base/ui/WindowPlaces.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QPushButton>
#include <QShortcut>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <utility>

namespace telvo::ui {

Form::Form(const QString& name, std::string_view prefix, const QString& helpTopic,
           const FormServices& services, QWidget* parent)
    : QDialog(parent), m_prefix(prefix), m_helpTopic(helpTopic), m_services(services) {
    setObjectName(name);
    // The window is called after its prefix without the colon.
    setWindowTitle(toQt(prefix.substr(0, prefix.find_last_of(':'))));
}

Answer Form::ask(std::string_view text, Buttons buttons, Answer preset, std::string_view kind) {
    return messages().ask(text, buttons, preset, std::string(m_prefix).append(kind));
}

void Form::tell(std::string_view text, std::string_view kind) {
    ask(text, Buttons::Ok, Answer::Ok, kind);
}

void Form::refuse(const Refusal& refusal) {
    const QString control = toQt(refusal.control);
    showControl(control);
    tell(refusal.message, refusal.title);
    showControl(control); // the box took the focus
}

void Form::showControl(const QString& name) {
    auto* control = findChild<QWidget*>(name);
    if (!control) return;
    for (QWidget* page = control; page != this; page = page->parentWidget())
        if (auto* stack = page->parentWidget() ? page->parentWidget()->parentWidget() : nullptr)
            if (auto* tabs = qobject_cast<QTabWidget*>(stack)) tabs->setCurrentWidget(page);
    control->setFocus(Qt::OtherFocusReason);
}

void Form::watchNumbers(NumberEdit& box) {
    connect(&box, &NumberEdit::wrongCharacterLeft, this, [this, &box](const QString& message) {
        // Queued: a message box in the middle of a mouse press would swallow the release. Who gives
        // up or asks for help is not held up.
        QTimer::singleShot(0, this, [this, &box, message] {
            const QWidget* now = focusWidget();
            const QString name = now ? now->objectName() : QString();
            if (isVisible() && box.hasWrongCharacter() && name != QLatin1String("cmdCancel") &&
                name != QLatin1String("cmdHelp"))
                tell(fromQt(message), titles::InvalidCharacter);
        });
    });
    connect(&box, &NumberEdit::pasteRefused, this,
            [this](const QString& message) { tell(fromQt(message), titles::Error); });
}

bool Form::refuseUnreadNumber() {
    for (NumberEdit* box : findChildren<NumberEdit*>()) {
        const QString objection = box->objection();
        if (objection.isEmpty() || !box->isEnabled() || box->isHidden()) continue;
        const bool wrong = box->hasWrongCharacter();
        const QString text =
            wrong ? objection
                  : tr("%1: %2. Enter one number.").arg(box->accessibleName(), objection);
        refuse({fromQt(text), std::string(wrong ? titles::InvalidCharacter : titles::Error),
                fromQt(box->objectName())});
        return true;
    }
    return false;
}

QDialogButtonBox* Form::makeButtons() {
    auto* box = new QDialogButtonBox(this);
    auto* helpButton = addButton(*box, "cmdHelp", tr("&Help"), QDialogButtonBox::HelpRole);
    connect(helpButton, &QPushButton::clicked, this, &Form::help);
    auto* picture = addButton(*box, "cmdScreenshot", tr("Copy Screen"), QDialogButtonBox::HelpRole);
    picture->setToolTip(tr("Copies a picture of this dialog to the clipboard"));
    connect(picture, &QPushButton::clicked, this, &Form::copyPicture);
    return box;
}

QPushButton* Form::addButton(QDialogButtonBox& box, const QString& name, const QString& caption,
                             QDialogButtonBox::ButtonRole role) {
    auto* button = box.addButton(caption, role);
    button->setObjectName(name);
    button->setAccessibleName(QString(caption).remove('&'));
    button->setAutoDefault(role == QDialogButtonBox::AcceptRole);
    button->setDefault(role == QDialogButtonBox::AcceptRole);
    return button;
}

QPushButton* Form::makeButton(const QString& name, const QString& caption, const QString& toolTip) {
    auto* made = new QPushButton(caption, this);
    describe(*made, name, caption, toolTip);
    made->setAutoDefault(false);
    return made;
}

void Form::done(int result) {
    if (m_services.places && isVisible()) m_services.places->save(*this);
    QDialog::done(result);
}

void Form::setOutdated(const QString& reason) {
    if (!m_outdated) {
        if (reason.isEmpty()) return;
        m_outdated = new OutdatedBanner(this);
        static_cast<QVBoxLayout*>(layout())->insertWidget(0, m_outdated);
        connect(m_outdated, &OutdatedBanner::runAgain, this, &Form::runAgain);
    }
    m_outdated->setReason(reason);
}

void Form::setRunAgain(std::function<void()> run) {
    const bool first = !std::exchange(m_runAgain, std::move(run));
    if (first)
        connect(new QShortcut(Qt::Key_F5, this), &QShortcut::activated, this, &Form::runAgain);
}

void Form::runAgain() {
    // What it calls may replace this very window, so it comes when the click is over.
    if (m_runAgain) QTimer::singleShot(0, qApp, m_runAgain);
}

void Form::showEvent(QShowEvent* event) {
    if (!m_placed) {
        if (m_services.places) m_services.places->restore(*this);
        makeScrollableOnSmallScreens(*this);
        keepTextsWhole(*this);
        // Another screen, or a larger font, than when the size was remembered.
        resize(size().boundedTo(roomOnScreen(*this)));
        m_placed = true;
    }
    QDialog::showEvent(event);
}

void Form::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F1 && m_services.showHelp)
        m_services.showHelp(focusTopic());
    else
        QDialog::keyPressEvent(event);
}

void Form::copyPicture() {
    QApplication::clipboard()->setPixmap(grab());
    telvo::note(messages(), "Screenshot of dialog copied to clipboard");
}

QString Form::focusTopic() const {
    QWidget* control = m_services.topicOf ? focusWidget() : nullptr;
    for (; control && control != this; control = control->parentWidget()) {
        if (control->objectName().isEmpty()) continue;
        const QString topic = m_services.topicOf(objectName(), control->objectName());
        if (!topic.isEmpty()) return topic;
    }
    return m_helpTopic;
}

void Form::help() {
    if (m_services.showHelp) m_services.showHelp(m_helpTopic);
}

void describe(QWidget& control, const QString& name, const QString& accessibleName,
              const QString& toolTip) {
    control.setObjectName(name);
    control.setAccessibleName(QString(accessibleName).remove('&').remove(':'));
    control.setToolTip(toolTip);
}

} // namespace telvo::ui
