// SPDX-License-Identifier: GPL-3.0-or-later
// What the console program reads and writes: nothing is lost, nothing is waited for.
#include "cli/Cli.h"

#include <json-c/json.h>
#include <sys/stat.h>

#include <chrono>
#include <memory>
#include <thread>
#include <vector>

namespace {

using namespace telvo::test;

TEST_F(Cli, NothingMadeFromCasesTakesThePlaceOfACaseOrAnInput) {
    const string table = read("two.csv");
    const string plain = read("plain.TLV");
    fs::create_symlink("two.csv", m_folder / "link.csv");
    for (const string command :
         {"report two.csv -o two.csv", "report two.csv#2 -o two.csv", "report two.csv -o link.csv",
          "results two.csv -o two.csv", "table export two.csv -o two.csv",
          "table export two.csv gobs.TLV -o link.csv", "report gobs.TLV -o plain.TLV",
          "results gobs.TLV --format csv -o plain.TLV"})
        for (const string force : {"", " --force"}) {
            const Ran ran = run(command + force);
            EXPECT_EQ(ran.status, 3) << command << force;
            EXPECT_NE(ran.err.find("not written over"), string::npos) << ran.err;
            EXPECT_EQ(read("two.csv") + read("plain.TLV"), table + plain) << command << force;
        }
    write("case.csv", plain);
    EXPECT_EQ(run("table export gobs.TLV -o case.csv --force").status, 3);
    EXPECT_EQ(read("case.csv"), plain);
}

TEST_F(Cli, AReportReplacesAnOlderReportAndNothingElseUnasked) {
    write("notes.txt", "mine");
    const Ran refused = run("report plain.TLV -o notes.txt");
    EXPECT_EQ(refused.status, 3);
    EXPECT_NE(refused.err.find("notes.txt: is no report; --force"), string::npos) << refused.err;
    EXPECT_EQ(read("notes.txt"), "mine");
    EXPECT_EQ(run("report plain.TLV -o notes.txt --force").status, 0);
    for (int page = 0; page <= 5; ++page) {
        EXPECT_EQ(run("report plain.TLV -o notes.txt --page " + std::to_string(page)).status, 0);
        EXPECT_EQ(run("report plain.TLV -o notes.txt").status, 0) << "over page " << page;
    }
    const string report = read("notes.txt");
    EXPECT_EQ(run("report plain.TLV damaged.TLV -o notes.txt").status, 3);
    EXPECT_EQ(read("notes.txt"), report) << "replaced by a report that lacks a case";
    EXPECT_EQ(run("report plain.TLV -o /dev/null").status, 0);
}

TEST_F(Cli, ResultsGoIntoAFileWholeOrNotAtAll) {
    for (const string format : {"text", "csv", "json"}) {
        const string call = "results plain.TLV refused.TLV gobs.TLV --format " + format;
        const string target = "r." + format;
        EXPECT_EQ(run(call + " -o " + target).status, 1);
        EXPECT_EQ(read(target), run(call).out) << format;
        const Ran again = run(call + " -o " + target);
        EXPECT_EQ(again.status, 3);
        EXPECT_NE(again.err.find("the file exists; --force"), string::npos) << again.err;
        EXPECT_EQ(run(call + " --force -o " + target).status, 1);
    }
    const string rows = run("results plain.TLV --format csv --no-header").out;
    EXPECT_EQ(rows, read("r.csv").substr(read("r.csv").find('\n') + 1, rows.size()));
    EXPECT_EQ(run("bash -c 'true'").status, 2); // (no such command)
    const Ran full = run("results plain.TLV -o full/r.txt");
    EXPECT_EQ(full.status, 3);
    EXPECT_NE(full.err.find("full/r.txt: cannot be written"), string::npos) << full.err;
}

TEST_F(Cli, NamesComeFromListsAndFoldersAndMeanWhatTheySay) {
    const string plain = read("plain.TLV");
    fs::create_directory(m_folder / "panels");
    for (const char* name : {"panels/b.TLV", "panels/a.tlv", "[a,b]", "[]", "++", "\x01[a]"})
        write(name, plain);
    write("panels/readme.txt", "no case");
    EXPECT_EQ(run("check panels").out, "panels/a.tlv: OK\npanels/b.TLV: OK\n");
    EXPECT_EQ(run("check '[a,b]'").out, "OK\n");
    EXPECT_EQ(run("check '[]' ++ plain.TLV").out, "[]: OK\n++: OK\nplain.TLV: OK\n");
    EXPECT_EQ(run("check -- ++ '[a,b]'").out, "++: OK\n[a,b]: OK\n");
    EXPECT_EQ(run("check '\x01[a]' plain.TLV").out, "\\x01[a]: OK\nplain.TLV: OK\n");
    EXPECT_EQ(run("save plain.TLV -o '[x,y]'").status, 0);
    EXPECT_TRUE(fs::exists(m_folder / "[x,y]"));
    EXPECT_NE(run("results plain.TLV --format '[csv]'").err.find("[csv]"), string::npos);

    write("list", "gobs.TLV\r\n\n[a,b]\nplain.TLV");
    const string all = "metric.TLV: OK\ngobs.TLV: OK\n[a,b]: OK\nplain.TLV: OK\n";
    EXPECT_EQ(run("check metric.TLV --files-from list").out, all);
    EXPECT_EQ(run("check metric.TLV --files-from -", read("list")).out, all);
    EXPECT_EQ(run("check --files-from -", string("gobs.TLV\0panels\0", 16)).out,
              "gobs.TLV: OK\npanels/a.tlv: OK\npanels/b.TLV: OK\n");
    EXPECT_EQ(run("table export --files-from list -o -").out,
              run("table export gobs.TLV '[a,b]' plain.TLV -o -").out);
    EXPECT_EQ(run("check --files-from -", "").status, 3);
    EXPECT_EQ(run("check - --files-from -", "plain.TLV").status, 2);
    EXPECT_EQ(run("check --files-from gone").status, 3);
}

TEST_F(Cli, NamesCannotForgeLinesOrSteerTheTerminal) {
    const string name = "a\n\x1B[2Jb\xC2\x9B\xE4.TLV";
    write(name, read("plain.TLV"));
    const string shown = "a\\n\\x1B[2Jb\\x9B\\xE4.TLV";
    EXPECT_EQ(run("check plain.TLV '" + name + "'").out, "plain.TLV: OK\n" + shown + ": OK\n");
    EXPECT_TRUE(run("results '" + name + "'").out.starts_with(shown + "\n"));
    EXPECT_EQ(run("check 'gone\n" + name + "'").out,
              "Requested File not found: gone\\n" + shown + "\n");
    for (const string& text :
         {run("report 'x\x1B'").err, run("'\x1B[2J'").err, run("check --'\x1B'").err})
        EXPECT_EQ(text.find('\x1B'), string::npos) << text;

    // A name that is no UTF-8 is told by its bytes, in a text that is.
    const string json = run("results '" + name + "' --format json").out;
    const std::unique_ptr<json_object, int (*)(json_object*)> array(
        json_tokener_parse(json.c_str()), json_object_put);
    ASSERT_TRUE(array);
    json_object* file = json_object_object_get(json_object_array_get_idx(array.get(), 0), "file");
    EXPECT_EQ(json_object_get_string(file), "a\n\x1B[2Jb\xC2\x9B\\xE4.TLV" + string());

    write("=cmd.TLV", read("plain.TLV"));
    const Ran csv = run("results =cmd.TLV plain.TLV --format csv");
    EXPECT_NE(csv.err.find("in 1 row the file name or title begins like a formula"), string::npos);
}

TEST_F(Cli, AnImportCanBeTriedResumedAndAddsUp) {
    ASSERT_EQ(run("table export gobs.TLV metric.TLV gobs.TLV -o t.csv").status, 0);
    const auto files = [&] {
        return std::distance(fs::directory_iterator(m_folder / "out"), fs::directory_iterator());
    };
    const Ran tried = run("table import t.csv -o out --dry-run");
    EXPECT_EQ(tried.status, 0);
    EXPECT_TRUE(tried.out.ends_with("\n3 cases would be made, 0 already there, 0 refused\n"));
    EXPECT_FALSE(fs::exists(m_folder / "out"));
    const Ran made = run("table import t.csv -o out");
    EXPECT_EQ(replaced(made.out, " made", " would be made"), tried.out);
    EXPECT_EQ(files(), 3);
    // Again, and after half of it was lost.
    EXPECT_TRUE(run("table import t.csv -o out")
                    .out.ends_with("\n0 cases made, 3 already there, 0 refused\n"));
    fs::remove((*fs::directory_iterator(m_folder / "out")).path());
    EXPECT_TRUE(run("table import t.csv -o out")
                    .out.ends_with("\n1 case made, 2 already there, 0 refused\n"));
    EXPECT_EQ(files(), 3);
    // A changed row makes a new file, and the old one stays.
    string table = read("t.csv");
    const auto comma = table.find(',', table.find("\n"));
    table.insert(table.find(",1.", comma) == string::npos ? comma : comma, " (changed)");
    write("t.csv", table);
    EXPECT_NE(run("table import t.csv#2 -o out").out.find("1 case made"), string::npos);
    EXPECT_EQ(files(), 4);

    const Ran bad = run("table import bad.csv -o out");
    EXPECT_EQ(bad.status, 3);
    EXPECT_NE(bad.out.find("1 refused\n"), string::npos) << bad.out;
    // A fault of every file is told once.
    write("no", "a file");
    const Ran failed = run("table import t.csv -o no/folder");
    EXPECT_EQ(failed.status, 3);
    EXPECT_EQ(std::count(failed.err.begin(), failed.err.end(), '\n'), 2) << failed.err;
    EXPECT_NE(failed.err.find("and 2 more: "), string::npos) << failed.err;
    EXPECT_TRUE(failed.out.ends_with("0 cases made, 0 already there, 0 refused, 3 not written\n"));
}

TEST_F(Cli, ATableThatLacksACaseReplacesNoCompleteOne) {
    ASSERT_EQ(run("table export gobs.TLV plain.TLV -o t.csv").status, 0);
    const string complete = read("t.csv");
    const Ran kept = run("table export gobs.TLV damaged.TLV -o t.csv --force");
    EXPECT_EQ(kept.status, 3);
    EXPECT_NE(kept.err.find("t.csv: stays as it was"), string::npos) << kept.err;
    EXPECT_EQ(read("t.csv"), complete);
    EXPECT_EQ(run("table export gobs.TLV damaged.TLV -o t.csv --force --partial").status, 3);
    EXPECT_LT(read("t.csv").size(), complete.size());
    EXPECT_EQ(run("table export gobs.TLV damaged.TLV -o new.csv").status, 3);
    EXPECT_EQ(read("new.csv"), read("t.csv"));
}

TEST_F(Cli, PipesAndDevicesAreRefusedInsteadOfWaitedFor) {
    ASSERT_EQ(::mkfifo((m_folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(run("check pipe").out, "pipe: cannot be read: it is a pipe, not a file\n");
    EXPECT_EQ(run("save plain.TLV -o pipe").status, 3);
    EXPECT_EQ(run("check /dev/stdin", read("plain.TLV")).out, "OK\n");
    EXPECT_EQ(run("save plain.TLV -o /dev/null").status, 0);
}

TEST_F(Cli, NewNamesHoldAgainstLinksThatLeadNowhere) {
    fs::create_symlink("nowhere.TLV", m_folder / "dangling.TLV");
    for (const char* command : {"new dangling.TLV", "save plain.TLV -o dangling.TLV"})
        EXPECT_EQ(run(command).status, 3) << command;
    EXPECT_FALSE(fs::exists(m_folder / "nowhere.TLV"));
    EXPECT_EQ(run("new dangling.TLV --force").status, 0);
    EXPECT_TRUE(fs::exists(m_folder / "nowhere.TLV"));
    fs::create_hard_link(m_folder / "gobs.TLV", m_folder / "second.TLV");
    EXPECT_NE(run("save plain.TLV -o gobs.TLV --force").err.find("2 names (hard links)"),
              string::npos);
}

TEST_F(Cli, PicturesAndWorkbooksAreSoundAndCanBeMadeAgainByteForByte) {
    setenv("SOURCE_DATE_EPOCH", "1000000000", 1);
    ASSERT_EQ(run("table export gobs.TLV -o a.xlsx").status, 0);
    write("Smith & <Sons>.TLV",
          replaced(read("plain.TLV"), "Verification:", "\xEF\xBF\xBE& <\x02"));
    const auto draw = [&](const string& target) {
        return run("plot 'Smith & <Sons>.TLV' --kind plan -o " + target).status;
    };
    if (Draws) {
        EXPECT_EQ(draw("a.pdf"), 0);
        EXPECT_EQ(draw("a.svg"), 0);
        const string svg = read("a.svg");
        EXPECT_NE(svg.find("<title>Smith &amp; &lt;Sons&gt; plan</title>"), string::npos);
        for (const char* bad : {"\xEF\xBF\xBE", "\x02"})
            EXPECT_EQ(svg.find(bad), string::npos);
    }
    std::this_thread::sleep_for(
        std::chrono::milliseconds(1100)); // past the second that the files would tell
    ASSERT_EQ(run("table export gobs.TLV -o b.xlsx").status, 0);
    EXPECT_EQ(read("a.xlsx"), read("b.xlsx"));
    if (Draws) {
        EXPECT_EQ(draw("b.pdf"), 0);
        EXPECT_EQ(read("a.pdf"), read("b.pdf"));
        EXPECT_NE(read("a.pdf").find("/CreationDate (D:20010909014640"), string::npos);
    }
    unsetenv("SOURCE_DATE_EPOCH");
}

TEST_F(Cli, EveryCoreGivesTheBytesOfOne) {
    // Cases of every kind, alone and in tables, often enough for all threads to have work.
    string names;
    for (int round = 0; round < 12; ++round)
        names +=
            "plain.TLV refused.TLV gobs.TLV two.csv damaged.TLV metric.TLV nopillar.TLV bad.csv "
            "old.TLV missing.TLV short.csv#4 ";
    for (const string command :
         {"results --format json ", "results --format csv ", "results ", "report ", "check "}) {
        const Ran one = run(command + "--jobs 1 " + names);
        EXPECT_GT(one.out.size(), 1000U);
        EXPECT_EQ(one.status, 3);
        for (const string jobs : {"", "--jobs 2 ", "--jobs 7 "}) {
            const Ran many = run(command + jobs + names);
            EXPECT_EQ(many.out, one.out) << command << jobs;
            EXPECT_EQ(many.err, one.err) << command << jobs;
            EXPECT_EQ(many.status, one.status) << command << jobs;
        }
    }
    EXPECT_EQ(run("check --jobs 0 plain.TLV").status, 2);
}

} // namespace
