// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"
#include "cli/pictures.h"
#include "cli/Workbooks.h"

#include <cstdio>
#include <string>
#include <string_view>
#include <utility>

namespace telvo::cli {

/// Exit statuses; raise() tells which one of several cases counts.
enum ExitStatus : int {
    AllGood = 0,
    Refused = 1, // a case was refused or could not be computed
    WrongUsage = 2,
    FileTrouble = 3, // a file could not be read or written
    AimMissed = 4    // all went well, but a study did not find what it looked for
};

/// Of two statuses the one that counts: a missed aim only where nothing failed.
inline void raise(ExitStatus& status, ExitStatus other) {
    const auto rank = [](ExitStatus one) { return one == AimMissed ? 1 : 2 * one; };
    if (rank(other) > rank(status)) status = other;
}

inline constexpr std::string_view StandardInput = "standard input"; ///< as messages name it

/// What a command talks to: the streams of the call, and the workbooks and pictures of this build.
class Console {
  public:
    /// Given: in, out, err  open streams; the console closes none of them
    Console(std::FILE* in, std::FILE* out, std::FILE* err, Workbooks workbooks = {},
            Plotter plotter = {})
        : m_in(in), m_out(out), m_err(err), m_workbooks(workbooks), m_plotter(std::move(plotter)) {}

    /// Writes to the output. A failure shows in finish().
    void print(std::string_view text);
    /// What was printed reaches the stream, whatever becomes of the program.
    void flush();
    /// Flushes the output. Returned: FileTrouble, after a complaint, when not everything could be
    /// written.
    ExitStatus finish();

    /// Says what went wrong: "telvo-cli: " and the message on one line, with control characters
    /// written out.
    void complain(const std::string& message);

    /// Complains of how the program was called. Returned: WrongUsage.
    ExitStatus wrongUsage(const std::string& message);

    /// Whether someone sees how far a long run is, and nothing else that it writes.
    bool showsProgress() const;
    /// Writes a line that is written over by whatever comes next; an empty one clears it.
    void showProgress(std::string_view text);

    /// All of the input, no larger than a file may be.
    Result<std::string> readInput();

    const Workbooks& workbooks() const { return m_workbooks; }
    const Plotter& plotter() const { return m_plotter; }

  private:
    std::FILE *m_in, *m_out, *m_err;
    Workbooks m_workbooks;
    Plotter m_plotter;
};

} // namespace telvo::cli
