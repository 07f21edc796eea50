// SPDX-License-Identifier: GPL-3.0-or-later
//
// Pictures of studies: the console writes the very file that the page of the window exports.
#include "base/files.h"
#include "chart/ui/pictureFile.h"
#include "cli/Console.h"
#include "cli/ui/drawCase.h"
#include "study/output/factors.h"
#include "study/output/StudyOutput.h"
#include "study/questions/ranges.h"
#include "studyDesk.h"

#include <algorithm>
#include <QLineEdit>

using namespace telvo::test;
using namespace telvo::study;
namespace cli = telvo::cli;
using telvo::project::Field;

namespace {

/// What the console writes for an answer.
std::string drawn(Desk& desk, const StudyOutput& output, const StudyLook& look = {}) {
    cli::Console console(stdin, stdout, stderr);
    const std::string target = desk.home.path("console.svg");
    cli::PictureOptions options;
    options.existing = telvo::Existing::Replace;
    const cli::PlotOutcome outcome = cli::desktopPlotter().drawStudy(
        console, {output, desk.program.session().displayName(), look, 0}, options, target);
    if (outcome.status != cli::AllGood) return outcome.message;
    return *telvo::readFile(target);
}

std::string shown(Desk& desk) {
    const auto bytes = telvo::chart::ui::pictureFile(desk.page().picture(), "page.svg", 96);
    return bytes ? *bytes : faultText(bytes.fault());
}

std::string typed(Desk& desk, const std::string& box) {
    return telvo::ui::fromQt(control<QLineEdit>(desk.window(), box.c_str()).text());
}

/// All texts of an SVG with blanks between; a line of text may be cut into several.
std::string textsOf(const std::string& svg) {
    std::string texts;
    for (std::size_t at = svg.find("<text"); at != std::string::npos; at = svg.find("<text", at)) {
        at = svg.find('>', at) + 1;
        texts += svg.substr(at, svg.find('<', at) - at) + " ";
    }
    return texts;
}

/// Puts results in the order in which pages list them.
void listed(std::vector<Outcome>& outcomes, const telvo::project::ProjectCase& base) {
    const auto all = outcomesOf(base);
    const auto place = [&](const Outcome& one) {
        return std::find_if(all.begin(), all.end(),
                            [&](const Outcome& other) { return other.name() == one.name(); });
    };
    std::sort(outcomes.begin(), outcomes.end(),
              [&](const Outcome& a, const Outcome& b) { return place(a) < place(b); });
}

} // namespace

class StudyPicturesTest : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void tornadoAndSpider();
    void findingsAndDesignCharts();
    void tablesAsCurveAndMap();
    void scenariosAndComparison();
};

void StudyPicturesTest::tornadoAndSpider() {
    Desk desk(MenuEntry::WhatMatters);
    const telvo::project::ProjectCase base = desk.program.session().project();
    const TornadoRequest request{defaultOutcome(base), defaultRanges(base)};
    const StudyOutput output = outputOf(*tornado(base, request), request, base);
    const std::string svg = drawn(desk, output);
    QVERIFY(svg == shown(desk));
    const std::string texts = textsOf(svg);
    for (const char* text : {"moves it most", "Depth of Cover", "suggested", "runs, all computed"})
        QVERIFY2(texts.find(text) != std::string::npos, texts.c_str());
    auto& look = control<QComboBox>(desk.window(), "cboTornadoLook");
    look.setCurrentIndex(1);
    Q_EMIT look.activated(1);
    desk.wait();
    QVERIFY(drawn(desk, output, {true, {}}) == shown(desk));
    QVERIFY(shown(desk) != svg);
}

void StudyPicturesTest::findingsAndDesignCharts() {
    {
        Desk desk(MenuEntry::FindValue);
        const auto base = desk.program.session().project();
        const Variable barrier = Field::BarrierSecondGob;
        const FindRequest request{barrier, *Criterion::parse("BarrierSF.retreat.second>=suggested"),
                                  defaultSearchRange(base, barrier),
                                  defaultStep(barrier, base.Units)};
        const std::string svg = drawn(desk, outputOf(*find(base, request), request, base));
        QVERIFY(svg == shown(desk));
        QVERIFY(textsOf(svg).find("(ft)") != std::string::npos);
    }
    Desk desk(MenuEntry::DesignChart);
    const auto base = desk.program.session().project();
    const Variable barrier = Field::BarrierSecondGob;
    const auto text = [&](const char* box) { return typed(desk, box); };
    const DesignChartRequest request{barrier,
                                     defaultSearchRange(base, barrier),
                                     defaultStep(barrier, base.Units),
                                     Field::DepthCover,
                                     *parseValues(text("txtDesignOverFrom") + ":" +
                                                  text("txtDesignOverTo") + ":" +
                                                  text("txtDesignOverStep")),
                                     *Outcome::named("BarrierSF.retreat.second"),
                                     Criterion::Sense::AtLeast,
                                     *parseTargets("1.3, 1.5, 2")};
    const std::string svg = drawn(desk, outputOf(*designChart(base, request), request, base));
    QVERIFY(svg == shown(desk));
    QVERIFY(textsOf(svg).find("Depth of Cover (ft)") != std::string::npos);
}

void StudyPicturesTest::tablesAsCurveAndMap() {
    Desk desk(MenuEntry::TableOfValues);
    const auto base = desk.program.session().project();
    const auto axis = [&](int number) {
        const std::string end = "_" + std::to_string(number);
        const auto text = [&](const std::string& box) { return typed(desk, box + end); };
        return *parseValues(text("txtTableFrom") + ":" + text("txtTableTo") + ":" +
                            text("txtTableStep"));
    };
    SweepRequest request{{{Field::DepthCover, axis(1)}}, false, {}};
    for (const char* name : {"TELVOSF.development", "TELVOSF.retreat"})
        request.outcomes.push_back(*Outcome::named(name));
    listed(request.outcomes, base);
    const std::string curve = drawn(desk, outputOf(*sweep(base, request)));
    QVERIFY(curve == shown(desk));
    QVERIFY(textsOf(curve).find("suggested factor") != std::string::npos);
    desk.choose("cboTableInput_2", "EntryHeight");
    desk.wait();
    request.axes.push_back({Field::EntryHeight, axis(2)});
    const std::string map = drawn(desk, outputOf(*sweep(base, request)));
    QVERIFY(map == shown(desk));
    // Three inputs have no picture, and the console says so.
    request.axes.push_back({Field::XcutCenters, {90, 100}});
    request.axes.back().variable = *variableNamed("XcutSpacing");
    QCOMPARE(drawn(desk, outputOf(*sweep(base, request))),
             std::string("A picture is drawn of one input, or of two in all combinations."));
}

void StudyPicturesTest::scenariosAndComparison() {
    Desk desk(MenuEntry::Scenarios);
    const auto base = desk.program.session().project();
    click(desk.window(), "cmdScenariosAdd");
    desk.wait();
    std::vector<Outcome> outcomes = factorsOf(base);
    const std::string first = defaultOutcome(base).name(); // the page begins with what decides
    std::stable_partition(outcomes.begin(), outcomes.end(),
                          [&](const Outcome& one) { return one.name() == first; });
    const std::string name = desk.words(1, 0);
    const auto made = scenarios(base, {{name, {}}}, outcomes);
    QVERIFY(drawn(desk, outputOf(*made, outcomes, base)) == shown(desk));

    desk.home.trigger(MenuEntry::Compare);
    desk.wait();
    const auto compared = compare({{desk.program.session().displayName(), base}, {name, base}});
    QVERIFY(drawn(desk, outputOf(*compared, true)) == shown(desk));
}

QTEST_MAIN(StudyPicturesTest)
#include "studyPictures_test.moc"
