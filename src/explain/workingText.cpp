// SPDX-License-Identifier: GPL-3.0-or-later
#include "explain/workingText.h"

#include "base/text.h"

#include <algorithm>

namespace telvo::explain {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isLatin(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Appends a paragraph whose first line begins with `lead` and whose others stand under its text.
void appendWrapped(std::string& out, std::string_view lead, std::string_view text,
                   std::size_t width) {
    const std::string indent(lead.size(), ' ');
    std::string line(lead);
    bool any = false;
    for (std::size_t i = 0; i <= text.size();) {
        std::size_t end = std::min(text.find(' ', i), text.size());
        // A number keeps its unit, and a symbol its meaning, on its line.
        if (end > i && end + 1 < text.size() &&
            ((isDigit(text[end - 1]) && isLatin(text[end + 1])) || text[end - 1] == ':'))
            end = std::min(text.find(' ', end + 1), text.size());
        const std::string_view word = text.substr(i, end - i);
        if (any && line.size() + 1 + word.size() > width) {
            out.append(line).append("\n");
            line = indent;
            any = false;
        }
        if (any) line += ' ';
        line += word;
        any = true;
        i = end + 1;
    }
    out.append(line).append("\n");
}

void appendStep(std::string& out, const Step& step, const std::string& note, std::size_t width) {
    appendWrapped(out, "", step.title.empty() ? step.key : step.key + ": " + step.title, width);
    const std::string name = "  " + step.symbol;
    if (step.formula.empty()) {
        out.append(name).append(name.size() > 2 ? " = " : "= ").append(step.result).append("\n");
    } else {
        const std::string indent(name.size(), ' ');
        appendWrapped(out, name + " = ", step.formula, width);
        if (step.substituted != step.formula)
            appendWrapped(out, indent + " = ", step.substituted, width);
        if (step.substituted != step.result) appendWrapped(out, indent + " = ", step.result, width);
    }
    if (!step.operands.empty()) {
        std::string with;
        for (const Operand& operand : step.operands)
            with += (with.empty() ? "" : ", ") + operand.symbol + ": " + operand.key;
        appendWrapped(out, "  with    ", with, width);
    }
    if (!step.condition.empty())
        appendWrapped(out, "  since   ", step.condition + ", that is " + step.conditionShown,
                      width);
    if (!step.rule.empty() && step.rule != note) appendWrapped(out, "  rule    ", step.rule, width);
    for (const Printed& printed : step.printed)
        appendWrapped(out, "  report  ", printedText(printed), width);
}

} // namespace

std::string printedText(const Printed& printed) {
    std::string text = "page " + std::to_string(printed.page) + ", line " +
                       std::to_string(printed.line) + ": " + printed.figure;
    if (!printed.unit.empty()) text += " " + printed.unit;
    if (!printed.conversion.empty()) text += " = " + printed.conversion;
    if (!printed.rounding.empty()) text += " (" + printed.rounding + ")";
    return text;
}

std::string workingText(const Chapters& chapters, std::size_t width) {
    std::string out;
    for (const Chapter& chapter : chapters) {
        if (!out.empty()) out += "\n";
        out.append(chapter.title).append("\n").append(chapter.title.size(), '=').append("\n");
        if (!chapter.note.empty()) appendWrapped(out, "Rule: ", chapter.note, width);
        for (const Step& step : chapter.steps) {
            if (!step.formula.empty()) out += "\n";
            appendStep(out, step, chapter.note, width);
        }
    }
    return out;
}

std::string quantityList(const Chapters& chapters) {
    std::size_t widest = 0;
    for (const Chapter& chapter : chapters)
        for (const Step& step : chapter.steps)
            widest = std::max(widest, step.key.size());
    std::string out;
    for (const Chapter& chapter : chapters)
        for (const Step& step : chapter.steps) {
            out += step.key;
            if (!step.title.empty())
                out.append(widest + 2 - step.key.size(), ' ').append(step.title);
            out += "\n";
        }
    return out;
}

} // namespace telvo::explain
