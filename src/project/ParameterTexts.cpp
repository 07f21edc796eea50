// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/ParameterTexts.h"

#include "base/numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace telvo::project {

namespace {

void readText(std::string_view text, double& into) {
    into = leadingValue(text);
}

void readText(std::string_view text, float& into) {
    const double value = leadingValue(text);
    // Out of range counts as no number, as it does for a double.
    into = std::abs(value) > double{std::numeric_limits<float>::max()} ? 0.0F
                                                                       : static_cast<float>(value);
}

void readText(std::string_view text, std::int16_t& into) {
    into = leadingInteger(text);
}

} // namespace

ParameterTexts textsFromInput(const ProjectInput& in) {
    ParameterTexts texts;
    visitRecordNumbers(in, [&](const InputField& row, FieldId id, auto number) {
        if (row.control.empty()) return; // carried along
        if (row.isFlag())
            texts.check(row.id, number == 1);
        else if (row.role == FieldRole::Choice)
            texts[id] = generalNumber(std::clamp(static_cast<int>(number), 0, 3));
        else
            texts[id] = generalNumber(number);
    });
    return texts;
}

ProjectInput inputFromTexts(const ProjectInput& base, const ParameterTexts& texts) {
    ProjectInput in = base;
    visitRecordNumbers(in, [&](const InputField& row, FieldId id, auto& number) {
        if (row.control.empty() || id.index > distanceCount(in)) return;
        readText(texts[id], number);
    });
    return in;
}

bool haveEqualSpacing(const ProjectInput& in) {
    const int count = distanceCount(in);
    if (count < 2 || !(in.XcutCenters[1] > 0)) return false;
    return std::all_of(in.XcutCenters.begin(), in.XcutCenters.begin() + count,
                       [&](double distance) { return distance == in.XcutCenters[1]; });
}

ParameterTexts withEqualSpacing(ParameterTexts texts) {
    const int distances = distanceCount(inputFromTexts({}, texts));
    for (int i = 2; i <= distances; ++i)
        texts[{Field::XcutCenters, i}] = texts[{Field::XcutCenters, 1}];
    return texts;
}

ControlStates controlStates(const ParameterTexts& texts, bool equalSpacing) {
    ControlStates states;
    states.enabled.fill(true);
    const auto set = [&](FieldId id, bool on) { states.enabled[placeOf(id)] = on; };
    set(Field::BreadthAMZ, !texts.isChecked(Field::AMZ));
    set(Field::ArchFactor, !texts.isChecked(Field::Arch));
    set(Field::WidthC, texts.isChecked(Field::RowC));
    set(Field::WidthD, texts.isChecked(Field::RowD));
    for (int i = 2; i < MaxEntries; ++i)
        set({Field::XcutCenters, i}, !equalSpacing);
    states.distances = distanceCount(inputFromTexts({}, texts));
    return states;
}

} // namespace telvo::project
