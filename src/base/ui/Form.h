// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Messages.h"
#include "base/Result.h"

#include <functional>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <string_view>

namespace telvo::ui {

class NumberEdit;
class OutdatedBanner;
class WindowPlaces;

/// What every form is handed.
struct FormServices {
    Messages& messages;
    std::function<void(const QString& topic)> showHelp;
    WindowPlaces* places = nullptr; ///< nullptr: sizes are not remembered
    /// Where F1 on a control of a form leads; "" for the topic of the form.
    std::function<QString(const QString& form, const QString& control)> topicOf = {};
    /// Where a topic explains a printed line; "" for none.
    std::function<QString(const QString& topicFile, const QString& line)> topicOfLine = {};
};

/// A dialog of the program: object name, remembered size, help on F1, messages under its title, a
/// button that copies its picture.
class Form : public QDialog {
    Q_OBJECT
  public:
    /// Given: name       object name, such as "frmSet"
    ///        prefix     what its messages' titles begin with, such as "Settings: "
    ///        helpTopic  file of the help topic, such as "Settings.htm"
    Form(const QString& name, std::string_view prefix, const QString& helpTopic,
         const FormServices& services, QWidget* parent = nullptr);

    void done(int result) override;

    /// Says across the top of the window that its content no longer belongs to the case on screen,
    /// why, and that it can be run again; "" takes that away. The form's layout is a QVBoxLayout.
    void setOutdated(const QString& reason);
    /// What F5 and the button of that line do.
    void setRunAgain(std::function<void()> run);

  protected:
    Messages& messages() const { return m_services.messages; }
    const FormServices& services() const { return m_services; }

    /// Asks with the form's prefix in front of the kind of message.
    Answer ask(std::string_view text, Buttons buttons, Answer preset, std::string_view kind);
    void tell(std::string_view text, std::string_view kind);
    /// Shows why an input is refused: message, then its control with the tab it lies on.
    void refuse(const Refusal& refusal);
    /// Brings the tab of a control to the front and gives it the focus.
    void showControl(const QString& name);

    /// Tells of letters in a number box when it is left, and of a paste that it does not take.
    void watchNumbers(NumberEdit& box);
    /// Whether a box in use holds a text that is not one number; the first such box is refused.
    bool refuseUnreadNumber();

    /// A row of buttons with cmdHelp and cmdScreenshot; forms add their own with addButton().
    QDialogButtonBox* makeButtons();
    QPushButton* addButton(QDialogButtonBox& box, const QString& name, const QString& caption,
                           QDialogButtonBox::ButtonRole role);

    /// A button that Enter does not press, wherever the form puts it.
    QPushButton* makeButton(const QString& name, const QString& caption, const QString& toolTip);
    template <typename Owner>
    QPushButton* makeButton(const QString& name, const QString& caption, const QString& toolTip,
                            void (Owner::*action)()) {
        QPushButton* made = makeButton(name, caption, toolTip);
        connect(made, &QPushButton::clicked, static_cast<Owner*>(this), action);
        return made;
    }

    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    /// The topic of the control with the focus, or of what it lies in; else that of the form.
    virtual QString focusTopic() const;

  private:
    void copyPicture();
    void help();
    void runAgain();

    std::string_view m_prefix;
    QString m_helpTopic;
    FormServices m_services;
    std::function<void()> m_runAgain;
    OutdatedBanner* m_outdated = nullptr;
    bool m_placed = false;
};

/// Gives a control its names and its tool tip.
/// Given: accessibleName  such as its caption; "&" and ":" are taken out
void describe(QWidget& control, const QString& name, const QString& accessibleName,
              const QString& toolTip);

} // namespace telvo::ui
