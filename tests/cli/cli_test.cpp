// SPDX-License-Identifier: GPL-3.0-or-later
// Runs the console program as a user does: arguments in, texts, files and exit status out.

#include <gtest/gtest.h>
#include <json-c/json.h>
#include <sys/wait.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using std::string;

string readAll(const fs::path& file) {
    std::ostringstream bytes;
    bytes << std::ifstream(file, std::ios::binary).rdbuf();
    return bytes.str();
}

string without(string text, char c) {
    std::erase(text, c);
    return text;
}

string trim(string text) {
    text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
    return text.erase(text.find_last_not_of(' ') + 1);
}

struct Ran {
    int status;
    string out, err;
};

/// A folder of its own with a few cases: plain.TLV (English, level 53), gobs.TLV (two side gobs),
/// metric.TLV, old.TLV (level 50), refused.TLV (depth 0) and damaged.TLV (text for a number).
class Cli : public testing::Test {
  protected:
    void SetUp() override {
        string folder = testing::TempDir() + "telvo_cli_XXXXXX";
        ASSERT_TRUE(mkdtemp(folder.data()));
        m_folder = folder;
        copy("dev-plain.TLV", "plain.TLV");
        copy("rand-lc4.TLV", "gobs.TLV");
        copy("metric-305.TLV", "metric.TLV");
        copy("rand-lc4-level50.TLV", "old.TLV");
        const string plain = read("plain.TLV");
        write("refused.TLV", replaced(plain, "\n500\r", "\n0\r"));
        write("damaged.TLV", replaced(plain, "\n500\r", "\ndeep\r"));
    }
    void TearDown() override { fs::remove_all(m_folder); }

    /// Runs the program in the folder with arguments as the shell reads them.
    Ran run(const string& arguments, const string& input = "") {
        write("stdin", input);
        const string command = "cd '" + m_folder.string() +
                               "' && '" TELVO_CLI "' <stdin 2>stderr " +
                               (arguments.find('>') == string::npos ? ">stdout " : "") + arguments;
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read("stdout"), read("stderr")};
    }
    string read(const string& file) const { return readAll(m_folder / file); }
    void write(const string& file, const string& bytes) const {
        std::ofstream(m_folder / file, std::ios::binary) << bytes;
    }
    void copy(const string& from, const string& to) const {
        fs::copy_file(fs::path(TELVO_CASES_DIR) / "verification" / from, m_folder / to);
    }
    static string replaced(string text, const string& what, const string& by) {
        return text.replace(text.find(what), what.size(), by);
    }
    fs::path m_folder;
};

TEST_F(Cli, ArgumentsLeadToStatusOutputAndComplaint) {
    std::ifstream table(TELVO_CLI_TESTS_DIR "/calls.txt");
    int rows = 0;
    for (string line; std::getline(table, line);) {
        if (line[0] == '#') continue;
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
    EXPECT_FALSE(fs::exists(m_folder / "x.TLV") || fs::exists(m_folder / "none.txt"));
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

using Json = std::unique_ptr<json_object, int (*)(json_object*)>;

Json parsed(const string& text) {
    return Json(json_tokener_parse(text.c_str()), json_object_put);
}

json_object* at(json_object* object, std::initializer_list<const char*> path) {
    for (const char* key : path)
        object = json_object_object_get(object, key);
    return object;
}

/// Significant digits of a number's text.
string digits(string text) {
    text.erase(std::min(text.find_first_of("eE"), text.size()));
    std::erase_if(text, [](char c) { return c == '-' || c == '.'; });
    text.erase(0, text.find_first_not_of('0'));
    return text.erase(text.find_last_not_of('0') + 1);
}

/// Compares every number; one that `expected` leaves out is 0, as beyond the loaded pillars of a
/// side. `single` allows for quantities held in single precision.
void expectSame(json_object* actual, json_object* expected, const string& path, bool single) {
    if (json_object_is_type(actual, json_type_object)) {
        if (expected) {
            json_object_object_foreach(expected, wanted, found) {
                EXPECT_TRUE(json_object_object_get_ex(actual, wanted, &found)) << path << wanted;
            }
        }
        json_object_object_foreach(actual, key, value) {
            const string name = key;
            expectSame(value, json_object_object_get(expected, key), path + "." + name,
                       single || name == "AMZLoad" || name == "TELVOSF" || name == "ArchFactor" ||
                           name == "TributaryStress");
        }
    } else if (json_object_is_type(actual, json_type_array)) {
        const std::size_t wanted = expected ? json_object_array_length(expected) : 0;
        EXPECT_GE(json_object_array_length(actual), wanted) << path;
        for (std::size_t i = 0; i < json_object_array_length(actual); ++i)
            expectSame(json_object_array_get_idx(actual, i),
                       i < wanted ? json_object_array_get_idx(expected, i) : nullptr,
                       path + "." + std::to_string(i + 1), single);
    } else {
        const double number = json_object_get_double(actual);
        const double value = json_object_get_double(expected);
        EXPECT_NEAR(number, value, (single ? 2e-7 : 1e-9) * std::max(1.0, std::abs(value))) << path;
        char shortest[40];
        const auto end = std::to_chars(shortest, shortest + sizeof shortest, number).ptr;
        EXPECT_EQ(digits(json_object_get_string(actual)), digits(string(shortest, end))) << path;
    }
}

TEST_F(Cli, JsonResultsAreTheIndependentOnes) {
    const string folder = TELVO_CASES_DIR "/verification/";
    const Json expected(json_object_from_file((folder + "expected.json").c_str()), json_object_put);
    string files;
    for (std::size_t i = 0; i < json_object_array_length(expected.get()); ++i)
        files +=
            " '" + folder +
            json_object_get_string(at(json_object_array_get_idx(expected.get(), i), {"file"})) +
            "'";
    const Ran ran = run("results --format json" + files);
    ASSERT_EQ(ran.status, 0) << ran.err;
    const Json actual = parsed(ran.out);
    ASSERT_EQ(json_object_array_length(actual.get()), json_object_array_length(expected.get()));
    for (std::size_t i = 0; i < json_object_array_length(expected.get()); ++i) {
        json_object* want = json_object_array_get_idx(expected.get(), i);
        json_object* got = json_object_array_get_idx(actual.get(), i);
        const string file = json_object_get_string(at(want, {"file"}));
        EXPECT_EQ(json_object_get_string(at(got, {"file"})), folder + file);
        EXPECT_TRUE(json_object_get_boolean(at(got, {"valid"})));
        EXPECT_EQ(json_object_array_length(at(got, {"results", "PillarArea"})),
                  json_object_array_length(at(want, {"results", "PillarArea"})));
        expectSame(at(got, {"results"}), at(want, {"results"}), file, false);
        EXPECT_TRUE(json_object_equal(at(got, {"warnings", "flags"}), at(want, {"flags"}))) << file;
        EXPECT_TRUE(json_object_equal(at(got, {"warnings", "summary"}), at(want, {"summary"})));
    }
}

TEST_F(Cli, JsonKeepsInputsAsWrittenAndRefusedCases) {
    write("plain.TLV", replaced(replaced(read("plain.TLV"), " 0.94", " 0.82"),
                                "Verification: dev-plain", "Seam \"A\" \xE9, \\ <1>"));
    const Ran ran = run("results plain.TLV refused.TLV missing.TLV --format json");
    EXPECT_EQ(ran.status, 3);
    EXPECT_NE(ran.out.find("\"ArchFactor\": 0.82,"), string::npos);
    EXPECT_NE(ran.out.find("\"PillarAreaAMZ\": 26133.333333333332,"), string::npos)
        << "5 pillars of 60 x 70 ft in every 90 ft of the 112 ft";
    const Json cases = parsed(ran.out);
    ASSERT_EQ(json_object_array_length(cases.get()), 3U) << ran.out;
    json_object* plain = json_object_array_get_idx(cases.get(), 0);
    EXPECT_STREQ(json_object_get_string(at(plain, {"inputs", "Title"})),
                 "Seam \"A\" \xC3\xA9, \\ <1>");
    EXPECT_EQ(json_object_array_length(at(plain, {"inputs", "XcutCenters"})), 5U);
    EXPECT_STREQ(json_object_get_string(at(plain, {"message"})), "");
    const char* messages[] = {"", "Invalid depth of cover",
                              "Requested File not found: missing.TLV"};
    for (const std::size_t i : {1U, 2U}) {
        json_object* bad = json_object_array_get_idx(cases.get(), i);
        EXPECT_FALSE(json_object_get_boolean(at(bad, {"valid"})));
        EXPECT_STREQ(json_object_get_string(at(bad, {"message"})), messages[i]);
        for (const char* key : {"results", "warnings"})
            EXPECT_TRUE(json_object_object_get_ex(bad, key, nullptr) && !at(bad, {key})) << key;
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
        const Json cases = parsed(run("results " + file + " --format json").out);
        return string(
            json_object_to_json_string(at(json_object_array_get_idx(cases.get(), 0), {"results"})));
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

} // namespace
