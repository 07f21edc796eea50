// SPDX-License-Identifier: GPL-3.0-or-later
// Runs the console program as a user does: arguments in, texts, files and exit status out.

#include "cli/Cli.h"

#include <json-c/json.h>

#include <charconv>
#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace {

using namespace telvo::test;

TEST_F(Cli, ArgumentsLeadToStatusOutputAndComplaint) {
    std::ifstream table(TELVO_CLI_TESTS_DIR "/calls.txt");
    int rows = 0;
    for (string line; std::getline(table, line);) {
        if (line[0] == '#' || (line.starts_with("plot") && !Draws)) continue;
        ++rows;
        std::istringstream cells(line);
        string arguments, status, out, err;
        std::getline(std::getline(std::getline(cells, arguments, ';'), status, ';'), out, ';');
        std::getline(cells, err);
        const Ran ran = run(arguments);
        EXPECT_EQ(ran.status, std::stoi(status)) << line << "\n" << ran.err;
        EXPECT_NE(ran.out.find(trim(out)), string::npos) << line << "\n" << ran.out;
        EXPECT_NE(ran.err.find(trim(err)), string::npos) << line << "\n" << ran.err;
        EXPECT_EQ(ran.err.empty(), trim(err).empty()) << line << "\n" << ran.err;
    }
    EXPECT_GE(rows, 40);
    EXPECT_FALSE(fs::exists(m_folder / "x.TLV") || fs::exists(m_folder / "none.txt") ||
                 fs::exists(m_folder / "none.svg") || fs::exists(m_folder / "none.png"));
}

TEST_F(Cli, ReportHasLineFeedsOnTheTerminalAndCrLfInAFile) {
    const Ran shown = run("report plain.TLV gobs.TLV");
    EXPECT_EQ(shown.out.find('\r'), string::npos);
    EXPECT_NE(shown.out.find("Project File: plain.TLV\n"), string::npos);
    EXPECT_NE(shown.out.find("Project File: gobs.TLV\n"), string::npos);

    const Ran written = run("report plain.TLV gobs.TLV -o out.txt");
    EXPECT_EQ(written.out, "");
    const string file = read("out.txt");
    EXPECT_EQ(without(file, '\r'), shown.out);
    EXPECT_EQ(std::count(file.begin(), file.end(), '\r'),
              std::count(file.begin(), file.end(), '\n'));

    const Ran input = run("report -", read("plain.TLV"));
    EXPECT_EQ(replaced(input.out, "standard input", "plain.TLV"), run("report plain.TLV").out);
}

TEST_F(Cli, AReportNeverReplacesACase) {
    const string before = read("gobs.TLV");
    const Ran ran = run("report plain.TLV -o gobs.TLV");
    EXPECT_EQ(ran.status, 3);
    EXPECT_NE(ran.err.find("gobs.TLV"), string::npos);
    EXPECT_EQ(read("gobs.TLV"), before);
}

TEST_F(Cli, CheckSaysOneLinePerCase) {
    EXPECT_EQ(run("check plain.TLV").out, "OK\n");
    const Ran several = run("check gobs.TLV refused.TLV missing.TLV metric.TLV");
    EXPECT_TRUE(several.out.starts_with("gobs.TLV: OK\nrefused.TLV: Invalid depth of cover\n"));
    EXPECT_TRUE(several.out.ends_with("\nmetric.TLV: OK\n"));
    EXPECT_NE(several.out.find("missing.TLV"), string::npos);
    EXPECT_EQ(std::count(several.out.begin(), several.out.end(), '\n'), 4) << several.out;
}

TEST_F(Cli, CasesComeThroughEveryTableUnchangedAndReplaceNothing) {
    for (const string table : {"t.csv", "t.tsv", "t.xlsx"}) {
        ASSERT_EQ(run("table export gobs.TLV metric.TLV gobs.TLV -o " + table).status, 0);
        const Ran made = run("table import " + table + " -o from-" + table);
        EXPECT_EQ(made.status, 0) << made.err;
        const auto rows = std::count(made.out.begin(), made.out.end(), '\n');
        EXPECT_EQ(rows, 4) << made.out;
        int equal = 0;
        for (const auto& file : fs::directory_iterator(m_folder / ("from-" + table)))
            for (const char* source : {"gobs.TLV", "metric.TLV"})
                equal += readAll(file.path()) == read(source) ? 1 : 0;
        EXPECT_EQ(equal, 3) << table;
        EXPECT_EQ(run("report " + table + "#4").out,
                  replaced(run("report gobs.TLV").out, "gobs.TLV", table + "#4"));
    }
}

TEST_F(Cli, TablesAreKnownByTheirContentAndPassThroughPipes) {
    ASSERT_EQ(run("table export metric.TLV plain.TLV -o two.xlsx").status, 0);
    const string wanted = run("results two.csv --format csv").out;
    for (const string table : {"two.csv", "two.xlsx"}) {
        string named = wanted;
        for (auto at = named.find("two.csv#"); at != string::npos; at = named.find("two.csv#"))
            named.replace(at, 8, "-#");
        const Ran piped = run("results - --format csv", read(table));
        EXPECT_EQ(piped.out, named) << table << piped.err;
        EXPECT_EQ(run("check -- -#3", read(table)).out, "OK\n");
        EXPECT_EQ(run("check -- -#4", read(table)).out, "standard input: row 4 has no case\n");
        // Whatever the file is called, and where it can be read but once.
        write("table.dat", read(table));
        EXPECT_EQ(run("check table.dat").out, "table.dat#2: OK\ntable.dat#3: OK\n");
        ASSERT_EQ(std::system(("cd '" + m_folder.string() +
                               "' && rm -f pipe && mkfifo pipe && (cat " + table + " > pipe &)")
                                  .c_str()),
                  0);
        EXPECT_EQ(run("check /dev/fd/3 3<pipe").out, "/dev/fd/3#2: OK\n/dev/fd/3#3: OK\n");
    }
    EXPECT_EQ(run("check -- - -#2", read("two.csv")).status, 2);
}

#if !defined(TELVO_SANITIZED) // whose own memory is more than the limit
TEST_F(Cli, AFileThatNeedsTooMuchMemoryLeavesTheOthersAlone) {
    string large = "DepthCover,Title\n";
    for (int i = 0; i < 200'000; ++i)
        large += "300," + string(100, 'x') + "\n";
    write("large.csv", large);
    write("stdin", "");
    const string command = "cd '" + m_folder.string() +
                           "' && ulimit -v 100000 && '" TELVO_CLI
                           "' results --format json plain.TLV large.csv gobs.TLV >stdout 2>stderr";
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 3);
    EXPECT_NE(read("stderr").find("large.csv: there is not enough memory"), string::npos)
        << read("stderr");
    const string out = read("stdout");
    EXPECT_TRUE(out.starts_with("[\n") && out.ends_with("\n]\n"));
    EXPECT_NE(out.find("\"gobs.TLV\""), string::npos);
}
#endif

using Values = std::map<string, string>;

/// The leaves of a JSON text by their paths, elements of arrays counted from 1.
void flatten(json_object* node, const string& path, Values& into) {
    if (json_object_is_type(node, json_type_object)) {
        json_object_object_foreach(node, key, value) {
            flatten(value, path.empty() ? key : path + "." + key, into);
        }
    } else if (json_object_is_type(node, json_type_array)) {
        into[path + ".count"] = std::to_string(json_object_array_length(node));
        for (std::size_t i = 0; i < json_object_array_length(node); ++i)
            flatten(json_object_array_get_idx(node, i), path + "." + std::to_string(i + 1), into);
    } else {
        into[path] = node ? json_object_get_string(node) : "null";
    }
}

/// The objects of a JSON array, flattened.
std::vector<Values> objects(const string& text) {
    const std::unique_ptr<json_object, int (*)(json_object*)> array(
        json_tokener_parse(text.c_str()), json_object_put);
    std::vector<Values> found(array ? json_object_array_length(array.get()) : 0);
    for (std::size_t i = 0; i < found.size(); ++i)
        flatten(json_object_array_get_idx(array.get(), i), "", found[i]);
    return found;
}

/// Significant digits of a number's text.
string digits(string text) {
    text.erase(std::min(text.find_first_of("eE"), text.size()));
    std::erase_if(text, [](char c) { return c == '-' || c == '.'; });
    text.erase(0, text.find_first_not_of('0'));
    return text.erase(text.find_last_not_of('0') + 1);
}

// Tolerances: 1e-9, to which the independent calculations agree; 2e-7 for what is held in single
// precision. They leave out the zeros of pillars and sides that a side gob does not load.
TEST_F(Cli, JsonResultsAreTheIndependentOnesInTheShortestForm) {
    const string folder = TELVO_CASES_DIR "/verification/";
    std::vector<Values> expected = objects(readAll(folder + "expected.json"));
    string files;
    for (Values& want : expected)
        files += " '" + folder + want["file"] + "'";
    const Ran ran = run("results --format json" + files);
    ASSERT_EQ(ran.status, 0) << ran.err;
    std::vector<Values> actual = objects(ran.out);
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        Values& want = expected[i];
        const string file = want["file"];
        EXPECT_EQ(actual[i]["file"], folder + file);
        EXPECT_EQ(actual[i]["valid"], "true");
        EXPECT_EQ(actual[i]["warnings.summary"], want["summary"]) << file;
        for (const auto& [path, text] : want) {
            if (path.starts_with("flags")) {
                EXPECT_EQ(actual[i]["warnings." + path], text) << file;
            } else if (path.starts_with("results.")) {
                EXPECT_TRUE(actual[i].contains(path)) << path;
            }
        }
        for (const auto& [path, text] : actual[i]) {
            if (!path.starts_with("results.") || path.ends_with("count")) continue;
            const double number = std::stod(text);
            const double value = want.contains(path) ? std::stod(want[path]) : 0;
            const bool single = path.find("AMZLoad") == 8 || path.find("TELVOSF") == 8 ||
                                path.find("ArchFactor") == 8 || path.find("TributaryStress") == 8;
            EXPECT_NEAR(number, value, (single ? 2e-7 : 1e-9) * std::max(1.0, std::abs(value)))
                << file << path;
            char shortest[40];
            const auto end = std::to_chars(shortest, shortest + sizeof shortest, number).ptr;
            EXPECT_EQ(digits(text), digits(string(shortest, end))) << file << path;
        }
    }
}

TEST_F(Cli, JsonKeepsInputsAsWrittenAndRefusedCases) {
    write("plain.TLV", replaced(replaced(read("plain.TLV"), " 0.94", " 0.82"),
                                "Verification: dev-plain", "Seam \"A\" \xE9, \\ <1>"));
    const Ran ran = run("results plain.TLV refused.TLV missing.TLV --format json");
    EXPECT_EQ(ran.status, 3);
    std::vector<Values> cases = objects(ran.out);
    ASSERT_EQ(cases.size(), 3U) << ran.out;
    EXPECT_EQ(cases[0]["inputs.ArchFactor"], "0.82");
    EXPECT_EQ(cases[0]["inputs.Title"], "Seam \"A\" \xC3\xA9, \\ <1>");
    EXPECT_EQ(cases[0]["inputs.XcutCenters.count"], "5");
    EXPECT_EQ(cases[0]["units.results.PillarStrength"], "psf");
    EXPECT_EQ(cases[0]["message"], "");
    EXPECT_EQ(cases[1]["message"], "Invalid depth of cover");
    EXPECT_EQ(cases[2]["message"], "Requested File not found: missing.TLV");
    for (Values& bad : {std::ref(cases[1]), std::ref(cases[2])}) {
        EXPECT_EQ(bad["valid"], "false");
        EXPECT_EQ(bad["results"], "null");
        EXPECT_EQ(bad["warnings"], "null");
    }
}

/// Rows and cells of a CSV text.
std::vector<std::vector<string>> csvRows(const string& text) {
    std::vector<std::vector<string>> rows(1, {""});
    bool quoted = false;
    for (const char c : text) {
        if (c == '"') {
            // A doubled quote inside a quoted cell closes and opens it again.
            if (!quoted && !rows.back().back().empty()) rows.back().back() += '"';
            quoted = !quoted;
        } else if (c == ',' && !quoted) {
            rows.back().emplace_back();
        } else if (c == '\n' && !quoted) {
            rows.push_back({""});
        } else if (c != '\r') {
            rows.back().back() += c;
        }
    }
    rows.pop_back();
    return rows;
}

TEST_F(Cli, CsvHasOneRowPerCaseUnderOneHeader) {
    write("plain.TLV", replaced(read("plain.TLV"), "Verification: ", "North, \"Main\", "));
    const Ran ran = run("results plain.TLV refused.TLV gobs.TLV old.TLV missing.TLV --format csv");
    EXPECT_EQ(ran.status, 3);
    const auto rows = csvRows(ran.out);
    ASSERT_EQ(rows.size(), 6U);
    const auto cell = [&](std::size_t row, const string& column) {
        const auto found = std::find(rows[0].begin(), rows[0].end(), column);
        EXPECT_NE(found, rows[0].end()) << column;
        return found == rows[0].end() ? "" : rows[row][std::size_t(found - rows[0].begin())];
    };
    for (const auto& row : rows)
        ASSERT_EQ(row.size(), rows[0].size()) << row[0];
    EXPECT_EQ(cell(1, "Title"), "North, \"Main\", dev-plain");
    EXPECT_EQ(cell(1, "PanelWidth (ft|m)"), "400"); // five spacings of 80 ft
    EXPECT_EQ(cell(1, "PillarArea.5 (ft2|m2)"), "4200");
    EXPECT_EQ(cell(1, "PillarArea.6 (ft2|m2)"), "");
    EXPECT_EQ(cell(1, "warnings.flags"), "15");
    EXPECT_EQ(cell(2, "message"), "Invalid depth of cover");
    EXPECT_EQ(cell(2, "PanelWidth (ft|m)"), "");
    EXPECT_EQ(cell(4, "warnings.flags"), "2 7 9 13");
    EXPECT_EQ(cell(5, "valid"), "false");
}

TEST_F(Cli, WritersOverwriteOnlyWhenForced) {
    for (const string command :
         {"new made.TLV", "save old.TLV -o made.TLV", "convert plain.TLV -o made.TLV"}) {
        fs::remove(m_folder / "made.TLV");
        EXPECT_EQ(run(command).status, 0) << command;
        EXPECT_TRUE(read("made.TLV").starts_with("TELVO_602\r\n")) << command;
        write("made.TLV", "mine");
        const Ran refused = run(command);
        EXPECT_EQ(refused.status, 3) << command;
        EXPECT_NE(refused.err.find("--force"), string::npos) << refused.err;
        EXPECT_EQ(read("made.TLV"), "mine") << command;
        EXPECT_EQ(run(command + " --force").status, 0) << command;
        EXPECT_TRUE(read("made.TLV").starts_with("TELVO_602\r\n")) << command;
    }
}

TEST_F(Cli, SavedAndConvertedCasesCarryTheInputsOver) {
    EXPECT_EQ(run("save old.TLV -o current.TLV").status, 0);
    const auto results = [&](const string& file) {
        const string text = run("results " + file + " --format json").out;
        return text.substr(text.find("\"results\""));
    };
    EXPECT_TRUE(read("old.TLV").starts_with("TELVO_500"));
    EXPECT_EQ(results("current.TLV"), results("old.TLV"));

    // 500 ft / 3.280839895 = 152.4 m; 305 m x 3.280839895 = 1000.66 ft (to two decimals).
    EXPECT_EQ(run("convert plain.TLV -o m.TLV").status, 0);
    EXPECT_NE(run("report m.TLV --page 0").out.find("     152.4 (m)\n"), string::npos);
    EXPECT_EQ(run("convert metric.TLV -o e.TLV").status, 0);
    EXPECT_NE(run("report e.TLV --page 0").out.find("   1000.66 (ft)\n"), string::npos);
    EXPECT_EQ(run("new n.TLV --units metric").status, 0);
    EXPECT_TRUE(read("n.TLV").starts_with("TELVO_602\r\n 1\r\n"));
}

// The surroundings of a script: no display, and a session's settings that would ask for one.
TEST_F(Cli, PicturesAreDrawnWithoutADisplay) {
    if (!Draws) {
        const Ran ran = run("plot plain.TLV --kind plan -o plan.svg");
        EXPECT_EQ(ran.status, 2);
        EXPECT_NE(ran.err.find("this build has no drawing"), string::npos) << ran.err;
        return;
    }
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR", "HOME"})
        unsetenv(name);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    for (const string file : {"plan.svg", "plan.png", "plan.pdf"}) {
        const string command = "plot plain.TLV --kind plan -o " + file;
        const Ran drawn = run(command);
        EXPECT_EQ(drawn.status, 0) << drawn.err;
        EXPECT_EQ(drawn.out + drawn.err, "");
        const string first = read(file);
        EXPECT_GT(first.size(), 10000U) << file;
        write(file, "mine");
        EXPECT_EQ(run(command).status, 3) << file;
        EXPECT_EQ(read(file), "mine");
        EXPECT_EQ(run(command + " --force").status, 0);
        EXPECT_EQ(read(file).size(), first.size());
    }
    EXPECT_NE(read("plan.svg").find("Verification: dev-plain"), string::npos);
}

/// The value of a quantity in the results of a case, as text.
string resultOf(const string& results, const string& quantity) {
    std::istringstream lines(results);
    for (string line; std::getline(lines, line);) {
        std::istringstream words(line);
        string name, value;
        if (words >> name >> value && name == quantity) return value;
    }
    return {};
}

std::vector<string> cellsOf(const string& line) {
    std::vector<string> cells;
    std::istringstream row(line);
    for (string cell; std::getline(row, cell, ',');)
        cells.push_back(cell);
    return cells;
}

TEST_F(Cli, EveryRowOfATableOfValuesIsWhatResultsGivesOfThatCase) {
    const Ran made = run("sweep gobs.TLV --vary EntryHeight=6,8 --vary XcutCenters.1=70:90:10 "
                         "--quantity TELVOSF.retreat --quantity PillarStrength.2 -o t.csv");
    ASSERT_EQ(made.status, 0) << made.err;
    std::istringstream rows(without(read("t.csv"), '\r'));
    string line;
    std::getline(rows, line);
    EXPECT_EQ(line, "id,EntryHeight,XcutCenters.1,TELVOSF.retreat,PillarStrength.2,flags,message");
    ASSERT_EQ(run("table export gobs.TLV -o gobs.csv").status, 0);
    const string table = read("gobs.csv");
    int count = 0;
    while (std::getline(rows, line)) {
        const auto cells = cellsOf(line);
        EXPECT_EQ(cells[0], std::to_string(++count));
        // The same case made by hand: two cells of the exported table.
        std::istringstream both(without(table, '\r'));
        string names, values;
        std::getline(both, names);
        std::getline(both, values);
        auto headings = cellsOf(names), numbers = cellsOf(values);
        for (std::size_t i = 0; i < headings.size(); ++i) {
            if (headings[i] == "EntryHeight") numbers[i] = cells[1];
            if (headings[i] == "XcutCenters.1") numbers[i] = cells[2];
        }
        string changed;
        for (const string& number : numbers)
            changed += (changed.empty() ? "" : ",") + number;
        write("one.csv", names + "\r\n" + changed + "\r\n");
        const string results = run("results one.csv").out;
        EXPECT_EQ(cells[3], resultOf(results, "TELVOSF.retreat")) << line;
        EXPECT_EQ(cells[4], resultOf(results, "PillarStrength.2")) << line;
    }
    EXPECT_EQ(count, 6);
}

TEST_F(Cli, FoundIntervalsAreJsonWithAnObjectPerCase) {
    const Ran made = run("find gobs.TLV missing.TLV metric.TLV DepthCover --for "
                         "\"TELVOSF.development>=2\" --in 100:2000 --step 5 --format json");
    EXPECT_EQ(made.status, 3) << made.err;
    const std::unique_ptr<json_object, int (*)(json_object*)> root(
        json_tokener_parse(made.out.c_str()), json_object_put);
    ASSERT_TRUE(root && json_object_is_type(root.get(), json_type_array));
    ASSERT_EQ(json_object_array_length(root.get()), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        json_object* one = json_object_array_get_idx(root.get(), i);
        for (const char* key : {"file", "headline", "intervals", "evaluated", "uncomputable"})
            EXPECT_TRUE(json_object_object_get_ex(one, key, nullptr)) << key;
        const auto intervals = json_object_array_length(json_object_object_get(one, "intervals"));
        EXPECT_EQ(intervals == 0, i == 1);
        for (std::size_t k = 0; k < intervals; ++k) {
            json_object* interval =
                json_object_array_get_idx(json_object_object_get(one, "intervals"), k);
            const double from = json_object_get_double(json_object_object_get(interval, "from"));
            const double to = json_object_get_double(json_object_object_get(interval, "to"));
            EXPECT_LE(from, to);
            bool jumps = false;
            for (const char* end : {"fromEnd", "toEnd"}) {
                const string kind = json_object_get_string(json_object_object_get(interval, end));
                EXPECT_TRUE(kind == "crossing" || kind == "jump" || kind == "range" ||
                            kind == "uncomputable");
                jumps = jumps || kind == "jump";
            }
            EXPECT_EQ(json_object_object_get_ex(interval, "rule", nullptr), jumps);
        }
    }
}

TEST_F(Cli, TablesOfStudiesOfSeveralCasesHaveTheFileFirstAndTheColumnsOfAll) {
    const Ran made = run("sweep plain.TLV gobs.TLV --vary EntryHeight=6:8:1 --format csv");
    EXPECT_EQ(made.status, 0) << made.err;
    std::istringstream rows(without(made.out, '\r'));
    string line;
    std::getline(rows, line);
    const auto headings = cellsOf(line);
    EXPECT_EQ(headings.front(), "file");
    EXPECT_EQ(headings.back(), "message");
    int count = 0;
    while (std::getline(rows, line)) {
        EXPECT_TRUE(line.starts_with(count < 3 ? "plain.TLV," : "gobs.TLV,")) << line;
        EXPECT_EQ(std::count(line.begin(), line.end(), ','),
                  static_cast<std::ptrdiff_t>(headings.size()) - 1)
            << line;
        ++count;
    }
    EXPECT_EQ(count, 6);
    EXPECT_EQ(run("sweep plain.TLV gobs.TLV --vary EntryHeight=6:8:1 -o t.xlsx").status, 0);
    EXPECT_TRUE(read("t.xlsx").starts_with("PK"));
}

} // namespace
