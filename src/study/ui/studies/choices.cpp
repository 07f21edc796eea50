// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/choices.h"

#include "base/ui/Form.h"
#include "base/ui/qtText.h"
#include "study/questions/ranges.h"

#include <QStandardItemModel>

namespace telvo::study::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

struct Entry {
    QString text, name, reason;
};

void setUpList(QComboBox& box, const QString& name, const QString& accessibleName,
               const QString& toolTip) {
    telvo::ui::describe(box, name, accessibleName, toolTip);
    box.setMaxVisibleItems(25);
    box.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box.setMinimumContentsLength(24);
}

/// Another list in a box that keeps what is chosen.
void relist(QComboBox& box, const std::vector<Entry>& entries) {
    bool same = box.count() == static_cast<int>(entries.size());
    for (int i = 0; same && i < box.count(); ++i) {
        const Entry& entry = entries[static_cast<std::size_t>(i)];
        same = box.itemData(i) == entry.name && box.itemText(i) == entry.text &&
               box.itemData(i, Qt::ToolTipRole).toString() == entry.reason;
    }
    if (same) return;
    const QSignalBlocker quiet(box);
    const QString chosen = box.currentData().toString();
    const QString text = box.currentText();
    box.clear();
    for (const Entry& entry : entries) {
        box.addItem(entry.text, entry.name);
        if (entry.reason.isEmpty()) continue;
        box.setItemData(box.count() - 1, entry.reason, Qt::ToolTipRole);
        box.setItemData(box.count() - 1, box.palette().brush(QPalette::Disabled, QPalette::Text),
                        Qt::ForegroundRole);
    }
    if (chosen.isEmpty()) return;
    int at = box.findData(chosen);
    if (at < 0) { // what is asked for stays, and the page says that the case does not have it
        box.addItem(text, chosen);
        at = box.count() - 1;
    }
    box.setCurrentIndex(at);
}

} // namespace

InputBox::InputBox(const QString& name, const QString& accessibleName, const QString& toolTip,
                   QWidget* parent)
    : QComboBox(parent) {
    setUpList(*this, name, accessibleName, toolTip);
}

void InputBox::list(const project::ProjectCase& base, bool mayBeNone) {
    std::vector<Entry> used, unused;
    for (const Variable& variable : variables()) {
        const std::string why = whyWithoutEffect(base, variable);
        (why.empty() ? used : unused)
            .push_back({toQt(variable.label()), toQt(variable.name()), toQt(why)});
    }
    if (mayBeNone) used.insert(used.begin(), {tr("(none)"), {}, {}});
    used.insert(used.end(), unused.begin(), unused.end());
    relist(*this, used);
}

Variable InputBox::variable() const {
    return variableNamed(fromQt(currentData().toString())).value_or(project::Field::DepthCover);
}

void InputBox::choose(const Variable& variable) {
    const QSignalBlocker quiet(this);
    setCurrentIndex(findData(toQt(variable.name())));
}

OutcomeBox::OutcomeBox(const QString& name, const QString& accessibleName, const QString& toolTip,
                       QWidget* parent)
    : QComboBox(parent) {
    setUpList(*this, name, accessibleName, toolTip);
}

void OutcomeBox::list(const project::ProjectCase& base) {
    std::vector<Entry> entries;
    for (const Outcome& outcome : outcomesOf(base))
        entries.push_back({toQt(outcome.label()), toQt(outcome.name()), {}});
    relist(*this, entries);
}

std::optional<Outcome> OutcomeBox::outcome() const {
    return Outcome::named(fromQt(currentData().toString()));
}

void OutcomeBox::choose(const std::string& name) {
    const QSignalBlocker quiet(this);
    if (const int at = findData(toQt(name)); at >= 0) setCurrentIndex(at);
}

} // namespace telvo::study::ui
