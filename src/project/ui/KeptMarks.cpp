// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/ui/KeptMarks.h"

#include "base/ui/NumberEdit.h"
#include "base/ui/qtText.h"
#include "project/keptItems.h"

#include <QAbstractButton>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

namespace telvo::project::ui {

using telvo::ui::toQt;

KeptMarks::KeptMarks(QWidget& form, const OpenCase& open) {
    const KeptItems& kept = open.Kept;
    if (kept.items.empty()) return;
    const QString origin = toQt(keptOrigin(kept, open.Project));
    m_message = QObject::tr("Not in the file; from %1. Check the value.").arg(origin);
    auto* list = new QLabel(QObject::tr("Not in the file, but from %1: %2\nCheck these values and "
                                        "press OK.")
                                .arg(origin, toQt(keptItemsText(kept, open.Project))),
                            &form);
    list->setObjectName("lblKept");
    list->setTextFormat(Qt::PlainText);
    list->setWordWrap(true);
    list->setTextInteractionFlags(Qt::TextSelectableByMouse);
    list->setMargin(form.fontMetrics().height() / 3);
    auto* frame = new QScrollArea(&form); // half a file leaves a long list
    frame->setWidget(list);
    frame->setWidgetResizable(true);
    frame->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    frame->setFixedHeight(form.fontMetrics().height() * 5);
    if (auto* rows = qobject_cast<QVBoxLayout*>(form.layout())) rows->insertWidget(0, frame);
    for (const std::string& item : kept.items) {
        const std::string control = itemControl(item);
        if (const auto* box = form.findChild<telvo::ui::NumberEdit*>(toQt(control)))
            m_texts[control] = box->text();
        else if (item == "Anal")
            for (int i = 0; i < 4; ++i)
                markOther(form, control + '_' + std::to_string(i));
        else
            markOther(form, control);
    }
}

void KeptMarks::markOther(QWidget& form, const std::string& control) {
    auto* widget = form.findChild<QWidget*>(toQt(control));
    if (!widget) return; // title and description are edited elsewhere
    telvo::ui::markRefused(*widget, m_message);
    const auto settle = [widget] { telvo::ui::markRefused(*widget, {}); };
    if (auto* button = qobject_cast<QAbstractButton*>(widget))
        QObject::connect(button, &QAbstractButton::toggled, button, settle);
    else if (auto* line = qobject_cast<QLineEdit*>(widget))
        QObject::connect(line, &QLineEdit::textChanged, line, settle);
}

QString KeptMarks::messageOf(const std::string& control, const QString& text) const {
    const auto kept = m_texts.find(control);
    return kept != m_texts.end() && kept->second == text ? m_message : QString();
}

} // namespace telvo::project::ui
