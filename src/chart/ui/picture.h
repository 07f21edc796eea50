// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileDialogs.h"
#include "base/Messages.h"
#include "base/Result.h"

#include <functional>
#include <QImage>
#include <QPageLayout>
#include <QPalette>
#include <QRectF>
#include <QSizeF>
#include <string>

class QPainter;
class QPrinter;
class QWidget;

namespace telvo::chart::ui {

/// The palette of paper: what is printed, exported and copied is black on white in every theme.
QPalette paperPalette();

/// Something that can be painted at any size: a plan, a bar chart, a graph. It leaves the program
/// through the clipboard, a file or the printer, always as ink on white paper.
struct Picture {
    std::string name;      ///< proposed file name, without extension
    QSizeF size{900, 700}; ///< in pixels of 1/96 inch
    /// Paints on white paper into a rectangle given in these pixels.
    std::function<void(QPainter&, const QRectF&)> paint;
    std::string csv;           ///< the numbers behind it; empty when there are none
    std::string caseName = {}; ///< file name of the case that it shows
};

inline constexpr int ScreenResolution = 96; ///< dpi at which a PNG has the picture's own size

inline constexpr int LowestResolution = 48; ///< of a PNG, dpi
inline constexpr int HighestResolution = 1200;
inline constexpr int DefaultResolution = 200;

/// Pixels at a resolution of what measures `size` pixels of 1/96 inch.
QSize pixelSize(QSizeF size, int dpi);

/// The picture in pixels; a null image where it is too large for memory. Its texts have the size
/// that they have on paper, whatever the scale of the screen.
QImage pictureImage(const Picture& picture, int dpi);

/// Writes a picture in one atomic step, in the format that the file name ends in: .png, .svg, .pdf,
/// and .csv where it has numbers. A PDF has one page of the picture's size.
/// Faults: another ending, a picture without numbers, a resolution outside its limits or too high
/// for memory, a file that cannot be written; an older file stays whole.
/// Given: dpi  resolution of a PNG, 48 to 1200
Status exportPicture(const Picture& picture, const std::string& path, int dpi);

/// What a window does with the picture that it shows; the program gives printer and dialogs.
struct PictureActions {
    std::function<void(const Picture&, QWidget*)> copyPicture;
    std::function<void(const Picture&, QWidget*)> exportPicture;
    std::function<void(const Picture&, QWidget*)> printPicture;
};

/// Puts a picture on the clipboard.
void copyPicture(const Picture& picture);

/// How a picture lies best on paper.
QPageLayout::Orientation bestOrientation(const Picture& picture);

/// Prints a picture on one page. It fills the width between the printer's margins and as much of
/// the height as suits it, whichever way the paper lies; on small paper it shrinks as a whole, so
/// that its texts keep their room.
/// Given:    footer  a line below it, such as the case, the date and the program; may be empty
/// Returned: whether the printer took it.
bool printPicture(const Picture& picture, QPrinter& printer, const std::string& footer = {});

/// Export command of a window: asks for the file and, for a PNG, the resolution; tells the outcome.
void exportCommand(const Picture& picture, FileDialogs& dialogs, Messages& messages,
                   const std::string& folder, QWidget* parent);

} // namespace telvo::chart::ui
