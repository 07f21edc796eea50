// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace telvo::project {

/// The figures by which a panel is judged, as texts for the screen; empty where one cannot be
/// computed or does not arise.
struct KeyFigures {
    std::string PanelWidth; // without its unit
    std::string DevelopmentSF;
    std::string RetreatSF;
    std::string BarrierSF; // the lowest one with the barrier and pass that it belongs to

    std::string why;        // there are no factors, in the words of the screen
    std::string whyControl; // box or check box of the parameter form that it speaks of
};

} // namespace telvo::project
