// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/unitCalculator.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace telvo::project;

namespace {

const CalculatorQuantity& quantity(std::string_view name) {
    const auto all = calculatorQuantities();
    return *std::find_if(all.begin(), all.end(), [&](const auto& q) { return q.name == name; });
}

std::size_t indexOf(const CalculatorQuantity& of, std::string_view symbol) {
    const auto found = std::find_if(of.units.begin(), of.units.end(),
                                    [&](const auto& unit) { return unit.symbol == symbol; });
    return static_cast<std::size_t>(found - of.units.begin());
}

std::string converted(std::string_view name, std::string_view entry, std::string_view from,
                      std::string_view to) {
    const CalculatorQuantity& of = quantity(name);
    return convertEntry(entry, of, indexOf(of, from)).results.at(indexOf(of, to));
}

} // namespace

TEST(UnitCalculator, ConvertsByItsOwnFactors) {
    // By hand from the definitions 1 in = 2.54 cm, 1 lb = 4.4482204893932 N, 1 psi = 6894.757293
    // Pa.
    const struct {
        const char *quantity, *entry, *from, *to, *result;
    } rows[] = {
        {"Length", "12", "ft", "in", "144"},
        {"Length", "1", "ft", "m", "0.3048"},
        {"Length", "3.048", "m", "ft", "10"},
        {"Length", "100", "cm", "in", "39.37007874"}, // 100 / 2.54
        {"Load", "3", "ton", "lb", "6000"},
        {"Load", "1", "ton", "kN", "8.896440979"}, // 2000 x 4.4482204893932 / 1000
        {"Load", "1", "MN", "ton", "112.4045"},    // 1000 / 8.8964409787864
        {"Load", "1", "kip", "N", "4448.220489"},
        {"Load Gradient", "1", "lb/ft", "N/m", "14.59389924"},   // 4.4482204893932 / 0.3048
        {"Load Gradient", "1", "lb/in", "kN/m", "0.1751267909"}, // 4.4482204893932 / 25.4
        {"Load Gradient", "1", "ton/ft", "MN/m", "0.02918779849"},
        {"Load Gradient", "5", "kip/ft", "ton/ft", "2.5"},
        {"Stress", "900", "psi", "MPa", "6.205281564"}, // 900 x 6894.757293 / 1E6
        {"Stress", "2", "psi", "psf", "288"},
        {"Stress", "1", "psf", "Pa", "47.88025898"}, // 6894.757293 / 144
        {"Stress", "1", "MPa", "ksi", "0.1450377377"},
        {"Stress Gradient", "1.1", "psi/ft", "kPa/m", "24.88265427"}, // 1.1 x 6.894757293 / 0.3048
        {"Stress Gradient", "1000", "Pa/m", "psi/ft", "0.04420750246"}, // 304.8 / 6894.757293
        {"Stress Gradient", "1", "MPa/m", "psi/in", "3.683958538"},
        {"Unit Weight", "162", "pcf", "kN/m3", "25.44648263"}, // 162 / 6.36630226392005
        {"Unit Weight", "25", "kN/m3", "pcf", "159.1575566"}}; // 25 x 6.36630226392005
    for (const auto& row : rows)
        EXPECT_EQ(converted(row.quantity, row.entry, row.from, row.to), row.result)
            << row.entry << ' ' << row.from << " to " << row.to;
}

TEST(UnitCalculator, OneEntryIsShownInEveryUnit) {
    const struct {
        const char *quantity, *from;
        std::vector<std::string> shown;
    } rows[] = {
        {"Length", "m", {"3.280839895", "39.37007874", "100", "1"}},
        {"Load", "MN", {"224809", "224.809", "112.4045", "1000000", "1000", "1"}},
        {"Load Gradient",
         "kN/m",
         {"68.5217832", "5.7101486", "0.0685217832", "0.0342608916", "1000", "1", "0.001"}},
        {"Stress", "MPa", {"145.0377377", "20885.43423", "0.1450377377", "1000000", "1000", "1"}},
        {"Stress Gradient", "MPa/m", {"44.20750246", "3.683958538", "1000000", "1000", "1"}}};
    for (const auto& row : rows) {
        const CalculatorQuantity& of = quantity(row.quantity);
        EXPECT_EQ(convertEntry("1", of, indexOf(of, row.from)).results, row.shown) << row.quantity;
    }
}

TEST(UnitCalculator, ShowsNothingForWhatIsNoNumber) {
    for (const char* entry : {"", " ", "-", "1-2", "1.2.3", "1e", "ft", "1e999", "5 3"}) {
        const Conversions made = convertEntry(entry, quantity("Length"), 0);
        EXPECT_EQ(made.results, std::vector<std::string>(4)) << entry;
        EXPECT_EQ(made.note.empty(), std::string_view(" ").starts_with(entry)) << entry;
    }
    EXPECT_EQ(converted("Length", " -1e1 ", "ft", "in"), "-120");
    EXPECT_EQ(converted("Length", "-0", "ft", "in"), "0");
}

TEST(UnitCalculator, OnlyAResultOverflows) {
    EXPECT_EQ(converted("Load", "1e305", "MN", "N"), "");
    EXPECT_EQ(converted("Load", "1e305", "MN", "kN"), "1E+308");
    EXPECT_FALSE(convertEntry("-1e305", quantity("Load"), 5).note.empty());
    EXPECT_EQ(converted("Load", "1e308", "N", "MN"), "1E+302");
}
