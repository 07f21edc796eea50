// SPDX-License-Identifier: GPL-3.0-or-later
// Study files and records of runs, as a user keeps them.

#include "cli/Cli.h"

namespace {

using namespace telvo::test;

class CliStudy : public Cli {};

TEST_F(CliStudy, StudiesOfEveryKindAreMadeCheckedRunAndVerified) {
    string files;
    for (const string kind : {"tornado", "sweep", "find", "chart", "scenarios", "compare",
                              "uncertainty", "fragility"}) {
        const string cases = kind == "compare" ? "gobs.TLV metric.TLV" : "gobs.TLV";
        ASSERT_EQ(run("study new " + cases + " --kind " + kind + " -o " + kind + ".study").status,
                  0);
        if (string text = read(kind + ".study"); text.find("per_replicate") != string::npos) {
            const auto at = text.find("per_replicate");
            text.replace(at, text.find('\n', at) - at, "per_replicate = 32");
            write(kind + ".study", text);
        }
        files += " " + kind + ".study";
    }
    const Ran checked = run("study check" + files);
    EXPECT_EQ(checked.status, 0) << checked.err;
    EXPECT_EQ(std::count(checked.out.begin(), checked.out.end(), '\n'), 8);
    const Ran ran = run("study run" + files + " -o out");
    EXPECT_EQ(ran.status, 0) << ran.err;
    const Ran verified = run("study verify out/*.study.json");
    EXPECT_EQ(verified.status, 0) << verified.err << verified.out;
    EXPECT_EQ(std::count(verified.out.begin(), verified.out.end(), '\n'), 8);
    // A second run replaces nothing.
    EXPECT_EQ(run("study run sweep.study -o out").status, 3);
    EXPECT_EQ(run("study run sweep.study -o out --force --format xlsx").status, 0);
    EXPECT_TRUE(read("out/sweep.study.xlsx").starts_with("PK"));
    EXPECT_EQ(run("study run sweep.study -o other --format json").status, 0);
    EXPECT_EQ(run("study verify other/sweep.study.json").status, 0);

    // An exported table that somebody changed is found out.
    const string before = read("out/find.study.csv");
    write("out/find.study.csv", replaced(before, "range", "rangs"));
    const Ran changed = run("study verify out/find.study.json");
    EXPECT_EQ(changed.status, 4) << changed.out;
    EXPECT_NE(changed.out.find("find.study.csv is not what was written: row 1, column"),
              string::npos)
        << changed.out;
}

TEST_F(CliStudy, PartsOfSamplesJoinToOneRunByteForByte) {
    ASSERT_EQ(run("study new gobs.TLV --kind uncertainty -o u.study").status, 0);
    const string text = read("u.study");
    write("u.study", replaced(text, "per_replicate = 8192", "per_replicate = 64"));
    const Ran whole = run("study run u.study -o whole --threads 1 --samples-out whole.csv");
    EXPECT_EQ(whole.status, 0) << whole.err;
    EXPECT_NE(whole.out.find(
                  "1,024 samples miss: Development factor of the panel at least the suggested one"),
              string::npos)
        << whole.out;
    for (const string k : {"1", "2", "3"}) {
        const Ran part = run("study run u.study --part " + k + "/3 -o parts --threads 2");
        EXPECT_EQ(part.status, 0) << part.err;
    }
    const Ran merged = run("study merge parts/u.part-2-of-3.json parts/u.part-1-of-3.json "
                           "parts/u.part-3-of-3.json -o merged --samples-out merged.csv");
    EXPECT_EQ(merged.status, 0) << merged.err;
    EXPECT_EQ(read("merged/u.study.csv"), read("whole/u.study.csv"));
    EXPECT_EQ(read("merged.csv"), read("whole.csv"));
    EXPECT_TRUE(read("whole.csv").starts_with("id,DepthCover,EntryHeight,EntryWidth,"))
        << read("whole.csv").substr(0, 200);
    const string samples = read("whole.csv");
    EXPECT_EQ(std::count(samples.begin(), samples.end(), '\n'), 1025);
    const Ran verified = run("study verify whole/u.study.json merged/u.study.json --threads 3");
    EXPECT_EQ(verified.status, 0) << verified.out << verified.err;

    const Ran missing = run("study merge parts/u.part-1-of-3.json parts/u.part-3-of-3.json");
    EXPECT_EQ(missing.status, 1);
    EXPECT_NE(missing.err.find("A part is missing"), string::npos) << missing.err;
    EXPECT_EQ(run("study merge u.study").status, 3);
    EXPECT_EQ(run("study run u.study --part 4/3 -o parts").status, 2);
    EXPECT_EQ(run("study run u.study --part 1/2").status, 2);
    EXPECT_EQ(run("study run u.study --part 1/17 -o parts").status, 1);
    // Another seed is another study; one that is to be surer than its samples make it tells so.
    EXPECT_EQ(run("study run u.study -o seed --seed 2").status, 0);
    EXPECT_NE(read("seed/u.study.csv"), read("whole/u.study.csv"));
    EXPECT_EQ(run("study verify seed/u.study.json").status, 0);
    write("sure.study",
          replaced(read("u.study"), "seed = 1", "seed = 1\nstop_at_half_width = 1e-6"));
    const Ran sure = run("study run sure.study");
    EXPECT_EQ(sure.status, 4);
    EXPECT_NE(sure.out.find("was not reached"), string::npos) << sure.out;
}

TEST_F(CliStudy, WhatACommandExportsHasARecordBesideIt) {
    for (const string call :
         {"sweep gobs.TLV plain.TLV --vary DepthCover=600:1200:50 -o t.csv",
          "find gobs.TLV DepthCover --for \"TELVOSF.development>=2\" --step 5 -o f.json",
          "tornado gobs.TLV --range 5% --vary EntryHeight=6:9 -o o.txt",
          "chart gobs.TLV XcutSpacing --over DepthCover=600:900:100 --for "
          "\"TELVOSF.development>=1,2\" -o c.xlsx",
          "compare gobs.TLV metric.TLV --base metric.TLV -o d.csv --only-differences",
          "uncertainty gobs.TLV --samples 512 --indices --for \"TELVOSF.retreat>=1\" -o u.csv"}) {
        const Ran made = run(call);
        EXPECT_EQ(made.status, 0) << call << "\n" << made.err;
    }
    const Ran verified = run("study verify t.study.json f.study.json o.study.json c.study.json "
                             "d.study.json u.study.json");
    EXPECT_EQ(verified.status, 0) << verified.out << verified.err;
    EXPECT_EQ(run("sweep gobs.TLV --vary DepthCover=600 -o n.csv --no-record").status, 0);
    EXPECT_FALSE(fs::exists(m_folder / "n.study.json"));
}

TEST_F(CliStudy, ARecordIsRunWithoutItsFiles) {
    ASSERT_EQ(run("sweep gobs.TLV --vary DepthCover=600:900:100 -o t.csv").status, 0);
    fs::remove(m_folder / "gobs.TLV");
    fs::remove(m_folder / "t.csv");
    EXPECT_EQ(run("study verify t.study.json").status, 0);
}

TEST_F(CliStudy, AStudyThatFailsKeepsTheOthersRunning) {
    ASSERT_EQ(run("study new plain.TLV --kind sweep -o good.study").status, 0);
    const string good = read("good.study");
    write("lost.study", replaced(good, "plain.TLV", "lost.TLV"));
    write("units.study", replaced(good, "english", "metric"));
    write("key.study", good + "colour = 1\n");
    write("unused.study", replaced(good, "\"DepthCover\"", "\"BarrierFirstGob\""));
    const Ran ran = run("study run lost.study units.study key.study unused.study good.study");
    EXPECT_EQ(ran.status, 3);
    EXPECT_NE(ran.out.find("TELVOSF.development"), string::npos);
    for (const char* said :
         {"lost.study: Requested File not found: lost.TLV",
          "units.study: plain.TLV: The study is in metric units", "key.study, line ",
          "unknown key colour in [vary]", "unused.study: BarrierFirstGob: "})
        EXPECT_NE(ran.err.find(said), string::npos) << said << "\n" << ran.err;
    EXPECT_EQ(run("study check good.study").out, "OK\n");
    EXPECT_EQ(run("study check unused.study good.study").status, 1);
}

TEST_F(CliStudy, PicturesOfStudiesNeedNoDisplay) {
    const string sweep = "sweep gobs.TLV --vary DepthCover=600:900:100 ";
    if (!Draws) {
        const Ran ran = run(sweep + "-o sweep.svg");
        EXPECT_EQ(ran.status, 2);
        EXPECT_NE(ran.err.find("this build has no drawing"), string::npos) << ran.err;
        return;
    }
    unsetenv("DISPLAY");
    setenv("SOURCE_DATE_EPOCH", "1700000000", 1);
    const string barrier = " BarrierSecondGob --for \"BarrierSF.retreat.second>=1.5\" ";
    const std::pair<string, string> commands[] = {
        {sweep, "Depth of Cover (ft)"},
        {sweep + "--vary EntryHeight=6:8:0.5 --line 0.5,1,suggested ", "Entry Height (ft)"},
        {"tornado gobs.TLV ", "moves it most"},
        {"tornado gobs.TLV --spider ", "low end of its range"},
        {"find gobs.TLV" + barrier, "it holds"},
        {"chart gobs.TLV" + barrier + "--over DepthCover=600:900:50 ", "(ft)"},
        {"compare plain.TLV gobs.TLV ", "gobs.TLV"},
        {"uncertainty gobs.TLV --samples 512 ", "samples that hold"},
        {"uncertainty gobs.TLV --samples 512 --over DepthCover=600:800:100 ", "Depth of Cover"},
    };
    for (const auto& [command, text] : commands) {
        for (const string file : {"p.svg", "p.png", "p.pdf"}) {
            const Ran drawn = run(command + "-o " + file + " --force --no-record");
            EXPECT_TRUE(drawn.status == 0 || drawn.status == 4) << command << drawn.err;
            EXPECT_EQ(drawn.out + drawn.err, "") << command;
            const string first = read(file);
            EXPECT_GT(first.size(), 3000U) << command << file;
            run(command + "-o " + file + " --force --no-record");
            EXPECT_TRUE(read(file) == first) << command << file;
        }
        EXPECT_NE(read("p.svg").find(text), string::npos) << command;
    }
    EXPECT_EQ(run(sweep + "-o p.svg").status, 3); // it exists
    EXPECT_EQ(run(sweep + "-o gobs.svg --size 640 480").status, 0);
    EXPECT_NE(read("gobs.svg").find("viewBox=\"0 0 640 480\""), string::npos);
    EXPECT_EQ(run("study verify gobs.study.json").status, 0);
}

TEST_F(CliStudy, WhatHasNoPictureIsRefused) {
    if (!Draws) return;
    const auto refused = [&](const string& command, int status, const string& said) {
        const Ran ran = run(command);
        EXPECT_EQ(ran.status, status) << command;
        EXPECT_NE(ran.err.find(said), string::npos) << ran.err;
    };
    refused("tornado gobs.TLV plain.TLV -o none.svg", 2, "none.svg: a picture shows one case");
    refused("sweep two.csv --vary EntryHeight=6,8 -o none.svg", 2, "a picture shows one case");
    refused("sweep gobs.TLV --vary DepthCover=600,700 --vary EntryHeight=6,8 --vary "
            "EntryWidth=18,20 -o none.svg",
            1, "none.svg: A picture is drawn of one input, or of two in all combinations");
    refused("compare plain.TLV gobs.TLV --reports -o none.svg", 2, "as text only");
    refused("tornado refused.TLV -o none.svg", 1, "refused.TLV: ");
    EXPECT_FALSE(fs::exists(m_folder / "none.svg") || fs::exists(m_folder / "none.study.json"));
}

TEST_F(CliStudy, StudiesRunIntoPictures) {
    if (!Draws) return;
    for (const string kind : {"tornado", "sweep", "find", "chart", "scenarios", "uncertainty"})
        ASSERT_EQ(run("study new gobs.TLV --kind " + kind + " -o " + kind + ".study").status, 0);
    ASSERT_EQ(run("study new gobs.TLV plain.TLV --kind compare -o compare.study").status, 0);
    const Ran ran = run("study run *.study -o out --format svg");
    EXPECT_TRUE(ran.status == 0 || ran.status == 4) << ran.err;
    EXPECT_EQ(ran.err, "");
    for (const string kind :
         {"tornado", "sweep", "find", "chart", "scenarios", "compare", "uncertainty"}) {
        EXPECT_TRUE(read("out/" + kind + ".study.svg").starts_with("<?xml")) << kind;
        EXPECT_EQ(run("study verify out/" + kind + ".study.json").status, 0) << kind;
    }
}

} // namespace
