// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/DecimalSymbol.h"

#include <windows.h>

namespace telvo::app {

void DecimalSymbol::force() {
    char symbol[8] = {};
    const LCID locale = GetUserDefaultLCID();
    if (GetLocaleInfoA(locale, LOCALE_SDECIMAL, symbol, sizeof symbol) == 0) return;
    if (std::string(symbol) != ",") return;
    m_saved = symbol;
    SetLocaleInfoA(locale, LOCALE_SDECIMAL, ".");
}

void DecimalSymbol::restore() {
    if (m_saved == ".") return;
    SetLocaleInfoA(GetUserDefaultLCID(), LOCALE_SDECIMAL, m_saved.c_str());
    m_saved = ".";
}

} // namespace telvo::app
