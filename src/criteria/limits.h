// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// The limits of the case-history data base, as the published recommendation has them. All depths
/// and widths are in feet in every unit system.
namespace telvo::criteria {

/// Between these depths of cover the suggested factor falls from SuggestedSF to LeastSF.
inline constexpr double ShallowLimit = 650;   // ft
inline constexpr double DeepLimit = 1000;     // ft
inline constexpr double VeryDeepLimit = 2000; // ft; three of seven retreat cases beyond it failed
/// Widest panel that the lower factors at depth hold for.
inline constexpr double PanelWidthLimit = 425; // ft

/// Suggested stability factor of the panel, and of the barriers beside it.
inline constexpr double SuggestedSF = 1.5;
/// By how much it falls between the depth limits for narrow panels.
inline constexpr double SuggestedFall = 0.2;
/// Suggested factor of narrow panels at depth, beyond DeepLimit.
inline constexpr double LeastSF = 1.3;
/// Barrier factor from which the lower factors at depth hold beside a side gob; also the factor of
/// a panel of slender pillars.
inline constexpr double StrongSF = 2.0;
/// Mean pillar width over mining height below which large groups of pillars may collapse suddenly.
inline constexpr double SlenderRatio = 4.0;

} // namespace telvo::criteria
