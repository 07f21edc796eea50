// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/IndexedArray.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::project {

inline constexpr std::int16_t English = 0;
inline constexpr std::int16_t Metric = 1;

/// Most entries of a panel; it has one center-to-center distance fewer.
inline constexpr int MaxEntries = 10;

/// Loading conditions by `Anal` (0 to 3), as reports and forms name them.
inline constexpr IndexedArray<std::string_view, 0, 3> LoadingConditionNames = {
    {"DEVELOPMENT LOAD (NO NEARBY GOB)", "ONE ACTIVE RETREAT SECTION",
     "ONE ACTIVE SECTION AND ONE SIDE GOB", "ONE ACTIVE SECTION AND TWO SIDE GOBS"}};

/// All input parameters of one case: one retreat mining panel with the gobs around it.
/// Lengths are ft (English) or m (metric), angles degrees, flags 0 or 1.
struct ProjectInput {
    double EntryHeight = 0; // entry (mining) height; ft | m
    double DepthCover = 0;  // depth of cover; ft | m
    double EntryWidth = 0;  // ft | m
    double XcutSpacing = 0; // crosscut spacing, center to center; ft | m
    double XcutAngle = 90;  // crosscut angle; degrees
    std::int16_t NumberEntries = 2;
    /// Element i: center-to-center distance between entry i and i + 1; ft | m.
    /// Only elements 1 to NumberEntries - 1 have a meaning.
    IndexedArray<double, 1, 9> XcutCenters;
    double CoalStrength = 900;          // in situ coal strength; psi | MPa
    double UnitWeight = 162;            // overburden unit weight; pcf | kN/m3
    double BreadthAMZ = 0;              // breadth of the active mining zone; ft | m
    std::int16_t Anal = 0;              // loading condition, 0 to 3
    std::int16_t Reserved = 0;          // carried through the case file, used by nothing else
    std::int16_t AMZ = 1;               // 1: BreadthAMZ is computed from the depth of cover
    float ArchFactor = 1.0F;            // pressure arch factor Fpa; fraction
    std::int16_t Arch = 1;              // 1: ArchFactor is computed
    double ExtentActiveGob = 0;         // ft | m
    double AbutmentAngleActiveGob = 21; // degrees
    double ExtentFirstGob = 0;          // first side gob; ft | m
    double AbutmentAngleFirstGob = 21;  // degrees
    double BarrierFirstGob = 0;         // width of the barrier pillar; ft | m
    double SlabcutFirstGob = 0;         // slab cut taken from that barrier; ft | m
    double ExtentSecondGob = 0;         // second side gob; ft | m
    double AbutmentAngleSecondGob = 21; // degrees
    double BarrierSecondGob = 0;        // ft | m
    double SlabcutSecondGob = 0;        // ft | m
    std::int16_t RowA = 0;              // 1: the row of pillars is left
    std::int16_t RowB = 0;
    std::int16_t RowC = 0;
    std::int16_t RowD = 0;
    float WidthC = 0; // pillar width of row C; ft | m
    float WidthD = 0; // pillar width of row D; ft | m

    bool operator==(const ProjectInput&) const = default;
};

/// Number of center-to-center distances of a record, which is its number of pillars: 0 to 9.
constexpr int distanceCount(const ProjectInput& in) {
    return std::clamp(in.NumberEntries - 1, 0, MaxEntries - 1);
}

/// Panel width: the sum of the center-to-center distances; ft | m.
constexpr double panelWidth(const ProjectInput& in) {
    double width = 0;
    for (int i = 1; i <= distanceCount(in); ++i)
        width += in.XcutCenters[i];
    return width;
}

/// One case: the parameters and the values that are kept beside them in the same file.
struct ProjectCase {
    ProjectInput Input;
    std::int16_t Units = English; // 0 English, else metric
    std::string Title;            // one line, UTF-8
    std::string Description;      // lines joined by CR LF, UTF-8
    std::int16_t DescriptionLines = 0;
    std::int16_t FileVersion = 53; // level of the file that was read: 50, 51, 52 or 53
    std::string FileName = "Untitled";

    bool operator==(const ProjectCase&) const = default;
};

/// Items of the open case that the file it was read from did not give: it broke off before them, or
/// it is of a level that lacks them. They hold what the record held before.
struct KeptItems {
    std::vector<std::string> items; ///< names of the case file, in its order
    std::string from;               ///< name of the case before; empty: the defaults of a new case
    std::int16_t units = English;   ///< units in which that case held its values
    bool damaged = false;           ///< the file broke off
};

/// The case that a program has open, held twice: the project copy is what was last read, saved or
/// accepted, and what a save writes; the working copy is what a trial run computes from, so that it
/// changes nothing of the project.
struct OpenCase {
    ProjectCase Project;
    ProjectInput Working;
    KeptItems Kept; ///< empty once the values were accepted in the parameter form

    /// After every read, and when the parameter form opens.
    void copyProjectToWorking() { Working = Project.Input; }
    /// The case of a trial run: the working inputs with the case-level values of the project.
    ProjectCase workingCase() const {
        ProjectCase trial = Project;
        trial.Input = Working;
        return trial;
    }
};

/// Makes `current` a new case: every parameter at its default in the unit system of the case, no
/// title and no description. `Reserved` keeps its value.
/// Given: units     the unit system to take, or a negative number to keep that of the case
///        untitled  whether the file name becomes "Untitled"
void newCase(ProjectCase& current, int units, bool untitled);

/// A new case with defaults in the given unit system.
ProjectCase newCase(std::int16_t units);

} // namespace telvo::project
