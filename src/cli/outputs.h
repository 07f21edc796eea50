// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/AtomicFile.h"
#include "cli/cases.h"
#include "project/ProjectInput.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What the commands write, and what they leave alone.
namespace telvo::cli {

/// As a file to write, "-" is standard output.
bool isStandardOutput(const std::string& target);

/// Whether something has the name already, if only a link that leads nowhere.
bool isNamed(const std::string& target);

/// Whether a file may be written: nothing has the name, or `force`. A pipe or a terminal has
/// nothing to lose. Complains where it may not.
bool mayWrite(Console& console, const std::string& target, bool force);

/// As mayWrite(), for what is made from cases: forced or not, it takes the place of no case file
/// and of none of the files that the call reads.
/// Given: inputs  arguments that name cases
bool mayWriteMade(Console& console, const std::string& target, bool force,
                  const std::vector<std::string>& inputs);

/// The same for a report, which also may replace an older report.
bool mayWriteReport(Console& console, const std::string& target, bool force,
                    const std::vector<std::string>& inputs);

/// How a file is written that may be: without `force` a file that appears meanwhile is left alone.
Existing existingFor(bool force);

/// Writes a file in one step and says what goes wrong, and what of the old file could not be kept.
ExitStatus writeOrComplain(Console& console, const std::string& path, std::string_view bytes,
                           Existing existing);

/// Says what of an old file could not be kept.
void tellRemarks(Console& console, const std::string& path,
                 const std::vector<std::string>& remarks);

/// Writes a case to a case file, or to standard output, and says what goes wrong.
int saveAs(Console& console, project::ProjectCase current, const std::string& target, bool force);

/// Standard output, or a file that takes its place when everything was written. What goes wrong is
/// told once, at the end.
class TextOutput {
  public:
    /// Given: target  empty or "-" for standard output
    TextOutput(Console& console, const std::string& target, Existing existing);

    bool isFile() const { return !m_target.empty(); }
    void print(std::string_view text);
    ExitStatus finish();

  private:
    Console& m_console;
    std::string m_target; ///< empty: standard output
    std::optional<AtomicFile> m_file;
    std::optional<Fault> m_fault;
};

} // namespace telvo::cli
