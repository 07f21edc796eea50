// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/DecimalSymbol.h"

namespace telvo::app {

void DecimalSymbol::force() {}
void DecimalSymbol::restore() {}

} // namespace telvo::app
