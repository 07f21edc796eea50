// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "table/CaseTable.h"
#include "table/ReadWatch.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

class QWidget;

namespace telvo::table::ui {

/// Reads a table in a thread of its own. When that takes longer than `patience`, a window shows how
/// many rows there are and has a Cancel; what the reader throws becomes a fault.
/// Given: file  as the window names it
///        read  called in the other thread; has to look at its watch
/// Returned: nothing when the user cancelled.
std::optional<Result<table::CaseTable>>
readInBackground(const std::string& file,
                 std::function<Result<table::CaseTable>(const table::ReadWatch& watch)> read,
                 QWidget* parent,
                 std::chrono::milliseconds patience = std::chrono::milliseconds(500));

} // namespace telvo::table::ui
