// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/fieldText.h"

#include "project/ProjectInput.h"

#include <gtest/gtest.h>

namespace telvo::project {

TEST(FieldText, AnotherUnitIsConvertedAndSaidSoItsOwnIsDropped) {
    const struct {
        const char* text;
        FieldKind kind;
        std::int16_t units;
        const char* number;
        const char* remark;
    } taken[] = {
        {"275 m", FieldKind::Length, English, "902.231", "275 m is 902.231 ft"}, // 275 / 0.3048
        {"900 ft", FieldKind::Length, English, "900", ""},
        {"900 ft", FieldKind::Length, Metric, "274.32", "900 ft is 274.32 m"},
        {"84 in", FieldKind::Length, English, "7", "84 in is 7 ft"},
        {"1,234.5 FT", FieldKind::Length, English, "1234.5", ""},
        {"60\u00B0", FieldKind::Angle, Metric, "60", ""},
        {"900 psi", FieldKind::Strength, Metric, "6.205283", "900 psi is 6.205283 MPa"},
        {"6.21 MPa", FieldKind::Strength, Metric, "6.21", ""},
        {"25 kN/m\u00B3", FieldKind::UnitWeight, English, "159.1576",
         "25 kN/m\u00B3 is 159.1576 pcf"},
    };
    for (const auto& c : taken) {
        const FieldText read = readFieldText(c.text, c.kind, c.units);
        EXPECT_EQ(read.number, c.number) << c.text << ' ' << read.refusal;
        EXPECT_EQ(read.remark, c.remark) << c.text;
        EXPECT_EQ(read.refusal, "") << c.text;
    }
    for (const auto& [text, kind] : {std::pair{"275 psi", FieldKind::Length},
                                     {"0.5 ft", FieldKind::Number},
                                     {"1,234", FieldKind::Length},
                                     {"10 furlongs", FieldKind::Length}}) {
        const FieldText read = readFieldText(text, kind, English);
        EXPECT_EQ(read.number, "") << text;
        EXPECT_TRUE(read.refusal.starts_with(std::string("'") + text + "' is not taken: "))
            << read.refusal;
    }
}

} // namespace telvo::project
