// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/association.h"

#include "base/files.h"
#include "RecordedMessages.h"

#include <gtest/gtest.h>

namespace telvo::app {
namespace {

std::string execOf(std::string_view program) {
    const std::string entry = desktopEntry(program);
    const auto start = entry.find("\nExec=") + 6;
    return entry.substr(start, entry.find('\n', start) - start);
}

TEST(Association, ProgramPathsAreQuotedForTheDesktopEntry) {
    const struct {
        const char *program, *exec;
    } rows[] = {
        {"/usr/bin/telvo", "/usr/bin/telvo %f"},
        {"/opt/my mine/telvo", R"("/opt/my mine/telvo" %f)"},
        {"/opt/100%/telvo", "/opt/100%%/telvo %f"},
        {"/opt/$a`b\"/telvo", R"("/opt/\\$a\\`b\\"/telvo" %f)"},
        {"/opt/a\\b", R"("/opt/a\\\\b" %f)"},
        {"/opt/a\nb;rm", R"("/opt/a\nb;rm" %f)"},
        {"/opt/Z\xC3\xBC/telvo", "/opt/Z\xC3\xBC/telvo %f"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(execOf(row.program), row.exec);
    EXPECT_EQ(openCommand("C:\\Mine 1\\TELVO.EXE"), "\"C:\\Mine 1\\TELVO.EXE\" \"%1\"");
}

TEST(Association, InstalledFilesAreThoseOfTheCommand) {
    const std::string packaging = std::string(TELVO_EXAMPLES_DIR) + "/../packaging/";
    EXPECT_EQ(*readFile(packaging + "telvo.desktop"), desktopEntry("telvo"));
    EXPECT_EQ(*readFile(packaging + "telvo-mime.xml"), mimePackage("TLV"));
    EXPECT_NE(mimePackage("A&<").find("\"*.a&amp;&lt;\""), std::string::npos);
}

#ifndef _WIN32
TEST(Association, FilesGoBelowTheUsersDataHome) {
    EXPECT_EQ(userDataHome("/data", "/home/ann"), "/data");
    EXPECT_EQ(userDataHome(nullptr, "/home/ann"), "/home/ann/.local/share");
    EXPECT_EQ(userDataHome("relative", "/home/ann"), "/home/ann/.local/share");
    EXPECT_EQ(userDataHome("", ""), "");
    EXPECT_EQ(associationFiles("/data").mimePackage, "/data/mime/packages/telvo.xml");
    EXPECT_EQ(associationFiles("/data").desktopEntry, "/data/applications/telvo.desktop");
}
#endif

TEST(Association, AsksFirstAndTellsInAnyCase) {
    const std::string question = "Program Options: Message: This operation may break an existing "
                                 "association of file extension TLV with other programs on this "
                                 "computer. Proceed?";
    const std::string done =
        "Program Options: Message: The file association for TLV has been made to /bin/telvo";
    using Lines = std::vector<std::string>;
    const struct {
        const char* extension;
        std::deque<Answer> answers;
        bool works;
        Lines lines; // of the history
        int calls;
    } rows[] = {
        {"TLV", {Answer::Yes}, true, {question, done}, 1},
        {"TLV", {}, true, {question}, 0}, // a hasty Return
        {"TLV", {Answer::Yes}, false, {question, "/x: no room", done}, 1},
        {" ",
         {Answer::Yes},
         true,
         {"Program Options: Error: No file extension is set. Enter one under Utilities, Settings, "
          "Files."},
         0},
        {"*",
         {Answer::Yes},
         true,
         {"Program Options: Invalid Character: Invalid character in file extension"},
         0},
    };
    for (const auto& row : rows) {
        test::RecordedMessages messages;
        messages.answers = row.answers;
        int calls = 0;
        const auto associate = [&] {
            ++calls;
            return row.works ? success() : Status(Fault{"no room", "/x"});
        };
        associateExtension(row.extension, "/bin/telvo", associate, messages);
        EXPECT_EQ(messages.lines, row.lines);
        EXPECT_EQ(calls, row.calls) << row.extension;
    }
}

} // namespace
} // namespace telvo::app
