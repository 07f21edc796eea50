// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/quantityNames.h"

namespace telvo::cli {

using engine::flatten;
using engine::isIndexed;
using engine::isPerPillar;
using engine::visitNamed;

} // namespace telvo::cli
