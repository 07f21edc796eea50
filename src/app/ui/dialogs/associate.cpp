// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/associate.h"

#include "app/association.h"
#include "base/text.h"

namespace telvo::app::ui {

void associateExtension(const std::string& extension, const std::string& program,
                        const std::string& dataHome, Messages& messages) {
    const std::string name(trimmed(extension));
    app::associateExtension(
        name, program, [&] { return associateWithSystem(name, program, dataHome); }, messages);
}

} // namespace telvo::app::ui
