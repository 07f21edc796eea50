// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>

namespace telvo::app::ui {

enum class ToolIcon { New, Open, Save, Print, Description, Parameters, Factors, Help };

/// An icon of the toolbar, drawn in the palette's text colour at whatever size is asked for, so
/// that it is sharp on every screen and seen on every theme.
QIcon toolIcon(ToolIcon icon);

} // namespace telvo::app::ui
