// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

/// The temporary files that stand beside the files of users while those are written: that none of
/// them stays behind.
namespace telvo {

/// Name of a temporary file for a file of this name: hidden, with this process and this machine in
/// it. `count` tells several of one process apart.
std::string temporaryName(const std::string& name, int count);

/// Removes the temporary files that programs which ended left in a folder. Returned: how many.
/// Those of another machine, or from before the last start of this one, go after a day: whether
/// their program runs cannot be known here.
std::size_t removeLeftTemporaryFiles(const std::filesystem::path& folder);

/// From now on a signal that ends the program (interrupt, hang-up, termination) first removes the
/// temporary files that are noted. A signal that is ignored stays so.
void removeTemporaryFilesOnSignals();

/// Notes a temporary file for removal by a signal. Returned: its place, for forgetting it again;
/// past some thousands at once there is none, and the file is not noted.
std::size_t noteTemporaryFile(const std::filesystem::path& path);
void forgetTemporaryFile(std::size_t place);

namespace processes {

/// Number of this process, whether another one runs, and a number that is the same for all
/// processes whose numbers can be compared with ours.
unsigned long processNumber();
bool isRunning(unsigned long process);
unsigned processSpace();
/// Whether a file is a plain one of this user, so that it may be ours.
bool isOwnFile(const std::filesystem::path& path);

} // namespace processes

} // namespace telvo
