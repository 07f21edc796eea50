// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/reportFile.h"

#include <algorithm>
#include <iterator>

namespace telvo::report {

bool beginsLikeReport(std::string_view text) {
    static constexpr std::string_view Beginnings[] = {
        "TELVO module build: ",
        "[TELVO STABILITY FACTORS]",
        "[DATA ABOUT THE ACTIVE MINING ZONE (AMZ)]",
        "[PILLAR PARAMETERS]",
        "[BARRIER PILLAR PARAMETERS]",
        "[REMNANT PILLAR AND LEAVE PILLAR PARAMETERS]"};
    return std::any_of(std::begin(Beginnings), std::end(Beginnings),
                       [text](std::string_view beginning) { return text.starts_with(beginning); });
}

} // namespace telvo::report
