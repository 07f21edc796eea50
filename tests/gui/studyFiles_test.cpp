// SPDX-License-Identifier: GPL-3.0-or-later
//
// What the window of the studies reads and writes: study files, exports with their records,
// pictures, and the cases that it opens.
#include "study/file/Recorder.h"
#include "study/ui/studies/StudyChart.h"
#include "studyDesk.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QHeaderView>
#include <QImage>
#include <QMenu>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>

using namespace telvo;
using namespace telvo::test;
using study::ui::StudyChart;

namespace {

constexpr auto Example = TELVO_EXAMPLES_DIR "/two-side-gobs.TLV";

/// Studies of a case in the home, whose folder may be written to.
struct FileDesk : Desk {
    std::string casePath = home.path("panel.TLV");
    std::string studyPath = home.path("panel.study");

    explicit FileDesk(MenuEntry entry) : Desk(entry) {
        QVERIFY(writeFile(casePath, *readFile(Example)));
        openCase();
    }
    void openCase() {
        QVERIFY(program.session().LoadProjFile(casePath));
        wait();
    }
    bool isSaved() {
        return !window().windowTitle().endsWith('*') &&
               !control(window(), "cmdSaveStudy").isEnabled();
    }
    std::string onDisk() {
        const auto bytes = readFile(studyPath);
        return bytes ? *bytes : std::string();
    }
    void exportTo(const std::string& path) {
        home.dialogs.answers = {path};
        click(window(), "cmdExport");
        QTRY_VERIFY_WITH_TIMEOUT(control(window(), "cmdExport").isEnabled(), Patience);
    }
    StudyChart& chart() { return *page().findChild<StudyChart*>(); }
    /// Where a place of the picture lies on it.
    QPoint spotAt(std::size_t which) {
        const auto& spot = chart().drawing().spots[which];
        return QPointF(chart().xAxis->coordToPixel(spot.x), chart().yAxis->coordToPixel(spot.y))
            .toPoint();
    }
};

void fewSamples(FileDesk& desk) {
    auto& samples = control<QComboBox>(desk.window(), "cboUncertaintySamples");
    samples.setCurrentIndex(0);
    Q_EMIT samples.activated(0);
    desk.wait();
}

} // namespace

class StudyFilesTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void studiesAreKeptBesideTheCase();
    void aStudyFileFillsThePages();
    void scatterIsKeptToo();
    void anUntitledCaseIsSavedFirst();
    void exportsHaveARecordOfTheirRun_data();
    void exportsHaveARecordOfTheirRun();
    void picturesAreWrittenAndPrinted();
    void placesOpenTheirCase();
};

void StudyFilesTest::studiesAreKeptBesideTheCase() {
    FileDesk desk(MenuEntry::WhatMatters);
    for (const MenuEntry entry : {MenuEntry::TableOfValues, MenuEntry::FindValue,
                                  MenuEntry::DesignChart, MenuEntry::WhatMatters}) {
        desk.home.trigger(entry);
        desk.wait();
        QVERIFY(desk.isSaved()); // to look at a page asks for nothing
    }
    desk.choose("cboTornadoInput", "DepthCover");
    type(desk.window(), "txtTornadoHigh", "12");
    desk.wait();
    QVERIFY(!desk.isSaved());
    QVERIFY(desk.onDisk().empty());
    // The program does not end unasked.
    desk.home.answers = {Answer::Cancel};
    QVERIFY(!desk.home.quit());
    QVERIFY(desk.home.wasAsked("Save the studies of " + desk.casePath));
    QTest::keyClick(&desk.window(), Qt::Key_S, Qt::ControlModifier);
    QVERIFY(desk.isSaved());
    const std::string first = desk.onDisk();
    QVERIFY(first.find("case = \"panel.TLV\"") != std::string::npos);
    QVERIFY(first.find(", 12]") != std::string::npos);
    // A second page joins, and the case comes back with both.
    desk.home.trigger(MenuEntry::FindValue);
    desk.wait();
    type(desk.window(), "txtFindHigh", "150");
    desk.wait();
    click(desk.window(), "cmdSaveStudy");
    QVERIFY(desk.isSaved());
    QVERIFY(desk.onDisk().find("kind = [\"tornado\", \"find\"]") != std::string::npos);
    desk.open("deep-cover.TLV");
    desk.wait();
    QVERIFY(control<QLineEdit>(desk.window(), "txtTornadoHigh").text() != "12");
    // Somebody changed it meanwhile; nothing here is lost by reading it again.
    std::string other = desk.onDisk();
    other.replace(other.find(", 12]"), 5, ", 15]");
    QVERIFY(writeFile(desk.studyPath, other));
    desk.openCase();
    QVERIFY(desk.isSaved());
    QCOMPARE(control<QLineEdit>(desk.window(), "txtFindHigh").text(), "150");
    desk.home.trigger(MenuEntry::WhatMatters);
    desk.wait();
    desk.choose("cboTornadoInput", "DepthCover");
    QCOMPARE(control<QLineEdit>(desk.window(), "txtTornadoHigh").text(), "15");
}

void StudyFilesTest::aStudyFileFillsThePages() {
    FileDesk desk(MenuEntry::TableOfValues);
    const std::string text =
        "# TELVO study 1\n"
        "# ours\n"
        "\n"
        "kind = [\"tornado\", \"sweep\", \"find\", \"chart\", \"scenarios\", \"compare\"]\n"
        "case = \"panel.TLV\"\n"
        "units = \"english\"\n"
        "\n"
        "[tornado]\n"
        "output = \"BarrierSF.retreat.second\"\n"
        "picture = \"spider\"\n"
        "\n"
        "[sweep]\n"
        "outputs = [\"AMZLoad.retreat.front\"]\n"
        "line_at = 3000000\n"
        "\n"
        "[[sweep.vary]]\n"
        "input = \"EntryHeight\"\n"
        "values = [6, 6.5, 8]\n"
        "\n"
        "[find]\n"
        "input = \"XcutSpacing\"\n"
        "in = [70, 120]\n"
        "step = 2\n"
        "output = \"TELVOSF.retreat\"\n"
        "at_most = 1.7\n"
        "\n"
        "[chart]\n"
        "input = \"BarrierSecondGob\"\n"
        "in = [40, 200]\n"
        "step = 5\n"
        "over = \"DepthCover\"\n"
        "values = \"700:1100:100\"\n"
        "output = \"BarrierSF.retreat.second\"\n"
        "at_least = [1.3, 1.4, 1.5, 1.6, 1.7, 1.8, 1.9, \"suggested\"]\n"
        "\n"
        "[scenarios]\n"
        "columns = [\"EntryHeight\"]\n"
        "\n"
        "[[scenario]]\n"
        "name = \"deep\"\n"
        "set = { DepthCover = 1200 }\n"
        "\n"
        "[compare]\n"
        "with = [\"other.TLV\"]\n"
        "base = \"deep\"\n"
        "scenarios = true\n"
        "only_differences = true\n";
    QVERIFY(writeFile(desk.studyPath, text));
    QVERIFY(writeFile(desk.home.path("other.TLV"), *readFile(Example)));
    desk.open("deep-cover.TLV");
    desk.openCase();
    QCOMPARE(desk.page().result().table->rows, 3U);
    QCOMPARE(control<QLineEdit>(desk.window(), "txtTableList_1").text(), "6, 6.5, 8");
    QCOMPARE(control<QLineEdit>(desk.window(), "txtTableLevel").text(), "3000000");
    desk.home.trigger(MenuEntry::WhatMatters);
    desk.wait();
    QVERIFY(desk.page().headline().starts_with("Retreat factor of the second barrier"));
    desk.home.trigger(MenuEntry::FindValue);
    desk.wait();
    QCOMPARE(control<QLineEdit>(desk.window(), "txtFindTarget").text(), "1.7");
    QCOMPARE(control<QComboBox>(desk.window(), "cboFindSense").currentIndex(), 1);
    desk.home.trigger(MenuEntry::DesignChart);
    desk.wait();
    QCOMPARE(desk.page().result().table->columns.size(), 18U); // of eight targets
    desk.home.trigger(MenuEntry::Scenarios);
    desk.wait();
    QCOMPARE(desk.words(1, 0), "deep");
    desk.home.trigger(MenuEntry::Compare);
    desk.wait();
    QVERIFY(desk.page().headline().starts_with("3 cases"));
    QCOMPARE(control<QComboBox>(desk.window(), "cboCompareBase").currentText(), "deep");
    QVERIFY(desk.isSaved()); // nothing of it was changed by being shown
    click(desk.window(), "chkCompareOnlyDifferences");
    desk.wait();
    click(desk.window(), "cmdSaveStudy");
    std::string expected = text;
    expected.erase(expected.find("only_differences"));
    QCOMPARE(desk.onDisk(), expected);

    // A fault is one message with its line, and the file stays.
    std::string faulty = expected;
    faulty.replace(faulty.find("step = 2"), 8, "stop = 2");
    QVERIFY(writeFile(desk.studyPath, faulty));
    desk.home.trigger(MenuEntry::WhatMatters);
    desk.open("deep-cover.TLV");
    desk.openCase();
    QVERIFY(desk.home.wasAsked("panel.study, line 20: [find] needs step"));
    QCOMPARE(desk.onDisk(), faulty);
    QVERIFY(desk.isSaved());
    // Another file is taken by its button.
    QVERIFY(writeFile(desk.home.path("theirs.study"), expected));
    desk.home.dialogs.answers = {desk.home.path("theirs.study")};
    click(desk.window(), "cmdOpenStudy");
    desk.wait();
    QVERIFY(desk.page().headline().starts_with("Retreat factor of the second barrier"));
    QVERIFY(!desk.isSaved());
}

void StudyFilesTest::scatterIsKeptToo() {
    FileDesk desk(MenuEntry::HowSure);
    QVERIFY(desk.isSaved()); // to look at it changes nothing
    fewSamples(desk);
    desk.choose("cboUncertaintyOutcome", "AMZLoad.retreat.front");
    type(desk.window(), "txtUncertaintyTarget", "1000000");
    click(desk.window(), "cmdUncertaintyAddLimit");
    desk.home.trigger(MenuEntry::ShareCurve);
    type(desk.window(), "txtShareCurveStep", "30");
    desk.wait();
    QVERIFY(!desk.isSaved());
    const QString curve = desk.text("lblShareCurveHeadline");
    click(desk.window(), "cmdSaveStudy");
    QVERIFY(desk.isSaved());
    QVERIFY(desk.onDisk().find("[[uncertainty.limit]]") != std::string::npos);
    desk.open("deep-cover.TLV");
    desk.wait();
    desk.openCase();
    desk.wait();
    QVERIFY(desk.isSaved());
    QCOMPARE(control<QLineEdit>(desk.window(), "txtShareCurveStep").text(), "30");
    QCOMPARE(desk.text("lblShareCurveHeadline"), curve);
    desk.home.trigger(MenuEntry::HowSure);
    desk.wait();
    QCOMPARE(control<QComboBox>(desk.window(), "cboUncertaintySamples").currentText(), "8,192");
    auto& limits = control<QComboBox>(desk.window(), "cboUncertaintyLimit");
    QVERIFY(limits.findData("AMZLoad.retreat.front>=1000000") >= 0);
    // Another limit is one of the curve as well.
    const std::size_t columns =
        desk.window().page(study::ui::StudyKind::ShareCurve).result().table->columns.size();
    limits.setCurrentIndex(limits.findData("AMZLoad.retreat.front>=1000000"));
    click(desk.window(), "cmdUncertaintyRemoveLimit");
    desk.home.trigger(MenuEntry::ShareCurve);
    desk.wait();
    QCOMPARE(desk.page().result().table->columns.size(), columns - 3);
}

void StudyFilesTest::anUntitledCaseIsSavedFirst() {
    FileDesk desk(MenuEntry::WhatMatters);
    const auto choices = desk.page().result().ofRow(0, 0);
    QVERIFY(!choices.empty());
    auto& table = control<QTableView>(desk.window(), "tblTornado");
    table.setFocus();
    table.setCurrentIndex(table.model()->index(0, 0));
    QTest::keyClick(&table, Qt::Key_Return);
    QVERIFY(!desk.program.session().hasFile());
    desk.wait();
    desk.choose("cboTornadoInput", "DepthCover");
    type(desk.window(), "txtTornadoHigh", "12");
    desk.home.answers = {Answer::No};
    click(desk.window(), "cmdSaveStudy");
    QVERIFY(desk.home.wasAsked("which has none yet. Save the case now?"));
    QVERIFY(!readFile(desk.home.path("mine.study")));
    desk.home.answers = {Answer::Yes};
    desk.home.dialogs.answers = {desk.home.path("mine.TLV")};
    click(desk.window(), "cmdSaveStudy");
    QVERIFY(readFile(desk.home.path("mine.TLV")));
    QVERIFY(readFile(desk.home.path("mine.study")));
    QVERIFY(desk.isSaved());
}

void StudyFilesTest::exportsHaveARecordOfTheirRun_data() {
    QTest::addColumn<int>("entry");
    QTest::newRow("tornado") << static_cast<int>(MenuEntry::WhatMatters);
    QTest::newRow("table") << static_cast<int>(MenuEntry::TableOfValues);
    QTest::newRow("find") << static_cast<int>(MenuEntry::FindValue);
    QTest::newRow("design") << static_cast<int>(MenuEntry::DesignChart);
    QTest::newRow("compare") << static_cast<int>(MenuEntry::Compare);
    QTest::newRow("sure") << static_cast<int>(MenuEntry::HowSure);
    QTest::newRow("shares") << static_cast<int>(MenuEntry::ShareCurve);
}

void StudyFilesTest::exportsHaveARecordOfTheirRun() {
    QFETCH(const int, entry);
    FileDesk desk(MenuEntry::Scenarios);
    const bool isTable = entry == static_cast<int>(MenuEntry::TableOfValues);
    click(desk.window(), "cmdScenariosAdd");
    desk.wait();
    if (entry >= static_cast<int>(MenuEntry::HowSure)) {
        desk.home.trigger(MenuEntry::HowSure);
        fewSamples(desk);
    }
    desk.home.trigger(static_cast<MenuEntry>(entry));
    if (entry == static_cast<int>(MenuEntry::ShareCurve))
        type(desk.window(), "txtShareCurveStep", "30");
    desk.wait();
    const auto check = [&](const char* name, bool same) {
        const std::string path = desk.home.path(name);
        desk.exportTo(path);
        const std::string recordPath = study::recordFileOf(path);
        const auto bytes = readFile(recordPath);
        QVERIFY(bytes);
        const auto record = study::readRecord(*bytes, recordPath);
        QVERIFY2(record, record ? "" : record.fault().message.c_str());
        QCOMPARE(record->file, std::string(name));
        QCOMPARE(record->fileDigest == record->digest, same);
        const auto written = readFile(path);
        const auto verified = study::verify(*record, *written);
        QVERIFY2(verified, verified ? "" : verified.fault().message.c_str());
        QVERIFY2(verified->same, verified->difference.c_str());
        const auto changed = study::verify(*record, *written + "1");
        QVERIFY(changed && !changed->same);
    };
    check("out.csv", isTable);
    check("book.xlsx", false);
    if (!isTable) return;
    auto& table = control<QTableView>(desk.window(), "tblTable");
    QTest::mouseClick(table.horizontalHeader()->viewport(), Qt::LeftButton, {},
                      QPoint(table.columnViewportPosition(2) + 10, 5));
    QTRY_VERIFY_WITH_TIMEOUT(!desk.page().table().rows().order().empty(), Patience);
    check("sorted.csv", false);
    // What is no record is not replaced by one.
    const std::string mine = desk.home.path("mine.study.json");
    QVERIFY(writeFile(mine, "{}"));
    desk.exportTo(desk.home.path("mine.csv"));
    QTRY_VERIFY_WITH_TIMEOUT(desk.home.wasAsked("is there already and is no record of a run"),
                             Patience);
    QCOMPARE(*readFile(mine), "{}");
    QVERIFY(readFile(desk.home.path("mine.csv")));
}

void StudyFilesTest::picturesAreWrittenAndPrinted() {
    FileDesk desk(MenuEntry::WhatMatters);
    for (const char* name : {"out.svg", "out.pdf"})
        desk.exportTo(desk.home.path(name));
    QVERIFY(readFile(desk.home.path("out.svg"))->find("moves it most") != std::string::npos);
    QVERIFY(readFile(desk.home.path("out.pdf"))->starts_with("%PDF-"));
    QVERIFY(readFile(desk.home.path("out.pdf"))->size() > 5000);
    inModal(
        "frmResolution", [&] { desk.exportTo(desk.home.path("out.png")); },
        [](QWidget& form) {
            control<QSpinBox>(form, "txtResolution").setValue(120);
            QTest::keyClick(&form, Qt::Key_Return);
        });
    const QImage image(desk.home.folder.filePath("out.png"));
    QCOMPARE(image.dotsPerMeterX(), 4724); // 120 to the inch
    const auto chart = desk.page().picture();
    QCOMPARE(image.width(), chart.size.width() * 120 / 96);
    QSet<QRgb> colors;
    for (int y = 0; y < image.height(); y += 3)
        for (int x = 0; x < image.width(); x += 3)
            colors << image.pixel(x, y);
    QVERIFY(colors.contains(study::ui::studyColor(0, QPalette(Qt::white)).rgb()));
    // Copied and printed is the same picture.
    click(desk.window(), "cmdCopyPicture");
    QVERIFY(!QApplication::clipboard()->image().isNull());
    desk.home.printer.file = desk.home.folder.filePath("printed.pdf");
    click(desk.window(), "cmdPrint");
    QCOMPARE(desk.home.status(), "Picture printed");
    const auto printed = readFile(desk.home.path("printed.pdf"));
    QVERIFY(printed && printed->starts_with("%PDF-") && printed->size() > 5000);
}

void StudyFilesTest::placesOpenTheirCase() {
    FileDesk desk(MenuEntry::WhatMatters);
    const auto opened = [&] { return desk.program.session().project().Input; };
    // A double click on a place of the picture.
    const auto choice = desk.page().result().ofSpot(desk.chart().drawing().spots[0].id);
    QVERIFY(choice);
    const auto wanted = choice->make().Input;
    QVERIFY(wanted != opened());
    QTest::mouseDClick(&desk.chart(), Qt::LeftButton, {}, desk.spotAt(0));
    QVERIFY(opened() == wanted);
    QVERIFY(!desk.program.session().hasFile());
    // The menu of a row lists all of its cases; the second one here.
    desk.home.answers = {Answer::No};
    desk.openCase();
    auto& table = control<QTableView>(desk.window(), "tblTornado");
    const auto choices = desk.page().result().ofRow(1, 0);
    QVERIFY(choices.size() > 1);
    const auto second = choices[1].make().Input;
    const QPoint cell = table.visualRect(table.model()->index(1, 0)).center();
    inModal(
        "mnuStudyPlace",
        [&] {
            QContextMenuEvent event(QContextMenuEvent::Mouse, cell,
                                    table.viewport()->mapToGlobal(cell));
            QApplication::sendEvent(table.viewport(), &event);
        },
        [&](QWidget& menu) {
            const auto actions = static_cast<QMenu&>(menu).actions();
            QVERIFY(static_cast<std::size_t>(actions.size()) >= choices.size());
            QCOMPARE(actions[1]->text().remove('&'),
                     "Open as Case: " + QString::fromStdString(choices[1].what));
            QTest::keyClick(&menu, Qt::Key_Down);
            QTest::keyClick(&menu, Qt::Key_Down);
            QTest::keyClick(&menu, Qt::Key_Return);
        });
    QVERIFY(opened() == second);
}

QTEST_MAIN(StudyFilesTest)
#include "studyFiles_test.moc"
