// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "table/CaseTable.h"

#include <functional>
#include <set>
#include <string>

namespace telvo::table {

/// Names for the case files of a table: after the title of a row, or its number where there is
/// none, with what a file system may refuse as "_", and no name twice, capitals apart.
class CaseFileNames {
  public:
    /// Name of the file for a row, with its ending.
    /// Given: isTaken  tells of a name that something else has
    std::string next(const CaseRow& row,
                     const std::function<bool(const std::string& name)>& isTaken = {});

  private:
    std::set<std::string> m_taken; // in small letters
};

} // namespace telvo::table
