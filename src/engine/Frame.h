// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/number.h"
#include "engine/AnalysisResults.h"
#include "project/ProjectInput.h"

#include <cstdint>

namespace telvo::engine {

/// Both sides, whether they take part or not.
inline constexpr int AllSides[] = {FirstSide, SecondSide};

/// The sides (3, 4) that take part in a loading condition, to loop over.
class SidesInUse {
  public:
    struct Iterator {
        int side;
        TELVO_INLINE int operator*() const { return side; }
        TELVO_INLINE Iterator& operator++() {
            ++side;
            return *this;
        }
        TELVO_INLINE bool operator!=(const Iterator& other) const { return side != other.side; }
    };

    /// Given: loadingCondition  1 to 4; one side gob from 3, two from 4
    TELVO_INLINE constexpr explicit SidesInUse(int loadingCondition)
        : m_last(loadingCondition == TwoSideGobs  ? SecondSide
                 : loadingCondition == OneSideGob ? FirstSide
                                                  : FirstSide - 1) {}
    TELVO_INLINE Iterator begin() const { return {FirstSide}; }
    TELVO_INLINE Iterator end() const { return {m_last + 1}; }

  private:
    int m_last;
};

/// What all cases of a batch share, and what the rules may branch on with plain `if` and `for`.
struct Frame {
    std::int16_t Units = 0; // 0 English, else metric
    int AnalysisCase = 1;   // loading condition, 1 to 4
    int NumberPillars = 0;  // across the panel, 0 to 9
    bool RowLeft[4] = {};   // rows A to D
    bool ArchAutomatic = true;
    /// Every case has one center-to-center distance for all entries: pillars are computed once. Bit
    /// for bit the same; only a batch sets it.
    bool EqualPillars = false;

    TELVO_INLINE bool english() const { return Units == project::English; }
    /// Row 1 to 4: A, B, C, D.
    TELVO_INLINE bool rowLeft(int row) const { return RowLeft[row - 1]; }
    TELVO_INLINE bool oneActiveSection() const { return AnalysisCase == ActiveGob; }
    TELVO_INLINE SidesInUse sidesInUse() const { return SidesInUse(AnalysisCase); }
    /// Pillars between the outer rows that are left.
    TELVO_INLINE int firstActivePillar() const { return rowLeft(1) ? 2 : 1; }
    TELVO_INLINE int lastActivePillar() const {
        return rowLeft(2) ? NumberPillars - 1 : NumberPillars;
    }
};

} // namespace telvo::engine
