// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "project/CaseFile.h"
#include "study/Criterion.h"
#include "study/Outcome.h"
#include "study/questions/ranges.h"

#include <gtest/gtest.h>

#include <string_view>

/// Inputs and outcomes by the names that users write. A name that is none fails the test.
namespace telvo::tests {

inline study::Variable variable(std::string_view name) {
    const auto known = study::variableNamed(name);
    EXPECT_TRUE(known) << name;
    return known.value_or(project::Field::DepthCover);
}

inline study::Outcome outcome(std::string_view name) {
    const auto known = study::Outcome::named(name);
    EXPECT_TRUE(known) << name;
    return known.value_or(study::Outcome::factor(1, 0));
}

inline study::Criterion criterion(std::string_view text) {
    auto read = study::Criterion::parse(text);
    if (read) return *read;
    ADD_FAILURE() << faultText(read.fault());
    return {study::Outcome::factor(1, 0), study::Criterion::Sense::AtLeast, 0.0};
}

inline project::ProjectCase caseOf(const project::ProjectInput& in,
                                   std::int16_t units = project::English) {
    project::ProjectCase current = project::newCase(units);
    current.Input = in;
    return current;
}

} // namespace telvo::tests
