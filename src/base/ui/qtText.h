// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <string>
#include <string_view>

/// The border between the texts of the core, which are UTF-8, and those of Qt.
namespace telvo::ui {

inline QString toQt(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// A text of several lines, for a text box or the clipboard: Qt ends lines with a line feed and
/// gives the system's clipboard the line breaks that the system knows.
inline QString toQtLines(std::string_view utf8) {
    return toQt(utf8).replace(QLatin1String("\r\n"), QLatin1String("\n"));
}

inline std::string fromQt(const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    return {utf8.constData(), static_cast<std::size_t>(utf8.size())};
}

} // namespace telvo::ui
