// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/faultWords.h"

#include "base/titles.h"
#include "project/fieldNames.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace telvo::run {

namespace {

constexpr std::string_view NameCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";

/// Quantities whose names do not read as words when they are taken apart.
struct Word {
    std::string_view name;
    std::string_view words;
};
constexpr auto Words = std::to_array<Word>({
    {"TELVOSF", "TELVO stability factor"},
    {"BarrierSF", "stability factor of the barrier pillar"},
    {"RemnantSF", "stability factor of the remnant barrier"},
    {"LFBAR", "load on the remnant barrier"},
    {"LTRANSREM", "load transferred from the remnant barrier"},
    {"LTRANSBAR", "load transferred from the barrier pillar"},
    {"RFactorFront", "R-factor of the front abutment"},
    {"RFactorSide", "R-factor of the side abutment"},
    {"PillarSkewWidth", "width of the pillars along the crosscuts"},
    {"PillarGrossWidth", "width of the pillars"},
    {"ExtractionRatioAMZ", "extraction ratio within the AMZ"},
    {"BleederStrength", "strength of the bleeder pillars"},
});

bool isCapital(char c) {
    return c >= 'A' && c <= 'Z';
}

char lowered(char c) {
    return isCapital(c) ? static_cast<char>(c - 'A' + 'a') : c;
}

/// "FrontAbutmentLoad" as "front abutment load"; a word that is no such name stays.
std::string apart(std::string_view name) {
    for (const Word& word : Words)
        if (word.name == name) return std::string(word.words);
    bool compound = false;
    std::string text;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool begins = i > 0 && isCapital(name[i]) && !isCapital(name[i - 1]);
        compound = compound || begins;
        if (begins) text += ' ';
        const bool abbreviation =
            i + 1 < name.size() ? isCapital(name[i + 1]) : i > 0 && isCapital(name[i - 1]);
        text += abbreviation ? name[i] : lowered(name[i]);
    }
    return compound ? text : std::string(name);
}

std::string inputWords(std::string_view key, std::int16_t units, bool withNames) {
    const auto input = project::inputNamed(key, units);
    if (!input) return std::string(key);
    std::string text = input->label;
    if (!input->unit.empty()) text += " (" + input->unit + ')';
    return withNames ? text.append(" [").append(key).append("]") : text;
}

/// Puts words in the place of names.
std::string messageWords(std::string_view message, std::int16_t units) {
    std::string text;
    while (!message.empty()) {
        const std::size_t start = message.find_first_of(NameCharacters);
        text += message.substr(0, start);
        if (start == std::string_view::npos) break;
        message.remove_prefix(start);
        std::size_t end = std::min(message.find_first_not_of(NameCharacters), message.size());
        // "XcutCenters(3)"
        if (end + 2 < message.size() && message[end] == '(' && message[end + 2] == ')' &&
            project::inputNamed(message.substr(0, end + 3), units))
            end += 3;
        const std::string_view name = message.substr(0, end);
        const auto input = project::inputNamed(name, units);
        text += input ? input->label : apart(name);
        message.remove_prefix(end);
    }
    if (!text.empty() && text[0] >= 'a' && text[0] <= 'z')
        text[0] = static_cast<char>(text[0] - 'a' + 'A');
    return text;
}

} // namespace

std::string quantityWords(std::string_view name) {
    return apart(name);
}

Fault inWords(const Fault& fault, std::int16_t units, bool withNames) {
    Fault made{messageWords(fault.message, units), {}};
    std::string_view rest = fault.where; // "RowA, RowB"
    while (!rest.empty()) {
        const std::size_t end = rest.find(", ");
        if (!made.where.empty()) made.where += ", ";
        made.where += inputWords(rest.substr(0, end), units, withNames);
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 2);
    }
    return made;
}

Refusal asRefusal(const Fault& fault, std::int16_t units) {
    const auto input =
        project::inputNamed(std::string_view(fault.where).substr(0, fault.where.find(", ")), units);
    return {faultText(inWords(fault, units)), std::string(titles::Error),
            input ? input->control : std::string()};
}

} // namespace telvo::run
