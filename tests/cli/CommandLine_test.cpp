// SPDX-License-Identifier: GPL-3.0-or-later
// The commands with streams of their own, without a shell or a program.

#include "cli/CommandLine.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace telvo::cli {

namespace {

/// A temporary file that goes with its last user.
class Stream {
  public:
    Stream() : m_file(std::tmpfile(), std::fclose) {}
    explicit Stream(const std::string& bytes) : Stream() {
        std::fwrite(bytes.data(), 1, bytes.size(), file());
        std::rewind(file());
    }
    std::FILE* file() const { return m_file.get(); }
    std::string bytes() const {
        std::rewind(file());
        std::string all;
        for (int c; (c = std::fgetc(file())) != EOF;)
            all += static_cast<char>(c);
        return all;
    }

  private:
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> m_file;
};

struct Call {
    int status;
    std::string out, err;
};

Call call(std::vector<std::string> arguments, const std::string& input = "") {
    arguments.insert(arguments.begin(), "telvo-cli");
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    const Stream in(input), out, err;
    Console console(in.file(), out.file(), err.file());
    CommandLine line(console);
    const int status = line.run(static_cast<int>(pointers.size()), pointers.data());
    return {status, out.bytes(), err.bytes()};
}

TEST(CommandLine, TalksOnlyThroughTheStreamsItIsGiven) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const Call made = call({"new", "-", "--units", "metric"});
    EXPECT_EQ(made.status, AllGood);
    const Call checked = call({"check", "-"}, made.out);
    EXPECT_EQ(checked.status, Refused);
    EXPECT_EQ(checked.out, "Invalid entry height\n");
    EXPECT_EQ(call({"report", "-"}, made.out).err, "telvo-cli: -: Invalid entry height\n");
    const std::string example = TELVO_EXAMPLES_DIR "/two-side-gobs.TLV";
    EXPECT_EQ(call({"check", example}).out, "OK\n");
    EXPECT_NE(call({"results", example}).out.find("TELVOSF.retreat"), std::string::npos);
    const Call help = call({"report", "--help"});
    EXPECT_EQ(help.status, AllGood);
    EXPECT_NE(help.out.find("telvo-cli report panel.TLV"), std::string::npos);
    const Call misspelt = call({"chek", "-"});
    EXPECT_EQ(misspelt.status, WrongUsage);
    EXPECT_EQ(misspelt.err, "telvo-cli: chek: is no command; near it: check\n");
    const Call plotted = call({"plot", "-", "--kind", "plan", "-o", "x.svg"}, made.out);
    EXPECT_EQ(plotted.status, WrongUsage);
    EXPECT_NE(plotted.err.find("this build has no drawing"), std::string::npos);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace

} // namespace telvo::cli
