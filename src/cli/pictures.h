// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/AtomicFile.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}
namespace telvo {
namespace project {
struct ProjectCase;
}
namespace report {
struct ReportOptions;
}
namespace study {
struct GraphRange;
struct StudyLook;
struct StudyOutput;
} // namespace study
} // namespace telvo

/// Pictures, handed in as workbooks are: a build without the desktop libraries has none and says so.
namespace telvo::cli {

class Console;
enum ExitStatus : int;

inline constexpr int LowestDpi = 48, HighestDpi = 1200, DefaultDpi = 200; ///< of a PNG

struct PictureOptions {
    int dpi = DefaultDpi;  ///< of a PNG
    std::vector<int> size; ///< width and height in pixels of 1/96 inch; empty: as suits the picture
    Existing existing = Existing::Refuse;
};

/// Adds --dpi and --size.
/// Given: usual  size that is meant where none is given: "900 700"
void addPictureOptions(CLI::App& command, PictureOptions& options, const std::string& usual);

/// Whether a file of this ending (".svg") is a picture.
bool isPictureEnding(std::string_view ending);

/// Whether an argument asks for a picture: a file name that ends so, or the format alone.
bool asksForPicture(std::string_view argument);

/// What a program without pictures says.
inline constexpr const char* NoPictures =
    "this build has no drawing; it was made without the desktop libraries";

/// A kind of picture of a case and the options that it follows.
struct PlotKind {
    std::string_view name;   ///< as --kind has it
    std::string shows;       ///< for the help text
    bool hasNumbers = false; ///< can be written as .csv
    bool takesRange = false;
    bool takesReportOptions = false;
};

struct CasePicture {
    const project::ProjectCase& current;
    std::size_t kind; ///< index in the kinds of the plotter
    const report::ReportOptions& report;
    const study::GraphRange& range;
};

struct StudyPicture {
    const study::StudyOutput& output;
    std::string caseName; ///< file of the case, without its folder
    const study::StudyLook& look;
    int RoundTELVOSF = 0;
};

/// Why there is no picture; AllGood where there is one.
struct PlotOutcome {
    ExitStatus status;
    std::string message;
};

/// Draws pictures into files, in the format that the file name ends in.
struct Plotter {
    std::vector<PlotKind> kinds; ///< of cases; none: this build does not draw
    PlotOutcome (*drawCase)(Console& console, const CasePicture& picture,
                            const PictureOptions& options, const std::string& target) = nullptr;
    PlotOutcome (*drawStudy)(Console& console, const StudyPicture& picture,
                             const PictureOptions& options, const std::string& target) = nullptr;
};

} // namespace telvo::cli
