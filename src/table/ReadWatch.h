// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <stop_token>

namespace telvo::table {

/// What watches over the reading of a table: a window that shows how far it is and may end it. The
/// readers ask it every few thousand cells, from the thread that they run in.
struct ReadWatch {
    std::stop_token stop;                           ///< ends the reading with a fault
    std::function<void(std::size_t rows)> progress; ///< rows read so far

    bool stopped() const { return stop.stop_requested(); }
    void tell(std::size_t rows) const {
        if (progress) progress(rows);
    }
};

/// The message of a reading that was ended by its watch.
inline constexpr const char* ReadingStopped = "the reading was stopped";

/// Rows between two looks at the watch.
inline constexpr std::size_t RowsPerLook = 512;

} // namespace telvo::table
