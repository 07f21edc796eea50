// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/escapes.h"
#include "base/text.h"

#include <gtest/gtest.h>

using namespace telvo;

TEST(Text, OnlyWellFormedUtf8IsValidTheRestIsWindows1252) {
    for (const char* valid :
         {"", "Fl\xC3\xB6z", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(isValidUtf8(valid)) << valid;
    // Alone, cut short, overlong in two, three and four bytes, a surrogate, beyond the last, no
    // tail.
    for (const char* invalid :
         {"Fl\xF6z", "\x80", "a\xE2\x82", "\xC0\xAF", "\xE0\x80\xAF", "\xF0\x80\x80\xAF",
          "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82\x41"})
        EXPECT_FALSE(isValidUtf8(invalid)) << testing::PrintToString(invalid);
    // Euro, right quote, a byte without a character, Y with diaeresis, e acute, y with diaeresis.
    EXPECT_EQ(utf8FromWindows1252("a\x80\x92\x81\x9F\xE9\xFF"),
              "a\xE2\x82\xAC\xE2\x80\x99\xC2\x81\xC5\xB8\xC3\xA9\xC3\xBF");
}

TEST(Text, LinesEndWithAnyLineBreak) {
    using Lines = std::vector<std::string_view>;
    EXPECT_EQ(splitLines(""), Lines());
    EXPECT_EQ(splitLines("\r\n\n"), Lines({"", ""}));
    EXPECT_EQ(splitLines("a\r\nb\nc\rd\n\re"), Lines({"a", "b", "c", "d", "", "e"}));
}

TEST(Text, ExcerptShowsForeignTextSafely) {
    EXPECT_EQ(excerpt("abcde", 5), "abcde");
    EXPECT_EQ(excerpt("abcdef", 5), "abcde...");
    EXPECT_EQ(excerpt("abcd\xC3\xB6\xC3\xB6", 5), "abcd\xC3\xB6...");
    EXPECT_EQ(excerpt(std::string("a\t\0\x7F\xFF", 5), 5), "a????");
}

TEST(ForTerminal, WritesOutWhatWouldSteerATerminalOrForgeALine) {
    EXPECT_EQ(forTerminal("a.TLV: OK\nb\r\t\x1B[2J\x7F"), "a.TLV: OK\\nb\\x0D\\t\\x1B[2J\\x7F");
    EXPECT_EQ(forTerminal("\xC2\x9B"
                          "1m"),
              "\\x9B1m")
        << "the same command in one character";
    EXPECT_EQ(forTerminal("a\xE2\x80\xAEVLT"), "a\\u202EVLT");
    EXPECT_EQ(forTerminal("Fl\xF6z"), "Fl\\xF6z") << "no UTF-8";
    EXPECT_EQ(forTerminal("Fl\xC3\xB6z \xE2\x82\xAC \xF0\x9F\x9A\x9C \\"),
              "Fl\xC3\xB6z \xE2\x82\xAC \xF0\x9F\x9A\x9C \\");
    EXPECT_EQ(withEscapedBytes("Fl\xF6z\n\xC3\xB6"), "Fl\\xF6z\n\xC3\xB6");
}
