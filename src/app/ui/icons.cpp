// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace telvo::app::ui {

namespace {

// All pictures are drawn on a square of this side.
constexpr qreal Side = 24;

QPainterPath sheet(qreal left, qreal top, qreal right, qreal bottom, qreal fold) {
    QPainterPath path(QPointF(left, top));
    path.lineTo(right - fold, top);
    path.lineTo(right, top + fold);
    path.lineTo(right, bottom);
    path.lineTo(left, bottom);
    path.closeSubpath();
    path.moveTo(right - fold, top);
    path.lineTo(right - fold, top + fold);
    path.lineTo(right, top + fold);
    return path;
}

void addLine(QPainterPath& path, qreal x1, qreal y1, qreal x2, qreal y2) {
    path.moveTo(x1, y1);
    path.lineTo(x2, y2);
}

QPainterPath outline(ToolIcon icon) {
    QPainterPath path;
    switch (icon) {
    case ToolIcon::New:
        path = sheet(5, 3, 19, 21, 5);
        break;
    case ToolIcon::Open:
        path.addPolygon(QPolygonF({{3, 19}, {3, 5}, {9, 5}, {11, 7}, {19, 7}, {19, 10}}));
        path.addPolygon(QPolygonF({{3, 19}, {6, 10}, {22, 10}, {19, 19}, {3, 19}}));
        break;
    case ToolIcon::Save:
        path.addPolygon(QPolygonF({{4, 4}, {17, 4}, {20, 7}, {20, 20}, {4, 20}, {4, 4}}));
        path.addRect(8, 4, 7, 5);
        path.addRect(7, 13, 10, 7);
        break;
    case ToolIcon::Print:
        path.addRect(7, 3, 10, 5);
        path.addRect(3, 8, 18, 9);
        path.addRect(7, 13, 10, 8);
        break;
    case ToolIcon::Description:
        path = sheet(4, 3, 20, 21, 5);
        addLine(path, 8, 11, 16, 11);
        addLine(path, 8, 14, 16, 14);
        addLine(path, 8, 17, 13, 17);
        break;
    case ToolIcon::Parameters: // a plan of four pillars
        for (const qreal x : {4., 13.5})
            for (const qreal y : {4., 13.5})
                path.addRect(x, y, 6.5, 6.5);
        break;
    case ToolIcon::Factors: // bars under a limit line
        path.addRect(4, 13, 4, 8);
        path.addRect(10, 9, 4, 12);
        path.addRect(16, 5, 4, 16);
        addLine(path, 2, 11, 22, 11);
        break;
    case ToolIcon::Help:
        path.addEllipse(QPointF(12, 12), 9.5, 9.5);
        path.moveTo(9, 10);
        path.cubicTo(9, 5.5, 15, 5.5, 15, 9.5);
        path.cubicTo(15, 12, 12, 11.5, 12, 14.5);
        addLine(path, 12, 17, 12, 17.6);
        break;
    }
    return path;
}

class IconEngine : public QIconEngine {
  public:
    explicit IconEngine(ToolIcon icon) : m_icon(icon) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QColor colour = QGuiApplication::palette().color(group, QPalette::ButtonText);
        const qreal scale = std::min(rect.width(), rect.height()) / Side;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(scale, scale);
        painter->setPen(QPen(colour, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->drawPath(outline(m_icon));
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap image(size);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paint(&painter, QRect({}, size), mode, state);
        return image;
    }

    QIconEngine* clone() const override { return new IconEngine(*this); }

  private:
    ToolIcon m_icon;
};

} // namespace

QIcon toolIcon(ToolIcon icon) {
    return QIcon(new IconEngine(icon));
}

} // namespace telvo::app::ui
