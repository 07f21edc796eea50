// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <string_view>

namespace telvo::app {

/// Whether the yearly update reminder is due: more than 360 whole days after the release of
/// 20 August 2013. The limit is 360 days, not 365, on purpose.
constexpr bool isUpdateReminderDue(std::chrono::year_month_day today) {
    using namespace std::chrono;
    constexpr sys_days release = year{2013} / August / 20;
    return sys_days{today} - release > days{360};
}

/// What the update reminder says: three sentences without a line break.
inline constexpr std::string_view UpdateMessage =
    "This version was released over a year ago. "
    "Although major updates may not be scheduled, interim updates may be released with bug fixes. "
    "Check for updates by clicking on the URL below.";

/// Address of the page with updates; empty as long as there is none.
inline constexpr std::string_view UpdatePage = "";

/// What the user of a result has to know, one paragraph a line.
inline constexpr std::string_view DisclaimerText =
    "TELVO estimates the stability of pillars and barriers in room-and-pillar retreat mining "
    "panels from empirical strength formulas and load transfer rules. Its results are a design "
    "aid; they do not replace engineering judgement.\n"
    "A stability factor has a meaning only beside mining experience. Compare every result with "
    "the case-history data base and with the experience of the mine before it enters a design.\n"
    "The engineer who uses the program remains responsible for its inputs, for the reading of its "
    "results and for every decision that rests on them. Geology, roof and floor conditions, "
    "neighbouring seams and other influences that the method does not know have to be judged "
    "separately.\n"
    "The program comes without any warranty, not even the implied warranty of merchantability or "
    "of fitness for a particular purpose.";

} // namespace telvo::app
