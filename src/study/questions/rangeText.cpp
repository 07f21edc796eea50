// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/questions/rangeText.h"

#include "base/numbers.h"
#include "base/text.h"
#include "project/fieldText.h"

#include <string>
#include <utility>

namespace telvo::study {

namespace {

/// Takes away a word that stands in front of a text, or behind it.
bool dropFront(std::string_view& text, std::string_view word) {
    if (!text.starts_with(word)) return false;
    text = trimmed(text.substr(word.size()));
    return true;
}
bool dropBack(std::string_view& text, std::string_view word) {
    if (!text.ends_with(word)) return false;
    text = trimmed(text.substr(0, text.size() - word.size()));
    return true;
}

/// Both ends of a text with ".." or "to" between them.
std::optional<std::pair<std::string_view, std::string_view>> endsIn(std::string_view text) {
    for (const std::string_view between : {"..", " to ", "\xE2\x80\xA6"})
        if (const auto at = text.find(between); at != std::string_view::npos)
            return std::pair(trimmed(text.substr(0, at)),
                             trimmed(text.substr(at + between.size())));
    return std::nullopt;
}

} // namespace

Result<std::optional<Range>> parseRange(std::string_view text, const Variable& variable,
                                        std::int16_t units) {
    const Fault noRange{"A range is written like +-10 %, -5 .. +10 %, +-2 or 800 .. 1000; not \"" +
                            excerpt(asUtf8(text)) + "\"",
                        variable.name()};
    std::string_view rest = trimmed(text);
    dropBack(rest, "(own)");
    if (rest.empty()) return std::optional<Range>();
    const bool percent = dropBack(rest, "%");
    const auto value = [&](std::string_view one) -> std::optional<double> {
        dropFront(one, "+");
        if (percent) {
            dropBack(one, "%");
            return numberOf(one);
        }
        const auto read = project::readFieldText(one, variable.kind(), units);
        return read.refusal.empty() ? numberOf(read.number) : std::nullopt;
    };
    Range range;
    if (dropFront(rest, "+-") || dropFront(rest, "+/-") || dropFront(rest, "\xC2\xB1")) {
        const auto by = value(rest);
        if (!by) return noRange;
        range = {percent ? Range::Form::Percent : Range::Form::Offset, -*by, *by};
    } else if (const auto ends = endsIn(rest)) {
        // A unit behind the second number is that of both.
        std::string first(ends->first);
        const auto unit = ends->second.find_first_not_of("+-0123456789.,eE ");
        if (!percent && unit != std::string_view::npos &&
            first.find_first_not_of("+-0123456789.,eE ") == std::string::npos)
            first.append(" ").append(ends->second.substr(unit));
        const bool about = ends->second.starts_with('+') || ends->first.starts_with('+') ||
                           ends->first.starts_with('-');
        const auto low = value(first), high = value(ends->second);
        if (!low || !high) return noRange;
        range = {percent ? Range::Form::Percent
                 : about ? Range::Form::Offset
                         : Range::Form::Absolute,
                 *low, *high};
    } else if (const auto by = percent ? value(rest) : std::nullopt) {
        range = {Range::Form::Percent, -*by, *by};
    } else {
        return noRange;
    }
    if (!(range.low < range.high))
        return Fault{"A range goes from a smaller to a greater number, not from " +
                         generalNumber(range.low) + " to " + generalNumber(range.high),
                     variable.name()};
    return std::optional(range);
}

} // namespace telvo::study
