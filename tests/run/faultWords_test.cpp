// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/faultWords.h"

#include "project/fieldNames.h"
#include "project/inputFields.h"
#include "run/caseRun.h"

#include "goodCase.h"

#include <gtest/gtest.h>

namespace telvo::run {

namespace {

using tests::goodCase;

Fault stopOf(void (*edit)(project::ProjectInput&)) {
    project::ProjectCase current = goodCase();
    edit(current.Input);
    const RunOutcome outcome = runCase(current);
    return std::holds_alternative<Fault>(outcome) ? std::get<Fault>(outcome) : Fault{};
}

} // namespace

TEST(FaultWords, AreThoseOfTheScreen) {
    using In = project::ProjectInput&;
    const struct {
        void (*edit)(In);
        const char* text;
        const char* control;
    } rows[] = {
        {[](In in) { in.AbutmentAngleActiveGob = 0; },
         "Abutment Angle, Active Gob (degrees): Front abutment load cannot be computed: the "
         "abutment angle of the active gob is 0",
         "txtAbutmentAngleActiveGob"},
        {[](In in) { in.ArchFactor = 0, in.Arch = 0; },
         "Pressure Arch Factor: TELVO stability factor (development) cannot be computed: the load "
         "on the AMZ is 0 with Pressure Arch Factor = 0",
         "txtArchFactor"},
        {[](In in) { in.NumberEntries = 1; },
         "Number of Entries: Extraction ratio within the AMZ cannot be computed: the panel has "
         "fewer than two entries",
         "Combo1"},
        {[](In in) { in.XcutCenters[2] = 10; },
         "Center to Center Distance #2 (ft): Invalid Pillar Dimensions: width of the pillars of "
         "pillar 2 is -10, the entry width exceeds the center-to-center distance",
         "txtXcutCenters_2"},
        {[](In in) { in.RowA = in.RowB = 1, in.NumberEntries = 2, in.Anal = 1; },
         "Leave pillar Row 'A' in place, Leave pillar Row 'B' in place: Active width cannot be "
         "computed: rows A and B both claim the panel's only pillar",
         "chkRowA"},
    };
    for (const auto& row : rows) {
        const Fault stop = stopOf(row.edit);
        EXPECT_EQ(faultText(inWords(stop, project::English)), row.text);
        EXPECT_EQ(asRefusal(stop, project::English).control, row.control);
    }
    const Fault angle = stopOf(rows[0].edit);
    EXPECT_EQ(inWords(angle, project::English, true).where,
              "Abutment Angle, Active Gob (degrees) [AbutmentAngleActiveGob]");
}

TEST(FaultWords, EveryInputOfTheFormHasAName) {
    project::ProjectInput in;
    project::visitInputFields(in, [](const char* key, project::FieldKind, auto&) {
        const std::string name = key;
        if (name == "Reserved" || name == "AMZ" || name == "Arch") return; // no box of their own
        const auto known = project::inputNamed(name, project::Metric);
        ASSERT_TRUE(known) << name;
        EXPECT_NE(known->label, name);
    });
}

} // namespace telvo::run
