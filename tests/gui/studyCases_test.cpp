// SPDX-License-Identifier: GPL-3.0-or-later
//
// Pages of the studies that put cases side by side: scenarios.
#include "study/questions/scenarios.h"
#include "studyDesk.h"

#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
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
        QTRY_VERIFY(!editor<QWidget>("txtCell")); // its text is taken a little later
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
        QTRY_VERIFY(!editor<QComboBox>("cboCell"));
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
    QTRY_COMPARE(desk.cell(2, "Scenario"), "High");
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

QTEST_MAIN(StudyCasesTest)

#include "studyCases_test.moc"
