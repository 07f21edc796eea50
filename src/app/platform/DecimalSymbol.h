// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace telvo::app {

/// The decimal symbol of the user's locale. On Windows it is "." for as long as the program runs,
/// so that programs which share its numbers agree with it; after an abnormal end it stays so. On
/// other systems nothing is touched: no number of this program passes through a locale.
class DecimalSymbol {
  public:
    /// Remembers the user's symbol and, when it is ",", changes it to ".".
    void force();
    /// Writes a changed symbol back.
    void restore();

  private:
    std::string m_saved = ".";
};

} // namespace telvo::app
