// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/AtomicFile.h"
#include "base/Result.h"
#include "project/ProjectInput.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::project {

/// Extension of the project files of the sibling program KORV.
inline constexpr std::string_view SiblingExtension = "KRV";

/// Levels of the case file, told apart by the tag on the first line.
inline constexpr int CurrentLevel = 53;

/// A longer line in a case file is taken for damage.
inline constexpr std::size_t MaxLineBytes = 65535;

/// A save breaks the lines of the description that are longer than this many characters.
inline constexpr std::size_t DescriptionColumns = 60;

/// What came of reading a case file.
struct CaseReading {
    bool accepted = false; ///< the tag is known; otherwise nothing of the record was changed
    std::optional<Fault>
        fault; ///< the tag is unknown, or what stopped the reading and at which line
    /// Items that the file did not give, by name in file order: those of later levels and those
    /// behind a fault. The record holds what it held before the reading.
    std::vector<std::string> kept;
    /// What was read without fault but may not be what was meant: a last line that may have been
    /// cut, a second case in the file.
    std::vector<std::string> remarks;
};

/// Reads the text of a case file of any level into a record.
/// Items that the level lacks keep what the record held; after a fault the items read so far stay.
/// CR LF and LF end lines, and CR where there is no LF; valid UTF-8 is read as such, anything else
/// as Windows-1252.
/// Given: bytes  the content of the file
///        name   how messages name the file; it does not become the case's file name
CaseReading readCaseText(std::string_view bytes, std::string_view name, ProjectCase& into);

/// The items after the tag line, by the rules of a level. Below level 50 the description is exactly
/// five lines without markers; no tag leads there today.
/// Given: kept  takes the names of the items that the text did not give
///        rest  takes what follows the last item; nothing, not even a line end, where that was cut
std::optional<Fault> readCaseItems(std::string_view bytes, int level, std::string_view name,
                                   ProjectCase& into, int firstLine = 2,
                                   std::vector<std::string>* kept = nullptr,
                                   std::optional<std::string_view>* rest = nullptr);

/// Reads the case in a file of the sibling program KORV: it begins on the first line that is one of
/// the tags and follows the rules of a case file. What stands before and behind it is passed over.
CaseReading readCaseSection(std::string_view bytes, std::string_view name, ProjectCase& into);

/// Reads a file into a record and, when it was read without fault, gives the record its name.
CaseReading readCaseFile(const std::string& path, ProjectCase& into);

/// The description as a save leaves it: blank lines dropped, lines of more than 60 characters
/// broken at blanks, a line equal to a marker of the file indented by one blank, joined by CR LF.
std::string normalisedDescription(std::string_view description);

/// The text of the case file, current level, CR LF, UTF-8. The record is first brought into the
/// form in which it is read back: its description normalised and counted, line breaks in the title
/// turned into blanks, an entry count of 0 made 1, the file version set.
/// Faults: a value that no reader would accept, such as 11 entries or an infinite length.
Result<std::string> writeCaseText(ProjectCase& from);

/// Saves a case in one atomic step under `path`, which becomes its file name.
/// After a fault both the record and an older file of that name are as they were.
/// Given: remarks  takes what of an older file could not be kept beside its content; may be null
Status saveCaseFile(ProjectCase& from, const std::string& path,
                    Existing existing = Existing::Replace,
                    std::vector<std::string>* remarks = nullptr);

/// Whether a text begins like a case file.
bool hasCaseTag(std::string_view bytes);

} // namespace telvo::project
