// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class QSpinBox;

namespace telvo::chart::ui {

/// Asks for the resolution of an exported picture and shows how many pixels it has then.
class frmResolution : public QDialog {
    Q_OBJECT
  public:
    /// Given: size  of the picture in pixels of 1/96 inch
    explicit frmResolution(QSizeF size, QWidget* parent = nullptr);

    int resolution() const; ///< dpi

  private:
    QSpinBox* m_resolution;
};

} // namespace telvo::chart::ui
