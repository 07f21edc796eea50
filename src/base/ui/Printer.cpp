// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ui/Printer.h"

#include "base/files.h"
#include "base/titles.h"
#include "base/ui/PrintDialogs.h"
#include "base/ui/qtText.h"

#include <QFile>
#include <QFileInfo>
#include <QPrinter>
#include <QStandardPaths>

namespace telvo::ui {

namespace {

const QMarginsF Margins(20, 12, 15, 12); // mm; the left one leaves room for holes

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
bool isWholePdf(const QString& pdf) {
    QFile file(pdf);
    constexpr qint64 tail = 16;
    if (!file.open(QIODevice::ReadOnly) || file.size() < tail) return false;
    file.seek(file.size() - tail);
    return file.read(tail).contains("%%EOF");
}

/// What the user is told when a print job came to nothing.
/// Given: target  name of the printer or path of the file
std::string printFault(const std::string& target, bool isFile) {
    return isFile ? "Nothing was printed: the file " + target +
                        " could not be written.\nChoose another folder or file name."
                  : "Nothing was printed: the printer " + target +
                        " did not take the job.\nCheck the printer or choose another one.";
}

} // namespace

Printer::Printer(Messages& messages, PrintDialogs& dialogs)
    : m_messages(messages), m_dialogs(dialogs) {}

Printer::~Printer() = default;

QPrinter& Printer::printer() {
    if (!m_printer) {
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        m_printer->setPageMargins(Margins, QPageLayout::Millimeter);
    }
    return *m_printer;
}

bool Printer::setUp(QWidget* parent) {
    proposePdf(printer(), m_pdfFolder, toQt(titles::Program));
    if (!m_dialogs.setUpPrinter(printer(), parent)) return false;
    rememberPdfFolder();
    return true;
}

void Printer::rememberPdfFolder() {
    if (m_printer->outputFormat() == QPrinter::PdfFormat)
        m_pdfFolder = QFileInfo(m_printer->outputFileName()).absolutePath();
}

bool Printer::print(const std::string& fileName, QWidget* parent, const QString& title,
                    const std::function<bool(QPrinter&)>& paintOn) {
    QPrinter& chosen = printer();
    chosen.setDocName(toQt(withoutFolder(fileName)));
    chosen.setCopyCount(1); // the number of the last job is not meant for this one
    proposePdf(chosen, m_pdfFolder, toQt(fileName));
    if (!m_dialogs.choosePrinter(chosen, parent, title)) return false;

    const QString file = chosen.outputFileName();
    const bool toPdf = chosen.outputFormat() == QPrinter::PdfFormat;
    const bool toFile = toPdf || !file.isEmpty();
    const bool printed = paintOn(chosen) && (!toPdf || isWholePdf(file));
    if (printed)
        rememberPdfFolder();
    else
        m_messages.tell(printFault(fromQt(toFile ? file : chosen.printerName()), toFile),
                        std::string(titles::Print).append(titles::Error));
    return printed;
}

} // namespace telvo::ui
