// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/writtenNumber.h"

#include "base/numbers.h"
#include "base/text.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace telvo {

namespace {

constexpr std::string_view Apostrophe = "'";
constexpr std::size_t GroupSize = 3;
constexpr std::string_view TwoNumbers = "more than one number";
constexpr std::string_view WrongGroups = "its thousands signs do not part groups of three digits";

bool isFigure(char c) {
    return c >= '0' && c <= '9';
}

std::string replacedAll(std::string text, std::string_view what, std::string_view with) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size())
        text.replace(at, what.size(), with);
    return text;
}

/// The text with one kind of blank, apostrophe and minus sign, and without blanks around it.
std::string plainSigns(std::string_view utf8) {
    std::string text(utf8);
    // No-break, figure, thin and narrow no-break blank; as spreadsheets and pages set them.
    for (const char* blank : {"\u00A0", "\u2007", "\u2009", "\u202F"})
        text = replacedAll(std::move(text), blank, " ");
    text = replacedAll(std::move(text), "\u2019", Apostrophe);
    text = replacedAll(std::move(text), "\u2212", "-");
    const auto isEdge = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!text.empty() && isEdge(text.back()))
        text.pop_back();
    text.erase(text.begin(), std::find_if_not(text.begin(), text.end(), isEdge));
    return text;
}

/// Figures between signs: "1,234.5" is 1 234 5 with "," and ".".
struct Groups {
    std::vector<std::string> figures;
    std::string signs; ///< one fewer than figures
};

/// Takes the groups off the front of a text; blanks and apostrophes count between figures only.
Groups takeGroups(std::string_view& text) {
    Groups groups;
    std::string run;
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        const char c = text[at];
        const bool between = !run.empty() && at + 1 < text.size() && isFigure(text[at + 1]);
        if (isFigure(c)) {
            run += c;
        } else if (c == '.' || c == ',' || ((c == ' ' || c == '\'') && between)) {
            groups.figures.push_back(std::exchange(run, {}));
            groups.signs += c;
        } else {
            break;
        }
    }
    groups.figures.push_back(run);
    text.remove_prefix(at);
    return groups;
}

/// "E+05" off the front of a text.
std::string takeExponent(std::string_view& text) {
    if (text.empty() || std::string_view("eEdD").find(text[0]) == std::string_view::npos) return {};
    std::size_t at = 1;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
    const std::size_t figures = at;
    while (at < text.size() && isFigure(text[at]))
        ++at;
    if (at == figures) return {};
    const std::string exponent = "E" + std::string(text.substr(1, at - 1));
    text.remove_prefix(at);
    return exponent;
}

/// The place of the decimal sign among the signs of the groups, or why there is none to be found.
struct DecimalPlace {
    std::optional<std::size_t> sign;
    std::string why;
};

DecimalPlace decimalSign(const Groups& groups) {
    const std::string& signs = groups.signs;
    if (signs.empty()) return {};
    const char last = signs.back();
    const auto count = std::count(signs.begin(), signs.end(), last);
    const bool others = static_cast<std::size_t>(count) != signs.size();
    if (last == ' ' || last == '\'') {
        if (others) return {{}, std::string(TwoNumbers)};
        return {}; // thousands alone
    }
    if (count > 1) { // a decimal sign comes once
        if (others) return {{}, std::string(WrongGroups)};
        return {};
    }
    if (last == ',' && !others && groups.figures.back().size() == GroupSize) {
        const std::string& whole = groups.figures.front();
        if (!whole.empty() && whole.size() <= GroupSize && whole != "0")
            return {{},
                    "the comma can be a decimal sign or a thousands sign; write " + whole + '.' +
                        groups.figures.back() + " or " + whole + groups.figures.back()};
    }
    return {signs.size() - 1, {}};
}

bool areThousands(const Groups& groups, std::size_t count) {
    if (count < 2) return true;
    const char sign = groups.signs[0];
    const std::string& first = groups.figures[0];
    if (first.empty() || first.size() > GroupSize) return false;
    for (std::size_t i = 1; i < count; ++i)
        if (groups.figures[i].size() != GroupSize || groups.signs[i - 1] != sign) return false;
    return true;
}

} // namespace

WrittenNumber readWrittenNumber(std::string_view utf8) {
    const std::string text = plainSigns(utf8);
    if (text.find_first_of("\t\r\n") != std::string::npos) return {.why = std::string(TwoNumbers)};
    std::string_view rest = text;
    std::string number;
    if (!rest.empty() && (rest[0] == '-' || rest[0] == '+')) {
        if (rest[0] == '-') number = '-';
        rest.remove_prefix(1);
    }
    const Groups groups = takeGroups(rest);
    const DecimalPlace decimal = decimalSign(groups);
    if (!decimal.why.empty()) return {.why = decimal.why};
    const std::size_t whole = decimal.sign ? *decimal.sign + 1 : groups.figures.size();
    if (!areThousands(groups, whole)) {
        const bool blanks = groups.signs.find(' ') != std::string::npos;
        return {.why = std::string(blanks ? TwoNumbers : WrongGroups)};
    }
    for (std::size_t i = 0; i < whole; ++i)
        number += groups.figures[i];
    if (decimal.sign && !groups.figures.back().empty()) number += '.' + groups.figures.back();
    number += takeExponent(rest);
    const auto read = leadingNumber(number);
    if (!read || read->length != number.size())
        return {.why = groups.figures.size() == 1 && groups.figures[0].empty()
                           ? "it does not begin with a number"
                           : "it is no number that can be computed with"};
    while (!rest.empty() && rest.front() == ' ')
        rest.remove_prefix(1);
    const bool figures = std::any_of(rest.begin(), rest.end(), isFigure);
    const bool unit =
        !figures || (!isFigure(rest.front()) && (rest.back() == '2' || rest.back() == '3'));
    if (!unit || rest.find_first_of(".,;+-") != std::string_view::npos)
        return {.why = std::string(TwoNumbers)};
    return {number, std::string(rest), {}};
}

std::optional<std::string> partlyRead(std::string_view text) {
    const std::string_view shown = trimmed(text);
    if (shown.empty()) return std::nullopt;
    const auto read = leadingNumber(text);
    if (read && trimmed(text.substr(read->length)).empty()) return std::nullopt;
    return '\'' + excerpt(shown) + "' is read as " + generalNumber(read ? read->value : 0);
}

} // namespace telvo
