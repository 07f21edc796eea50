// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ui/picture.h"

#include "base/files.h"
#include "base/sourceDate.h"
#include "base/titles.h"
#include "base/ui/qtText.h"
#include "chart/ui/frmResolution.h"
#include "chart/ui/pictureFile.h"

#include <algorithm>
#include <cmath>
#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QDateTime>
#include <QFileInfo>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QHash>
#include <QImageWriter>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QRegularExpression>
#include <QSvgGenerator>

namespace telvo::chart::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

constexpr double MetresPerInch = 0.0254;
constexpr double PointsPerInch = 72;
constexpr double FontSize = 9;     // pt
constexpr int LongestSide = 32767; // pixels, to which painting on an image is limited
constexpr int PngCompression = 35; // of 100: a third of the time of the most, a quarter more bytes
/// Part of its own size below which a printed picture shrinks as a whole.
constexpr double SmallestShare = 0.75;
constexpr double TallestPrint = 1.2; // heights of a printed picture to its width

int dotsPerMetre(int dpi) {
    return static_cast<int>(std::lround(dpi / MetresPerInch));
}

/// The same on every screen; without hinting widths grow evenly with the resolution, so that texts
/// fill the same room in every format.
QFont pictureFont() {
    QFont font;
    font.setPointSizeF(FontSize);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

bool paintOn(QPaintDevice& device, const Picture& picture, const QRectF& rect, double scale = 1) {
    QPainter painter;
    if (!painter.begin(&device)) return false;
    painter.setFont(pictureFont());
    painter.scale(scale, scale);
    painter.fillRect(rect, Qt::white);
    picture.paint(painter, rect);
    return painter.end();
}

bool paintOn(QPaintDevice& device, const Picture& picture) {
    return paintOn(device, picture, {QPointF(), picture.size});
}

/// The whole file in one of the formats, or why there is none.
using Bytes = Result<std::string>;

Bytes taken(const QBuffer& buffer) {
    return buffer.data().toStdString();
}

Fault notDrawn() {
    return {"the picture could not be drawn", {}};
}

Bytes pngBytes(const Picture& picture, int dpi) {
    if (dpi < LowestResolution || dpi > HighestResolution)
        return Fault{"The resolution has to lie between " + std::to_string(LowestResolution) +
                         " and " + std::to_string(HighestResolution) + " dpi",
                     {}};
    QImage image = pictureImage(picture, dpi);
    if (image.isNull())
        return Fault{"The picture is too large for memory at " + std::to_string(dpi) +
                         " dpi; choose a lower resolution",
                     {}};
    QBuffer buffer;
    QImageWriter writer(&buffer, "png");
    writer.setCompression(PngCompression);
    writer.setText("Title", toQt(picture.name));
    writer.setText("Software", toQt(titles::Program));
    if (!writer.write(image)) return notDrawn();
    return taken(buffer);
}

/// The SVG with the fonts that were measured by their names, instead of the program's own name for
/// them ("Sans Serif" is none elsewhere), and with what to take where they are missing.
QString withFontNames(const QByteArray& svg) {
    const QString text = QString::fromUtf8(svg);
    static const QRegularExpression family("font-family=\"([^\"]*)\"");
    QHash<QString, QString> names;
    QString named;
    qsizetype end = 0;
    for (auto found = family.globalMatch(text); found.hasNext();) {
        const auto match = found.next();
        QString& name = names[match.captured(1)];
        if (name.isEmpty()) name = QFontInfo(QFont(match.captured(1))).family();
        named += text.mid(end, match.capturedStart(1) - end) + name + ", sans-serif";
        end = match.capturedEnd(1);
    }
    return named + text.mid(end);
}

/// The text with a mark for every character that no XML may have: a reader would refuse the file.
QString withoutForbidden(QString text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            ++i;
            continue;
        }
        const bool control = c < u' ' && c != u'\t' && c != u'\n' && c != u'\r';
        if (control || c.isSurrogate() || c >= QChar(0xFFFE)) text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

Bytes svgBytes(const Picture& picture, int) {
    QBuffer buffer;
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setResolution(ScreenResolution);
    generator.setSize({static_cast<int>(std::ceil(picture.size.width())),
                       static_cast<int>(std::ceil(picture.size.height()))});
    generator.setViewBox(QRectF(QPointF(), generator.size()));
    generator.setTitle("title"); // which it would write as it is
    generator.setDescription(toQt(titles::Program));
    if (!paintOn(generator, picture)) return notDrawn();
    QString svg = withFontNames(buffer.data());
    svg.replace("<title>title</title>",
                "<title>" + toQt(picture.name).toHtmlEscaped() + "</title>");
    return withoutForbidden(svg).toUtf8().toStdString();
}

/// The PDF with the time that it is to have, where one is asked for; the library asks the clock.
QByteArray withSourceDate(QByteArray pdf) {
    const auto date = sourceDate();
    const QByteArray begin = "/CreationDate (D:";
    const auto at = pdf.indexOf(begin);
    const auto end = pdf.indexOf(')', at);
    if (!date || at < 0 || end < 0) return pdf;
    const QByteArray time = QDateTime::fromSecsSinceEpoch(*date, Qt::UTC)
                                .toString(QStringLiteral("yyyyMMddHHmmss"))
                                .toLatin1();
    // The length stays, for the table at the end of the file counts bytes.
    const auto from = at + begin.size();
    const auto room = end - from;
    const QByteArray zone = room >= time.size() + 7 ? "+00'00'" : "Z";
    return pdf.replace(from, room, (time + zone).leftJustified(room, ' ', true));
}

Bytes pdfBytes(const Picture& picture, int) {
    QBuffer buffer;
    if (!buffer.open(QIODevice::WriteOnly)) return notDrawn();
    {
        QPdfWriter writer(&buffer);
        const QPageSize page(picture.size * (PointsPerInch / ScreenResolution), QPageSize::Point,
                             toQt(picture.name), QPageSize::ExactMatch);
        writer.setPageLayout({page, QPageLayout::Portrait, {}});
        writer.setResolution(ScreenResolution);
        writer.setTitle(toQt(picture.name));
        writer.setCreator(toQt(titles::Program));
        if (!paintOn(writer, picture)) return notDrawn();
    }
    return withSourceDate(buffer.data()).toStdString();
}

Bytes csvBytes(const Picture& picture, int) {
    if (picture.csv.empty())
        return Fault{"The picture has no numbers that could be written as CSV", {}};
    return picture.csv;
}

struct Format {
    const char* ending;
    const char* filter;
    Bytes (*bytes)(const Picture& picture, int dpi);
};

constexpr Format Png = {"png", "PNG Picture (*.png)", pngBytes};
constexpr Format Svg = {"svg", "SVG Drawing (*.svg)", svgBytes};
constexpr Format Pdf = {"pdf", "PDF Document (*.pdf)", pdfBytes};
constexpr Format Csv = {"csv", "Comma Separated Values (*.csv)", csvBytes};

const Format* formatOf(const std::string& path) {
    const QString ending = QFileInfo(toQt(path)).suffix().toLower();
    for (const Format* format : {&Png, &Svg, &Pdf, &Csv})
        if (ending == QLatin1String(format->ending)) return format;
    return nullptr;
}

} // namespace

QPalette paperPalette() {
    QPalette palette(Qt::white);
    for (const auto role : {QPalette::Base, QPalette::Window})
        palette.setColor(role, Qt::white);
    for (const auto role : {QPalette::Text, QPalette::WindowText})
        palette.setColor(role, Qt::black);
    return palette;
}

QSize pixelSize(QSizeF size, int dpi) {
    return (size * dpi / ScreenResolution).toSize();
}

QImage pictureImage(const Picture& picture, int dpi) {
    const QSize size = pixelSize(picture.size, dpi);
    if (std::max(size.width(), size.height()) > LongestSide) return {};
    QImage image(size, QImage::Format_RGB32);
    if (image.isNull()) return {};
    image.fill(Qt::white);
    // The painter enlarges; while it paints, a point has the size that it has on the screen.
    image.setDotsPerMeterX(dotsPerMetre(ScreenResolution));
    image.setDotsPerMeterY(dotsPerMetre(ScreenResolution));
    if (!paintOn(image, picture, {QPointF(), picture.size}, 1.0 * dpi / ScreenResolution))
        return {};
    image.setDotsPerMeterX(dotsPerMetre(dpi));
    image.setDotsPerMeterY(dotsPerMetre(dpi));
    return image;
}

Result<std::string> pictureFile(const Picture& picture, const std::string& path, int dpi) {
    const Format* format = formatOf(path);
    if (!format)
        return Fault{"A picture's file name ends in .png, .svg or .pdf" +
                         std::string(picture.csv.empty() ? "" : ", its numbers' in .csv"),
                     path};
    Bytes bytes = format->bytes(picture, dpi);
    if (!bytes) return Fault{bytes.fault().message, path};
    return bytes;
}

Status exportPicture(const Picture& picture, const std::string& path, int dpi) {
    const auto bytes = pictureFile(picture, path, dpi);
    return bytes ? writeFile(path, *bytes) : Status(bytes.fault());
}

void copyPicture(const Picture& picture) {
    QApplication::clipboard()->setImage(pictureImage(picture, 2 * ScreenResolution));
}

QPageLayout::Orientation bestOrientation(const Picture& picture) {
    return picture.size.width() > picture.size.height() ? QPageLayout::Landscape
                                                        : QPageLayout::Portrait;
}

bool printPicture(const Picture& shown, QPrinter& printer, const std::string& footer) {
    Picture picture = shown;
    if (!footer.empty())
        picture.paint = [&](QPainter& painter, const QRectF& page) {
            const double line = 1.5 * QFontMetricsF(painter.font(), painter.device()).height();
            painter.save();
            shown.paint(painter, page.adjusted(0, 0, 0, -line));
            painter.restore();
            painter.setFont(pictureFont());
            painter.setPen(Qt::black);
            const QRectF room(page.left(), page.bottom() - line, page.width(), line);
            painter.drawText(room, Qt::AlignLeft | Qt::AlignBottom, toQt(footer));
        };
    const int resolution = printer.resolution();
    printer.setResolution(ScreenResolution); // points have their size, lengths are not rounded
    QSizeF page = printer.pageRect(QPrinter::DevicePixel).size();
    const double tallest =
        std::max(TallestPrint, picture.size.height() / picture.size.width()) * page.width();
    page.setHeight(std::min(page.height(), tallest));
    const double scale = std::min({1.0, page.width() / (SmallestShare * picture.size.width()),
                                   page.height() / (SmallestShare * picture.size.height())});
    const bool printed = paintOn(printer, picture, {QPointF(), page / scale}, scale) &&
                         printer.printerState() != QPrinter::Error;
    printer.setResolution(resolution);
    return printed;
}

void exportCommand(const Picture& picture, FileDialogs& dialogs, Messages& messages,
                   const std::string& folder, QWidget* parent) {
    std::vector<std::string> filters = {Png.filter, Svg.filter, Pdf.filter};
    if (!picture.csv.empty()) filters.emplace_back(Csv.filter);
    messages.status("Export picture");
    const QString proposal = toQt(folder) + '/' + toQt(picture.name) + '.' + Png.ending;
    const auto path = dialogs.saveFile("Export Picture", fromQt(proposal), filters, Png.ending);
    int dpi = DefaultResolution;
    if (path && formatOf(*path) == &Png) {
        frmResolution form(picture.size, parent);
        dpi = form.exec() == QDialog::Accepted ? form.resolution() : 0;
    }
    if (!path || dpi == 0) {
        messages.status("Export cancelled");
        return;
    }
    QApplication::setOverrideCursor(Qt::WaitCursor); // a fine PNG takes seconds
    const Status written = exportPicture(picture, *path, dpi);
    QApplication::restoreOverrideCursor();
    if (!written) {
        messages.status("Export failed");
        messages.tell(faultText(written.fault()),
                      std::string(titles::Export).append(titles::Error));
        return;
    }
    messages.history("Picture exported: " + *path);
    messages.status("Picture exported");
}

} // namespace telvo::chart::ui
