// SPDX-License-Identifier: GPL-3.0-or-later
#include "help/ui/PageView.h"

#include <algorithm>
#include <QEvent>
#include <QImage>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <vector>

namespace telvo::help::ui {

namespace {

constexpr int OwnWidth = QTextFormat::UserProperty; // of a picture, before it was made to fit
constexpr double PageMargin = 8;                    // of the style sheet, each side
constexpr double LeastRoom = 100;

} // namespace

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
    if (inHelp) {
        QTextBrowser::doSetSource(url, type);
        fitPictures();
    } else
        Q_EMIT externalLink(url);
}

/// Pictures get their own size, or that of the room where it is smaller.
void PageView::fitPictures() {
    const double room =
        std::max(LeastRoom, viewport()->width() - 2 * (document()->documentMargin() + PageMargin));
    struct Change {
        int position, length;
        QTextImageFormat format;
    };
    std::vector<Change> changes;
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next())
        for (auto i = block.begin(); !i.atEnd(); ++i) {
            QTextImageFormat format = i.fragment().charFormat().toImageFormat();
            if (!format.isValid() || format.width() <= 0) continue;
            const double own =
                format.hasProperty(OwnWidth) ? format.doubleProperty(OwnWidth) : format.width();
            const double fitting = std::min(own, room);
            if (fitting == format.width()) continue;
            format.setHeight(format.height() * fitting / format.width());
            format.setWidth(fitting);
            format.setProperty(OwnWidth, own);
            changes.push_back({i.fragment().position(), i.fragment().length(), format});
        }
    QTextCursor cursor(document());
    for (const Change& change : changes) {
        cursor.setPosition(change.position);
        cursor.setPosition(change.position + change.length, QTextCursor::KeepAnchor);
        cursor.setCharFormat(change.format);
    }
}

void PageView::resizeEvent(QResizeEvent* event) {
    QTextBrowser::resizeEvent(event);
    fitPictures();
}

void PageView::changeEvent(QEvent* event) {
    QTextBrowser::changeEvent(event);
    if (event->type() != QEvent::PaletteChange || source().isEmpty()) return;
    const int position = verticalScrollBar()->value();
    reload();
    fitPictures();
    verticalScrollBar()->setValue(position);
}

} // namespace telvo::help::ui
