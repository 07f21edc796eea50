// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>
#include <map>
#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QTabBar>

/// What is wrong with a window as it is shown: texts that do not fit, that cannot be read, letters
/// that mean two things.
namespace telvo::test {

inline double luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

/// Contrast of a text over what lies behind it, 1 to 21.
inline double contrast(const QWidget& text) {
    QColor ink = text.palette().color(text.foregroundRole());
    const QColor paper = text.palette().color(text.backgroundRole());
    const auto mixed = [&](int over, int under) {
        return (over * ink.alpha() + under * (255 - ink.alpha())) / 255;
    };
    ink = QColor(mixed(ink.red(), paper.red()), mixed(ink.green(), paper.green()),
                 mixed(ink.blue(), paper.blue()));
    const double a = luminance(ink), b = luminance(paper);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

/// Room that the text of a control needs in the width that the control has.
inline QSize neededBy(const QWidget& control) {
    if (const auto* label = qobject_cast<const QLabel*>(&control)) {
        if (!label->wordWrap()) return label->sizeHint();
        int longest = 0;
        for (const QString& word : label->text().split(QRegularExpression("\\s")))
            longest = std::max(longest, label->fontMetrics().horizontalAdvance(word));
        if (label->text().startsWith('<')) longest = 0; // markup
        return {longest, label->heightForWidth(label->width())};
    }
    if (const auto* group = qobject_cast<const QGroupBox*>(&control))
        return {group->fontMetrics().horizontalAdvance(QString(group->title()).remove('&')), 0};
    if (const auto* list = qobject_cast<const QComboBox*>(&control)) {
        QStyleOptionComboBox option;
        option.initFrom(list);
        const int edit =
            list->style()
                ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, list)
                .width();
        return {list->fontMetrics().horizontalAdvance(list->currentText()) + list->width() - edit,
                0};
    }
    return control.sizeHint().boundedTo({10000, control.height()}); // a button's frame may give way
}

/// Whether a text ends at the edge of something that does not scroll.
inline bool isCutByParent(const QWidget& control, const QWidget& window) {
    const QWidget* inner = &control;
    while (inner != &window && inner->parentWidget()) {
        const QWidget* outer = inner->parentWidget();
        const auto* area = qobject_cast<const QAbstractScrollArea*>(outer->parentWidget());
        if (area && area->viewport() == outer) return false;
        const QRect place(control.mapTo(outer, QPoint()), control.size());
        if (!outer->rect().adjusted(-1, -1, 1, 1).contains(place)) return true;
        inner = outer;
    }
    return false;
}

inline QString textOf(const QWidget& control) {
    if (const auto* label = qobject_cast<const QLabel*>(&control)) return label->text();
    if (const auto* button = qobject_cast<const QAbstractButton*>(&control)) return button->text();
    if (const auto* group = qobject_cast<const QGroupBox*>(&control)) return group->title();
    if (const auto* list = qobject_cast<const QComboBox*>(&control)) return list->currentText();
    return {};
}

inline QStringList textFaults(const QWidget& window) {
    QStringList faults;
    const auto add = [&](const QWidget& control, const QString& text, const QString& what) {
        faults << QString("%1 (%2x%3): %4 \"%5\" %6")
                      .arg(window.objectName())
                      .arg(window.width())
                      .arg(window.height())
                      .arg(control.objectName(), text.left(60), what);
    };
    for (const auto* control : window.findChildren<QWidget*>()) {
        if (!control->isVisibleTo(&window) || control->window() != &window) continue;
        if (const auto* tabs = qobject_cast<const QTabBar*>(control)) {
            for (int i = 0; i < tabs->count(); ++i) {
                const QString text = QString(tabs->tabText(i)).remove('&');
                if (tabs->fontMetrics().horizontalAdvance(text) > tabs->tabRect(i).width())
                    add(*control, text, "is a tab too narrow");
            }
            continue;
        }
        const QString text = textOf(*control);
        // The status line shows what there is room for.
        if (text.isEmpty() || control->objectName() == "lblStatus") continue;
        const QSize needed = neededBy(*control);
        if (needed.width() > control->width() + 1 || needed.height() > control->height() + 1)
            add(*control, text,
                QString("needs %1x%2, has %3x%4")
                    .arg(needed.width())
                    .arg(needed.height())
                    .arg(control->width())
                    .arg(control->height()));
        if (isCutByParent(*control, window)) add(*control, text, "is cut by what it lies in");
        if (qobject_cast<const QLabel*>(control) && control->isEnabled() &&
            contrast(*control) < 3.0)
            add(*control, text, QString("has contrast %1").arg(contrast(*control)));
    }
    return faults;
}

/// Letters that choose more than one thing in a window or one of its menus.
inline QStringList letterFaults(const QWidget& window) {
    QStringList faults;
    std::map<QString, QStringList> users;
    const auto take = [&users](const QString& text) {
        static const QRegularExpression letter("&([^&\\s])");
        const auto found = letter.match(QString(text).remove("&&"));
        if (found.hasMatch()) users[found.captured(1).toUpper()] << text;
    };
    const auto settle = [&](const QString& where) {
        for (const auto& [letter, texts] : users)
            if (texts.size() > 1)
                faults << where + ": Alt+" + letter + " is taken by " + texts.join(", ");
        users.clear();
    };
    for (const auto* control : window.findChildren<QWidget*>()) {
        if (!control->isVisibleTo(&window) || control->window() != &window) continue;
        if (const auto* label = qobject_cast<const QLabel*>(control)) {
            if (label->buddy()) take(label->text());
        } else if (const auto* tabs = qobject_cast<const QTabBar*>(control)) {
            for (int i = 0; i < tabs->count(); ++i)
                take(tabs->tabText(i));
        } else if (const auto* bar = qobject_cast<const QMenuBar*>(control)) {
            for (const QAction* menu : bar->actions())
                take(menu->text());
        } else if (!qobject_cast<const QComboBox*>(control)) {
            take(textOf(*control));
        }
    }
    settle(window.objectName());
    for (const auto* menu : window.findChildren<QMenu*>()) {
        for (const QAction* item : menu->actions())
            // Two captions of the File menu have the same letter on purpose.
            if (item->isVisible() && item->text() != "&View Source Files...") take(item->text());
        settle(window.objectName() + " menu " + menu->title());
    }
    return faults;
}

} // namespace telvo::test
