// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/DecimalSigns.h"

#include "base/numbers.h"
#include "base/text.h"

#include <algorithm>

namespace telvo::table {

namespace {

bool isNumberAlone(std::string_view text) {
    const auto read = leadingNumber(text);
    return read && trimmed(text.substr(read->length)).empty();
}

std::string withPoint(std::string_view text) {
    std::string out(text);
    std::replace(out.begin(), out.end(), ',', '.');
    return out;
}

/// How to write a doubtful number so that nobody takes it for the other one: "1500" or "1.5".
std::string bothForms(std::string_view text, char sign) {
    std::string whole(text);
    std::erase(whole, sign);
    std::string decimal(text);
    std::replace(decimal.begin(), decimal.end(), sign, '.');
    decimal.erase(decimal.find_last_not_of('0') + 1);
    if (decimal.ends_with('.') || maybeThousands(decimal, '.')) decimal += '0';
    return whole + " or " + decimal;
}

} // namespace

bool maybeThousands(std::string_view text, char sign) {
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
    const auto at = text.find(sign);
    if (at == std::string_view::npos || at < 1 || at > 3 || text.size() != at + 4) return false;
    if (text.front() == '0') return false;
    return std::all_of(text.begin(), text.end(),
                       [sign](char c) { return c == sign || (c >= '0' && c <= '9'); });
}

void DecimalSigns::note(std::string_view text) {
    text = trimmed(text);
    const auto commas = std::count(text.begin(), text.end(), ',');
    const auto points = std::count(text.begin(), text.end(), '.');
    if (commas + points != 1 || !isNumberAlone(withPoint(text))) return;
    if (points == 1)
        m_point = m_point || !maybeThousands(text, '.');
    else
        m_comma = m_comma || !maybeThousands(text, ',');
}

Result<std::string> DecimalSigns::read(std::string_view text) const {
    const auto refuse = [&](std::string_view why) {
        return Fault{"\"" + excerpt(text.substr(0, 200)) + "\" " + std::string(why), {}};
    };
    const auto commas = std::count(text.begin(), text.end(), ',');
    const auto points = std::count(text.begin(), text.end(), '.');
    if (commas > 0 && points > 0)
        return refuse("has a sign between the thousands; write the number without it");
    // Only another number of the table, such as 6.5 or 6,5, tells which sign is which.
    const bool sure = m_point != m_comma;
    if (points == 1 && maybeThousands(text, '.') && m_commaPossible && !(sure && m_point))
        return refuse("is doubtful, because a comma may be the decimal sign here; write " +
                      bothForms(text, '.'));
    if (commas == 1 && isNumberAlone(withPoint(text))) {
        if (maybeThousands(text, ',') && !(sure && m_comma))
            return refuse("is doubtful; write " + bothForms(text, ','));
        if (!m_commaPossible) return refuse("has a decimal comma; numbers take a \".\"");
        if (m_point)
            return refuse("has a decimal comma, while other numbers of the table have a point");
        return withPoint(text);
    }
    if (text.find_first_not_of("+-.") == std::string_view::npos) return refuse("is not a number");
    return std::string(text);
}

} // namespace telvo::table
