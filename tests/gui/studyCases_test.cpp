// SPDX-License-Identifier: GPL-3.0-or-later
//
// Pages of the studies that put cases side by side: scenarios, comparison.
#include "base/numbers.h"
#include "plot/ui/PlanView.h"
#include "project/CaseFile.h"
#include "project/units.h"
#include "study/questions/scenarios.h"
#include "study/ui/studies/ComparePage.h"
#include "studyDesk.h"

#include <QDropEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableView>

using namespace telvo;
using namespace telvo::test;
using project::Field;

namespace {

/// The page of the scenarios, with its table by row and heading.
struct ScenarioDesk : Desk {
    ScenarioDesk() : Desk(MenuEntry::Scenarios) {}

    QTableView& table() { return control<QTableView>(window(), "tblScenarios"); }
    int column(const std::string& label) {
        const auto& columns = page().result().table->columns;
        for (std::size_t c = 0; c < columns.size(); ++c)
            if (columns[c].label == label) return static_cast<int>(c);
        return -1;
    }
    std::string cell(int row, const std::string& label) {
        return study::ui::shownCell(*page().result().table, static_cast<std::size_t>(row),
                                    static_cast<std::size_t>(column(label)));
    }
    /// The editor of a cell that is open; former ones go a little later.
    template <typename Editor>
    Editor* editor(const char* name) {
        for (auto* one : table().findChildren<Editor*>(name))
            if (one->isVisible()) return one;
        return nullptr;
    }
    /// Goes into a cell and types over what it holds, as a user would.
    void typeCell(int row, const std::string& label, const QString& text) {
        table().setFocus();
        table().setCurrentIndex(table().model()->index(row, column(label)));
        QTest::keyClick(&table(), Qt::Key_F2);
        auto* line = editor<QWidget>("txtCell");
        QVERIFY(line);
        typeInto(*line, text);
        QTest::keyClick(line, Qt::Key_Return);
        QTRY_VERIFY_WITH_TIMEOUT(!editor<QWidget>("txtCell"),
                                 Patience); // its text is taken a little later
        wait();
    }
    void chooseCell(int row, const std::string& label, const QString& text) {
        table().setFocus();
        table().setCurrentIndex(table().model()->index(row, column(label)));
        QTest::keyClick(&table(), Qt::Key_Return);
        auto* box = editor<QComboBox>("cboCell");
        QVERIFY(box);
        box->setCurrentText(text);
        QTest::keyClick(box, Qt::Key_Return);
        QTRY_VERIFY_WITH_TIMEOUT(!editor<QComboBox>("cboCell"), Patience);
        wait();
    }
    void addInput(const char* name) {
        choose("cboScenariosInput", name);
        click(window(), "cmdScenariosAddInput");
        wait();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers with = {}) {
        table().setFocus();
        QTest::keyClick(&table(), key, with);
        wait();
    }
};

/// The page that compares, with its table by row and column.
struct CompareDesk : Desk {
    CompareDesk() : Desk(MenuEntry::Scenarios) {
        click(window(), "cmdScenariosAdd");
        wait();
        home.trigger(MenuEntry::Compare);
        wait();
    }

    const study::ui::StudyTable& table() { return *page().result().table; }
    int row(const std::string& label) {
        for (std::size_t r = 0; r < table().rows; ++r)
            if (study::ui::shownCell(table(), r, 0) == label) return static_cast<int>(r);
        return -1;
    }
    std::size_t column(const std::string& label) {
        for (std::size_t c = 0; c < table().columns.size(); ++c)
            if (table().columns[c].label == label) return c;
        return 0;
    }
    double value(const std::string& label, const std::string& heading) {
        const int at = row(label);
        return at < 0 ? qQNaN() : number(static_cast<std::size_t>(at), column(heading));
    }
    void addFiles(const std::vector<std::string>& paths) {
        home.dialogs.answers.assign(paths.begin(), paths.end());
        click(window(), "cmdCompareAdd");
        wait();
    }
    QString reports() {
        return control<QPlainTextEdit>(window(), "txtCompareReports").toPlainText();
    }
};

constexpr auto Own = "two-side-gobs.TLV";
constexpr auto Factor = "Retreat factor of the panel";

} // namespace

class StudyCasesTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void scenariosAreEditedInTheTable();
    void whatIsNoValueStaysInItsCell();
    void everyNumberIsThatOfTheOpenedScenario();
    void scenariosAreMovedByButtonsAndKeys();
    void scenariosStayWithTheirCase();
    void scenariosBecomeCaseFiles();
    void casesStandSideBySide();
    void everyNumberIsThatOfTheComparedCase();
    void reportsAndPlansOfTwoCases();
    void filesThatCannotBeComparedAreNamed();
    void rowsAndRunsAreCompared();
};

void StudyCasesTest::scenariosAreEditedInTheTable() {
    ScenarioDesk desk;
    QVERIFY(desk.page().headline().starts_with("No scenario yet."));
    QCOMPARE(desk.page().result().table->rows, std::size_t{2});
    desk.addInput("DepthCover"); // makes the first scenario, too
    QCOMPARE(desk.cell(1, "Scenario"), "Scenario 1");
    QCOMPARE(desk.cell(1, "Depth of Cover"), "");
    QCOMPARE(desk.cell(1, Factor), desk.cell(0, Factor));
    desk.typeCell(1, "Scenario", "Deeper");
    desk.typeCell(1, "Depth of Cover", "1400");
    QCOMPARE(desk.cell(1, "Scenario"), "Deeper");
    project::ProjectCase deeper = desk.program.session().project();
    deeper = study::withScenario(deeper, {"", {{Field::DepthCover, 1400}}});
    const auto column = static_cast<std::size_t>(desk.column(Factor));
    QCOMPARE(desk.number(1, column), inRun(deeper, "TELVOSF.retreat"));
    QCOMPARE(desk.number(2, column), desk.number(1, column)); // the worst
    QVERIFY(desk.page().headline().find("worst in \"Deeper\"") != std::string::npos);
    // A loading condition is chosen by its name, and takes the barriers from the row.
    desk.addInput("Anal");
    QCOMPARE(desk.cell(0, "Loading Condition"), "One active section and two side gobs");
    desk.chooseCell(1, "Loading Condition", "Development load (no nearby gob)");
    constexpr auto barrier = "Retreat factor of the second barrier";
    QVERIFY(!desk.cell(0, barrier).empty());
    QCOMPARE(desk.cell(1, barrier), "");
    desk.press(Qt::Key_Delete); // as in the case again
    QVERIFY(!desk.cell(1, barrier).empty());
    // An input that does nothing there says so.
    desk.addInput("WidthD");
    desk.typeCell(1, "Width of Row 'D' Pillars, Second Gob", "30");
    QVERIFY(desk.cell(1, "Remark").find("no effect: Width of Row 'D' Pillars, Second Gob") == 0);
    click(desk.window(), "cmdScenariosRemoveColumn");
    QVERIFY(desk.home.wasAsked("Take \"Width of Row 'D' Pillars"));
    QVERIFY(desk.column("Width of Row 'D' Pillars, Second Gob") >= 0); // not without a yes
    desk.home.answers = {Answer::Yes};
    click(desk.window(), "cmdScenariosRemoveColumn");
    desk.wait();
    QCOMPARE(desk.column("Width of Row 'D' Pillars, Second Gob"), -1);
    // Another result, until it is taken out again.
    desk.choose("cboScenariosOutcome", "AMZLoad.retreat.front");
    click(desk.window(), "cmdScenariosAddOutcome");
    desk.wait();
    const auto label = study::Outcome::named("AMZLoad.retreat.front")->label();
    QVERIFY(desk.column(label) > 0);
    desk.table().setCurrentIndex(desk.table().model()->index(1, desk.column(label)));
    click(desk.window(), "cmdScenariosRemoveColumn");
    desk.wait();
    QCOMPARE(desk.column(label), -1);
}

void StudyCasesTest::whatIsNoValueStaysInItsCell() {
    ScenarioDesk desk;
    desk.addInput("DepthCover");
    desk.addInput("NumberEntries");
    for (const auto& [label, text, why] :
         {std::tuple{"Depth of Cover", "12x", "12x"},
          std::tuple{"Number of Entries", "4.5", "\"4.5\" is not a whole number"},
          std::tuple{"Number of Entries", "11", "\"11\" is outside 0 to 10"}}) {
        desk.typeCell(1, label, text);
        QCOMPARE(desk.cell(1, label), text);
        QCOMPARE(desk.cell(1, Factor), "");
        QVERIFY2(desk.cell(1, "Remark").find(why) != std::string::npos,
                 desk.cell(1, "Remark").c_str());
        const auto at = desk.table().model()->index(1, desk.column(label));
        QVERIFY(at.data(Qt::BackgroundRole).isValid());
        QVERIFY(at.data(Qt::ToolTipRole).toString().contains(why));
        QVERIFY(!control(desk.window(), "cmdScenariosSave").isEnabled());
        desk.typeCell(1, label, "");
        QCOMPARE(desk.cell(1, "Remark"), "");
    }
    desk.typeCell(1, "Depth of Cover", "300 m"); // a length with its unit
    QCOMPARE(desk.cell(1, "Depth of Cover"), "984.252");
    desk.typeCell(1, "Depth of Cover", "-5"); // a number, but no panel
    QVERIFY(desk.cell(1, "Remark").find("depth of cover") != std::string::npos);
    QCOMPARE(desk.cell(1, Factor), "");
    QVERIFY(desk.isShown("cmdScenariosNotComputed"));
    // Names.
    click(desk.window(), "cmdScenariosAdd");
    desk.wait();
    desk.typeCell(2, "Scenario", "Scenario 1");
    QCOMPARE(desk.cell(2, "Remark"), "Two scenarios are called \"Scenario 1\"");
    desk.typeCell(2, "Scenario", " ");
    QCOMPARE(desk.cell(2, "Remark"), "A scenario needs a name");
    desk.typeCell(2, "Scenario", "Other");
    QCOMPARE(desk.cell(2, "Remark"), "");
}

void StudyCasesTest::everyNumberIsThatOfTheOpenedScenario() {
    ScenarioDesk desk;
    for (const char* input : {"DepthCover", "ArchFactor", "BarrierSecondGob"})
        desk.addInput(input);
    desk.typeCell(1, "Depth of Cover", "1234.5");
    click(desk.window(), "cmdScenariosDuplicate");
    desk.wait();
    desk.typeCell(2, "Pressure Arch Factor", "0.5");
    desk.typeCell(2, "Barrier Pillar Width, Second Gob", "60.25");
    const auto& result = desk.page().result();
    int looked = 0;
    for (std::size_t row = 0; row < result.table->rows; ++row)
        for (auto c = static_cast<std::size_t>(desk.column(Factor));
             c < result.table->columns.size() && !result.table->columns[c].name.empty(); ++c) {
            const auto& name = result.table->columns[c].name;
            const auto choices = result.ofRow(row, static_cast<int>(c));
            QVERIFY(!choices.empty());
            QCOMPARE(desk.number(row, c), inRun(choices.front().make(), name));
            ++looked;
        }
    QCOMPARE(looked, 4 * 6);
    // An entered pressure arch factor counts, also where the case has an automatic one.
    QVERIFY(desk.cell(2, Factor) != desk.cell(1, Factor));
    // Enter in a result opens the very case.
    const double shown = desk.number(2, static_cast<std::size_t>(desk.column(Factor)));
    desk.table().setFocus();
    desk.table().setCurrentIndex(desk.table().model()->index(2, desk.column(Factor)));
    QTest::keyClick(&desk.table(), Qt::Key_Return);
    const auto& opened = desk.program.session().project();
    QCOMPARE(opened.Input.DepthCover, 1234.5);
    QCOMPARE(opened.Input.BarrierSecondGob, 60.25);
    QCOMPARE(inRun(opened, "TELVOSF.retreat"), shown);
    QVERIFY(!desk.program.session().isSaved());
}

void StudyCasesTest::scenariosAreMovedByButtonsAndKeys() {
    ScenarioDesk desk;
    desk.press(Qt::Key_Insert);
    desk.press(Qt::Key_Insert);
    desk.addInput("EntryHeight");
    desk.typeCell(2, "Entry Height", "9");
    desk.table().setCurrentIndex(desk.table().model()->index(2, 0));
    desk.press(Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(desk.cell(1, "Scenario"), "Scenario 2");
    QCOMPARE(desk.cell(1, "Entry Height"), "9");
    QVERIFY(!control(desk.window(), "cmdScenariosUp").isEnabled());
    click(desk.window(), "cmdScenariosDown");
    desk.wait();
    QCOMPARE(desk.cell(2, "Scenario"), "Scenario 2");
    desk.press(Qt::Key_D, Qt::ControlModifier);
    QCOMPARE(desk.cell(3, "Scenario"), "Copy of Scenario 2");
    QCOMPARE(desk.cell(3, "Entry Height"), "9");
    desk.press(Qt::Key_Delete, Qt::ControlModifier); // it is asked, and No is the answer
    QVERIFY(desk.home.wasAsked("Delete the scenario \"Copy of Scenario 2\""));
    QCOMPARE(desk.page().result().table->rows, std::size_t{5});
    desk.home.answers = {Answer::Yes};
    click(desk.window(), "cmdScenariosDelete");
    desk.wait();
    QCOMPARE(desk.page().result().table->rows, std::size_t{4});
    click(desk.window(), "cmdScenariosRename");
    auto* editor = desk.editor<QWidget>("txtCell");
    QVERIFY(editor);
    typeInto(*editor, "High");
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(desk.cell(2, "Scenario"), "High", Patience);
}

void StudyCasesTest::scenariosStayWithTheirCase() {
    ScenarioDesk desk;
    desk.addInput("DepthCover");
    desk.typeCell(1, "Depth of Cover", "1000");
    desk.open("development-mains.TLV");
    desk.wait();
    QCOMPARE(desk.page().result().table->rows, std::size_t{2});
    desk.open("two-side-gobs.TLV");
    desk.wait();
    QCOMPARE(desk.page().result().table->rows, std::size_t{3});
    QCOMPARE(desk.cell(1, "Depth of Cover"), "1000");
    // Also with a case in other units in between.
    desk.open("metric-two-side-gobs.TLV");
    desk.wait();
    desk.addInput("DepthCover");
    desk.typeCell(1, "Depth of Cover", "310");
    desk.open("two-side-gobs.TLV");
    desk.wait();
    QCOMPARE(desk.cell(1, "Depth of Cover"), "1000");
    desk.open("metric-two-side-gobs.TLV");
    desk.wait();
    QCOMPARE(desk.cell(1, "Depth of Cover"), "310");
    desk.open("two-side-gobs.TLV");
    desk.wait();
    // They follow the case while it is edited.
    const auto before = desk.number(1, static_cast<std::size_t>(desk.column(Factor)));
    desk.home.trigger(MenuEntry::Parameters);
    auto* form = desk.home.window<QWidget>("frmTELVOParm");
    QVERIFY(form);
    type(*form, "txtEntryHeight", "9");
    desk.wait();
    QVERIFY(desk.number(1, static_cast<std::size_t>(desk.column(Factor))) < before);
    desk.home.answers = {Answer::Yes};
    click(*form, "cmdCancel");
}

void StudyCasesTest::scenariosBecomeCaseFiles() {
    ScenarioDesk desk;
    QVERIFY(!control(desk.window(), "cmdScenariosSave").isEnabled());
    desk.addInput("DepthCover");
    desk.typeCell(1, "Scenario", "deep/er?");
    desk.typeCell(1, "Depth of Cover", "1400");
    click(desk.window(), "cmdScenariosDuplicate");
    desk.wait();
    desk.typeCell(2, "Scenario", "deep_er_");
    desk.typeCell(2, "Depth of Cover", "1500");
    const std::string folder = desk.home.path("");
    click(desk.window(), "cmdScenariosSave"); // no folder, no files
    desk.home.dialogs.answers = {folder};
    click(desk.window(), "cmdScenariosSave");
    QCOMPARE(desk.home.status(), "2 case files written");
    const std::string first = desk.home.path("two-side-gobs - deep_er_.TLV");
    const std::string second = desk.home.path("two-side-gobs - deep_er_ (row 2).TLV");
    for (const auto& [path, depth] : {std::pair{first, 1400.0}, std::pair{second, 1500.0}}) {
        QVERIFY(desk.program.session().LoadProjFile(path));
        QCOMPARE(desk.program.session().project().Input.DepthCover, depth);
    }
    // What is there already is not replaced without a yes.
    desk.open("two-side-gobs.TLV");
    desk.wait();
    desk.typeCell(1, "Depth of Cover", "1600");
    const auto kept = readFile(first);
    desk.home.dialogs.answers = {folder};
    click(desk.window(), "cmdScenariosSave");
    QVERIFY(desk.home.wasAsked("These files are there already. Replace them?"));
    QCOMPARE(*readFile(first), *kept);
    desk.home.dialogs.answers = {folder};
    desk.home.answers = {Answer::Yes};
    click(desk.window(), "cmdScenariosSave");
    QVERIFY(*readFile(first) != *kept);
}

void StudyCasesTest::casesStandSideBySide() {
    CompareDesk desk;
    // The same inputs in metres: nothing differs but what the conversion rounds.
    auto metric = project::convertedCase(desk.program.session().project());
    QVERIFY(metric);
    metric->Input.DepthCover = 300;
    const std::string path = desk.home.path("metric.TLV");
    QVERIFY(project::saveCaseFile(*metric, path));
    desk.addFiles({path, TELVO_EXAMPLES_DIR "/development-mains.TLV"});
    QVERIFY(desk.page().headline().starts_with("4 cases, which differ in "));
    QCOMPARE(desk.text("lblCompareFoot").section(", ", 2, 2), "4 runs");
    // All in the units of the base, with difference and percent.
    const double depth = desk.value("Depth of Cover", "metric.TLV");
    QVERIFY(std::abs(depth - 300 * 3.280839895) < 1e-6);
    QCOMPARE(desk.value("Depth of Cover", Own), 900.0);
    QCOMPARE(desk.value("Depth of Cover", "metric.TLV: difference"), depth - 900);
    QCOMPARE(desk.value("Depth of Cover", "metric.TLV: percent"), (depth - 900) / 9);
    // Another base brings its units along.
    auto& base = control<QComboBox>(desk.window(), "cboCompareBase");
    base.setCurrentText("metric.TLV");
    Q_EMIT base.activated(base.currentIndex());
    desk.wait();
    QCOMPARE(desk.value("Depth of Cover", "metric.TLV"), 300.0);
    QVERIFY(std::abs(desk.value("Depth of Cover", Own) - 274.32) < 1e-9);
    QVERIFY(desk.row("Row D") < 0);
    // The same everywhere is left out until it is asked for.
    QVERIFY(desk.row("Abutment Angle, Active Gob") < 0);
    click(desk.window(), "chkCompareOnlyDifferences");
    desk.wait();
    QCOMPARE(desk.value("Abutment Angle, Active Gob", Own), 21.0);
    // Scenarios are as their page has them.
    QVERIFY(desk.column("Scenario 1") > 0);
    desk.home.trigger(MenuEntry::Scenarios);
    click(desk.window(), "cmdScenariosAdd");
    desk.home.trigger(MenuEntry::Compare);
    desk.wait();
    QVERIFY(desk.column("Scenario 2") > 0);
    // Without them, and without a file.
    click(desk.window(), "chkCompareScenarios");
    desk.wait();
    QCOMPARE(desk.column("Scenario 1"), std::size_t{0});
    control<QComboBox>(desk.window(), "cboCompareFiles").setCurrentIndex(0);
    click(desk.window(), "cmdCompareRemove");
    desk.wait();
    QCOMPARE(desk.column("metric.TLV"), std::size_t{0});
    QCOMPARE(desk.value("Depth of Cover", Own), 900.0); // the case is the base again
}

void StudyCasesTest::everyNumberIsThatOfTheComparedCase() {
    CompareDesk desk;
    desk.addFiles({TELVO_EXAMPLES_DIR "/development-mains.TLV"});
    click(desk.window(), "chkCompareOnlyDifferences");
    desk.wait();
    const auto comparison =
        std::static_pointer_cast<const study::ui::ComparedCases>(desk.page().result().made);
    int looked = 0;
    for (std::size_t row = 0; row < desk.table().rows; ++row) {
        const auto& compared = comparison->comparison.rows[comparison->rows[row]];
        if (compared.kind != study::ComparedRow::Kind::Result) continue;
        for (std::size_t c = 2; c < 2 + comparison->comparison.cases.size(); ++c) {
            if (!compared.values[c - 2] || !study::Outcome::named(compared.name)) continue;
            const auto choices = desk.page().result().ofRow(row, static_cast<int>(c));
            const double run = inRun(choices.front().make(), compared.name);
            if (std::isinf(run)) continue; // no such barrier: the results hold 0
            QCOMPARE(desk.number(row, c), run);
            ++looked;
        }
    }
    QVERIFY(looked > 100);
    auto& table = control<QTableView>(desk.window(), "tblCompare");
    table.setCurrentIndex(table.model()->index(
        desk.row("Depth of Cover"), static_cast<int>(desk.column("development-mains.TLV"))));
    QTest::keyClick(&table, Qt::Key_Return);
    QCOMPARE(desk.program.session().project().Input.Anal, std::int16_t{0});
    QVERIFY(!desk.program.session().isSaved());
}

void StudyCasesTest::reportsAndPlansOfTwoCases() {
    CompareDesk desk;
    QVERIFY(desk.reports().contains("Both reports are the same."));
    desk.addFiles({TELVO_EXAMPLES_DIR "/development-mains.TLV"});
    auto& second = control<QComboBox>(desk.window(), "cboCompareSecond");
    second.setCurrentText("development-mains.TLV");
    Q_EMIT second.activated(second.currentIndex());
    QVERIFY(desk.reports().startsWith("--- two-side-gobs.TLV\n+++ development-mains.TLV\n"));
    QVERIFY(desk.reports().contains(QRegularExpression("\n- .*Depth of Cover.*900")));
    const auto& first = control<plot::ui::PlanView>(desk.window(), "planCompareFirst");
    const auto& other = control<plot::ui::PlanView>(desk.window(), "planCompareSecond");
    QVERIFY(first.drawing() && other.drawing());
}

void StudyCasesTest::filesThatCannotBeComparedAreNamed() {
    CompareDesk desk;
    desk.home.put(desk.home.path("broken.TLV"), "no case at all");
    desk.addFiles({desk.home.path("broken.TLV"), desk.home.path("missing.TLV")});
    const QString remark = desk.text("lblCompareRemark");
    QVERIFY(remark.contains("broken.TLV") && remark.contains("missing.TLV"));
    QVERIFY(remark.contains("left out"));
    // With nothing else to compare with that is what is wrong.
    click(desk.window(), "chkCompareScenarios");
    QTRY_VERIFY_WITH_TIMEOUT(desk.isShown("lblCompareProblem"), Patience);
    QVERIFY(desk.text("lblCompareProblem").contains("missing.TLV"));
    for (int i = 0; i < 2; ++i)
        click(desk.window(), "cmdCompareRemove");
    QTRY_VERIFY_WITH_TIMEOUT(
        desk.text("lblCompareProblem").startsWith("There is nothing yet to compare"), Patience);
    // A dropped file does as well.
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(TELVO_EXAMPLES_DIR "/development-mains.TLV")});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&desk.page(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&desk.page(), &drop);
    desk.wait();
    QVERIFY(desk.column("development-mains.TLV") > 0);
}

void StudyCasesTest::rowsAndRunsAreCompared() {
    CompareDesk desk;
    QVERIFY(!control(desk.window(), "cmdCompareAddRun").isEnabled()); // nothing was run yet
    // Marked rows of another page.
    desk.home.trigger(MenuEntry::TableOfValues);
    desk.wait();
    auto& rows = control<QTableView>(desk.window(), "tblTable");
    const double depth = desk.number(1, 1), factor = desk.number(1, 2);
    rows.setFocus();
    rows.selectRow(1);
    rows.selectionModel()->select(rows.model()->index(3, 0),
                                  QItemSelectionModel::Select | QItemSelectionModel::Rows);
    const QPoint cell = rows.visualRect(rows.model()->index(1, 0)).center();
    inModal(
        "mnuStudyPlace",
        [&] {
            QContextMenuEvent event(QContextMenuEvent::Mouse, cell,
                                    rows.viewport()->mapToGlobal(cell));
            QApplication::sendEvent(rows.viewport(), &event);
        },
        [](QWidget& menu) {
            for (QAction* action : static_cast<QMenu&>(menu).actions())
                if (action->text() == "Add 2 Rows to &Compare") action->trigger();
        });
    QCOMPARE(desk.home.status(), "2 cases added to Compare");
    // A run of the case as it was.
    desk.home.trigger(MenuEntry::StabilityFactors);
    project::ProjectInput values = desk.program.session().project().Input;
    values.EntryHeight = 9;
    desk.program.session().acceptParameters(values);
    desk.home.trigger(MenuEntry::Compare);
    desk.wait();
    inModal(
        "mnuCompareRuns", [&] { click(desk.window(), "cmdCompareAddRun"); },
        [](QWidget& menu) { static_cast<QMenu&>(menu).actions().constFirst()->trigger(); });
    desk.wait();
    QVERIFY2(desk.page().headline().starts_with("5 cases"), desk.page().headline().c_str());
    const std::string row = "Row 2: Depth of Cover " + generalNumber(depth) + " ft";
    const std::string run = "Run 1, two-side-gobs.TLV, depth 900";
    QCOMPARE(desk.value("Depth of Cover", row), depth);
    QVERIFY(desk.value(Factor, row) == factor);
    QCOMPARE(desk.value("Entry Height", run), 5.5);
    QCOMPARE(desk.value("Entry Height", Own), 9.0);
    // One is taken out again.
    auto& added = control<QComboBox>(desk.window(), "cboCompareFiles");
    QCOMPARE(added.count(), 3);
    added.setCurrentIndex(0);
    click(desk.window(), "cmdCompareRemove");
    desk.wait();
    QCOMPARE(desk.column(row), 0U);
    QVERIFY(desk.column(run) > 0);
}

QTEST_MAIN(StudyCasesTest)

#include "studyCases_test.moc"
