// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/ui/frmTELVOParm.h"

#include "goodCase.h"
#include "GuiTest.h"
#include "project/advisories.h"
#include "project/CaseFile.h"
#include "run/caseRun.h"
#include "run/faultWords.h"

#include <memory>
#include <QButtonGroup>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>

using namespace telvo;
using namespace telvo::test;
using project::ui::frmTELVOParm;

namespace {

constexpr std::string_view Discard =
    "Project Parameters: Message: Changes in Input Data will be discarded. Proceed?";

/// The form on an open case, with what its buttons hand out.
struct OpenForm {
    explicit OpenForm(project::ProjectCase current, bool confirmCancel = true) {
        open.Project = std::move(current);
        form = std::make_unique<frmTELVOParm>(
            open, confirmCancel,
            project::ui::ParameterActions{
                [this](const project::ProjectInput& values) {
                    const bool modified = values != open.Project.Input;
                    open.Project.Input = values;
                    ++accepted;
                    return modified;
                },
                [this](const project::ProjectCase& trial) -> std::optional<Refusal> {
                    trials.push_back(trial.Input);
                    auto outcome = run::runCase(trial);
                    if (auto* refused = std::get_if<Refusal>(&outcome)) return *refused;
                    return std::nullopt;
                },
                [](const project::ProjectCase& trial) {
                    project::KeyFigures figures;
                    auto outcome = run::runCase(trial);
                    if (const auto* fault = std::get_if<Fault>(&outcome))
                        outcome = run::asRefusal(*fault, trial.Units);
                    if (const auto* refused = std::get_if<Refusal>(&outcome)) {
                        figures.why = refused->message;
                        figures.whyControl = refused->control;
                    } else {
                        figures.DevelopmentSF = "1";
                    }
                    return figures;
                },
                {}},
            ui::FormServices{messages, {}});
        show(*form);
    }
    QString text(const char* name) { return control<QLineEdit>(*form, name).text(); }
    int tab() { return control<QTabWidget>(*form, "SSTab1").currentIndex(); }
    void chooseEntries(const char* count) {
        auto& list = control<QComboBox>(*form, "Combo1");
        list.setFocus();
        list.setCurrentText(count);
        Q_EMIT list.activated(list.currentIndex());
    }

    RecordedMessages messages;
    project::OpenCase open;
    std::vector<project::ProjectInput> trials;
    int accepted = 0;
    std::unique_ptr<frmTELVOParm> form;
};

using tests::goodCase;

} // namespace

class ParameterFormTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void opensOnTheProjectAndTakesItBackUnchanged();
    void everyControlEditsItsNumberAlone();
    void typedValuesReachTheProjectOnOk();
    void everyRefusalShowsItsTabAndControl_data();
    void everyRefusalShowsItsTabAndControl();
    void automaticValuesFollowTheTyping();
    void equalSpacingFollowsTheFirstDistanceAndTheCount();
    void rowsAndSlabCutsExcludeEachOther();
    void advisoriesComeOncePerLeave();
    void cancelAsksWhenItIsToAsk();
    void resultsComputeFromTheWorkingCopyAlone();
    void automaticValuesOfAnotherCaseAreTold();
    void aDashSaysWhyAndMarksTheField();
    void aNewCaseIsNoMistakeYet();
    void everyControlIsNamedAndExplained();
    void halfReadNumbersAreSettled();
    void aPastedUnitIsConvertedAfterSayingSo();
    void longNumbersShowTheirFirstDigits();
    void advisoriesComeWhateverWayTheBoxIsLeft_data();
    void advisoriesComeWhateverWayTheBoxIsLeft();
};

void ParameterFormTest::opensOnTheProjectAndTakesItBackUnchanged() {
    OpenForm f(goodCase());
    QCOMPARE(f.messages.lastStatus(), "Editing Project Parameters");
    QCOMPARE(control<QLineEdit>(*f.form, "txtEntryHeight").selectedText(), "6"); // to be typed over
    QCOMPARE(f.text("txtArchFactor"), "0.6");
    QVERIFY(control<QCheckBox>(*f.form, "chkEqual").isChecked());
    QVERIFY(control(*f.form, "txtXcutCenters_3").isVisible());
    QVERIFY(!control(*f.form, "txtXcutCenters_4").isVisible());
    QVERIFY(!control(*f.form, "txtBreadthAMZ").isEnabled());
    click(*f.form, "cmdOK");
    QCOMPARE(f.accepted, 1);
    QCOMPARE(f.messages.lastStatus(), "Project Parameters Not Modified");
    QVERIFY(f.open.Project.Input == goodCase().Input);
    QVERIFY(f.messages.asked.empty());
}

void ParameterFormTest::everyControlEditsItsNumberAlone() {
    project::ProjectCase current = goodCase();
    auto& in = current.Input;
    in.NumberEntries = project::MaxEntries;
    for (int i = 1; i < project::MaxEntries; ++i)
        in.XcutCenters[i] = 80 + i;
    in.AMZ = in.Arch = 0; // no value follows another
    OpenForm f(current);
    for (const project::FieldId id : project::RecordNumbers) {
        const project::InputField& row = project::rowOf(id.field);
        if (!row.isTextBox() && !row.isFlag()) continue;
        const std::string name = project::controlOf(id);
        project::ProjectInput expected = current.Input;
        set(expected, id, row.isFlag() ? 1 : 0.75);
        if (row.isTextBox()) {
            auto& box = control<QLineEdit>(*f.form, name.c_str());
            const QString was = box.text();
            QCOMPARE(box.text().toDouble(), project::shownValue(current.Input, id));
            box.setText("0.75");
            QVERIFY2(f.form->values() == expected, name.c_str());
            box.setText(was);
        } else {
            auto& box = control<QCheckBox>(*f.form, name.c_str());
            box.setChecked(true);
            const project::ProjectInput now = f.form->values();
            QCOMPARE(get(now, id), 1.0);
            if (row.tab == project::ParameterTab::RetreatMining) // the others bring their value
                QVERIFY2(now == expected, name.c_str());
            box.setChecked(false);
            // What they brought stays as entered; back to what the case has.
            for (const auto field : {project::Field::BreadthAMZ, project::Field::ArchFactor})
                control<QLineEdit>(*f.form, project::controlOf(field).c_str())
                    .setText(QString::fromStdString(project::shownText(current.Input, field)));
        }
    }
}

void ParameterFormTest::typedValuesReachTheProjectOnOk() {
    OpenForm f(goodCase());
    f.chooseEntries("5");
    click(*f.form, "chkEqual"); // off
    type(*f.form, "txtXcutCenters_4", "72,5");
    type(*f.form, "txtXcutAngle", "60");
    control<QTabWidget>(*f.form, "SSTab1").setCurrentIndex(2);
    click(*f.form, "optAnal_2");
    type(*f.form, "txtBarrierFirstGob", "150");
    click(*f.form, "chkRowC");
    type(*f.form, "txtWidthC", "55.5");
    QTest::keyClick(f.form.get(), Qt::Key_Return); // OK is the default button
    const auto& in = f.open.Project.Input;
    QCOMPARE(in.NumberEntries, std::int16_t{5});
    QCOMPARE(in.XcutCenters[4], 72.5);
    QCOMPARE(in.XcutAngle, 60.0);
    QCOMPARE(in.Anal, std::int16_t{2});
    QCOMPARE(in.BarrierFirstGob, 150.0);
    QCOMPARE(in.RowC, std::int16_t{1});
    QCOMPARE(in.WidthC, 55.5F);
    QVERIFY(f.open.Working == in);
    QCOMPARE(f.messages.lastStatus(), "Project Parameters Modified");
}

void ParameterFormTest::everyRefusalShowsItsTabAndControl_data() {
    QTest::addColumn<int>("anal");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("message");
    const auto row = [](int anal, const char* name, const char* text, int tab,
                        const char* message) {
        QTest::addRow("%s %s", name, text)
            << anal << QString(name) << QString(text) << tab << QString(message);
    };
    row(0, "txtEntryHeight", "0", 0, "Invalid entry height");
    row(0, "txtDepthCover", "", 0, "Invalid depth of cover");
    row(0, "txtXcutAngle", "29.9", 0,
        "Crosscut Angle: Value '29.9' is outside input range Valid range is: 30-90");
    row(0, "txtEntryWidth", "-1", 0, "Invalid entry width");
    row(0, "txtXcutSpacing", "20", 0, "Invalid crosscut spacing");
    row(0, "txtXcutCenters_2", "0", 0, "Invalid entry spacing");
    row(0, "txtXcutCenters_2", "20", 0, "Entry spacing should be more than Entry Width");
    row(0, "txtCoalStrength", "0", 1, "Invalid in situ coal strength");
    row(0, "txtUnitWeight", "0", 1, "Invalid overburden unit weight");
    row(0, "txtBreadthAMZ", "0", 1, "Invalid breadth of AMZ");
    row(0, "txtArchFactor", "0.27", 1, "Invalid Arch Factor");
    row(0, "txtWidthC", "0", 2, "Invalid Pillar Width for Row C");
    row(0, "txtWidthD", "-5", 2, "Invalid Pillar Width for Row D");
    row(0, "txtExtentActiveGob", "-1", 2, "Invalid extent of active gob");
    row(1, "txtAbutmentAngleActiveGob", "91", 2, "Invalid abutment angle of active gob");
    row(2, "txtExtentFirstGob", "-1", 2, "Invalid extent of first gob");
    row(2, "txtAbutmentAngleFirstGob", "-1", 2, "Invalid abutment angle of first gob");
    row(2, "txtBarrierFirstGob", "-1", 2, "Invalid extent of barrier of first gob");
    row(2, "txtSlabcutFirstGob", "1", 2, "Invalid extent of slab cut in barrier of first gob");
    row(3, "txtSlabcutSecondGob", "-1", 2, "Invalid extent of slab cut in barrier of second gob");
    row(3, "txtExtentSecondGob", "-1", 2, "Invalid extent of second gob");
    row(3, "txtAbutmentAngleSecondGob", "91", 2, "Invalid abutment angle of second gob");
    row(4, "txtSlabcutFirstGob", "1", 2,
        "Cannot take slab cut from first side barrier when Row A pillars are left");
    row(4, "txtSlabcutSecondGob", "1", 2,
        "Cannot take slab cut from second side barrier when Row B pillars are left");
    row(3, "txtBarrierSecondGob", "-1", 2, "Invalid extent of barrier of second gob");
}

void ParameterFormTest::everyRefusalShowsItsTabAndControl() {
    QFETCH(int, anal);
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(int, tab);
    QFETCH(QString, message);
    project::ProjectCase current = goodCase();
    const bool rowsLeft = anal == 4; // two side gobs with rows A and B left
    current.Input.Anal = static_cast<std::int16_t>(std::min(anal, 3));
    current.Input.RowA = current.Input.RowB = rowsLeft ? 1 : 0;
    current.Input.AMZ = current.Input.Arch = 0;
    current.Input.RowC = name == "txtWidthC" ? 1 : 0;
    current.Input.RowD = name == "txtWidthD" ? 1 : 0;
    OpenForm f(current);
    click(*f.form, "chkEqual");
    auto& box = control<QLineEdit>(*f.form, name.toUtf8());
    control<QTabWidget>(*f.form, "SSTab1").setCurrentIndex(tab);
    typeInto(box, text);
    // Marked while it is typed, with the message as its tool tip.
    QVERIFY(message.startsWith(box.toolTip().section('\n', 0, 0)) &&
            box.toolTip().contains("Valid: "));
    control<QTabWidget>(*f.form, "SSTab1").setCurrentIndex((tab + 1) % 3);
    QTest::qWait(1);
    f.messages.asked.clear();
    f.form->accept();
    QCOMPARE(QString::fromStdString(f.messages.asked.back()).section(": ", 2).replace('\n', ' '),
             message);
    QCOMPARE(f.tab(), tab);
    QVERIFY(box.hasFocus());
    QVERIFY(f.form->isVisible());
    QCOMPARE(f.accepted, 0);
}

void ParameterFormTest::automaticValuesFollowTheTyping() {
    OpenForm f(goodCase());
    type(*f.form, "txtDepthCover", "500");
    QCOMPARE(f.text("txtBreadthAMZ"), "112");  // 5 sqrt(500) = 111.8
    QCOMPARE(f.text("txtArchFactor"), "0.79"); // 1 - 0.28 ln(500 / 240) = 0.7945
    type(*f.form, "txtDepthCover", "");
    QCOMPARE(f.text("txtArchFactor"), "0.79"); // waits for a depth
    control<QTabWidget>(*f.form, "SSTab1").setCurrentIndex(1);
    click(*f.form, "chkArch");
    QCOMPARE(f.messages.asked.back(),
             "Project Parameters: Range Warning: Warning: " + std::string(project::ArchAdvisory));
    QVERIFY(control(*f.form, "txtArchFactor").isEnabled());
    type(*f.form, "txtArchFactor", "0.9");
    click(*f.form, "chkArch");
    type(*f.form, "txtDepthCover", "500");
    QCOMPARE(f.text("txtArchFactor"), "0.79");

    // 300 m with 75 m of panel: 5 sqrt(984.25) ft = 47.8 m.
    project::ProjectCase metric = goodCase(project::Metric);
    metric.Input.DepthCover = 300;
    OpenForm m(metric);
    QCOMPARE(m.text("txtBreadthAMZ"), "48");
}

void ParameterFormTest::equalSpacingFollowsTheFirstDistanceAndTheCount() {
    OpenForm f(goodCase());
    QVERIFY(!control(*f.form, "txtXcutCenters_2").isEnabled());
    type(*f.form, "txtXcutCenters_1", "100");
    QCOMPARE(f.text("txtXcutCenters_3"), "100");
    f.chooseEntries("6");
    QCOMPARE(f.text("txtNumberEntries"), "6");
    QCOMPARE(f.text("txtXcutCenters_5"), "100");
    QVERIFY(control(*f.form, "txtXcutCenters_5").isVisible());
    click(*f.form, "chkEqual");
    QVERIFY(control(*f.form, "txtXcutCenters_5").isEnabled());
    f.chooseEntries("2");
    QVERIFY(!control(*f.form, "txtXcutCenters_2").isVisible());

    project::ProjectCase uneven = goodCase();
    uneven.Input.XcutCenters[3] = 70;
    QVERIFY(!control<QCheckBox>(*OpenForm(uneven).form, "chkEqual").isChecked());
}

void ParameterFormTest::rowsAndSlabCutsExcludeEachOther() {
    project::ProjectCase current = goodCase();
    current.Input.Anal = 2;
    current.Input.BarrierFirstGob = 100;
    current.Input.SlabcutFirstGob = 40;
    OpenForm f(current);
    control<QTabWidget>(*f.form, "SSTab1").setCurrentIndex(2);
    click(*f.form, "chkRowA");
    QCOMPARE(f.messages.asked.back(),
             "Project Parameters: Logic Error: Cannot leave Row A pillars when a slab cut is taken "
             "from the first side barrier");
    QVERIFY(!control<QCheckBox>(*f.form, "chkRowA").isChecked());
    click(*f.form, "chkRowB");
    QVERIFY(control<QCheckBox>(*f.form, "chkRowB").isChecked());
    QCOMPARE(f.messages.asked.size(), std::size_t{1});
}

void ParameterFormTest::advisoriesComeOncePerLeave() {
    OpenForm f(goodCase());
    control<QTabWidget>(*f.form, "SSTab1").setCurrentIndex(1);
    type(*f.form, "txtCoalStrength", "850");
    QVERIFY(f.messages.asked.empty());
    QTest::keyClick(&control(*f.form, "txtCoalStrength"), Qt::Key_Tab);
    QTRY_COMPARE(f.messages.asked.size(), std::size_t{1});
    QCOMPARE(f.messages.asked[0], "Project Parameters: Range Warning: Warning: " +
                                      std::string(project::CoalStrengthAdvisory));
    QTest::qWait(50);
    QCOMPARE(f.messages.asked.size(), std::size_t{1});
    // Never on the way to Cancel or Help.
    control(*f.form, "txtCoalStrength").setFocus();
    control(*f.form, "cmdHelp").setFocus();
    QTest::qWait(50);
    QCOMPARE(f.messages.asked.size(), std::size_t{1});
    // Choosing the loading condition of two side gobs; but not when the form opens on it.
    control<QTabWidget>(*f.form, "SSTab1").setCurrentIndex(2);
    click(*f.form, "optAnal_3");
    QCOMPARE(f.messages.asked.back(), "Project Parameters: Range Warning: Warning: " +
                                          std::string(project::TwoSideGobsAdvisory));
    project::ProjectCase two = goodCase();
    two.Input.Anal = 3;
    QVERIFY(OpenForm(two).messages.asked.empty());

    // The metric defaults of a new case differ from the rounded figures of the data base.
    OpenForm m(project::newCase(project::Metric));
    control<QTabWidget>(*m.form, "SSTab1").setCurrentIndex(1);
    control(*m.form, "txtUnitWeight").setFocus();
    QTest::keyClick(&control(*m.form, "txtUnitWeight"), Qt::Key_Tab);
    // The tab's first box had the focus before.
    QTRY_COMPARE(m.messages.asked.size(), std::size_t{2});
    QVERIFY(m.messages.asked[1].ends_with(project::UnitWeightAdvisory));
}

void ParameterFormTest::advisoriesComeWhateverWayTheBoxIsLeft_data() {
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("way");
    for (const char* way : {"tab key", "tab clicked", "Alt and letter", "another box clicked"}) {
        QTest::addRow("%s, strength", way) << 1 << "txtCoalStrength" << way;
        QTest::addRow("%s, angle", way) << 2 << "txtAbutmentAngleActiveGob" << way;
    }
    for (const char* way : {"cancel clicked", "help clicked", "escape"})
        QTest::addRow("%s", way) << 1 << "txtCoalStrength" << way;
}

void ParameterFormTest::advisoriesComeWhateverWayTheBoxIsLeft() {
    QFETCH(int, tab);
    QFETCH(QString, box);
    QFETCH(QString, way);
    OpenForm f(goodCase(), false);
    auto& tabs = control<QTabWidget>(*f.form, "SSTab1");
    tabs.setCurrentIndex(tab);
    type(*f.form, box.toUtf8(), tab == 1 ? "850" : "25");
    auto* bar = tabs.findChild<QTabBar*>();
    if (way == "tab key") QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    if (way == "tab clicked") QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(0).center());
    if (way == "Alt and letter")
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_G, Qt::AltModifier);
    if (way == "another box clicked")
        QTest::mouseClick(&control(*f.form, tab == 1 ? "txtUnitWeight" : "txtExtentActiveGob"),
                          Qt::LeftButton);
    if (way == "cancel clicked") {
        control(*f.form, "cmdCancel").setFocus(Qt::MouseFocusReason);
        click(*f.form, "cmdCancel");
    }
    if (way == "help clicked") {
        control(*f.form, "cmdHelp").setFocus(Qt::MouseFocusReason);
        click(*f.form, "cmdHelp");
    }
    if (way == "escape") QTest::keyClick(f.form.get(), Qt::Key_Escape);
    const bool due = !(way == "cancel clicked" || way == "help clicked" || way == "escape");
    QTest::qWait(60);
    QCOMPARE(f.messages.asked.size(), std::size_t{due ? 1U : 0U});
    if (way == "tab clicked" || way.startsWith("Alt")) QCOMPARE(tabs.currentIndex(), 0);
    if (!due) return;
    QVERIFY(f.messages.asked[0].starts_with("Project Parameters: Range Warning: Warning: The "));
    click(*f.form, "cmdOK"); // not again
    QCOMPARE(f.messages.asked.size(), std::size_t{1});
}

/// A record from outside: 5 sqrt(400) is 100, and 1 - 0.28 ln(400 / 240) is 0.86.
void ParameterFormTest::automaticValuesOfAnotherCaseAreTold() {
    project::ProjectCase current = goodCase();
    current.Input.DepthCover = 400;
    current.Input.BreadthAMZ = 150;
    current.Input.ArchFactor = 0.86F;
    {
        OpenForm f(current, false);
        QVERIFY(control<QLabel>(*f.form, "lblAutomatic")
                    .text()
                    .startsWith("Breadth of AMZ 150 ft is marked automatic; the depth of 400 ft "
                                "gives 100 ft. The form shows"));
        QCOMPARE(f.text("txtBreadthAMZ"), "100");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_U, Qt::AltModifier);
        QTRY_VERIFY(!control(*f.form, "fraAutomatic").isVisible());
        click(*f.form, "cmdOK");
        QCOMPARE(f.open.Project.Input.BreadthAMZ, 100.0);
        QCOMPARE(f.messages.lastStatus(), "Project Parameters Modified");
    }
    OpenForm f(current, false);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_K, Qt::AltModifier);
    QTRY_COMPARE(f.text("txtBreadthAMZ"), "150");
    QVERIFY(!control<QCheckBox>(*f.form, "chkAMZ").isChecked());
    QVERIFY(control<QCheckBox>(*f.form, "chkArch").isChecked());
    click(*f.form, "cmdOK");
    QCOMPARE(f.open.Project.Input.BreadthAMZ, 150.0);
    QCOMPARE(f.open.Project.Input.AMZ, std::int16_t{0});
    QVERIFY(!OpenForm(goodCase()).form->findChild<QWidget*>("fraAutomatic"));
}

void ParameterFormTest::aDashSaysWhyAndMarksTheField() {
    project::ProjectCase current = goodCase();
    current.Input.SlabcutFirstGob = 10; // unused, and wider than the barrier of 0
    OpenForm f(current);
    const auto label = [&f](const char* name) { return &control<QLabel>(*f.form, name); };
    auto& slab = control(*f.form, "txtSlabcutFirstGob");
    const QString why = "Invalid extent of slab cut in barrier of first gob";
    QTRY_COMPARE(label("lblWhy")->text(), "No factors: " + why);
    QCOMPARE(label("lblRetreatSF")->text(), "\u2013");
    QCOMPARE(label("lblRetreatSF")->toolTip(), why);
    QVERIFY(slab.toolTip().startsWith(why));
    type(*f.form, "txtSlabcutFirstGob", "0");
    type(*f.form, "txtAbutmentAngleActiveGob", "0"); // the engine's own stop
    const QString stop = "Abutment Angle, Active Gob (degrees): Front abutment load cannot be "
                         "computed: the abutment angle of the active gob is 0";
    QTRY_COMPARE(label("lblWhy")->text(), "No factors: " + stop);
    QVERIFY(control(*f.form, "txtAbutmentAngleActiveGob").toolTip().startsWith(stop));
    QVERIFY(!slab.toolTip().startsWith(why));
    type(*f.form, "txtAbutmentAngleActiveGob", "2 1");
    QTRY_COMPARE(label("lblWhy")->text(), "No factors: Abutment Angle, Active Gob: '2 1' is read "
                                          "as 2");
    type(*f.form, "txtAbutmentAngleActiveGob", "21");
    QTRY_VERIFY(!label("lblWhy")->isVisible());
    QCOMPARE(label("lblRetreatSF")->toolTip(), "There is no retreat without an active gob");
}

void ParameterFormTest::aNewCaseIsNoMistakeYet() {
    OpenForm f(project::newCase(project::English));
    auto& height = control(*f.form, "txtEntryHeight");
    QTest::qWait(80);
    QVERIFY(height.toolTip().startsWith("Entry Height"));
    QVERIFY(!control(*f.form, "lblWhy").isVisible());
    QTest::keyClick(&height, Qt::Key_Tab); // left without a value
    QVERIFY(height.toolTip().startsWith("Invalid entry height"));
    QVERIFY(control(*f.form, "txtEntryWidth").toolTip().startsWith("Entry Width"));
    click(*f.form, "cmdOK");
    QVERIFY(control(*f.form, "txtEntryWidth").toolTip().startsWith("Invalid entry width"));
}

void ParameterFormTest::cancelAsksWhenItIsToAsk() {
    OpenForm f(goodCase());
    type(*f.form, "txtEntryHeight", "7");
    click(*f.form, "cmdCancel"); // answered No
    QCOMPARE(f.messages.asked.back(), Discard);
    QVERIFY(f.form->isVisible());
    QTest::keyClick(f.form.get(), Qt::Key_Escape);
    f.form->close();
    QCOMPARE(f.messages.asked.size(), std::size_t{3});
    QVERIFY(f.form->isVisible());
    f.messages.answers = {Answer::Yes};
    f.form->close();
    QVERIFY(!f.form->isVisible());
    QCOMPARE(f.messages.lastStatus(), "Project Parameters Not Modified");
    QVERIFY(f.open.Project.Input == goodCase().Input);

    OpenForm quiet(goodCase(), false);
    click(*quiet.form, "cmdCancel");
    QVERIFY(!quiet.form->isVisible() && quiet.messages.asked.empty());
}

void ParameterFormTest::resultsComputeFromTheWorkingCopyAlone() {
    OpenForm f(goodCase());
    type(*f.form, "txtEntryHeight", "7");
    click(*f.form, "cmdResults");
    QCOMPARE(f.trials.size(), std::size_t{1});
    QCOMPARE(f.trials[0].EntryHeight, 7.0);
    QCOMPARE(f.open.Working.EntryHeight, 7.0);
    QCOMPARE(f.open.Project.Input.EntryHeight, 6.0);
    type(*f.form, "txtEntryWidth", "0");
    click(*f.form, "cmdResults");
    QCOMPARE(f.messages.asked.back(), "Project Parameters: Range Error: Invalid entry width");
    QVERIFY(control(*f.form, "txtEntryWidth").hasFocus());
}

void ParameterFormTest::everyControlIsNamedAndExplained() {
    OpenForm f(goodCase());
    for (auto* widget : f.form->findChildren<QWidget*>()) {
        if (widget->focusPolicy() == Qt::NoFocus || widget->objectName().startsWith("qt_") ||
            qobject_cast<QTabWidget*>(widget) || widget->objectName().isEmpty())
            continue;
        QVERIFY2(!widget->accessibleName().isEmpty(), qPrintable(widget->objectName()));
    }
    control(*f.form, "txtEntryHeight").setFocus();
    for (const char* next : {"txtDepthCover", "txtXcutAngle", "txtEntryWidth", "txtXcutSpacing",
                             "Combo1", "chkEqual", "txtXcutCenters_1"}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget()->objectName(), next);
    }
    for (auto* edit : f.form->findChildren<ui::NumberEdit*>())
        QVERIFY2(edit->toolTip().contains("Valid: "), qPrintable(edit->objectName()));
}

/// No value goes into the case or a run by half of its text.
void ParameterFormTest::halfReadNumbersAreSettled() {
    OpenForm f(goodCase());
    const std::string wrong =
        "Project Parameters: Invalid Character: 'x' is not a character of a number";
    type(*f.form, "txtEntryHeight", "6x");
    QVERIFY(f.messages.asked.empty());
    control(*f.form, "txtDepthCover").setFocus();
    QTRY_COMPARE(f.messages.asked.size(), std::size_t{1});
    QCOMPARE(f.messages.asked.back(), wrong);
    click(*f.form, "cmdOK");
    QCOMPARE(f.messages.asked.back(), wrong);
    QVERIFY(control(*f.form, "txtEntryHeight").hasFocus());
    type(*f.form, "txtEntryHeight", "6");

    type(*f.form, "txtDepthCover", "1 200");
    for (const char* button : {"cmdResults", "cmdOK"}) {
        f.messages.asked.clear();
        click(*f.form, button);
        QCOMPARE(f.messages.asked.size(), std::size_t{1});
        QCOMPARE(f.messages.asked.back(), "Project Parameters: Error: Depth of Cover: '1 200' is "
                                          "read as 1. Enter one number.");
    }
    QVERIFY(f.trials.empty());
    QCOMPARE(f.accepted, 0);
    type(*f.form, "txtEntryWidth", "abc"); // what the check refuses keeps its message
    click(*f.form, "cmdOK");
    QCOMPARE(f.messages.asked.back(), "Project Parameters: Range Error: Invalid entry width");
    type(*f.form, "txtEntryWidth", "20");
    type(*f.form, "txtDepthCover", "1200");
    click(*f.form, "cmdOK");
    QCOMPARE(f.open.Project.Input.DepthCover, 1200.0);
}

void ParameterFormTest::aPastedUnitIsConvertedAfterSayingSo() {
    OpenForm f(goodCase());
    auto& depth = control<ui::NumberEdit>(*f.form, "txtDepthCover");
    const auto paste = [&depth](const char* text) {
        QApplication::clipboard()->setText(text);
        depth.setFocus();
        depth.selectAll();
        depth.paste();
        return depth.text();
    };
    QCOMPARE(paste("1,234.5 ft"), "1234.5");
    QVERIFY(f.messages.asked.empty());
    f.messages.answers = {Answer::No, Answer::Yes};
    QCOMPARE(paste("275 m"), "1234.5");
    QCOMPARE(f.messages.asked.back(),
             "Project Parameters: Message: 275 m is 902.231 ft. Enter 902.231?");
    QCOMPARE(paste("275 m"), "902.231");
    QCOMPARE(paste("6 psi"), "902.231");
    QCOMPARE(f.messages.asked.back(), "Project Parameters: Error: '6 psi' is not taken: 'psi' is "
                                      "no unit of this field, which is in ft.");
}

/// The metric defaults have 16 digits and more.
void ParameterFormTest::longNumbersShowTheirFirstDigits() {
    OpenForm m(project::newCase(project::Metric));
    control<QTabWidget>(*m.form, "SSTab1").setCurrentIndex(1);
    for (const char* name : {"txtCoalStrength", "txtUnitWeight"}) {
        auto& box = control<QLineEdit>(*m.form, name);
        QVERIFY(box.fontMetrics().horizontalAdvance(box.text()) + 8 < box.width());
    }
    auto& narrow = control<QLineEdit>(*m.form, "txtExtentActiveGob");
    narrow.setText("1234.56789012345678901234567890");
    QCOMPARE(narrow.cursorPosition(), 0);
}

QTEST_MAIN(ParameterFormTest)
#include "frmTELVOParm_test.moc"
