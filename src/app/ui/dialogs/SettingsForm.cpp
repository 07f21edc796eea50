// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/SettingsForm.h"

#include "base/titles.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>

namespace telvo::app::ui {

using telvo::ui::describe;

SettingsForm::SettingsForm(SettingsStore& store, SettingsSaveMode mode, const QString& name,
                           std::string_view prefix, const QString& helpTopic,
                           const telvo::ui::FormServices& services, QWidget* parent)
    : Form(name, prefix, helpTopic, services, parent), m_store(store), m_mode(mode) {}

QDialogButtonBox* SettingsForm::makeOkCancel() {
    auto* buttons = makeButtons();
    connect(addButton(*buttons, "cmdOK", tr("OK"), QDialogButtonBox::AcceptRole),
            &QPushButton::clicked, this, &SettingsForm::accept);
    connect(addButton(*buttons, "cmdCancel", tr("Cancel"), QDialogButtonBox::RejectRole),
            &QPushButton::clicked, this, &SettingsForm::reject);
    return buttons;
}

QCheckBox* SettingsForm::addSwitch(QBoxLayout& layout, const QString& name, Switch value,
                                   const QString& caption, const QString& toolTip) {
    auto* box = new QCheckBox(caption, this);
    describe(*box, name, caption, toolTip);
    layout.addWidget(box);
    tie([=](const Settings& settings) { box->setChecked(settings.*value.value == value.on); },
        [=](Settings& settings) {
            settings.*value.value = box->isChecked() ? value.on : value.off;
        });
    return box;
}

QGroupBox* SettingsForm::makeChoice(const QString& name, std::int16_t Settings::*value,
                                    const QString& title, const QStringList& captions,
                                    const QStringList& toolTips, QBoxLayout::Direction direction,
                                    int first) {
    auto* frame = new QGroupBox(title, this);
    auto* layout = new QBoxLayout(direction, frame);
    auto* group = new QButtonGroup(frame);
    for (int i = 0; i < captions.size(); ++i) {
        auto* option = new QRadioButton(captions[i], frame);
        describe(*option, QString("%1_%2").arg(name).arg(first + i), title + ", " + captions[i],
                 toolTips[i]);
        group->addButton(option, first + i);
        layout->addWidget(option);
    }
    layout->addStretch();
    tie(
        [=](const Settings& settings) {
            if (auto* option = group->button(settings.*value)) option->setChecked(true);
        },
        [=](Settings& settings) {
            settings.*value = static_cast<std::int16_t>(group->checkedId());
        });
    return frame;
}

void SettingsForm::tie(std::function<void(const Settings&)> show,
                       std::function<void(Settings&)> read) {
    m_ties.push_back({std::move(show), std::move(read)});
}

Settings SettingsForm::valuesOver(Settings base) const {
    for (const Tie& tie : m_ties)
        tie.read(base);
    return base;
}

void SettingsForm::showValues() {
    for (const Tie& tie : m_ties)
        tie.show(m_store.values());
    m_shown = valuesOver(m_store.values());
}

bool SettingsForm::keepChanges() {
    const Settings held = valuesOver(m_shown);
    if (held == m_shown) return false;
    m_store.values() = valuesOver(m_store.values());
    m_shown = held;
    const Status saved = m_store.SaveSettings(m_mode);
    Q_EMIT settingsChanged();
    if (!saved) tell(faultText(saved.fault()), titles::Error);
    return true;
}

} // namespace telvo::app::ui
