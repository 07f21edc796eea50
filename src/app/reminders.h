// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>

namespace telvo::app {

/// Whether the yearly update reminder is due: more than 360 whole days after the release of
/// 20 August 2013. The limit is 360 days, not 365, on purpose.
constexpr bool isUpdateReminderDue(std::chrono::year_month_day today) {
    using namespace std::chrono;
    constexpr sys_days release = year{2013} / August / 20;
    return sys_days{today} - release > days{360};
}

} // namespace telvo::app
