// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>

namespace telvo {

/// The time that files which carry one are to have, in seconds since 1970: what SOURCE_DATE_EPOCH
/// in the environment says, so that the same call writes the same bytes. Nothing where it says
/// nothing.
std::optional<std::int64_t> sourceDate();

} // namespace telvo
