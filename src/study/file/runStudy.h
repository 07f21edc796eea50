// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "project/ProjectInput.h"
#include "study/file/Study.h"
#include "study/output/StudyOutput.h"

#include <span>
#include <string>
#include <utility>
#include <vector>

namespace telvo::study {

/// A case and how the study names it.
using NamedCase = std::pair<std::string, project::ProjectCase>;

/// The files that a study needs: its case first, then those that it is compared with.
std::vector<std::string> filesOf(const Study& study);

/// What a comparison puts side by side: the case, its scenarios, the files.
/// Given: cases  those of filesOf(), in the same order
std::vector<NamedCase> comparedCases(const CompareSet& set, std::span<const NamedCase> cases);

/// Given: cases    those of filesOf(), in the same order
///        threads  of a table of values
/// Faults: a case in other units than the study, and what the study itself would find
Result<StudyOutput> runStudy(const Study& study, std::span<const NamedCase> cases,
                             unsigned threads = 1, const Progress& progress = {});

/// How inputs scatter in a study that has it; nullptr for one that has not.
const AskedUncertainty* samplingOf(const Study& study);
AskedUncertainty* samplingOf(Study& study);

/// How the file of a study wants its picture.
StudyLook lookOf(const StudyView& view);

/// What a study of uncertainty makes of its samples, drawn at once or in parts.
/// Given: study  one of AskedUncertainty
/// Faults: what assess() finds
Result<StudyOutput> outputOfSamples(const Study& study, const project::ProjectCase& base,
                                    Samples samples, unsigned threads = 1);

/// A study of a kind to begin with, for a case: with values from the case itself.
/// Given: kind  as kindName() has it   caseFile  relative to the study
/// Faults: an unknown kind
Result<Study> newStudy(std::string_view kind, const project::ProjectCase& current,
                       std::string caseFile);

} // namespace telvo::study
