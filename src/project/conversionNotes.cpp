// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/conversionNotes.h"

#include "project/units.h"

namespace telvo::project {

std::vector<std::string> conversionNotes(const ProjectCase& current,
                                         const Result<ProjectCase>& converted, bool nameIsTaken) {
    std::vector<std::string> notes{std::string(ConversionRoundingNote),
                                   std::string(ConversionUntouchedNote)};
    if (!converted) return notes;
    if (const auto remark = archFactorRemark(current, *converted)) notes.push_back(*remark + '.');
    if (nameIsTaken)
        notes.emplace_back("A file of the new name is already there. Saving the converted case "
                           "under that name would replace it.");
    return notes;
}

} // namespace telvo::project
