// SPDX-License-Identifier: GPL-3.0-or-later
#include "GuiTest.h"
#include "table/csvTable.h"
#include "table/ui/frmCaseTable.h"

#include <memory>
#include <QAbstractItemModel>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>

using namespace telvo;
using namespace telvo::test;

class CaseTableTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void loadsTheRowThatIsFound();
    void showsWhyARowIsBad();
    void staysQuickWithManyRows();

  private:
    void open(const std::string& csv);
    QTableView& view() { return control<QTableView>(*m_window, "tblCases"); }
    QString text(const char* label) { return control<QLabel>(*m_window, label).text(); }
    QString problems() {
        return control<QPlainTextEdit>(*m_window, "txtDescription").toPlainText();
    }

    RecordedMessages m_messages;
    std::unique_ptr<ui::frmCaseTable> m_window;
};

void CaseTableTest::open(const std::string& csv) {
    auto read = table::readCsv(csv, "/tables/panels.csv");
    QVERIFY(read);
    m_window = std::make_unique<ui::frmCaseTable>(
        std::move(*read), ui::FormServices{m_messages, {}, nullptr}, nullptr,
        [](const project::ProjectCase& current) {
            return project::KeyFigures{{}, current.Title + " SF", {}, {}};
        });
    show(*m_window);
}

const std::string Panels = "Title,DepthCover,Seam,Description\n"
                           "North <b>,300,x,first\nS\xC3\xBC"
                           "d,412.5,x,\"one\ntwo\"\nWest,deep,y,\n";

void CaseTableTest::loadsTheRowThatIsFound() {
    open(Panels);
    QCOMPARE(m_window->windowTitle(), "Import Case - panels.csv");
    QVERIFY(text("lblRemarks").contains("C (Seam)"));
    QCOMPARE(text("lblCount"), "3 of 3 rows, 1 with problems");
    QCOMPARE(text("lblTitle"), "North <b>");
    type(*m_window, "txtFilter", QString::fromUtf8("412 S\u00DC"));
    QCOMPARE(view().model()->rowCount(), 1);
    QCOMPARE(text("lblDepth"), "412.5 (ft)");
    QCOMPARE(text("lblDevelopmentSF"), QString::fromUtf8("S\u00FCd SF"));
    QCOMPARE(problems(), "one\ntwo");
    QTest::keyClick(&control(*m_window, "txtFilter"), Qt::Key_Return);
    QCOMPARE(m_window->result(), int(QDialog::Accepted));
    QCOMPARE(m_window->chosen()->Input.DepthCover, 412.5);
    QCOMPARE(m_window->chosen()->Description, std::string("one\r\ntwo"));
}

void CaseTableTest::showsWhyARowIsBad() {
    open(Panels);
    click(*m_window, "chkProblems");
    QCOMPARE(view().model()->rowCount(), 1);
    QCOMPARE(problems(), "row 4, column B (DepthCover): \"deep\" is not a number");
    QVERIFY(!control(*m_window, "cmdOK").isEnabled());
    Q_EMIT view().activated(view().currentIndex()); // a double click, where the button is disabled
    QCOMPARE(m_messages.asked.size(), 1U);
    QVERIFY(m_window->isVisible() && !m_window->chosen());
    type(*m_window, "txtFilter", "nowhere");
    QCOMPARE(text("lblCount"), "0 of 3 rows, 1 with problems");
    QVERIFY(!control(*m_window, "cmdOK").isEnabled());
    QTest::keyClick(m_window.get(), Qt::Key_Escape);
    QVERIFY(!m_window->isVisible() && !m_window->chosen());
}

void CaseTableTest::staysQuickWithManyRows() {
    std::string csv = "Title,DepthCover\n";
    for (int i = 0; i < 100'000; ++i)
        csv += "Panel " + std::to_string(i) + ",300\n";
    open(csv);
    type(*m_window, "txtFilter", "9999");
    QElapsedTimer timer;
    timer.start();
    QTest::keyClicks(&control(*m_window, "txtFilter"), "9");
    QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(view().model()->rowCount(), 2); // the row of that number and the panel
    QCOMPARE(text("lblTitle"), "Panel 99997");
}

QTEST_MAIN(CaseTableTest)
#include "caseTable_test.moc"
