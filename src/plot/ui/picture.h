// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileDialogs.h"
#include "base/Messages.h"
#include "base/Result.h"

#include <functional>
#include <QImage>
#include <QRectF>
#include <QSizeF>
#include <string>

class QPainter;
class QWidget;

namespace telvo::ui {

/// Something that can be painted at any size: a plan, a bar chart, a graph. It leaves the program
/// through the clipboard, a file or the printer, always as ink on white paper.
struct Picture {
    std::string name;      ///< proposed file name, without extension
    QSizeF size{900, 700}; ///< in pixels of 1/96 inch
    /// Paints on white paper into a rectangle given in these pixels.
    std::function<void(QPainter&, const QRectF&)> paint;
    std::string csv; ///< the numbers behind it; empty when there are none
};

inline constexpr int ScreenResolution = 96; ///< dpi at which a PNG has the picture's own size

/// The picture in pixels.
QImage pictureImage(const Picture& picture, int dpi);

/// Writes a picture in one atomic step, in the format that the file name ends in: .png, .svg, .pdf,
/// and .csv where it has numbers.
/// Faults: another ending, a picture without numbers, a file that cannot be written.
/// Given: dpi  resolution of a PNG, 48 to 1200
Status exportPicture(const Picture& picture, const std::string& path, int dpi);

/// Puts a picture on the clipboard.
void copyPicture(const Picture& picture);

/// Export command of a window: asks for the file and, for a PNG, the resolution; tells the outcome.
void exportCommand(const Picture& picture, FileDialogs& dialogs, Messages& messages,
                   const std::string& folder, QWidget* parent);

} // namespace telvo::ui
