// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

namespace telvo::table {

/// While it lives, this thread's numbers have a point: the workbook library prints with the C
/// locale's functions, and a decimal comma would make the file unreadable.
class PointLocale {
  public:
    PointLocale();
    ~PointLocale();
    PointLocale(const PointLocale&) = delete;
    PointLocale& operator=(const PointLocale&) = delete;

  private:
    struct Before; // what differs by system
    std::unique_ptr<Before> m_before;
};

} // namespace telvo::table
