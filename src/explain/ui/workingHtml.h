// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "explain/Working.h"

#include <QString>

namespace telvo::explain::ui {

/// A working as rich text. The symbols of a formula are links to the steps that they come from.
/// Given: all  every step, in which names of other steps are looked up
QString workingHtml(const Chapters& shown, const Chapters& all);

/// Address of a link to a step, and back. Returned: an empty key for another kind of address.
QString linkTo(const std::string& key);
std::string keyOfLink(const QString& address);

} // namespace telvo::explain::ui
