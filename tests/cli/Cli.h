// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

// Runs the console program as a user does: arguments in, texts, files and exit status out.
namespace telvo::test {

namespace fs = std::filesystem;
using std::string;

inline string readAll(const fs::path& file) {
    std::ostringstream bytes;
    bytes << std::ifstream(file, std::ios::binary).rdbuf();
    return bytes.str();
}

inline string without(string text, char c) {
    std::erase(text, c);
    return text;
}

inline string trim(string text) {
    text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
    return text.erase(text.find_last_not_of(' ') + 1);
}

#ifdef TELVO_DRAWS
inline constexpr bool Draws = true;
#else
inline constexpr bool Draws = false;
#endif

struct Ran {
    int status;
    string out, err;
};

/// A folder of its own with a few cases: plain.TLV (English, level 53), gobs.TLV (two side gobs),
/// metric.TLV, old.TLV (level 50), refused.TLV (depth 0), damaged.TLV (text for a number) and
/// nopillar.TLV (entries wider than the crosscut spacing). Tables: two.csv (the metric and the
/// plain case) and bad.csv (a row with text for the depth). A folder without cases: empty.
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
        write("nopillar.TLV", replaced(plain, "\n20\r", "\n95\r"));
        write("odd#2", plain);
        write("odd", plain);
        write("bad.csv", "Seam;Title;DepthCover;EntryHeight\na;One;6,5;7\nb;Two;deep;7\n");
        write("short.csv", "DepthCover,EntryHeight,Units\n5,6,0\n5\n7,6,0");
        const char ods[] = // a packed file whose only part is "content.xml"
            "PK\x03\x04\x14\0\0\0\0\0\0\0!\0\0\0\0\0\0\0\0\0\0\0\0\0\x0b\0\0\0content.xml"
            "PK\x01\x02\x14\x03\x14\0\0\0\0\0\0\0!\0\0\0\0\0\0\0\0\0\0\0\0\0\x0b\0\0\0\0\0\0\0\0\0"
            "\0\0\x80\x01\0\0\0\0content.xmlPK\x05\x06\0\0\0\0\x01\0\x01\0\x39\0\0\0\x29\0\0\0\0\0";
        write("old.ods", string(ods, sizeof ods - 1));
        fs::create_directory(m_folder / "empty");
        ASSERT_EQ(run("table export metric.TLV plain.TLV -o two.csv").status, 0);
    }
    void TearDown() override { fs::remove_all(m_folder); }

    /// Runs the program in the folder with arguments as the shell reads them.
    Ran run(const string& arguments, const string& input = "") {
        write("stdin", input);
        const string command = "cd '" + m_folder.string() +
                               "' && '" TELVO_CLI "' <stdin 2>stderr " +
                               (arguments.find(" >") == string::npos ? ">stdout " : "") + arguments;
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

} // namespace telvo::test
