// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/ProjectInput.h"

#include <string>
#include <string_view>
#include <vector>

/// Words for the items that a case file did not give.
namespace telvo::project {

/// An item of the case file as a user knows it, "Depth of Cover"; empty for one that the user does
/// not see.
std::string itemLabel(std::string_view item);

/// Control of the parameter form that edits an item, such as "txtDepthCover".
std::string itemControl(std::string_view item);

/// An item with its value and unit, "Depth of Cover 150 (m)"; empty as its label is.
/// Given: units  unit system that the value is named in
std::string itemText(std::string_view item, const ProjectCase& current, std::int16_t units);

/// The items of a case that are not among `kept`, with values and units, joined by ", ".
std::string givenItemsText(const KeptItems& kept, const ProjectCase& current);

/// The kept items, with the values and the units of the case that they come from.
std::string keptItemsText(const KeptItems& kept, const ProjectCase& current);

/// Where the kept items come from: "the case before, a.TLV, in metric units" and a remark when the
/// case at hand counts them in other units.
std::string keptOrigin(const KeptItems& kept, const ProjectCase& current);

} // namespace telvo::project
