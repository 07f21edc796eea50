// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/text.h"

#include <gtest/gtest.h>

using namespace telvo;

TEST(Text, OnlyWellFormedUtf8IsValid) {
    const std::pair<const char*, std::string_view> valid[] = {
        {"empty", ""},
        {"two bytes", "Fl\xC3\xB6z"},
        {"three bytes", "\xE2\x82\xAC"},
        {"four bytes", "\xF0\x9F\x98\x80"},
        {"last code point", "\xF4\x8F\xBF\xBF"}};
    for (const auto& [label, bytes] : valid)
        EXPECT_TRUE(isValidUtf8(bytes)) << label;
    const std::pair<const char*, std::string_view> invalid[] = {
        {"Windows-1252", "Fl\xF6z"},        {"continuation alone", "\x80"},
        {"cut short", "a\xE2\x82"},         {"overlong two", "\xC0\xAF"},
        {"overlong three", "\xE0\x80\xAF"}, {"overlong four", "\xF0\x80\x80\xAF"},
        {"surrogate", "\xED\xA0\x80"},      {"beyond the last", "\xF4\x90\x80\x80"},
        {"bad third byte", "\xE2\x82\x41"}};
    for (const auto& [label, bytes] : invalid)
        EXPECT_FALSE(isValidUtf8(bytes)) << label;
    // Euro, right quote, a byte without a character, Y with diaeresis, e acute, y with diaeresis.
    EXPECT_EQ(utf8FromWindows1252("a\x80\x92\x81\x9F\xE9\xFF"),
              "a\xE2\x82\xAC\xE2\x80\x99\xC2\x81\xC5\xB8\xC3\xA9\xC3\xBF");
}

TEST(Text, LinesEndWithAnyLineBreak) {
    using Lines = std::vector<std::string_view>;
    const std::pair<std::string_view, Lines> rows[] = {{"", {}},
                                                       {"a", {"a"}},
                                                       {"a\r\n", {"a"}},
                                                       {"a\r\nb\nc\rd", {"a", "b", "c", "d"}},
                                                       {"\r\n\r\n", {"", ""}},
                                                       {"\n\r\n", {"", ""}},
                                                       {"a\n\rb", {"a", "", "b"}}};
    for (const auto& [text, lines] : rows)
        EXPECT_EQ(splitLines(text), lines) << testing::PrintToString(text);
}

TEST(Text, ExcerptShowsForeignTextSafely) {
    const struct {
        const char* label;
        std::string text, shown;
    } rows[] = {{"short enough", "abcde", "abcde"},
                {"cut", "abcdef", "abcde..."},
                {"cut between characters", "abcd\xC3\xB6\xC3\xB6", "abcd\xC3\xB6..."},
                {"controls", std::string("a\tb\0\x7F", 5), "a?b??"},
                {"invalid bytes", "a\xFF", "a?"}};
    for (const auto& row : rows)
        EXPECT_EQ(excerpt(row.text, 5), row.shown) << row.label;
    EXPECT_EQ(withoutControls("a\r\nb\x1B[0m"), "a  b [0m");
}
