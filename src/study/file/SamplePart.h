// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "study/file/Record.h"

#include <string>
#include <string_view>
#include <vector>

/// Part of the samples of a study, computed on one of many machines; together they are the study.
namespace telvo::study {

struct SamplePart {
    std::string program; ///< "TELVO 0.1.0"
    std::string moduleBuild;
    RecordedStudy study;
    Part part;
    Samples samples;
};

/// "2/5". Faults: text that is no such part
Result<Part> partNamed(std::string_view text);

/// Draws the samples of a part.
/// Faults: a study that has no samples or whose samples are shared over a variable, what
///         drawSamples() finds
Result<Samples> samplesOfPart(const Study& study, const project::ProjectCase& base,
                              const Part& part, unsigned threads = 1);

std::string partText(const SamplePart& part);
/// Faults: text that is no such part, or that does not have the digits that it tells
Result<SamplePart> readPart(std::string_view bytes, const std::string& name);

/// All parts of a study as one.
/// Faults: parts of different studies or programs, a part that is missing or comes twice
Result<Samples> mergedSamples(std::vector<SamplePart> parts);

} // namespace telvo::study
