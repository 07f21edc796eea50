// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace telvo::report {

/// Whether a text begins like a report or one of its pages: what may be replaced by another report.
bool beginsLikeReport(std::string_view text);

} // namespace telvo::report
