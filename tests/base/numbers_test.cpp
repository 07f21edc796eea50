// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"

#include <clocale>
#include <gtest/gtest.h>
#include <locale>
#include <vector>

using namespace telvo;

namespace {

// clang-format off
const struct { const char* text; double value; std::size_t length; } Readings[] = {
    {"7.25", 7.25, 4}, {" \t 42", 42, 5}, {"3 4", 3, 1}, {"-1.5", -1.5, 4}, {"+1.5", 1.5, 4},
    {".5", 0.5, 2}, {"5.", 5, 2}, {"1.2.3", 1.2, 3}, {"1,5", 1, 1}, {"12ft", 12, 2}, {"0x10", 0, 1},
    {"1.5E3", 1500, 5}, {"1.5D+03", 1500, 7}, {"25d-1", 2.5, 5}, {"5E", 5, 1}, {"5E-", 5, 1},
    {"5E1.5", 50, 3}, {"1.7976931348623157e308", 1.7976931348623157e308, 22}, {"5e-324", 5e-324, 6},
    {"1e-999", 0, 6}, {"0e99999999999999999999", 0, 22}, {"0.0001e309", 1e305, 10}};
const std::string NoNumbers[] = {"", "   ", "-", ".", "E5", "- 5", "--5", "inf", "1e999", "1.8e308",
                                 std::string(400, '9')};

using Writing = std::pair<double, const char*>;
const Writing Generals[] = {
    {0, "0"}, {-0.0, "0"}, {-2.5, "-2.5"}, {0.1 + 0.2, "0.30000000000000004"}, {1e-5, "0.00001"},
    {1.25e-5, "0.0000125"}, {9.99e-6, "9.99E-06"}, {-1e-6, "-1E-06"}, {1e15, "1E+15"},
    {999999999999999, "999999999999999"}, {-1.5e15, "-1.5E+15"}, {1e100, "1E+100"},
    {1.7976931348623157e308, "1.7976931348623157E+308"}};

const std::pair<float, const char*> Singles[] = {
    {0.82F, "0.82"}, {1e-5F, "0.00001"}, {9e-6F, "9E-06"}, {1e15F, "1E+15"}, {16777216, "16777216"}};
const Writing TenDigits[] = {
    {1.0 / 3, "0.3333333333"}, {2.0 / 3, "0.6666666667"}, {162.5, "162.5"}, {99999.999999, "100000"},
    {9999999999.6, "10000000000"}, {123456789012, "123456789000"}, {999999999999999, "1E+15"},
    {9.99999999999e-6, "0.00001"}};

// Half away from zero on 15 digits: 1.005 and 0.1249999999999999 lie just below their tie in binary
// and on it in 15 digits, 0.12499999999999 is below it in both.
const struct { const char* pattern; std::vector<Writing> rows; } Patterns[] = {
    {"0", {{2.5, "3"}, {649.4999, "649"}, {0.49, "0"}, {1e18, "1000000000000000000"}}},
    {"##0", {{0, "0"}, {-0.4, "0"}, {999.5, "1000"}}},
    {"0.00", {{0.125, "0.13"}, {-0.125, "-0.13"}, {0.12499999999999, "0.12"},
              {0.1249999999999999, "0.13"}, {1.005, "1.01"}}},
    {"##0.00", {{0.005, "0.01"}, {0.0049, "0.00"}, {-0.0049, "0.00"}, {0.0005, "0.00"},
                {0.995, "1.00"}, {99999.999, "100000.00"}}},
    {"#0.00", {{1.5, "1.50"}}}, {"##0.0", {{0.05, "0.1"}, {24000, "24000.0"}}}, {"###0.0", {{12345.67, "12345.7"}}},
    {"##0.000", {{0.9996, "1.000"}}},
    {"#.00E+00", {{0, ".00E+00"}, {-0.0, ".00E+00"}, {9.996, "1.00E+01"}, {9.994, "9.99E+00"},
                  {1.125, "1.13E+00"}, {123456, "1.23E+05"}, {-1.5e7, "-1.50E+07"},
                  {0.00099951, "1.00E-03"}, {2e100, "2.00E+100"}}}};
// clang-format on

void checkAllConversions() {
    for (const auto& [text, value, length] : Readings) {
        const auto read = leadingNumber(text).value_or(LeadingNumber{-99, 0});
        EXPECT_TRUE(read.value == value && read.length == length) << text << ": " << read.value;
    }
    for (const auto& text : NoNumbers)
        EXPECT_TRUE(!leadingNumber(text) && leadingValue(text) == 0) << text;
    for (const auto& [value, text] : Generals)
        EXPECT_EQ(generalNumber(value), text);
    for (const auto& [value, text] : Singles)
        EXPECT_EQ(generalNumber(value), text);
    for (const auto& [value, text] : TenDigits)
        EXPECT_EQ(generalNumber(value, 10), text);
    for (const auto& [pattern, rows] : Patterns)
        for (const auto& [value, text] : rows)
            EXPECT_EQ(formatPattern(value, pattern), text) << pattern << " of " << value;
}

struct CommaPunctuation : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

} // namespace

TEST(Numbers, ReadAndWrittenByTheirRulesUnderADecimalCommaToo) {
    checkAllConversions();
    const std::locale comma(std::locale::classic(), new CommaPunctuation);
    const auto before = std::locale::global(comma);
    checkAllConversions();
    std::locale::global(before);
}

TEST(Numbers, DecimalCommaOfTheSystemChangesNothing) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    bool found = false;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "de-DE"})
        found = found || (std::setlocale(LC_ALL, name) && *std::localeconv()->decimal_point == ',');
    if (found) checkAllConversions();
    std::setlocale(LC_ALL, before.c_str());
    if (!found) GTEST_SKIP() << "no locale with a decimal comma is installed";
}

TEST(Numbers, HundredthsRoundTiesToEven) {
    // 1.005 * 100 is 100.49999999999999; 1e308 * 100 would overflow.
    const std::pair<double, double> rows[] = {{0.125, 0.12}, {0.375, 0.38}, {-0.125, -0.12},
                                              {1.115, 1.12}, {1.005, 1.00}, {1e308, 1e308}};
    for (const auto& [value, rounded] : rows)
        EXPECT_EQ(roundHalfEven2(value), rounded);
}
