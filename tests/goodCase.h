// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/ProjectInput.h"

namespace telvo::tests {

/// A case that every check accepts and no advisory concerns.
inline project::ProjectCase goodCase(std::int16_t units = project::English) {
    project::ProjectCase current = project::newCase(units);
    auto& in = current.Input;
    in.EntryHeight = 6;
    in.DepthCover = 1000;
    in.EntryWidth = 20;
    in.XcutSpacing = 90;
    in.NumberEntries = 4;
    in.XcutCenters[1] = in.XcutCenters[2] = in.XcutCenters[3] = 80;
    in.BreadthAMZ = 158;
    in.ArchFactor = 0.60F;
    return current;
}

} // namespace telvo::tests
