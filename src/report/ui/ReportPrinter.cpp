// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/ui/ReportPrinter.h"

#include "base/titles.h"
#include "base/ui/qtText.h"
#include "report/ui/PrintDialogs.h"

#include <algorithm>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QPrinter>
#include <QStandardPaths>

namespace telvo::report::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

const QMarginsF Margins(20, 12, 15, 12); // mm; the left one leaves room for holes
constexpr double LargestFont = 9;        // pt
constexpr double SmallestFont = 1;       // pt

/// The report's font in the size at which its widest line fits the paper.
QFont fittingFont(QPrinter& printer) {
    QFont font = reportFont();
    font.setHintingPreference(QFont::PreferNoHinting); // widths grow evenly with the size
    font.setPointSizeF(LargestFont);
    const double widest =
        QFontMetricsF(font, &printer).horizontalAdvance(QString(ReportColumns, '0'));
    const double room = printer.pageRect(QPrinter::DevicePixel).width();
    if (widest > room)
        font.setPointSizeF(std::max(SmallestFont, LargestFont * 0.995 * room / widest));
    return font;
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

/// Names the file that the print dialog proposes when it prints to PDF: like the case, in the
/// folder where the last one went, at first that of the case.
void proposePdf(QPrinter& printer, const QString& lastFolder, const QString& caseName) {
    if (printer.outputFormat() != QPrinter::PdfFormat) return;
    const QFileInfo caseFile(caseName);
    QString folder = lastFolder;
    if (folder.isEmpty())
        folder = caseFile.isAbsolute()
                     ? caseFile.absolutePath()
                     : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    printer.setOutputFileName(folder + '/' + caseFile.completeBaseName() + ".pdf");
}

/// Whether a printed file has its end: a full disk is not reported by the printer.
bool isWhole(const QString& pdf) {
    QFile file(pdf);
    constexpr qint64 tail = 16;
    if (!file.open(QIODevice::ReadOnly) || file.size() < tail) return false;
    file.seek(file.size() - tail);
    return file.read(tail).contains("%%EOF");
}

} // namespace

ReportPrinter::ReportPrinter(Messages& messages, PrintDialogs& dialogs)
    : m_messages(messages), m_dialogs(dialogs) {}

ReportPrinter::~ReportPrinter() = default;

QPrinter& ReportPrinter::printer() {
    if (!m_printer) {
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        m_printer->setPageMargins(Margins, QPageLayout::Millimeter);
    }
    return *m_printer;
}

bool ReportPrinter::setUp(QWidget* parent) {
    proposePdf(printer(), m_pdfFolder, toQt(titles::Program));
    if (!m_dialogs.setUpPrinter(printer(), parent)) return false;
    rememberPdfFolder();
    return true;
}

void ReportPrinter::rememberPdfFolder() {
    if (m_printer->outputFormat() == QPrinter::PdfFormat)
        m_pdfFolder = QFileInfo(m_printer->outputFileName()).absolutePath();
}

bool ReportPrinter::print(const PrintJob& job, QWidget* parent, const QString& title) {
    return print(job.heading.FileName, parent, title,
                 [&job](QPrinter& chosen) { return paint(chosen, job, true); });
}

bool ReportPrinter::print(const std::string& fileName, QWidget* parent, const QString& title,
                          const std::function<bool(QPrinter&)>& paintOn) {
    QPrinter& chosen = printer();
    chosen.setDocName(toQt(withoutFolder(fileName)));
    chosen.setCopyCount(1); // the number of the last job is not meant for this one
    proposePdf(chosen, m_pdfFolder, toQt(fileName));
    if (!m_dialogs.choosePrinter(chosen, parent, title)) return false;

    const QString file = chosen.outputFileName();
    const bool toPdf = chosen.outputFormat() == QPrinter::PdfFormat;
    const bool toFile = toPdf || !file.isEmpty();
    const bool printed = paintOn(chosen) && (!toPdf || isWhole(file));
    if (printed)
        rememberPdfFolder();
    else
        m_messages.tell(printFault(fromQt(toFile ? file : chosen.printerName()), toFile),
                        std::string(titles::Print).append(titles::Error));
    return printed;
}

bool paint(QPrinter& printer, const PrintJob& job, bool allCopies) {
    const QFont font = fittingFont(printer);
    const QFontMetricsF metrics(font, &printer);
    const QRectF area = printer.pageRect(QPrinter::DevicePixel);
    // A rounding error less than a column must not cost one.
    const double columns = area.width() / metrics.horizontalAdvance('0') + 1e-6;
    const std::vector<Sheet> sheets =
        layOutSheets(job.pages, job.heading,
                     {static_cast<std::size_t>(area.height() / metrics.lineSpacing()),
                      std::max<std::size_t>(ReportColumns, static_cast<std::size_t>(columns))});

    std::vector<const Sheet*> order;
    if (allCopies)
        order = inPrintOrder(sheets, printer);
    else
        for (const Sheet& sheet : sheets)
            order.push_back(&sheet);

    QPainter painter;
    if (!painter.begin(&printer)) return false;
    painter.setFont(font);
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (i > 0 && !printer.newPage()) return false;
        double y = metrics.ascent();
        for (const std::string& line : *order[i]) {
            painter.drawText(QPointF(0, y), toQt(line));
            y += metrics.lineSpacing();
        }
    }
    return painter.end() && printer.printerState() != QPrinter::Error;
}

QFont reportFont() {
    return QFontDatabase::systemFont(QFontDatabase::FixedFont);
}

} // namespace telvo::report::ui
