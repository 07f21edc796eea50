// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Messages.h"

namespace telvo {

/// What was done: one line in the history and in the status line.
inline void note(Messages& messages, std::string_view action) {
    messages.history(action);
    messages.status(action);
}

} // namespace telvo
