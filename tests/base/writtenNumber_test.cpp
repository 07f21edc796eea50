// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/writtenNumber.h"

#include "base/numbers.h"

#include <gtest/gtest.h>

#include <random>

namespace telvo {

TEST(WrittenNumbers, AreTakenRightOrRefusedAndNeverCut) {
    const struct {
        const char* text;
        const char* number; ///< nullptr: refused
        const char* unit = "";
    } cases[] = {
        {"850", "850"},
        {" 850\r\n", "850"},
        {"-12.5", "-12.5"},
        {"+7", "7"},
        {".5", ".5"},
        {"5.", "5"},
        {"1.234", "1.234"}, // the decimal sign of the program
        {"1,234.5", "1234.5"},
        {"1.234,5", "1234.5"},
        {"1,234,567", "1234567"},
        {"1.234.567", "1234567"},
        {"12,345,678.25", "12345678.25"},
        {"1 200", "1200"},
        {"1\u00A0200,5", "1200.5"},
        {"1\u202F200.5", "1200.5"},
        {"1'200.5", "1200.5"},
        {"72,5", "72.5"},
        {"0,125", "0.125"},
        {"1234,567", "1234.567"},
        {"\u2212 5", nullptr},
        {"\u22125", "-5"},
        {"6.2e3", "6.2E3"},
        {"1D-2", "1E-2"},
        {"275 m", "275", "m"},
        {"60deg", "60", "deg"},
        {"25.45 kN/m3", "25.45", "kN/m3"},
        {"1,234.5 ft", "1234.5", "ft"},
        {"500 (ft)", "500", "(ft)"},
        {"1,234", nullptr},
        {"12,34,567", nullptr},
        {"1,2345.6", nullptr},
        {"1.2.3", nullptr},
        {"1,234.567,8", nullptr},
        {"12 34", nullptr},
        {"1 200 300 4", nullptr},
        {"5 6 7", nullptr},
        {"80\t90", nullptr},
        {"80\n90", nullptr},
        {"80-90", nullptr},
        {"80; 90", nullptr},
        {"10 ft 6 in", nullptr},
        {"", nullptr},
        {"ft", nullptr},
        {"-", nullptr},
        {"1e999", nullptr},
    };
    for (const auto& c : cases) {
        const WrittenNumber read = readWrittenNumber(c.text);
        EXPECT_EQ(read.why.empty(), c.number != nullptr) << c.text << ": " << read.number;
        if (!c.number) continue;
        EXPECT_EQ(read.number, c.number) << c.text << ": " << read.why;
        EXPECT_EQ(read.unit, c.unit) << c.text;
    }
}

/// Whatever is pasted: what is taken is a number from end to end for the rule that reads the box.
TEST(WrittenNumbers, AnythingTakenIsOneLeadingNumber) {
    std::mt19937 random(7);
    const std::string signs = "0123456789,. '-+eEdm\t\n";
    int taken = 0;
    for (int i = 0; i < 200000; ++i) {
        std::string text;
        for (std::size_t n = random() % 9; n > 0; --n)
            text += signs[random() % signs.size()];
        const WrittenNumber read = readWrittenNumber(text);
        if (!read.why.empty() || !read.unit.empty()) continue;
        ++taken;
        const auto number = leadingNumber(read.number);
        ASSERT_TRUE(number && number->length == read.number.size()) << text << " " << read.number;
        // No figure is lost on the way.
        std::string figures, kept;
        for (const char c : text)
            if (c >= '0' && c <= '9') figures += c;
        for (const char c : read.number)
            if (c >= '0' && c <= '9') kept += c;
        ASSERT_EQ(figures, kept) << text;
    }
    EXPECT_GT(taken, 1000);
}

TEST(PartlyRead, TellsWhatTheLeadingNumberIs) {
    EXPECT_EQ(partlyRead("1 200"), "'1 200' is read as 1");
    EXPECT_EQ(partlyRead("1.234.5"), "'1.234.5' is read as 1.234");
    EXPECT_EQ(partlyRead("1e999"), "'1e999' is read as 0");
    EXPECT_EQ(partlyRead("-"), "'-' is read as 0");
    for (const char* whole : {"", "  ", "5", " 5 ", "-1.5E3", "5."})
        EXPECT_FALSE(partlyRead(whole)) << whole;
}

} // namespace telvo
