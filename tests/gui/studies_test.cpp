// SPDX-License-Identifier: GPL-3.0-or-later
//
// The window of the studies in the running program: every page by its object names, and that what it
// shows is what a run of the opened case gives.
#include "base/numbers.h"
#include "study/questions/ranges.h"
#include "study/ui/studies/TornadoPage.h"
#include "studyDesk.h"

#include <QClipboard>
#include <QComboBox>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>

using namespace telvo;
using namespace telvo::study;
using namespace telvo::study::ui;
using namespace telvo::test;
using telvo::ui::fromQt;

namespace {} // namespace

class StudiesTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void whatMattersOpensWithAResult();
    void rangesAreTheUsersOwn();
    void badRangesAreToldBesideTheField();
    void rangesAreEditedInTheCells();
    void itFollowsTheCaseOnScreen();
    void everyNumberIsThatOfTheOpenedCase();
    void resultsLeaveTheProgram();
    void aValueIsFoundAndTaken();
    void tablesOfValues();
    void aMillionRows();
    void designCharts();
    void badInputIsToldBeforeAnythingRuns_data();
    void badInputIsToldBeforeAnythingRuns();
};

void StudiesTest::whatMattersOpensWithAResult() {
    Desk desk(MenuEntry::WhatMatters);
    const auto& page = desk.page();
    QVERIFY(page.headline().starts_with("Retreat factor of the panel 1."));
    QVERIFY(page.headline().find(" moves it most: ") != std::string::npos);
    const auto& session = desk.program.session();
    QCOMPARE(page.result().table->rows, study::defaultRanges(session.project()).size());
    QVERIFY(desk.text("lblTornadoFoot").startsWith("two-side-gobs.TLV, TELVO 050817, "));
    // Inputs without effect are the last ones and say why.
    QCOMPARE(desk.words(page.result().table->rows - 1, 14), "no effect here: row D is not left");
    double before = HUGE_VAL;
    for (std::size_t row = 0; row < page.result().table->rows; ++row) {
        if (!desk.words(row, 14).empty()) continue;
        QVERIFY(desk.number(row, 12) <= before);
        before = desk.number(row, 12);
    }
    // The same as lines, and for another result.
    auto& look = control<QComboBox>(desk.window(), "cboTornadoLook");
    look.setCurrentIndex(1);
    Q_EMIT look.activated(1);
    desk.wait();
    QVERIFY(control<QCustomPlot>(desk.window(), "chtTornado").plottableCount() > 5);
    desk.choose("cboTornadoOutcome", "BarrierSF.retreat.second");
    desk.wait();
    QVERIFY(page.headline().starts_with("Retreat factor of the second barrier"));
}

void StudiesTest::rangesAreTheUsersOwn() {
    Desk desk(MenuEntry::WhatMatters);
    desk.choose("cboTornadoInput", "DepthCover");
    type(desk.window(), "txtTornadoLow", "-50");
    type(desk.window(), "txtTornadoHigh", "20");
    desk.wait();
    QCOMPARE(desk.words(0, 0), "Depth of Cover"); // it moves most by now
    QCOMPARE(desk.words(0, 1), "-50 .. +20 % (own)");
    const double own = desk.number(0, 5);
    QCOMPARE(desk.number(0, 3), own / 2);
    QCOMPARE(desk.number(0, 4), own * 1.2);
    // The same values in another form.
    auto& form = control<QComboBox>(desk.window(), "cboTornadoForm");
    form.setCurrentIndex(2);
    Q_EMIT form.activated(2);
    desk.wait();
    QCOMPARE(control<QLineEdit>(desk.window(), "txtTornadoLow").text().toDouble(), own / 2);
    QCOMPARE(desk.number(0, 3), own / 2);
    // They stay with the case when another one was open meanwhile.
    desk.open("development-mains.TLV");
    desk.wait();
    desk.open("two-side-gobs.TLV");
    desk.wait();
    QCOMPARE(desk.number(0, 3), own / 2);
    click(desk.window(), "cmdTornadoAllDefault");
    desk.wait();
    for (std::size_t row = 0; row < desk.page().result().table->rows; ++row)
        QVERIFY(desk.words(row, 1).find("(own)") == std::string::npos);
}

void StudiesTest::badRangesAreToldBesideTheField() {
    Desk desk(MenuEntry::WhatMatters);
    type(desk.window(), "txtTornadoHigh", "-90");
    QTRY_VERIFY_WITH_TIMEOUT(desk.isShown("lblTornadoProblem"), Patience);
    QVERIFY(desk.text("lblTornadoProblem").startsWith("A range goes from a smaller to a greater"));
    QVERIFY(!desk.page().isCurrent());
    QVERIFY(!control(desk.window(), "cmdExport").isEnabled());
    QVERIFY(desk.home.asked.size() <= 1); // no box but that of the start
    type(desk.window(), "txtTornadoHigh", "5x");
    QTRY_VERIFY_WITH_TIMEOUT(
        desk.text("lblTornadoProblem").contains("'x' is not a character of a number"), Patience);
    type(desk.window(), "txtTornadoHigh", "5");
    desk.wait();
    QVERIFY(!desk.isShown("lblTornadoProblem"));
}

void StudiesTest::rangesAreEditedInTheCells() {
    Desk desk(MenuEntry::WhatMatters);
    auto& table = control<QTableView>(desk.window(), "tblTornado");
    const auto rowOf = [&](const std::string& input) {
        for (int place = 0; place < table.model()->rowCount(); ++place)
            if (table.model()->index(place, 0).data().toString().toStdString() == input)
                return place;
        return -1;
    };
    const auto enter = [&](const char* input, int column, const QString& text) {
        table.setFocus();
        table.setCurrentIndex(table.model()->index(rowOf(input), column));
        QTest::keyClick(&table, Qt::Key_Return);
        QWidget* editor = nullptr;
        for (auto* one : table.findChildren<QWidget*>("txtCell"))
            if (one->isVisible()) editor = one;
        QVERIFY(editor);
        typeInto(*editor, text);
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY_WITH_TIMEOUT(!editor || !table.findChild<QWidget*>("txtCell"), Patience);
    };
    constexpr auto Depth = "Depth of Cover";
    const auto cell = [&](int column) {
        return table.model()->index(rowOf(Depth), column).data().toString();
    };
    using study::ui::TornadoFromColumn, study::ui::TornadoRangeColumn, study::ui::TornadoToColumn;
    enter(Depth, TornadoRangeColumn, "+-5 %");
    desk.wait();
    QCOMPARE(cell(TornadoRangeColumn), "-5 .. +5 % (own)");
    QCOMPARE(cell(TornadoFromColumn), "855");
    QCOMPARE(table.currentIndex().row(), rowOf(Depth)); // wherever its bar is now
    QCOMPARE(control<QLineEdit>(desk.window(), "txtTornadoHigh").text(), "5");
    enter(Depth, TornadoToColumn, "1000");
    desk.wait();
    QCOMPARE(cell(TornadoRangeColumn), "855 .. 1000 ft (own)");
    enter(Depth, TornadoFromColumn, "250 m");
    desk.wait();
    QCOMPARE(cell(TornadoFromColumn), "820.21");
    // What is no range stays in its cell and is told; nothing of it is kept.
    enter(Depth, TornadoRangeColumn, "5 to");
    QTRY_VERIFY_WITH_TIMEOUT(desk.isShown("lblTornadoProblem"), Patience);
    QVERIFY(desk.text("lblTornadoProblem").startsWith("A range is written like +-10 %"));
    QCOMPARE(cell(TornadoRangeColumn), "5 to");
    QVERIFY(!desk.page().isCurrent());
    enter(Depth, TornadoToColumn, "700");
    QTRY_VERIFY_WITH_TIMEOUT(
        desk.text("lblTornadoProblem").contains("not from 820.2") &&
            desk.text("lblTornadoProblem").startsWith("A range goes from a smaller"),
        Patience);
    enter(Depth, TornadoRangeColumn, ""); // the usual one again
    desk.wait();
    QVERIFY(!cell(TornadoRangeColumn).contains("(own)"));
    QVERIFY(!desk.isShown("lblTornadoProblem"));
    QVERIFY(!control(desk.window(), "cmdTornadoAllDefault").isEnabled());
    // Other cells open their case, and headings sort.
    table.setCurrentIndex(table.model()->index(rowOf(Depth), 0));
    QTest::mouseClick(table.horizontalHeader()->viewport(), Qt::LeftButton, {},
                      QPoint(table.columnViewportPosition(0) + 10, 5));
    QVERIFY(!desk.page().table().rows().order().empty());
    QTest::keyClick(&table, Qt::Key_Return);
    QVERIFY(!desk.program.session().isSaved());
}

void StudiesTest::itFollowsTheCaseOnScreen() {
    Desk desk(MenuEntry::WhatMatters);
    const std::string before = desk.page().headline();
    desk.home.trigger(MenuEntry::Parameters);
    auto* form = desk.home.window<QWidget>("frmTELVOParm");
    QVERIFY(form);
    type(*form, "txtDepthCover", "1000");
    QVERIFY(!desk.page().isCurrent());
    desk.wait();
    QVERIFY(desk.page().headline() != before);
    type(*form, "txtDepthCover", "0"); // no such panel
    QTRY_VERIFY_WITH_TIMEOUT(desk.isShown("lblTornadoProblem"), Patience);
    QVERIFY(!desk.page().isCurrent());
    desk.home.answers = {Answer::Yes}; // what was typed goes
    click(*form, "cmdCancel");
    desk.wait();
    QCOMPARE(desk.page().headline(), before);
    desk.home.trigger(MenuEntry::New);
    QTRY_VERIFY_WITH_TIMEOUT(desk.isShown("lblTornadoProblem"), Patience);
    QVERIFY(desk.text("lblTornadoProblem").contains("empty"));
}

void StudiesTest::everyNumberIsThatOfTheOpenedCase() {
    Desk desk(MenuEntry::WhatMatters);
    const auto& result = desk.page().result();
    int looked = 0;
    for (std::size_t row = 0; row < result.table->rows; ++row) {
        if (!desk.words(row, 14).empty()) continue;
        // Columns of values, each with the case of its cell.
        for (const int column : {6, 7, 8, 10}) {
            const auto choices = result.ofRow(row, column);
            QVERIFY(!choices.empty());
            const double shown = desk.number(row, static_cast<std::size_t>(column));
            QCOMPARE(shown, inRun(choices.front().make(), "TELVOSF.retreat"));
            ++looked;
        }
    }
    QVERIFY(looked > 40);

    // Opened by Enter: untitled, with the very input, and the question of changes in between.
    auto& table = control<QTableView>(desk.window(), "tblTornado");
    table.setFocus();
    table.setCurrentIndex(table.model()->index(0, 7));
    const double value = desk.number(0, 7), at = desk.number(0, 4);
    QTest::keyClick(&table, Qt::Key_Return);
    const auto& opened = desk.program.session().project();
    QCOMPARE(inRun(opened, "TELVOSF.retreat"), value);
    QVERIFY(!desk.program.session().isSaved());
    QVERIFY(desk.program.session().displayName().starts_with("ntitled") ||
            desk.program.session().displayName().starts_with("U"));
    Q_UNUSED(at)
    desk.wait();
    desk.home.answers = {Answer::Cancel};
    table.setCurrentIndex(table.model()->index(1, 6));
    const project::ProjectCase kept = desk.program.session().project();
    QTest::keyClick(&table, Qt::Key_Return);
    QVERIFY(desk.program.session().project() == kept);
}

void StudiesTest::resultsLeaveTheProgram() {
    Desk desk(MenuEntry::WhatMatters);
    click(desk.window(), "cmdCopyTable");
    const QStringList lines = QApplication::clipboard()->text().split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), static_cast<qsizetype>(desk.page().result().table->rows + 1));
    QVERIFY(lines[0].startsWith("Input\tRange\tUnit\tFrom\tTo\tOwn Value\t"));
    QCOMPARE(lines[1].split('\t')[6].toDouble(), desk.number(0, 6));
    for (const char* name : {"out.csv", "out.xlsx", "out.svg", "out.pdf"}) {
        desk.home.dialogs.answers = {desk.home.path(name)};
        click(desk.window(), "cmdExport");
        QTRY_VERIFY_WITH_TIMEOUT(control(desk.window(), "cmdExport").isEnabled(), Patience);
        QVERIFY(readFile(desk.home.path(name)));
    }
    QTRY_COMPARE_WITH_TIMEOUT(desk.home.status(), "Study exported", Patience);
    const auto csv = readFile(desk.home.path("out.csv"));
    QVERIFY(csv->starts_with("Input,Range,Unit,"));
    QVERIFY(readFile(desk.home.path("out.svg"))->find("moves it most") != std::string::npos);
}

void StudiesTest::aValueIsFoundAndTaken() {
    Desk desk(MenuEntry::FindValue);
    const auto& page = desk.page();
    QVERIFY(page.headline().starts_with("From "));
    QVERIFY(page.result().table->rows >= 1);
    QVERIFY(!desk.text("lblFindRemark").isEmpty());
    auto& chart = control<QCustomPlot>(desk.window(), "chtFind");
    QVERIFY(chart.findChild<QObject*>("holds") && chart.findChild<QObject*>("curve"));
    // The ends of every interval, and what is at them.
    for (std::size_t row = 0; row < page.result().table->rows; ++row) {
        const auto atFrom = page.result().ofRow(row, 0).front().make();
        QCOMPARE(inRun(atFrom, "BarrierSF.retreat.second"), desk.number(row, 5));
        QVERIFY(desk.number(row, 5) >= 1.5);
        const auto atTo = page.result().ofRow(row, 1).front().make();
        QCOMPARE(inRun(atTo, "BarrierSF.retreat.second"), desk.number(row, 7));
    }
    const QString caption = control<QPushButton>(desk.window(), "cmdFindTake").text();
    QVERIFY(caption.startsWith("Ta&ke ") && caption.endsWith(" ft"));
    const double wanted = caption.mid(6).chopped(3).toDouble();
    click(desk.window(), "cmdFindTake");
    const auto& session = desk.program.session();
    QCOMPARE(session.project().Input.BarrierSecondGob, wanted);
    QVERIFY(!session.isSaved());
    QCOMPARE(session.displayName(), "two-side-gobs.TLV");
    QVERIFY(inRun(session.project(), "BarrierSF.retreat.second") >= 1.5);
    desk.wait();
    QCOMPARE(control<QPushButton>(desk.window(), "cmdFindTake").text(), caption);
    // While a form edits the case nothing is written below it.
    desk.home.trigger(MenuEntry::Parameters);
    desk.wait();
    const project::ProjectCase kept = session.project();
    type(desk.window(), "txtFindTarget", "2");
    control<QPushButton>(desk.window(), "cmdFindTake").click();
    QVERIFY(session.project() == kept);
    desk.home.window<QWidget>("frmTELVOParm")->close();
}

void StudiesTest::tablesOfValues() {
    Desk desk(MenuEntry::TableOfValues);
    type(desk.window(), "txtTableFrom_1", "700");
    type(desk.window(), "txtTableTo_1", "1100");
    type(desk.window(), "txtTableStep_1", "100");
    desk.wait();
    const auto& result = desk.page().result();
    QCOMPARE(result.table->rows, 5U);
    QCOMPARE(result.table->columns[1].heading(), "Depth of Cover (ft)");
    for (std::size_t row = 0; row < 5; ++row) {
        const auto opened = result.ofRow(row, 0).front().make();
        QCOMPARE(opened.Input.DepthCover, 700.0 + 100 * static_cast<double>(row));
        QCOMPARE(desk.number(row, 2), inRun(opened, "TELVOSF.retreat"));
        QCOMPARE(desk.number(row, 3), inRun(opened, "TELVOSF.development"));
    }
    // Sorted, a row keeps its number and its case.
    auto& table = control<QTableView>(desk.window(), "tblTable");
    QTest::mouseClick(table.horizontalHeader()->viewport(), Qt::LeftButton, {},
                      QPoint(table.columnViewportPosition(2) + 10, 5));
    QCOMPARE(table.model()->index(0, 0).data().toString(), "5"); // the deepest is the weakest
    table.setCurrentIndex(table.model()->index(0, 0));
    table.setFocus();
    QTest::keyClick(&table, Qt::Key_Return);
    QCOMPARE(desk.program.session().project().Input.DepthCover, 1100.0);
    desk.wait();
    QCOMPARE(result.table->rows, 5U); // what was asked stays

    // Two inputs: a map with a line, and an odd list.
    desk.choose("cboTableInput_2", "EntryHeight");
    type(desk.window(), "txtTableList_2", "6, 8, 10:20:5");
    desk.wait();
    QCOMPARE(result.table->rows, 25U);
    QCOMPARE(desk.number(4, 2), 20.0);
    auto& chart = control<QCustomPlot>(desk.window(), "chtTable");
    QVERIFY(chart.findChild<QObject*>("map"));
    QVERIFY(!control(desk.window(), "txtTableFrom_2").isEnabled());
    const auto opened = result.ofSpot(13)->make();
    QCOMPARE(opened.Input.EntryHeight, 15.0F);
    QCOMPARE(desk.number(13, 3), inRun(opened, "TELVOSF.retreat"));
    click(desk.window(), "chkTableLinked");
    desk.wait();
    QCOMPARE(result.table->rows, 5U);
    QCOMPARE(desk.number(4, 2), 20.0);
}

void StudiesTest::aMillionRows() {
#ifdef TELVO_SANITIZED
    constexpr int Depths = 250; // a quarter of them
#else
    constexpr int Depths = 1000;
#endif
    constexpr int Rows = Depths * 1000;
    Desk desk(MenuEntry::TableOfValues);
    type(desk.window(), "txtTableFrom_1", "500");
    type(desk.window(), "txtTableTo_1", QString::number(499 + Depths));
    type(desk.window(), "txtTableStep_1", "1");
    desk.choose("cboTableInput_2", "EntryHeight");
    type(desk.window(), "txtTableFrom_2", "5.01");
    type(desk.window(), "txtTableTo_2", "15");
    type(desk.window(), "txtTableStep_2", "0.01");
    QTRY_VERIFY_WITH_TIMEOUT(desk.page().isCurrent(), Patience);
    QCOMPARE(desk.page().result().table->rows, std::size_t{Rows});
    auto& table = control<QTableView>(desk.window(), "tblTable");
    QElapsedTimer clock;
    clock.start();
    QTest::mouseClick(table.horizontalHeader()->viewport(), Qt::LeftButton, {},
                      QPoint(table.columnViewportPosition(3) + 10, 5));
    QTRY_VERIFY_WITH_TIMEOUT(!desk.page().table().isSorting(), Patience);
    qInfo("sorted in %lld ms", clock.elapsed());
    double before = -HUGE_VAL;
    for (int place = 0; place < Rows; place += 9973) {
        const double value = desk.number(desk.page().table().rows().rowAt(place), 3);
        QVERIFY(value >= before);
        before = value;
    }
    desk.home.dialogs.answers = {desk.home.path("million.csv")};
    desk.home.closer.stop(); // the window that shows how far it is
    clock.restart();
    click(desk.window(), "cmdExport");
    QTRY_VERIFY_WITH_TIMEOUT(control(desk.window(), "cmdExport").isEnabled(), Patience);
    qInfo("exported in %lld ms", clock.elapsed());
    desk.home.closer.start(1);
    const auto csv = readFile(desk.home.path("million.csv"));
    QVERIFY(csv);
    QVERIFY(csv->starts_with("id,DepthCover,EntryHeight,TELVOSF.retreat,"));
    QCOMPARE(std::count(csv->begin(), csv->end(), '\n'), std::ptrdiff_t{Rows + 1});
    click(desk.window(), "cmdCopyTable");
    QVERIFY(desk.home.wasAsked("too many for the clipboard"));
}

void StudiesTest::designCharts() {
    Desk desk(MenuEntry::DesignChart);
    type(desk.window(), "txtDesignOverFrom", "700");
    type(desk.window(), "txtDesignOverTo", "1100");
    type(desk.window(), "txtDesignOverStep", "100");
    control<QLineEdit>(desk.window(), "txtDesignTargets").clear();
    type(desk.window(), "txtDesignTargets", "1.3, suggested, 9");
    desk.wait();
    const auto& result = desk.page().result();
    QCOMPARE(result.table->rows, 5U);
    QCOMPARE(result.table->columns.size(), 8U);
    for (std::size_t row = 0; row < 5; ++row)
        for (const int column : {1, 3}) {
            const double width = desk.number(row, static_cast<std::size_t>(column));
            const auto opened = result.ofRow(row, column).front().make();
            QCOMPARE(opened.Input.DepthCover, 700.0 + 100 * static_cast<double>(row));
            QCOMPARE(opened.Input.BarrierSecondGob, width);
            QVERIFY(inRun(opened, "BarrierSF.retreat.second") >= (column == 1 ? 1.3 : 1.5));
        }
    QCOMPARE(desk.words(0, 5), "nothing helps");
    auto& chart = control<QCustomPlot>(desk.window(), "chtDesign");
    QVERIFY(chart.findChild<QObject*>("curve:0") && chart.findChild<QObject*>("nothing"));
}

void StudiesTest::badInputIsToldBeforeAnythingRuns_data() {
    QTest::addColumn<int>("page");
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("message");
    QTest::newRow("step of 0") << 2 << "txtFindStep"
                               << "0"
                               << "A step has to be above 0";
    QTest::newRow("empty range") << 2 << "txtFindHigh"
                                 << "1"
                                 << "A range goes from a smaller";
    QTest::newRow("beyond the form") << 2 << "txtFindLow"
                                     << "-5"
                                     << "has to be at least";
    QTest::newRow("no number") << 2 << "txtFindLow"
                               << "x"
                               << "'x' is not a character";
    QTest::newRow("endless table") << 1 << "txtTableStep_1"
                                   << "1e-9"
                                   << "more than 10,000,000";
    QTest::newRow("wrong way") << 1 << "txtTableStep_1"
                               << "-5"
                               << "leads away from";
    QTest::newRow("bad list") << 1 << "txtTableList_1"
                              << "6;8"
                              << "Not a number: \"6;8\"";
    QTest::newRow("bad target") << 3 << "txtDesignTargets"
                                << "much"
                                << "A target is a number or";
    QTest::newRow("long axis") << 3 << "txtDesignOverStep"
                               << "0.001"
                               << "at most 2,000 places";
}

void StudiesTest::badInputIsToldBeforeAnythingRuns() {
    QFETCH(int, page);
    QFETCH(QString, box);
    QFETCH(QString, typed);
    QFETCH(QString, message);
    const MenuEntry entries[] = {MenuEntry::WhatMatters, MenuEntry::TableOfValues,
                                 MenuEntry::FindValue, MenuEntry::DesignChart};
    Desk desk(entries[page]);
    const auto asked = desk.home.asked.size();
    auto& field = control<QLineEdit>(desk.window(), qPrintable(box));
    const QString before = field.text();
    typeInto(field, typed);
    auto* problem = desk.page().findChildren<QLabel*>(QRegularExpression("lbl.*Problem")).first();
    QTRY_VERIFY_WITH_TIMEOUT(problem->isVisible(), Patience);
    QVERIFY2(problem->text().contains(message), qPrintable(problem->text()));
    QVERIFY(field.toolTip().contains(message)); // marked where it is wrong
    QVERIFY(!desk.page().isCurrent() && !control(desk.window(), "cmdExport").isEnabled());
    QCOMPARE(desk.home.asked.size(), asked);
    typeInto(field, before);
    desk.wait();
    QVERIFY(!problem->isVisible());
}

QTEST_MAIN(StudiesTest)

#include "studies_test.moc"
