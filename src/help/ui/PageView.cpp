// SPDX-License-Identifier: GPL-3.0-or-later
#include "help/ui/PageView.h"

#include <QEvent>
#include <QImage>
#include <QPainter>
#include <QScrollBar>

namespace telvo::help::ui {

PageView::PageView(const QString& folder, QWidget* parent)
    : QTextBrowser(parent), m_folder(folder) {
    setOpenExternalLinks(false);
}

QVariant PageView::loadResource(int type, const QUrl& name) {
    if (type != QTextDocument::ImageResource) return QTextBrowser::loadResource(type, name);
    // source() is still the page before while a new one is read.
    return picture(QUrl::fromLocalFile(m_folder).resolved(name).toLocalFile());
}

/// Pictures are stored with two pixels to one of the page. Formulas are black on nothing and take
/// the colour of the text.
QVariant PageView::picture(const QString& file) const {
    QImage image(file);
    if (image.isNull()) return {};
    const qreal ratio = devicePixelRatioF();
    if (ratio != 2)
        image = image.scaled(image.size() * (ratio / 2), Qt::IgnoreAspectRatio,
                             Qt::SmoothTransformation);
    if (file.contains("/formulas/")) {
        image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), palette().color(QPalette::Text));
    }
    image.setDevicePixelRatio(ratio);
    return image;
}

void PageView::doSetSource(const QUrl& url, QTextDocument::ResourceType type) {
    const bool inHelp = url.isRelative() || url.isLocalFile();
    if (inHelp)
        QTextBrowser::doSetSource(url, type);
    else
        Q_EMIT externalLink(url);
}

void PageView::changeEvent(QEvent* event) {
    QTextBrowser::changeEvent(event);
    if (event->type() != QEvent::PaletteChange || source().isEmpty()) return;
    const int position = verticalScrollBar()->value();
    reload();
    verticalScrollBar()->setValue(position);
}

} // namespace telvo::help::ui
