// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QIcon;

namespace telvo::app::ui {

/// The picture of packaging/icons/telvo.svg, for the program's windows.
QIcon programIcon();

} // namespace telvo::app::ui
