// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ui/frmResolution.h"

#include "chart/ui/picture.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

namespace telvo::chart::ui {

frmResolution::frmResolution(QSizeF size, QWidget* parent) : QDialog(parent) {
    setObjectName("frmResolution");
    setWindowTitle(tr("Resolution"));

    m_resolution = new QSpinBox(this);
    m_resolution->setObjectName("txtResolution");
    m_resolution->setAccessibleName(tr("Resolution"));
    m_resolution->setRange(LowestResolution, HighestResolution);
    m_resolution->setSuffix(tr(" dpi"));
    m_resolution->setToolTip(tr("Pixels to the inch, %1 to %2: %3 as on the screen, %4 for print")
                                 .arg(LowestResolution)
                                 .arg(HighestResolution)
                                 .arg(ScreenResolution)
                                 .arg(300));

    auto* pixels = new QLabel(this);
    pixels->setObjectName("lblPixels");
    pixels->setToolTip(tr("Width and height of the picture"));
    connect(m_resolution, &QSpinBox::valueChanged, this, [pixels, size](int dpi) {
        const QSize shown = pixelSize(size, dpi);
        pixels->setText(tr("%1 \u00d7 %2 pixels").arg(shown.width()).arg(shown.height()));
        pixels->setAccessibleName(pixels->text());
    });
    m_resolution->setValue(DefaultResolution);

    auto* buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, Qt::Horizontal, this);
    const auto name = [buttons](QDialogButtonBox::StandardButton which, const char* objectName) {
        QPushButton* button = buttons->button(which);
        button->setObjectName(objectName);
        button->setAccessibleName(button->text().remove('&'));
    };
    name(QDialogButtonBox::Ok, "cmdOK");
    name(QDialogButtonBox::Cancel, "cmdCancel");
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QFormLayout(this);
    layout->addRow(tr("&Resolution:"), m_resolution);
    layout->addRow(tr("Size:"), pixels);
    layout->addRow(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    m_resolution->selectAll();
}

int frmResolution::resolution() const {
    return m_resolution->value();
}

} // namespace telvo::chart::ui
