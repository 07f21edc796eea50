// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdio>
#include <QApplication>

namespace telvo::bench {

/// Waits until what was shown is painted, and says so on standard output.
inline void reportShown() {
    QApplication::processEvents();
    QApplication::processEvents();
    std::puts("shown");
    std::fflush(stdout);
}

} // namespace telvo::bench
