// SPDX-License-Identifier: GPL-3.0-or-later
#include "GuiTest.h"
#include "table/csvTable.h"
#include "table/ui/frmCaseTable.h"
#include "table/ui/readInBackground.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <new>
#include <QAbstractItemModel>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QTimer>
#include <thread>

using namespace telvo;
using namespace telvo::test;

class CaseTableTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void loadsTheRowThatIsFound();
    void aRowIsAddedToTheComparison();
    void showsWhyARowIsBad();
    void showsWhatTheFileDoesNotGive();
    void readsBesideTheWindowAndCanBeStopped();
    void staysQuickWithManyRows();

  private:
    void open(const std::string& csv);
    QTableView& view() { return control<QTableView>(*m_window, "tblCases"); }
    QString text(const char* label) { return control<QLabel>(*m_window, label).text(); }
    QString problems() {
        return control<QPlainTextEdit>(*m_window, "txtDescription").toPlainText();
    }

    RecordedMessages m_messages;
    std::unique_ptr<table::ui::frmCaseTable> m_window;
};

void CaseTableTest::open(const std::string& csv) {
    auto read = table::readCsv(csv, "/tables/panels.csv");
    QVERIFY(read);
    m_window = std::make_unique<table::ui::frmCaseTable>(
        std::move(*read), ui::FormServices{m_messages, {}, nullptr}, nullptr,
        [](const project::ProjectCase& current) {
            project::KeyFigures figures;
            figures.DevelopmentSF = current.Title + " SF";
            return figures;
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
    QVERIFY(problems().endsWith("\n\none\ntwo"));
    QTest::keyClick(&control(*m_window, "txtFilter"), Qt::Key_Return);
    QCOMPARE(m_window->result(), int(QDialog::Accepted));
    QCOMPARE(m_window->chosen()->Input.DepthCover, 412.5);
    QCOMPARE(m_window->chosen()->Description, std::string("one\r\ntwo"));
}

void CaseTableTest::aRowIsAddedToTheComparison() {
    open(Panels);
    std::vector<std::uint32_t> added;
    m_window->addToCompare = [&](const table::CaseRow& row) { added.push_back(row.number); };
    view().selectRow(1);
    const auto ask = [&] { Q_EMIT view().customContextMenuRequested({5, 5}); };
    inModal("mnuCaseRow", ask,
            [](QWidget& menu) { static_cast<QMenu&>(menu).actions().constFirst()->trigger(); });
    QCOMPARE(added, std::vector<std::uint32_t>{3});
    QVERIFY(m_window->isVisible());
    view().selectRow(2); // a row that cannot be read has no such menu
    ask();
    QCOMPARE(added.size(), 1U);
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

void CaseTableTest::showsWhatTheFileDoesNotGive() {
    open("Title,DepthCover,CoalStrength,Description\nA,400,700,\nB,400,,text\n");
    QVERIFY(text("lblRemarks")
                .contains("Blank cells take the values of a new case: CoalStrength in row 3\n"));
    const auto state = [this](int row) { return view().model()->index(row, 1).data().toString(); };
    QCOMPARE(state(0), "OK");
    QCOMPARE(state(1), "OK, 1 cell blank");
    QVERIFY(view().model()->index(1, 1).data(Qt::ToolTipRole).toString().contains("900 psi"));
    view().selectRow(1);
    QCOMPARE(problems().section('\n', 0, 0), "CoalStrength: blank; as in a new case, 900 psi");
    QVERIFY(problems().endsWith("\n\ntext"));
}

void CaseTableTest::readsBesideTheWindowAndCanBeStopped() {
    using Outcome = Result<table::CaseTable>;
    using namespace std::chrono_literals;
    const auto inWindow = [](auto act) {
        auto* timer = new QTimer(qApp);
        QObject::connect(timer, &QTimer::timeout, timer, [timer, act] {
            QWidget* waiting = QApplication::activeModalWidget();
            if (!waiting || waiting->objectName() != "frmReading" || !act(*waiting)) return;
            timer->deleteLater();
        });
        timer->start(5);
    };
    // The window stays alive and says how far it is; Cancel and Escape end the reader.
    std::optional<Outcome> read;
    for (const bool escape : {false, true}) {
        std::atomic<bool> ended = false;
        inWindow([escape](QWidget& window) {
            if (!control<QLabel>(window, "lblReading").text().contains("<b>: 512 rows"))
                return false;
            if (escape)
                QTest::keyClick(&window, Qt::Key_Escape);
            else
                click(window, "cmdCancel");
            return true;
        });
        read = table::ui::readInBackground(
            "<b>",
            [&](const table::ReadWatch& watch) -> Outcome {
                watch.tell(512);
                while (!watch.stopped())
                    std::this_thread::sleep_for(1ms);
                ended = true;
                return Fault{table::ReadingStopped, {}};
            },
            nullptr, 0ms);
        QVERIFY(!read && ended);
    }
    // The window goes by itself; what is thrown is a fault that names the file.
    std::atomic<bool> seen = false;
    inWindow([&](QWidget&) { return seen = true; });
    read = table::ui::readInBackground(
        "big.xlsx",
        [&](const table::ReadWatch&) -> Outcome {
            while (!seen)
                std::this_thread::sleep_for(1ms);
            throw std::bad_alloc();
        },
        nullptr, 0ms);
    QVERIFY(read && !*read);
    QCOMPARE(faultText(read->fault()), "big.xlsx: there is not enough memory to read it");
    read = table::ui::readInBackground(
        "t.csv",
        [](const table::ReadWatch& watch) {
            return table::readCsv("DepthCover\n3\n", "t.csv", watch);
        },
        nullptr, 60s);
    QVERIFY(read && *read && (*read)->rows.size() == 1);
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
