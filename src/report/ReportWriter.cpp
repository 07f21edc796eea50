// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/ReportWriter.h"

#include "base/numbers.h"
#include "base/text.h"
#include "criteria/assess.h"

#include <algorithm>
#include <cmath>

namespace telvo::report {

namespace {

/// How many fill characters bring a text to a width; 0 when it is that long or longer.
std::size_t missing(std::string_view text, int width) {
    const auto length = static_cast<long long>(characterCount(text));
    return static_cast<std::size_t>(std::max(0LL, width - length));
}

} // namespace

std::string PadLeft(std::string_view text, int width) {
    return std::string(missing(text, width), ' ').append(text);
}

std::string PadRight(std::string_view text, int width) {
    return std::string(text).append(missing(text, width), ' ');
}

std::string DotLeader(std::string_view label, int width) {
    return std::string(label).append(missing(label, width), '.');
}

std::string AlignValue(std::string_view value, int width) {
    return PadLeft(value, width);
}

std::string AlignValue(double value, int width) {
    return PadLeft(generalNumber(value), width);
}

std::string WrapText(std::string_view text, int width) {
    if (width <= 20) return std::string(text);
    const auto columns = static_cast<std::size_t>(width);
    std::string out;
    // Only the next line is looked at: the rest may be very long.
    while (characterOffset(text, columns) < text.size()) {
        // The break is the last blank at or before the column `width`; it stays on neither line.
        const auto limit = characterOffset(text, columns - 1);
        const auto blank = text.rfind(' ', limit);
        if (blank == std::string_view::npos) break; // one word: nothing to break at
        out += text.substr(0, blank);
        out += LineBreak;
        text = trimmed(text.substr(blank));
    }
    out += text;
    return out;
}

std::string cutLongWords(std::string_view text, int width) {
    const auto columns = static_cast<std::size_t>(width);
    // A word needs a blank behind it within the line; only one that ends the text can fill the
    // line.
    std::size_t uncut = text.rfind(' ') + 1; // 0 without a blank
    if (characterOffset(text.substr(uncut), columns) < text.size() - uncut) uncut = text.size();
    std::string out;
    std::size_t inWord = 0;
    for (std::size_t at = 0; at < uncut;) {
        const auto length = std::max<std::size_t>(1, characterOffset(text.substr(at, 5), 1));
        if (text[at] == ' ') {
            inWord = 0;
        } else if (++inWord == columns) {
            out += ' ';
            inWord = 1;
        }
        out += text.substr(at, length);
        at += length;
    }
    return out.append(text.substr(std::min(uncut, text.size())));
}

float RoundSF(double factor, int RoundTELVOSF) {
    return static_cast<float>(criteria::shownFactor(factor, RoundTELVOSF));
}

void PageWriter::line(std::string_view text) {
    this->text(text);
    this->text(LineBreak);
}

void PageWriter::text(std::string_view text) {
    m_text += text;
    m_line += static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

std::string PageWriter::figure(std::string_view symbol, const Where& at, std::string text) {
    m_figures.push_back({symbol, at, text, m_page, m_line});
    return text;
}

void PageWriter::heading(std::string_view title) {
    subHeading(title);
    line();
}

void PageWriter::subHeading(std::string_view name) {
    text("[");
    text(name);
    line("]");
}

void PageWriter::paragraph(std::string_view text) {
    line(WrapText(text, TextWidth));
}

} // namespace telvo::report
