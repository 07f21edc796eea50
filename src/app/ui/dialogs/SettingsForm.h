// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/SettingsStore.h"
#include "base/ui/Form.h"

#include <functional>
#include <QBoxLayout>
#include <QSpinBox>
#include <vector>

class QCheckBox;
class QGroupBox;

namespace telvo::app::ui {

/// A value of the settings, and what it is while its check box is checked and while it is not.
struct Switch {
    std::int16_t Settings::*value;
    std::int16_t on = 1;
    std::int16_t off = 0;
};

/// The range of a setting as tool tips have it: "7 to 24".
template <typename Number>
QString rangeText(Number Settings::*setting) {
    const SettingRange range = rangeOf(setting);
    return QStringLiteral("%1 to %2").arg(range.low).arg(range.high);
}

/// Holds a spin box to the range of its setting.
template <typename Number>
void limit(QSpinBox& box, Number Settings::*setting) {
    const SettingRange range = rangeOf(setting);
    box.setRange(range.low, range.high);
}

/// A form whose controls stand for settings. Every control is tied to its value once; the form
/// shows, reads and compares them all by these ties.
class SettingsForm : public telvo::ui::Form {
    Q_OBJECT
  Q_SIGNALS:
    /// New values are in the store; the main window lets them act at once.
    void settingsChanged();

  protected:
    /// Given: mode  the sections that a change writes
    SettingsForm(SettingsStore& store, SettingsSaveMode mode, const QString& name,
                 std::string_view prefix, const QString& helpTopic,
                 const telvo::ui::FormServices& services, QWidget* parent);

    /// OK and Cancel, in the row that help and picture have.
    QDialogButtonBox* makeOkCancel();
    SettingsStore& store() const { return m_store; }

    QCheckBox* addSwitch(QBoxLayout& layout, const QString& name, Switch value,
                         const QString& caption, const QString& toolTip);
    /// A group of option buttons, called name and value; the values count from `first`.
    QGroupBox* makeChoice(const QString& name, std::int16_t Settings::*value, const QString& title,
                          const QStringList& captions, const QStringList& toolTips,
                          QBoxLayout::Direction direction, int first = 0);
    /// Any other control.
    void tie(std::function<void(const Settings&)> show, std::function<void(Settings&)> read);

    /// Fills the tied controls. What they then hold is what changes are told from.
    void showValues();
    /// Puts what the controls hold into the store and saves it, when it differs from what they were
    /// shown with. A save that fails is told; the values stay for the run.
    /// Returned: whether there was a change.
    bool keepChanges();

  private:
    struct Tie {
        std::function<void(const Settings&)> show;
        std::function<void(Settings&)> read;
    };
    Settings valuesOver(Settings base) const;

    SettingsStore& m_store;
    SettingsSaveMode m_mode;
    std::vector<Tie> m_ties;
    Settings m_shown;
};

} // namespace telvo::app::ui
