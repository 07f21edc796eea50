// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ui/picture.h"

#include "base/files.h"
#include "base/ui/qtText.h"
#include "GuiTest.h"

#include <QClipboard>
#include <QPainter>
#include <QPrinter>
#include <QProcess>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QXmlStreamReader>

using namespace telvo;
using namespace telvo::test;

namespace {

/// Two words of which one is rotated, and a square in the lower right corner.
chart::ui::Picture sample(QSizeF size = {300, 200}) {
    return {"north panel", size,
            [](QPainter& painter, const QRectF& page) {
                painter.drawText(QPointF(20, 60), "Barrier");
                painter.fillRect(QRectF(page.bottomRight() - QPointF(30, 30), page.bottomRight()),
                                 Qt::black);
                painter.rotate(90);
                painter.drawText(QPointF(40, -200), QString::fromUtf8("90\u00b0 & up"));
            },
            "x,y\r\n1,2\r\n"};
}

QString textOfPdf(const QString& pdf) {
    QProcess reader;
    reader.start("pdftotext", {"-layout", pdf, "-"});
    return reader.waitForFinished() && reader.exitCode() == 0
               ? QString::fromUtf8(reader.readAllStandardOutput())
               : QString();
}

bool isInk(const QImage& image, double x, double y) {
    return image.pixelColor(static_cast<int>(image.width() * x),
                            static_cast<int>(image.height() * y)) == Qt::black;
}

} // namespace

class PictureTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void aPngHasItsResolution();
    void anSvgHoldsSizeTextsAndFonts();
    void aPdfHoldsOnePageOfItsSize();
    void whatCannotBeWrittenLeavesTheOldFile();
    void theClipboardHoldsTwicePixels();
    void aPrintFillsThePaper();
    void theCommandAsksAndTells();

  private:
    std::string file(const char* name) const {
        return ui::fromQt(m_folder.filePath(QString::fromUtf8(name)));
    }
    Status save(const chart::ui::Picture& picture, const char* name, int dpi = 96) const {
        return exportPicture(picture, file(name), dpi);
    }
    QTemporaryDir m_folder;
};

// At 96 dpi a pixel of the picture is one of the image: 300 x 200 at 240 dpi are 750 x 500, and
// 240 dpi are 240 / 0.0254 = 9449 dots per metre. Ink is where it was painted at every resolution.
void PictureTest::aPngHasItsResolution() {
    for (const auto& [dpi, size, perMetre] : {std::tuple{48, QSize(150, 100), 1890},
                                              {96, QSize(300, 200), 3780},
                                              {240, QSize(750, 500), 9449},
                                              {1200, QSize(3750, 2500), 47244}}) {
        QVERIFY(save(sample(), "a.PNG", dpi));
        const QImage image(m_folder.filePath("a.PNG"));
        QCOMPARE(image.size(), size);
        QCOMPARE(image.dotsPerMeterX(), perMetre);
        QCOMPARE(image.dotsPerMeterY(), perMetre);
        QVERIFY(isInk(image, 0.95, 0.95) && !isInk(image, 0.85, 0.95) && !isInk(image, 0.95, 0.8));
    }
}

void PictureTest::anSvgHoldsSizeTextsAndFonts() {
    QVERIFY(save(sample(), "a.Svg"));
    QXmlStreamReader xml(ui::toQt(*readFile(file("a.Svg"))));
    QStringList texts;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::Characters && !xml.isWhitespace())
            texts << xml.text().trimmed().toString();
        if (xml.isStartElement() && xml.name() == u"svg") {
            QCOMPARE(xml.attributes().value("viewBox"), u"0 0 300 200");
            QCOMPARE(xml.attributes().value("width"), u"79.375mm"); // 300 / 96 x 25.4
        }
        const auto family = xml.attributes().value("font-family");
        if (xml.isStartElement() && !family.isEmpty())
            QVERIFY(family.endsWith(u", sans-serif") && !family.startsWith(u"Sans"));
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    for (const QString& text :
         {QString("north panel"), QString("Barrier"), QString::fromUtf8("90\u00b0 & up")})
        QVERIFY2(texts.contains(text), qPrintable(texts.join('|')));
}

void PictureTest::aPdfHoldsOnePageOfItsSize() {
    QVERIFY(save(sample(), "a.pdf"));
    const QString text = textOfPdf(m_folder.filePath("a.pdf"));
    QVERIFY2(text.contains("Barrier"), qPrintable(text));
    QCOMPARE(text.count('\f'), 1);
    // Points of 1/72 inch: 300 x 3/4 and 200 x 3/4; the fonts are in the file.
    const std::string pdf = *readFile(file("a.pdf"));
    QVERIFY(pdf.find("/MediaBox [0 0 225.000000 150.000000]") != std::string::npos);
    QVERIFY(pdf.find("/FontFile2") != std::string::npos);
}

void PictureTest::whatCannotBeWrittenLeavesTheOldFile() {
    chart::ui::Picture numberless = sample();
    numberless.csv.clear();
    QVERIFY(save(sample(), "a.CSV"));
    QCOMPARE(*readFile(file("a.CSV")), "x,y\r\n1,2\r\n");
    struct Row {
        chart::ui::Picture picture;
        const char* name;
        int dpi;
        const char* says;
    };
    for (const auto& [picture, name, dpi, says] :
         {Row{numberless, "a.CSV", 96, "no numbers"}, Row{sample(), "a.bmp", 96, ".png"},
          Row{sample(), "png", 96, ".csv"}, Row{sample(), "b.png", 47, "48 and 1200"},
          Row{sample(), "b.png", 1201, "48 and 1200"},
          // 3000 x 1200 / 96 are 37500 pixels, more than can be painted on.
          Row{sample({3000, 20}), "b.png", 1200, "too large"},
          Row{sample({1e9, 1e9}), "b.png", 96, "too large"},
          Row{sample(), "nowhere/b.svg", 96, "nowhere"}}) {
        QVERIFY(writeFile(file("b.png"), "old"));
        const Status status = save(picture, name, dpi);
        QVERIFY(!status);
        QVERIFY2(faultText(status.fault()).find(says) != std::string::npos,
                 faultText(status.fault()).c_str());
        QVERIFY(faultText(status.fault()).find(name) != std::string::npos);
        QCOMPARE(*readFile(file("b.png")), "old");
    }
    QCOMPARE(*readFile(file("a.CSV")), "x,y\r\n1,2\r\n");
    QVERIFY(!QFile::exists(m_folder.filePath("a.bmp")));
}

void PictureTest::theClipboardHoldsTwicePixels() {
    copyPicture(sample());
    const QImage image = QApplication::clipboard()->image();
    QCOMPARE(image.size(), QSize(600, 400));
    QVERIFY(isInk(image, 0.95, 0.95));
}

void PictureTest::aPrintFillsThePaper() {
    for (const auto orientation : {QPageLayout::Portrait, QPageLayout::Landscape}) {
        for (const auto paper : {QPageSize::A4, QPageSize::A8}) {
            QPrinter printer(QPrinter::HighResolution);
            printer.setOutputFileName(m_folder.filePath("print.pdf"));
            printer.setPageLayout(
                {QPageSize(paper), orientation, {10, 10, 10, 10}, QPageLayout::Millimeter});
            QSizeF page;
            chart::ui::Picture picture = sample();
            picture.paint = [&, paint = picture.paint](QPainter& painter, const QRectF& rect) {
                page = rect.size();
                paint(painter, rect);
            };
            QVERIFY(printPicture(picture, printer));
            QCOMPARE(printer.resolution(), 1200);
            QVERIFY(textOfPdf(m_folder.filePath("print.pdf")).contains("Barrier"));
            // Within its margins A4 is 190 x 277 mm, 718 x 1047 pixels of 1/96 inch, of which it
            // takes 718 x 1.2 = 862. On A8, 32 x 54 mm (121 x 204 pixels) or turned, the picture
            // keeps three quarters of its 300 x 200: 225 x 1.2 = 270, 150 x 204 / 121 = 253.
            const bool upright = orientation == QPageLayout::Portrait;
            const QSizeF paged = paper == QPageSize::A4
                                     ? (upright ? QSizeF(718, 862) : QSizeF(1047, 718))
                                     : (upright ? QSizeF(225, 270) : QSizeF(253, 150));
            QVERIFY2(std::abs(page.width() - paged.width()) < 3 &&
                         std::abs(page.height() - paged.height()) < 4,
                     qPrintable(QString("%1 x %2").arg(page.width()).arg(page.height())));
        }
    }
    QPrinter footed(QPrinter::HighResolution);
    footed.setOutputFileName(m_folder.filePath("footed.pdf"));
    QCOMPARE(chart::ui::bestOrientation(sample()), QPageLayout::Landscape);
    QCOMPARE(chart::ui::bestOrientation(sample({200, 300})), QPageLayout::Portrait);
    QVERIFY(printPicture(sample(), footed, "north.TLV   11/21/2026   TELVO"));
    const QString sheet = textOfPdf(m_folder.filePath("footed.pdf")).trimmed();
    QVERIFY2(sheet.simplified().endsWith("north.TLV 11/21/2026 TELVO"), qPrintable(sheet));
    QPrinter nowhere;
    nowhere.setOutputFileName("/nowhere/print.pdf");
    QVERIFY(!printPicture(sample(), nowhere));
}

void PictureTest::theCommandAsksAndTells() {
    RecordedMessages messages;
    RecordedDialogs dialogs;
    const auto ask = [&](const char* name, int dpi = 0) {
        dialogs.answers = {std::nullopt};
        if (name) dialogs.answers = {file(name)};
        const auto run = [&] { exportCommand(sample(), dialogs, messages, "/cases", nullptr); };
        if (!dpi) return run();
        inModal("frmResolution", run, [dpi](QWidget& form) {
            auto& box = control<QSpinBox>(form, "txtResolution");
            box.setFocus();
            QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
            QTest::keyClicks(&box, QString::number(dpi));
            QTest::keyClick(&form, dpi < 1000 ? Qt::Key_Return : Qt::Key_Escape);
        });
    };
    ask(nullptr);
    QCOMPARE(dialogs.asked.back(), "Export Picture|/cases/north panel.png|PNG Picture (*.png)");
    QCOMPARE(messages.lastStatus(), "Export cancelled");
    ask("c.png", 1000);
    QCOMPARE(messages.lastStatus(), "Export cancelled");
    QVERIFY(messages.lines.empty() && !QFile::exists(m_folder.filePath("c.png")));

    ask("c.png", 192);
    QCOMPARE(QImage(m_folder.filePath("c.png")).size(), QSize(600, 400));
    QCOMPARE(messages.lines.back(), "Picture exported: " + file("c.png"));
    QCOMPARE(messages.lastStatus(), "Picture exported");
    ask("c.svg");
    QVERIFY(QFile::exists(m_folder.filePath("c.svg")) && messages.asked.empty());

    ask("c.doc");
    QVERIFY(messages.asked.back().starts_with("Export: Error: " + file("c.doc")));
    QCOMPARE(messages.lastStatus(), "Export failed");
}

QTEST_MAIN(PictureTest)
#include "picture_test.moc"
