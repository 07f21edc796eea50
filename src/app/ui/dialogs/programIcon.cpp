// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/programIcon.h"

#include <QIcon>
#include <QPainter>
#include <QPainterPath>

namespace telvo::app::ui {

namespace {

constexpr int Units = 16; // of a side; every edge lies on one, so that the smallest size is sharp

QPixmap picture(int side) {
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(double(side) / Units, double(side) / Units);
    QPainterPath outline;
    outline.addRoundedRect(0, 0, Units, Units, 2, 2);
    painter.setClipPath(outline);
    painter.fillRect(0, 0, Units, Units, QColor(0xf4, 0xef, 0xe2));
    for (const int left : {0, 13}) // the gobs
        painter.fillRect(left, 0, 3, Units, QColor(0xc8, 0x74, 0x3a));
    const QPoint rubble[] = {{1, 2}, {0, 5}, {2, 7}, {1, 10}, {2, 13}};
    for (const QPoint& stone : rubble)
        for (const int x : {stone.x(), Units - 1 - stone.x()})
            painter.fillRect(x, stone.y(), 1, 1, QColor(0xa0, 0x55, 0x26));
    for (const int left : {4, 9}) // the pillars
        for (const int top : {1, 6, 11})
            painter.fillRect(left, top, 3, 4, QColor(0x2d, 0x33, 0x38));
    return pixmap;
}

} // namespace

QIcon programIcon() {
    QIcon icon;
    for (const int side : {16, 24, 32, 48, 64, 128, 256})
        icon.addPixmap(picture(side));
    return icon;
}

} // namespace telvo::app::ui
