// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "cli/inputs.h"
#include "cli/pictures.h"
#include "study/file/Record.h"
#include "study/file/Study.h"
#include "study/output/factors.h"
#include "study/output/StudyOutput.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

/// What the commands of studies share: where the result goes, and the road over the cases.
namespace telvo::cli {

/// In which form a result is written, and where.
struct StudyTarget {
    std::string format; ///< text, csv, json or xlsx; empty: after the ending of the file
    std::string target; ///< empty or "-": standard output
    bool force = false;
    bool noRecord = false; ///< of the run, beside the file
    PictureOptions picture = {};
    study::StudyLook look = {}; ///< of a picture

    /// An option that was given and that only pictures have; nullptr: none.
    const char* pictureOption() const;
};

/// Adds --format, --output, --force, --no-record and the options of pictures.
void addStudyTarget(CLI::App& command, StudyTarget& target);

/// Adds --threads, also called --jobs: how many a study takes.
void addStudyThreads(CLI::App& command, unsigned& threads);

enum class StudyForm { Text, Csv, Json, Workbook, Picture };
/// Nothing, after a complaint, for an ending that names no form, a workbook or a picture without a
/// file, and options of pictures for something else.
std::optional<StudyForm> formOf(Console& console, const StudyTarget& target);

/// What came of one case.
struct StudyPart {
    std::string file;
    std::string message; ///< why there is no output
    std::optional<study::StudyOutput> output;
    int RoundTELVOSF = 0;
};

/// Writes the parts in the form that was asked for. JSON is an array with an object per part; of
/// several tables a column "file" comes first; a picture shows one part only.
/// Given: emptyJson  members of the object of a part without output; may be none
///        digits     takes the table as it is written as CSV; may be null
ExitStatus writeParts(Console& console, const StudyTarget& target, StudyForm form,
                      const std::vector<StudyPart>& parts,
                      const std::function<void(JsonWriter&)>& emptyJson = {},
                      study::TableDigits* digits = nullptr);

/// The parts as one table.
study::ResultTable tableOf(const std::vector<StudyPart>& parts);

/// What was asked of a case, all of it, and what came of it.
struct Answer {
    study::StudyOutput output;
    study::Study::Request request;
};
/// Asks something of every case that is named and writes what came of it; beside a file the record.
using Question = std::function<Result<Answer>(const project::ProjectCase& current)>;
int askCases(Console& console, const Inputs& inputs, const StudyTarget& target,
             const Question& question, int RoundTELVOSF, unsigned threads = 1,
             const std::function<void(JsonWriter&)>& emptyJson = {});
/// What a result means for the exit status; complains where nothing could be computed.
ExitStatus statusOf(Console& console, const std::string& file, const study::StudyOutput& output);
/// Whether result and record may be written; complains where they may not.
bool mayWriteStudy(Console& console, const StudyTarget& target,
                   const std::vector<std::string>& inputs);

/// Cases and, as the last word, the input that is looked for.
void addCasesAndInput(CLI::App& command, std::vector<std::string>& words, std::string& listFile);
struct CasesAndInput {
    Inputs cases;
    study::Variable variable;
};
/// Faults: no input, or one that does not exist
Result<CasesAndInput> casesAndInput(const std::vector<std::string>& words,
                                    const std::string& listFile);

// What is given as text. Faults have the words for a user.

/// An input by name.
Result<study::Variable> variableOf(const std::string& name);
/// A quantity by name.
Result<study::Outcome> outcomeOf(const std::string& name);
/// "50:300"
Result<study::Span> spanOf(const std::string& text);
/// "DepthCover=600:1200:50", "EntryHeight=6,8,10"
Result<study::SweepAxis> axisOf(const std::string& text);
/// "TELVOSF.retreat>=1.3,1.5,suggested": one criterion per target, of one quantity.
Result<std::vector<study::Criterion>> criteriaOf(const std::string& text);

/// Those that are named, or study::factorsOf(). "all" stands for every number of the results.
Result<std::vector<study::Outcome>> outcomesOf(const std::vector<std::string>& names,
                                               const project::ProjectCase& current);

} // namespace telvo::cli
