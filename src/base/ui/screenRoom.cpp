// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ui/screenRoom.h"

#include <algorithm>
#include <QDialog>
#include <QDialogButtonBox>
#include <QEvent>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>

namespace telvo::ui {

namespace {

/// Follows the width of a window with its least height.
class HeightKeeper : public QObject {
  public:
    explicit HeightKeeper(QWidget& window) : QObject(&window), m_window(window) {
        window.installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool mayChange =
            event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest;
        const QLayout* layout = mayChange ? m_window.layout() : nullptr;
        if (layout && layout->hasHeightForWidth()) {
            const int needed = std::max(layout->totalMinimumSize().height(),
                                        layout->totalMinimumHeightForWidth(m_window.width()));
            m_window.setMinimumHeight(std::min(needed, roomOnScreen(m_window).height()));
        }
        return QObject::eventFilter(watched, event);
    }

  private:
    QWidget& m_window;
};

} // namespace

void keepTextsWhole(QWidget& window) {
    new HeightKeeper(window);
}

QSize roomOnScreen(const QWidget& window) {
    // The frame of another desktop may be a little wider; the style's own is near enough.
    const QStyle& style = *window.style();
    const int edge = style.pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    const int title = std::max(style.pixelMetric(QStyle::PM_TitleBarHeight),
                               window.fontMetrics().height() * 3 / 2);
    return window.screen()->availableSize() - QSize(2 * edge, title + edge);
}

bool makeScrollableOnSmallScreens(QDialog& dialog) {
    auto* whole = qobject_cast<QVBoxLayout*>(dialog.layout());
    const QSize room = roomOnScreen(dialog);
    if (!whole || whole->count() == 0) return false;
    const QSize needed = whole->totalMinimumSize();
    if (needed.width() <= room.width() && needed.height() <= room.height()) return false;

    QLayoutItem* buttons = nullptr;
    if (qobject_cast<QDialogButtonBox*>(whole->itemAt(whole->count() - 1)->widget()))
        buttons = whole->takeAt(whole->count() - 1);
    const QMargins margins = whole->contentsMargins();
    QWidget* const focused = dialog.focusWidget();
    auto* area = new QScrollArea;
    area->setObjectName("scrSmallScreen");
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus); // follows the control with the focus by itself
    auto* content = new QWidget;
    content->setLayout(whole); // takes the controls along
    area->setWidget(content);

    auto* outer = new QVBoxLayout(&dialog);
    outer->setContentsMargins(0, 0, 0, buttons ? margins.bottom() : 0);
    outer->addWidget(area, 1);
    if (buttons) {
        auto* row = new QVBoxLayout;
        row->setContentsMargins(margins.left(), 0, margins.right(), 0);
        row->addItem(buttons);
        outer->addLayout(row);
    }
    // Scrolls in one direction only, where the other one has the room.
    const int bar = area->verticalScrollBar()->sizeHint().width();
    const QSize inside = content->minimumSizeHint();
    area->setMinimumWidth(std::min(inside.width() + bar, room.width()));
    if (dialog.maximumWidth() < QWIDGETSIZE_MAX)
        dialog.setMaximumWidth(dialog.maximumWidth() + bar);
    if (focused) focused->setFocus();
    return true;
}

} // namespace telvo::ui
