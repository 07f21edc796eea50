// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/ui/ReportPrinter.h"

#include "base/ui/qtText.h"

#include <algorithm>
#include <cstdint>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QPrinter>
#include <utility>

namespace telvo::report::ui {

using telvo::ui::toQt;

namespace {

constexpr double LargestFont = 9;        // pt
constexpr double SmallestReadable = 6.5; // pt; a page that wants a smaller one takes two sheets
constexpr double SmallestFont = 1;       // pt
constexpr double MostLeading = 1.2;      // of the line step, in em: some fonts ask for much more
constexpr double Baseline = 0.8;         // of the line step

/// The printed type: a font and the distance of its lines.
struct Type {
    QFont font;
    double lineStep = 0; ///< device pixels
    double column = 0;   ///< likewise

    std::size_t lines(const QRectF& area) const {
        return static_cast<std::size_t>(area.height() / lineStep + 1e-6);
    }
    std::size_t columns(const QRectF& area) const {
        // A rounding error less than a column must not cost one.
        return std::max<std::size_t>(ReportColumns,
                                     static_cast<std::size_t>(area.width() / column + 1e-6));
    }
};

Type typeOf(double points, QPrinter& printer) {
    Type type{printFont()};
    type.font.setHintingPreference(QFont::PreferNoHinting); // widths grow evenly with the size
    type.font.setPointSizeF(points);
    const QFontMetricsF metrics(type.font, &printer);
    const double em = points / 72 * printer.logicalDpiY();
    type.lineStep = std::clamp(metrics.lineSpacing(), em, MostLeading * em);
    type.column = metrics.horizontalAdvance(QString(ReportColumns, '0')) / ReportColumns;
    return type;
}

/// The largest type in which the widest line fits the paper and every page stands on one sheet;
/// a page for which it would become too small does not count.
Type fittingType(QPrinter& printer, const PrintJob& job) {
    const QRectF area = printer.pageRect(QPrinter::DevicePixel);
    double points = LargestFont;
    const double widest = typeOf(points, printer).column * ReportColumns;
    if (widest > area.width())
        points = std::max(SmallestFont, points * 0.995 * area.width() / widest);
    const Type type = typeOf(points, printer);
    if (points <= SmallestReadable) return type;
    const std::size_t most = typeOf(SmallestReadable, printer).lines(area);
    const auto onePageEach = layOutSheets(job.pages, job.heading, {SIZE_MAX, type.columns(area)});
    const std::size_t wanted = longestSheet(onePageEach, most);
    if (wanted <= type.lines(area)) return type;
    const double smaller =
        points * 0.995 * area.height() / (type.lineStep * static_cast<double>(wanted));
    return typeOf(std::max(SmallestReadable, smaller), printer);
}

/// The sheets in the order in which they leave the printer, where the copies are ours to make.
std::vector<const Sheet*> inPrintOrder(const std::vector<Sheet>& sheets, const QPrinter& printer) {
    const int copies = printer.supportsMultipleCopies() ? 1 : std::max(1, printer.copyCount());
    const bool collated = printer.collateCopies();
    std::vector<const Sheet*> order;
    for (int set = 0; set < (collated ? copies : 1); ++set)
        for (const Sheet& sheet : sheets)
            order.insert(order.end(), static_cast<std::size_t>(collated ? 1 : copies), &sheet);
    if (printer.pageOrder() == QPrinter::LastPageFirst) std::reverse(order.begin(), order.end());
    return order;
}

} // namespace

ReportPrinter::ReportPrinter(Messages& messages, telvo::ui::PrintDialogs& dialogs,
                             std::function<std::chrono::year_month_day()> today)
    : Printer(messages, dialogs), m_today(std::move(today)) {}

bool ReportPrinter::print(const PrintJob& job, QWidget* parent, const QString& title) {
    return print(job.heading.FileName, parent, title,
                 [&](QPrinter& chosen) { return paint(chosen, dated(job), true); });
}

PrintJob ReportPrinter::dated(PrintJob job) const {
    job.heading.date = m_today();
    return job;
}

bool paint(QPrinter& printer, const PrintJob& job, bool allCopies) {
    const Type type = fittingType(printer, job);
    const QRectF area = printer.pageRect(QPrinter::DevicePixel);
    const std::vector<Sheet> sheets =
        layOutSheets(job.pages, job.heading, {type.lines(area), type.columns(area)});

    std::vector<const Sheet*> order;
    if (allCopies)
        order = inPrintOrder(sheets, printer);
    else
        for (const Sheet& sheet : sheets)
            order.push_back(&sheet);

    QPainter painter;
    if (!painter.begin(&printer)) return false;
    painter.setFont(type.font);
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (i > 0 && !printer.newPage()) return false;
        double y = Baseline * type.lineStep;
        for (const std::string& line : *order[i]) {
            painter.drawText(QPointF(0, y), toQt(line));
            y += type.lineStep;
        }
    }
    return painter.end() && printer.printerState() != QPrinter::Error;
}

QFont reportFont() {
    return QFontDatabase::systemFont(QFontDatabase::FixedFont);
}

QFont printFont() {
    QFont font = reportFont();
    // Close set and with every letter of Western names; desktops choose others for the screen.
    for (const char* family : {"Liberation Mono", "DejaVu Sans Mono", "Courier New"})
        if (QFontDatabase::hasFamily(family) && QFontDatabase::isFixedPitch(family)) {
            font.setFamilies({family});
            break;
        }
    return font;
}

} // namespace telvo::report::ui
