// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/association.h"
#include "app/ui/dialogs/associate.h"
#include "base/titles.h"
#include "base/ui/qtText.h"

#include <QSettings>

namespace telvo::app::ui {

Status associateWithSystem(const std::string& extension, const std::string& program,
                           const std::string&) {
    using telvo::ui::toQt;
    const QString name = toQt(titles::Program);
    // The classes of all users first, as long as they may be written, else those of this user,
    // which the system shows among them. "." is a key's default value.
    for (const char* root : {"HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER\\Software\\Classes"}) {
        QSettings classes(root, QSettings::NativeFormat);
        classes.setValue('.' + toQt(extension) + "/.", name + ".Document");
        classes.setValue(name + ".Document/.", name + " Document");
        classes.setValue(name + ".Document/shell/open/command/.", toQt(openCommand(program)));
        classes.sync();
        if (classes.status() == QSettings::NoError) return success();
    }
    return Fault{"The registry cannot be written", "HKEY_CURRENT_USER\\Software\\Classes"};
}

} // namespace telvo::app::ui
