// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ui/OutdatedBanner.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

namespace telvo::ui {

OutdatedBanner::OutdatedBanner(QWidget* parent) : QFrame(parent) {
    setObjectName("banOutdated");
    setAutoFillBackground(true);
    setFrameShape(QFrame::StyledPanel);
    auto* sign = new QLabel(this);
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize);
    sign->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(side, side));
    m_reason = new QLabel(this);
    m_reason->setObjectName("lblOutdated");
    m_reason->setAccessibleName(tr("Out of date"));
    m_reason->setTextFormat(Qt::PlainText);
    m_reason->setWordWrap(true);
    m_reason->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* again = new QPushButton(tr("Run Again (F5)"), this);
    again->setObjectName("cmdRunAgain");
    again->setAccessibleName(tr("Run again"));
    again->setToolTip(tr("Runs the case on screen and shows it here (F5)"));
    again->setAutoDefault(false);
    connect(again, &QPushButton::clicked, this, &OutdatedBanner::runAgain);
    auto* row = new QHBoxLayout(this);
    row->addWidget(sign);
    row->addWidget(m_reason, 1);
    row->addWidget(again);
    takeColors();
    hide();
}

void OutdatedBanner::setReason(const QString& reason) {
    m_reason->setText(reason);
    setVisible(!reason.isEmpty());
}

void OutdatedBanner::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange) takeColors();
    QFrame::changeEvent(event);
}

void OutdatedBanner::takeColors() {
    QPalette colors;
    const bool dark = colors.color(QPalette::Base).lightness() < 128;
    colors.setColor(QPalette::Window, dark ? QColor(0x5a, 0x43, 0x00) : QColor(0xff, 0xed, 0xb8));
    colors.setColor(QPalette::WindowText,
                    dark ? QColor(0xff, 0xf0, 0xc0) : QColor(0x40, 0x2f, 0x00));
    setPalette(colors);
    m_reason->setPalette(colors);
}

} // namespace telvo::ui
