// SPDX-License-Identifier: GPL-3.0-or-later
//
// Uncertainty in the window of the studies: shares are those of the samples themselves, samples open
// as cases, and what cannot be drawn is said before anything runs.
#include "studyDesk.h"

#include "base/ui/NumberEdit.h"

#include "study/questions/shareCurve.h"
#include "study/ui/studies/UncertaintyPage.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>

using namespace telvo;
using namespace telvo::study;
using namespace telvo::study::ui;
using namespace telvo::test;

namespace {

constexpr int FewBits = 9; // 8,192 samples

/// The page with few samples.
struct SureDesk : Desk {
    SureDesk() : Desk(MenuEntry::HowSure) {
        choose("cboUncertaintySamples", FewBits);
        wait();
    }
    void choose(const char* box, int data) {
        auto& list = control<QComboBox>(window(), box);
        list.setCurrentIndex(list.findData(data));
        Q_EMIT list.activated(list.currentIndex());
    }
    void view(UncertaintyView which) {
        auto& list = control<QComboBox>(window(), "cboUncertaintyView");
        list.setCurrentIndex(static_cast<int>(which));
        Q_EMIT list.activated(list.currentIndex());
        wait();
    }
    const project::ProjectCase& open() { return program.session().project(); }
    /// The same study from the core.
    Uncertainty ofCore(AskedUncertainty asked) {
        asked.plan.bits = FewBits;
        const auto request = requestOf(asked, open());
        auto made = uncertainty(open(), *request);
        return *made;
    }
    AskedUncertainty usual() {
        AskedUncertainty asked;
        asked.limits = usualLimits(open());
        asked.vary = usualInputs(open());
        return asked;
    }
};

} // namespace

class UncertaintyTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void sharesAreThoseOfTheSamples();
    void limitsComeAndGo();
    void aSampleIsACase();
    void inputsScatterAsTheUserSays();
    void whatCannotBeDrawnIsSaid();
    void sharesGoWithAVariable();
};

void UncertaintyTest::sharesAreThoseOfTheSamples() {
    SureDesk desk;
    const Uncertainty core = desk.ofCore(desk.usual());
    QVERIFY(desk.page().headline().find(" % of 8,192 samples miss: ") != std::string::npos);
    QVERIFY(desk.text("lblUncertaintyRemark").contains("no probability of failure"));
    QCOMPARE(desk.page().result().table->rows, core.criteria.size() + 1);
    for (std::size_t row = 0; row < core.criteria.size(); ++row) {
        QCOMPARE(desk.number(row, 1), 100 * core.criteria[row].missed.value);
        QCOMPARE(desk.number(row, 4), static_cast<double>(core.criteria[row].misses));
        QCOMPARE(desk.number(row, 7), core.criteria[row].mean.value);
    }
    QCOMPARE(desk.number(core.criteria.size(), 1), 100 * core.any.value);
    // Another seed draws others; the first one the very same again.
    const double before = desk.number(0, 7);
    typeInto(control<QLineEdit>(desk.window(), "txtUncertaintySeed"), "2");
    desk.wait();
    QVERIFY(desk.number(0, 7) != before);
    typeInto(control<QLineEdit>(desk.window(), "txtUncertaintySeed"), "1");
    desk.wait();
    QCOMPARE(desk.number(0, 7), before);
    // Every other view is of the same samples.
    desk.view(UncertaintyView::Convergence);
    const std::size_t last = desk.page().result().table->rows - 1;
    QCOMPARE(desk.number(last, 0), 8192.0);
    QCOMPARE(desk.number(last, 1), 100 * core.criteria[0].missed.value);
    desk.view(UncertaintyView::Importance);
    QCOMPARE(desk.page().result().table->rows, core.scattered.size());
    QVERIFY(desk.page().table().isVisible());
}

void UncertaintyTest::limitsComeAndGo() {
    SureDesk desk;
    const std::size_t before = desk.usual().limits.size();
    desk.Desk::choose("cboUncertaintyOutcome", "AMZLoad.retreat.front");
    QVERIFY(!control(desk.window(), "chkUncertaintySuggested").isEnabled());
    type(desk.window(), "txtUncertaintyTarget", "1e9");
    click(desk.window(), "cmdUncertaintyAddLimit");
    desk.wait();
    QCOMPARE(desk.page().result().table->rows, before + 2);
    QVERIFY2(desk.text("lblUncertaintyHeadline").contains("front", Qt::CaseInsensitive),
             qPrintable(desk.text("lblUncertaintyHeadline")));
    click(desk.window(), "cmdUncertaintyRemoveLimit");
    desk.wait();
    QCOMPARE(desk.page().result().table->rows, before + 1);
    // What is no number is said and adds nothing.
    type(desk.window(), "txtUncertaintyTarget", "much");
    inModal(
        "frmPopUp", [&] { click(desk.window(), "cmdUncertaintyAddLimit"); }, [](QWidget&) {});
    QCOMPARE(control<QComboBox>(desk.window(), "cboUncertaintyLimit").count(),
             static_cast<int>(before));
}

void UncertaintyTest::aSampleIsACase() {
    SureDesk desk;
    desk.view(UncertaintyView::Samples);
    QCOMPARE(desk.page().result().table->rows, std::size_t{8192});
    const auto answer =
        std::static_pointer_cast<const UncertaintyAnswer>(desk.page().result().made);
    const std::size_t inputs = answer->made.evaluator->variables().size();
    for (const std::size_t row : {std::size_t{0}, std::size_t{8191}}) {
        const auto choices = desk.page().result().ofRow(row, 0);
        QCOMPARE(choices.size(), std::size_t{1});
        const project::ProjectCase sample = choices.front().make();
        QCOMPARE(desk.number(row, 1), answer->made.evaluator->variables()[0].of(sample.Input));
        for (std::size_t c = 0; c < answer->request.criteria.size(); ++c) {
            const std::string name = answer->request.criteria[c].outcome.name();
            QCOMPARE(desk.number(row, 1 + inputs + c), inRun(sample, name));
        }
    }
}

void UncertaintyTest::inputsScatterAsTheUserSays() {
    SureDesk desk;
    inModal(
        "frmScatter", [&] { click(desk.window(), "cmdUncertaintyInputs"); },
        [](QWidget& form) {
            auto& table = control<QTableWidget>(form, "tblScatter");
            int depth = 0;
            for (int row = 0; row < table.rowCount(); ++row) {
                if (table.item(row, 0)->text() == "Depth of Cover") depth = row;
                table.item(row, 0)->setCheckState(Qt::Unchecked);
            }
            click(form, "cmdOK"); // nothing scatters: refused
            QVERIFY(form.isVisible());
            table.setCurrentCell(depth, 0);
            auto& shape = control<QComboBox>(form, "cboScatterShape");
            shape.setCurrentIndex(shape.findText("Uniform"));
            Q_EMIT shape.activated(shape.currentIndex());
            auto& given = control<QComboBox>(form, "cboScatterForm");
            given.setCurrentIndex(0);
            Q_EMIT given.activated(0);
            type(form, "txtScatter_1", "1000");
            type(form, "txtScatter_2", "800");
            QVERIFY(control<telvo::ui::NumberEdit>(form, "txtScatter_2").isVisible());
            click(form, "cmdOK"); // the ends are the wrong way round
            QVERIFY(form.isVisible());
            type(form, "txtScatter_1", "800");
            type(form, "txtScatter_2", "1000");
            QCOMPARE(table.item(depth, 2)->text(), "900 ft");
            QCOMPARE(table.item(depth, 0)->checkState(), Qt::Checked);
            click(form, "cmdOK");
        });
    desk.wait();
    const auto answer =
        std::static_pointer_cast<const UncertaintyAnswer>(desk.page().result().made);
    QCOMPARE(answer->request.inputs.size(), std::size_t{1});
    for (std::size_t sample = 0; sample < 100; ++sample) {
        const double depth = answer->made.inputs(sample)[0];
        QVERIFY(depth >= 800 && depth <= 1000);
    }
}

void UncertaintyTest::whatCannotBeDrawnIsSaid() {
    SureDesk desk;
    typeInto(control<QLineEdit>(desk.window(), "txtUncertaintySeed"), "1.5");
    QTRY_VERIFY_WITH_TIMEOUT(desk.isShown("lblUncertaintyProblem"), Patience);
    QCOMPARE(desk.text("lblUncertaintyProblem"), "A seed is a whole number");
    QVERIFY(!control(desk.window(), "cmdExport").isEnabled());
    typeInto(control<QLineEdit>(desk.window(), "txtUncertaintySeed"), "1");
    desk.wait();
    // Measured values, pasted as a column; two inputs that move together.
    inModal(
        "frmScatter", [&] { click(desk.window(), "cmdUncertaintyInputs"); },
        [](QWidget& form) {
            auto& shape = control<QComboBox>(form, "cboScatterShape");
            shape.setCurrentIndex(shape.findText("Measured values"));
            Q_EMIT shape.activated(shape.currentIndex());
            auto& list = control<QPlainTextEdit>(form, "txtScatterList");
            list.setPlainText("850\n900 x");
            QVERIFY(control<QLabel>(form, "lblScatterEffect").text().contains("Not a number"));
            list.setPlainText("850\n900\n910");
            QVERIFY(control<QLabel>(form, "lblScatterEffect").text().startsWith("Mean 8"));
            type(form, "txtTogetherRank", "2");
            click(form, "cmdTogetherAdd"); // refused
            QCOMPARE(control<QTableWidget>(form, "tblTogether").rowCount(), 0);
            type(form, "txtTogetherRank", "0.4");
            control<QComboBox>(form, "cboTogetherSecond").setCurrentIndex(1);
            click(form, "cmdTogetherAdd");
            QCOMPARE(control<QTableWidget>(form, "tblTogether").rowCount(), 1);
            click(form, "cmdOK");
        });
    desk.wait();
    const auto answer =
        std::static_pointer_cast<const UncertaintyAnswer>(desk.page().result().made);
    QCOMPARE(answer->request.correlated.size(), std::size_t{1});
}

void UncertaintyTest::sharesGoWithAVariable() {
    SureDesk desk;
    desk.home.trigger(MenuEntry::ShareCurve);
    type(desk.window(), "txtShareCurveFrom", "100");
    type(desk.window(), "txtShareCurveTo", "200");
    type(desk.window(), "txtShareCurveStep", "50");
    desk.wait();
    QCOMPARE(desk.page().result().table->rows, std::size_t{3});
    QCOMPARE(desk.number(1, 0), 150.0);
    const auto choice = desk.page().result().ofRow(1, 0).front().make();
    QCOMPARE(choice.Input.BarrierSecondGob, 150.0);
    // A wider barrier does not make its own factor worse.
    const std::size_t last = desk.page().result().table->columns.size() - 4;
    QVERIFY(desk.number(2, last) <= desk.number(0, last));
    type(desk.window(), "txtShareCurveStep", "0.1");
    QTRY_VERIFY_WITH_TIMEOUT(desk.isShown("lblShareCurveProblem"), Patience);
    QVERIFY(desk.text("lblShareCurveProblem").contains("at most 200 values"));
    type(desk.window(), "txtShareCurveStep", "50");
    type(desk.window(), "txtShareCurveWeights", "1, 2");
    QTRY_VERIFY_WITH_TIMEOUT(desk.isShown("lblShareCurveProblem"), Patience);
    type(desk.window(), "txtShareCurveWeights", "1, 2, 1");
    desk.wait();
    QVERIFY(desk.text("lblShareCurveRemark").startsWith("Over the whole panel "));
}

QTEST_MAIN(UncertaintyTest)

#include "studyUncertainty_test.moc"
