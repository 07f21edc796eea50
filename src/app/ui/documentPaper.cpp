// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/documentPaper.h"

#include "base/ui/qtText.h"

#include <algorithm>
#include <QFileInfo>

namespace telvo::app::ui {

bool printsOnLetter(QLocale::Territory territory) {
    constexpr QLocale::Territory countries[] = {
        QLocale::UnitedStates, QLocale::Canada,      QLocale::Mexico,
        QLocale::PuertoRico,   QLocale::Belize,      QLocale::Chile,
        QLocale::Colombia,     QLocale::CostaRica,   QLocale::DominicanRepublic,
        QLocale::ElSalvador,   QLocale::Guatemala,   QLocale::Nicaragua,
        QLocale::Panama,       QLocale::Philippines, QLocale::Venezuela};
    return std::find(std::begin(countries), std::end(countries), territory) != std::end(countries);
}

std::string documentForPaper(const std::string& path, QLocale::Territory territory) {
    const QFileInfo document(telvo::ui::toQt(path));
    if (document.suffix().compare("pdf", Qt::CaseInsensitive) != 0 || !printsOnLetter(territory))
        return path;
    const QString letter =
        document.path() + '/' + document.completeBaseName() + "-Letter." + document.suffix();
    return QFileInfo::exists(letter) ? telvo::ui::fromQt(letter) : path;
}

} // namespace telvo::app::ui
