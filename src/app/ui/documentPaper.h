// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLocale>
#include <string>

namespace telvo::app::ui {

/// Whether office paper is Letter in a country, else it is A4.
bool printsOnLetter(QLocale::Territory territory);

/// The document that is opened for `path`: "TELVO-Letter.PDF" instead of "TELVO.PDF" where that is
/// there and the country prints on Letter.
std::string documentForPaper(const std::string& path, QLocale::Territory territory);

} // namespace telvo::app::ui
