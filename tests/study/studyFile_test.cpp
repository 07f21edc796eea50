// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/file/Record.h"
#include "study/file/SamplePart.h"
#include "study/file/sha256.h"
#include "study/file/StudySettings.h"

#include "goodCase.h"
#include "project/CaseFile.h"

#include <gtest/gtest.h>

#include <cstring>

namespace telvo::study {

namespace {

constexpr const char* Kinds[] = {"tornado",   "sweep",   "find",        "chart",
                                 "scenarios", "compare", "uncertainty", "fragility"};

std::string withHead(const std::string& rest) {
    return "# TELVO study 1\n" + rest;
}

TEST(StudyFile, EveryKindComesBackAsItWasWritten) {
    for (const char* kind : Kinds) {
        auto study = newStudy(kind, tests::goodCase(), "panel.TLV");
        ASSERT_TRUE(study) << kind;
        study->comments = {"What the owner asked for", "", "  indented"};
        study->RoundTELVOSF = 2;
        const std::string text = studyText(*study);
        const auto back = readStudyText(text, "a.study");
        ASSERT_TRUE(back) << faultText(back.fault()) << "\n" << text;
        EXPECT_EQ(studyText(*back), text);
        EXPECT_EQ(back->comments, study->comments);
        EXPECT_EQ(kindName(back->request), kind);
        std::string dos = text;
        for (std::size_t at = 0; (at = dos.find('\n', at)) != std::string::npos; at += 2)
            dos.insert(at, "\r");
        const auto other = readStudyText("\xEF\xBB\xBF" + dos, "a.study");
        ASSERT_TRUE(other) << faultText(other.fault());
        EXPECT_EQ(studyText(*other), text);
    }
}

constexpr const char* Chances = R"(
kind = "fragility"
case = "a.TLV"
units = "english"

[fragility]
over = "BarrierSecondGob"
values = "60:120:20"
weights = [1, 2, 3, 4]
share = 0.05

[[vary]]
input = "DepthCover"

[[vary]]
input = ["XcutCenters.1", "XcutCenters.2"]
shared = true
shape = "normal"
mean = 80
sd = 1.5
low = 76
high = 84
cut_sd = 2.5

[[vary]]
input = "EntryWidth"
shape = "triangular"
relative = [-0.5, 0, 2]

[[vary]]
input = "EntryHeight"
shape = "discrete"
percent = [-10, 0, 10]
weights = [1, 3, 1]

[[vary]]
input = "XcutSpacing"
shape = "weibull"
shapes = [8]
scale = 90

[[vary]]
input = "ExtentFirstGob"
shape = "gumbel-largest"
cov = 0.1

[[correlate]]
inputs = ["DepthCover", "EntryHeight"]
rank = -0.3

[[limit]]
output = "TELVOSF.retreat"
at_least = "suggested"

[[limit]]
output = "AMZLoad.retreat.front"
at_most = 1000000000

[sampling]
method = "latin-hypercube"
replicates = 4
per_replicate = 256
stop_at_half_width = 0.1
indices = true
seed = 7
)";

TEST(StudyFile, WhatScattersComesBackAsItWasWritten) {
    const std::string text = withHead(Chances);
    const auto study = readStudyText(text, "a.study");
    ASSERT_TRUE(study) << faultText(study.fault());
    EXPECT_EQ(studyText(*study), text);
    const auto& asked = std::get<AskedFragility>(study->request);
    EXPECT_EQ(asked.values, (std::vector<double>{60, 80, 100, 120}));
    EXPECT_FALSE(asked.scatter.vary[0].scatter) << "what is usual";
    EXPECT_EQ(asked.scatter.vary[1].variables.size(), 2U);
    EXPECT_EQ(asked.scatter.plan.samples(), 1024U);
    EXPECT_EQ(asked.scatter.limits[0].target, std::nullopt);
}

TEST(StudyFile, WhatCannotScatterIsRefusedWithItsLine) {
    const std::pair<const char*, std::pair<const char*, const char*>> changes[] = {
        {"shape = \"triangular\"",
         {"shape = \"triangle\"", "a.study, line 28: shape: one of normal"}},
        {"[-0.5, 0, 2]", {"[-0.5, 0, \"2\"]", "line 29: relative: a list of numbers"}},
        {"[-0.5, 0, 2]", {"[]", "line 29: relative: a list of numbers"}},
        {"[-0.5, 0, 2]",
         {"[1, 2, 3]\nvalues = [4, 5, 6]", "only one of values, relative and percent"}},
        {"shape = \"triangular\"\n", {"", "line 27: input: a shape for its numbers"}},
        {"\"XcutCenters.2\"", {"\"Roof\"", "line 17: input: no input that can be varied"}},
        {"\"XcutCenters.1\", \"XcutCenters.2\"", {"", "line 17: input: at least one input"}},
        {"per_replicate = 256", {"per_replicate = 250", "per_replicate: a power of 2"}},
        {"replicates = 4", {"replicates = 0", "replicates: a whole number from 1 to 1024"}},
        {"seed = 7", {"seed = -7", "seed: a whole number from 0"}},
        {"rank = -0.3", {"rank = nan", "rank: a number is wanted"}},
        {"\"DepthCover\", \"EntryHeight\"", {"\"DepthCover\"", "inputs: two inputs is wanted"}},
        {"latin-hypercube", {"halton", "method: \"sobol\""}},
        {"cut_sd", {"cut_sds", "line 24: unknown key cut_sds in [vary]"}}};
    for (const auto& [what, by] : changes) {
        std::string text = withHead(Chances);
        text.replace(text.find(what), std::strlen(what), by.first);
        const auto study = readStudyText(text, "a.study");
        ASSERT_FALSE(study) << by.second;
        EXPECT_NE(faultText(study.fault()).find(by.second), std::string::npos)
            << faultText(study.fault());
    }
}

TEST(SamplePart, ComesBackBitForBit) {
    project::ProjectCase base = tests::goodCase();
    auto study = newStudy("uncertainty", base, "panel.TLV");
    ASSERT_TRUE(study);
    samplingOf(*study)->plan = {sampling::Method::Sobol, 3, 6, 5};
    const std::vector<NamedCase> cases = {{"panel.TLV", base}};
    std::vector<SamplePart> parts;
    for (const std::size_t k : {2, 1}) {
        auto samples = samplesOfPart(*study, base, {k, 2});
        ASSERT_TRUE(samples) << faultText(samples.fault());
        const SamplePart part{
            "TELVO", "1", *recorded(*study, "a.study", cases), {k, 2}, std::move(*samples)};
        const std::string text = partText(part);
        auto back = readPart(text, "part.json");
        ASSERT_TRUE(back) << faultText(back.fault());
        EXPECT_EQ(partText(*back), text);
        EXPECT_EQ(back->samples.missed, part.samples.missed);
        EXPECT_EQ(back->samples.firstReplicate, part.samples.firstReplicate);
        std::string changed = text;
        changed.replace(changed.find("\\n0,"), 4, "\\n1,");
        EXPECT_EQ(readPart(changed, "part.json").fault().message,
                  "samples.text: was changed, its SHA-256 is another one");
        EXPECT_FALSE(readPart(text.substr(0, text.size() / 2), "part.json"));
        parts.push_back(std::move(*back));
    }
    const auto merged = mergedSamples(parts);
    ASSERT_TRUE(merged) << faultText(merged.fault());
    const auto joined = outputOfSamples(*study, base, *merged);
    const auto whole = runStudy(*study, cases, 3);
    ASSERT_TRUE(joined && whole);
    EXPECT_EQ(csvText(joined->table), csvText(whole->table));
    EXPECT_EQ(csvText(joined->samples), csvText(whole->samples));
    EXPECT_EQ(shownText(*joined), shownText(*whole));
    parts.pop_back();
    EXPECT_EQ(mergedSamples(parts).fault().message, "A part is missing");
}

TEST(StudyFile, LettersBeyondAsciiAreTextInDoubleQuotes) {
    auto study = newStudy("scenarios", tests::goodCase(), "a.TLV");
    ASSERT_TRUE(study);
    study->comments = {"f\xC3\xBCr \xE2\x82\xAC"};
    study->caseFile = "Fl\xC3\xB6z \xF0\x9F\x98\x80.TLV";
    const std::string text = studyText(*study);
    const auto back = readStudyText(text, "a.study");
    ASSERT_TRUE(back) << faultText(back.fault());
    EXPECT_EQ(back->caseFile, study->caseFile);
    EXPECT_EQ(back->comments, study->comments);

    const auto caseOf = [&](const std::string& value) {
        std::string other = text;
        const std::size_t at = other.find("case = "), end = other.find('\n', at);
        other.replace(at, end - at, "case = " + value);
        const auto read = readStudyText(other, "a.study");
        return read ? read->caseFile : faultText(read.fault());
    };
    EXPECT_EQ(caseOf("\"\"\"\nd\xC3\xA9 \"x\"\xC3\xA9.TLV\"\"\""), "d\xC3\xA9 \"x\"\xC3\xA9.TLV");
    EXPECT_EQ(caseOf("\"a\\\\\xC3\xA9\" # \xC3\xA9"), "a\\\xC3\xA9");
    EXPECT_EQ(caseOf("'a\"b.TLV' # \xC3\xA9 \"\xC3\xA9"), "a\"b.TLV");
    const std::string refused = "has a letter beyond ASCII that is not in double quotes";
    for (const char* value : {"'\xC3\xA9.TLV'", "\"\\\xC3\xA9\"", "\xC3\xA9", "\"a.TLV\" \xC3\xA9"})
        EXPECT_NE(caseOf(value).find(refused), std::string::npos) << value;
}

TEST(StudyFile, NumbersAndListsComeBackBitForBit) {
    Study study;
    study.caseFile = "deep \"panel\"\t\xC3\xA4.TLV";
    SweepRequest sweep;
    sweep.axes.push_back(
        {project::Field::EntryHeight, {0.1, 0.2, 0.30000000000000004, 1e-7, 1e21}});
    sweep.axes.push_back({Variable::allDistances(), {}});
    for (int i = 0; i <= 20; ++i)
        sweep.axes.back().values.push_back(i * 0.1 + 70);
    sweep.axes.push_back({project::Field::DepthCover, {900, 850, 800}});
    sweep.linked = true;
    sweep.outcomes = {*Outcome::named("TELVOSF.retreat"), *Outcome::named("PillarStrength.2")};
    study.request = sweep;
    const auto back = readStudyText(studyText(study), "a.study");
    ASSERT_TRUE(back) << faultText(back.fault());
    EXPECT_EQ(back->caseFile, study.caseFile);
    const auto& read = std::get<SweepRequest>(back->request);
    ASSERT_EQ(read.axes.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(read.axes[i].variable, sweep.axes[i].variable);
        EXPECT_EQ(read.axes[i].values, sweep.axes[i].values);
    }
    EXPECT_TRUE(read.linked);
    EXPECT_EQ(read.outcomes[1].name(), "PillarStrength.2");

    study.request =
        TornadoRequest{Outcome::factor(engine::Development, 0),
                       {{project::Field::DepthCover, {Range::Form::Absolute, 800, 1000.25}, true},
                        {project::Field::EntryWidth, {Range::Form::Offset, -0.5, 2}, true},
                        {Variable::bothBarriers(), {Range::Form::Percent, -5, 7}, true},
                        {project::Field::EntryHeight, {}, false}}};
    const auto bars = readStudyText(studyText(study), "a.study");
    ASSERT_TRUE(bars);
    const auto& own = std::get<TornadoRequest>(study.request).inputs;
    EXPECT_EQ(std::get<TornadoRequest>(bars->request).inputs,
              std::vector<RangedInput>(own.begin(), own.end() - 1));

    study.request = ScenarioSet{
        {{"one",
          {{project::FieldId(project::Field::XcutCenters, 2), 82.5}, {project::Field::RowA, 1}}}},
        {}};
    const auto set = readStudyText(studyText(study), "a.study");
    ASSERT_TRUE(set) << faultText(set.fault());
    EXPECT_EQ(std::get<ScenarioSet>(set->request).list, std::get<ScenarioSet>(study.request).list);
}

TEST(StudyFile, SeveralStudiesShareAFile) {
    Study head;
    head.comments = {"of the panel"};
    head.caseFile = "a.TLV";
    const std::vector<Scenario> list = {{"deep", {{project::Field::DepthCover, 1200}}}};
    std::vector<Study> all(6, head);
    all[0].request = CompareSet{{"b.TLV"}, true, "deep", true, list};
    all[1].request = ScenarioSet{list, {}};
    all[1].view.columns = {project::FieldId(project::Field::XcutCenters, 2)};
    all[2].request =
        FindRequest{project::Field::DepthCover,
                    {Outcome::factor(engine::Development, 0), Criterion::Sense::AtMost, 2.5},
                    {500, 900},
                    1};
    all[3].request = newStudy("chart", tests::goodCase(), "a.TLV")->request;
    all[4].request = SweepRequest{{{project::Field::EntryWidth, {18, 20}}}, false, {}};
    all[4].view.suggested = true;
    all[5].request =
        TornadoRequest{Outcome::factor(engine::Development, 0),
                       {{project::Field::EntryWidth, {Range::Form::Percent, -5, 7}, true}}};
    all[5].view.spider = true;
    const std::string text = studiesText(all);
    EXPECT_NE(text.find("kind = [\"tornado\", \"sweep\", \"find\", \"chart\", \"scenarios\", "
                        "\"compare\"]"),
              std::string::npos)
        << text;
    const auto back = readStudies(text, "a.study");
    ASSERT_TRUE(back) << faultText(back.fault()) << text;
    ASSERT_EQ(back->size(), 6U);
    EXPECT_EQ(studiesText(*back), text);
    for (const Study& one : *back) { // each of them is a study of its own, too
        const auto alone = readStudyText(studyText(one), "b.study");
        ASSERT_TRUE(alone) << faultText(alone.fault());
        EXPECT_EQ(studyText(*alone), studyText(one));
        EXPECT_EQ(alone->comments, head.comments);
    }
    EXPECT_TRUE(back->front().view.spider);
    EXPECT_EQ((*back)[4].view.columns, all[1].view.columns);
    EXPECT_EQ(std::get<CompareSet>(back->back().request).list, list);
    EXPECT_NE(faultText(readStudyText(text, "a").fault()).find("a: has 6 studies"),
              std::string::npos);

    const auto faultOf = [](const std::string& rest) {
        const auto read =
            readStudies("# TELVO study 1\ncase = \"a.TLV\"\nunits = \"english\"\n" + rest, "a");
        return read ? std::string() : faultText(read.fault());
    };
    const std::string compare = "[compare]\nwith = [\"b.TLV\"]\n";
    const std::string tornado = "[tornado]\noutput = \"TELVOSF.retreat\"\n";
    const std::string both = "kind = [\"tornado\", \"compare\"]\n" + compare + tornado;
    EXPECT_EQ(faultOf(both), "");
    EXPECT_EQ(faultOf("kind = []\n").substr(0, 17), "a, line 4: kind: ");
    EXPECT_EQ(faultOf("kind = [\"compare\", \"compare\"]\n" + compare),
              "a, line 4: kind: \"compare\" comes twice");
    EXPECT_EQ(faultOf(both + "[[vary]]\ninput = \"DepthCover\"\npercent = [-1, 1]\n"),
              "a, line 9: unknown key vary");
    EXPECT_EQ(faultOf(both + "picture = \"pie\"\n"),
              "a, line 9: picture: \"tornado\" or \"spider\" is wanted");
    EXPECT_EQ(faultOf(both + "[[scenario]]\nname = \"x\"\nset = { }\n"),
              "a, line 9: [compare] needs scenarios = true to take them");
}

TEST(StudySettings, AreWhatTheirStudiesAsk) {
    const project::ProjectCase base = tests::goodCase();
    const StudyPlace place{base, "panel.TLV", "/somewhere/mine", 1};
    StudySettings settings;
    EXPECT_TRUE(studiesOf(settings, place).empty());
    settings.ranges = {{project::Field::DepthCover, {Range::Form::Absolute, 800, 1000}, true},
                       {project::Field::EntryWidth, {Range::Form::Offset, -0.01, 0.01}, true},
                       {project::Field::EntryHeight, {Range::Form::Percent, -5, 5}, true}};
    settings.table = TableRequest{
        {{project::Field::DepthCover, "600:1200:50"}, {project::Field::EntryHeight, "6,7, 8.25"}},
        false,
        {"AMZLoad.retreat.front"},
        1e6,
        false};
    settings.find =
        FindRequest{project::Field::BarrierSecondGob,
                    {*Outcome::named("BarrierSF.retreat.second"), Criterion::Sense::AtLeast, 1.5},
                    {50, 200},
                    0.1};
    settings.chart = std::get<DesignChartRequest>(newStudy("chart", base, "panel.TLV")->request);
    settings.scenarios = {{"deep", {{project::Field::DepthCover, 1200}}}};
    settings.scenarioOutcomes = {"AMZLoad.retreat.front"};
    settings.compareFiles = {"/somewhere/other/a.TLV", "/somewhere/mine/b.TLV"};
    settings.compareAll = true;
    Scatter wide;
    wide.shape = Scatter::Shape::Triangular;
    wide.pointsAre = Scatter::Points::Offsets;
    wide.points = {-10, 0, 20};
    settings.uncertainty.emplace();
    settings.uncertainty->vary = {{{project::Field::EntryWidth}, wide},
                                  {{project::Field::DepthCover}, {}}};
    settings.uncertainty->correlated = {
        {project::Field::EntryWidth, project::Field::DepthCover, 0.3}};
    settings.uncertainty->limits = {
        {*Outcome::named("AMZLoad.retreat.front"), Criterion::Sense::AtMost, 1e6}};
    settings.uncertainty->plan.seed = 7;
    settings.shareCurve = AskedFragility{{}, project::Field::DepthCover, {700, 800}, {1, 2}, 0.05};
    const auto studies = studiesOf(settings, place);
    ASSERT_EQ(studies.size(), 8U);
    const auto& curve = std::get<AskedFragility>(studies.back().request);
    EXPECT_EQ(curve.scatter.vary.size(), 1U); // its variable does not scatter itself
    EXPECT_TRUE(curve.scatter.correlated.empty());
    EXPECT_EQ(std::get<CompareSet>(studies[5].request).with,
              (std::vector<std::string>{"../other/a.TLV", "b.TLV"}));
    const std::string text = studiesText(studies);
    const auto read = readStudies(text, "panel.study");
    ASSERT_TRUE(read) << faultText(read.fault());
    StudySettings back;
    for (const Study& one : *read)
        takeStudy(back, one, place.folder);
    EXPECT_EQ(back.compareFiles, settings.compareFiles);
    EXPECT_EQ(studiesText(studiesOf(back, place)), text);

    // To metric units and back: what two decimals keep.
    const StudySettings metric = convertedSettings(settings, project::English);
    EXPECT_EQ(metric.ranges[0].range, (Range{Range::Form::Absolute, 243.84, 304.8}));
    EXPECT_EQ(metric.ranges[1].range.low, -0.003048); // two decimals would leave no range
    EXPECT_EQ(metric.ranges[2].range, settings.ranges[2].range);
    EXPECT_EQ(metric.scenarios[0].set[0].second, 365.76);
    EXPECT_EQ(metric.find->in.high, 60.96);
    EXPECT_EQ(metric.find->step, 0.03);
    EXPECT_EQ(metric.find->criterion.target, 1.5);
    EXPECT_EQ(metric.table->axes[0].values, "182.88:365.76:15.24");
    EXPECT_EQ(metric.table->axes[1].values, "1.83, 2.13, 2.51");
    EXPECT_EQ(*metric.table->level, 4448.2216); // kN for 1e6 lbs
    EXPECT_EQ(metric.chart->targets, settings.chart->targets);
    EXPECT_EQ(metric.uncertainty->vary[0].scatter->points, (std::vector{-3.048, 0.0, 6.096}));
    EXPECT_EQ(metric.uncertainty->limits[0].target, 4448.2216);
    EXPECT_EQ(metric.shareCurve->values, (std::vector{213.36, 243.84}));
    EXPECT_EQ(metric.shareCurve->weights, settings.shareCurve->weights);
    EXPECT_EQ(metric.shareCurve->share, 0.05);
    const StudySettings again = convertedSettings(metric, project::Metric);
    EXPECT_EQ(again.scenarios[0].set[0].second, 1200);
    EXPECT_EQ(again.table->axes[0].values, "600:1200:50");
}

TEST(StudySettings, AskForNoScatterThatNobodyAskedFor) {
    const project::ProjectCase base = tests::goodCase();
    const StudyPlace place{base, "panel.TLV", "/mine", 0};
    StudySettings settings;
    settings.uncertainty.emplace().vary = {{{project::Field::DepthCover}, {}}};
    settings.shareCurve = AskedFragility{{}, project::Field::DepthCover, {700, 800}, {}, {}};
    // Without the variable itself nothing is left, which would mean all that is usual.
    EXPECT_EQ(studiesOf(settings, place).size(), 1U);
    settings.uncertainty->vary.clear();
    EXPECT_EQ(studiesOf(settings, place).size(), 2U);
}

TEST(StudyFile, APictureIsDrawnAsItsFileWantsIt) {
    EXPECT_TRUE(lookOf({.spider = true}).spider);
    EXPECT_EQ(lookOf({.level = 1.3}).lines, (std::vector<std::optional<double>>{1.3}));
    EXPECT_EQ(lookOf({.suggested = true}).lines, StudyLook().lines);
}

TEST(StudyFile, WhatIsWrongIsNamedWithItsLine) {
    const std::string find = withHead("kind = \"find\"\ncase = \"a.TLV\"\nunits = \"english\"\n"
                                      "[find]\ninput = \"DepthCover\"\nin = [50, 300]\nstep = 1\n"
                                      "output = \"TELVOSF.retreat\"\nat_least = 1.5\n");
    ASSERT_TRUE(readStudyText(find, "a"));
    const auto changed = [&](const std::string& what, const std::string& by) {
        std::string text = find;
        return text.replace(text.find(what), what.size(), by);
    };
    const std::pair<std::string, std::string> wrong[] = {
        {"", "a, line 1: is no study"},
        {"kind = \"find\"\n", "a, line 1: is no study"},
        {"# TELVO study one\n", "a, line 1: is no study"},
        {"# TELVO study 2\nkind = \"find\"\n",
         "a, line 1: is a study of version 2, which a newer program wrote"},
        {changed("step = 1", "steps = 1"), "a, line 5: [find] needs step"},
        {find + "steps = 1\n", "a, line 11: unknown key steps in [find]"},
        {changed("units", "color = 1\nunits"), "a, line 4: unknown key color"},
        {find + "[chart]\n", "a, line 11: unknown key chart"},
        {changed("kind = \"find\"", "kind = \"seek\""), "a, line 2: kind: \"tornado\""},
        {changed("\"a.TLV\"", "\"/home/a.TLV\""), "a, line 3: case: a file name relative"},
        {changed("\"a.TLV\"", "\"C:/a.TLV\""), "a, line 3: case: a file name relative"},
        {changed("\"a.TLV\"", "\"\""), "a, line 3: case: a file name relative"},
        {changed("english", "imperial"), "a, line 4: units: \"english\" or \"metric\""},
        {changed("DepthCover", "Depth"), "a, line 6: input: no input that can be varied"},
        {changed("[50, 300]", "[50]"), "a, line 7: in: two numbers"},
        {changed("[50, 300]", "[50, nan]"), "a, line 7: in: two numbers"},
        {changed("step = 1", "step = \"1\""), "a, line 8: step: a number is wanted"},
        {changed("TELVOSF.retreat", "TELVOSF"), "a, line 9: output: no quantity"},
        {changed("at_least = 1.5", "at_least = \"much\""), "a, line 10: at_least: a number or"},
        {changed("at_least = 1.5", ""), "a, line 5: [find] needs either"},
        {find + "at_most = 2\n", "a, line 5: [find] needs either"},
        {changed("in = [", "in = "), "a, line 7: "},
        {changed("[find]", "[find"), "a, line 5: "},
        {changed("\"find\"", "\"sweep\""), "a, line "},
        {changed("[find]", "[: find]"), "a, line 5: is no name of a table or a key"},
        {withHead("kind = \"\xFF\"\n"), "a, line 2: is not text in UTF-8"},
    };
    for (const auto& [text, message] : wrong) {
        const auto read = readStudyText(text, "a");
        ASSERT_FALSE(read) << text;
        EXPECT_TRUE(faultText(read.fault()).starts_with(message)) << faultText(read.fault()) << "\n"
                                                                  << message;
    }
}

std::vector<NamedCase> casesOf(const Study& study) {
    std::vector<NamedCase> cases;
    for (const std::string& file : filesOf(study))
        cases.emplace_back(file, tests::goodCase());
    return cases;
}

TEST(StudyFile, ACaseInOtherUnitsIsRefused) {
    const auto study = newStudy("sweep", tests::goodCase(), "panel.TLV");
    const NamedCase cases[] = {{"panel.TLV", tests::goodCase(project::Metric)}};
    const auto made = runStudy(*study, cases);
    ASSERT_FALSE(made);
    EXPECT_EQ(faultText(made.fault()),
              "panel.TLV: The study is in English units, the case in metric");
}

/// The record of a study of a kind.
RunRecord recordOf(const char* kind) {
    const auto study = newStudy(kind, tests::goodCase(), "panel.TLV");
    const auto cases = casesOf(*study);
    const auto made = runStudy(*study, cases);
    EXPECT_TRUE(made);
    RunRecord record;
    record.program = "TELVO";
    record.studies.push_back(*recorded(*study, "a.study", cases));
    record.tally = made->tally;
    TableDigits::of(made->table).into(record, made->table.rows);
    record.fileDigest = record.digest;
    return record;
}

TEST(RunRecord, IsRunAgainWithTheSameDigits) {
    for (const char* kind : Kinds) {
        const RunRecord record = recordOf(kind);
        const auto back = readRecord(recordText(record), "r.json");
        ASSERT_TRUE(back) << faultText(back.fault());
        EXPECT_EQ(recordText(*back), recordText(record)) << kind;
        const auto verified = verify(*back, "", 2);
        ASSERT_TRUE(verified) << faultText(verified.fault());
        EXPECT_TRUE(verified->same) << kind << ": " << verified->difference;
    }
}

TEST(RunRecord, TheFirstCellThatDiffersIsNamed) {
    RunRecord record = recordOf("sweep");
    const std::string good = record.table;
    // The second row's first number behind the depth, its last digit.
    std::size_t at = good.find("\r\n2,");
    at = good.find(',', good.find(',', at) + 1) + 1;
    const std::size_t digit = good.find(',', at) - 1;
    record.table[digit] = record.table[digit] == '1' ? '2' : '1';
    record.digest = sha256Of(record.table);
    const auto verified = verify(record, "");
    ASSERT_TRUE(verified);
    EXPECT_FALSE(verified->same);
    EXPECT_TRUE(verified->difference.starts_with("row 2, column TELVOSF.development: there \""))
        << verified->difference;

    const RunRecord other = recordOf("sweep");
    record = other;
    record.file = "a.csv";
    EXPECT_TRUE(verify(record, good)->same);
    const auto shorter = verify(record, good.substr(0, good.rfind("\r\n", good.size() - 3) + 2));
    EXPECT_NE(shorter->difference.find("a.csv is not what was written: row "), std::string::npos)
        << shorter->difference;
}

TEST(RunRecord, WhatIsNoRecordOrWasChangedIsRefused) {
    const std::string good = recordText(recordOf("find"));
    const auto refusal = [](const std::string& text) {
        const auto read = readRecord(text, "r.json");
        return read ? std::string("read") : faultText(read.fault());
    };
    EXPECT_EQ(refusal(good), "read");
    EXPECT_EQ(refusal(""), "r.json: is no record of a study");
    EXPECT_EQ(refusal("[]"), "r.json: is no record of a study");
    EXPECT_EQ(refusal("{\"record\": 1}"), "r.json: is no record of a study");
    EXPECT_EQ(refusal("{\"record\": \"TELVO study record 2\"}"),
              "r.json: is a \"TELVO study record 2\", which this program does not read");
    EXPECT_EQ(refusal("{\"record\": \"TELVO study record 1\"}"),
              "r.json: program: is missing or of a wrong kind");
    EXPECT_EQ(refusal(good.substr(0, good.size() / 2)), "r.json: is no record of a study");
    std::string changed = good;
    changed.replace(changed.find("step = 1"), 8, "step = 2");
    EXPECT_EQ(refusal(changed), "r.json: studies[0].text: was changed, its SHA-256 is another one");
    EXPECT_EQ(refusal(std::string(100000, '[')), "r.json: is no record of a study");
}

TEST(Sha256, GivesTheDigestsOfTheStandard) {
    EXPECT_EQ(sha256Of("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    Sha256 sum;
    for (int i = 0; i < 1000; ++i)
        sum.add(std::string(1000, 'a'));
    EXPECT_EQ(sum.digits(), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

} // namespace

} // namespace telvo::study
