// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/Form.h"
#include "base/ui/NumberEdit.h"
#include "project/unitCalculator.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <vector>

namespace telvo::project::ui {

/// The unit calculator: one tab per quantity, an entry with its unit, and the entry in every unit
/// of the quantity while it is typed.
class frmUnits : public telvo::ui::Form {
    Q_OBJECT
  public:
    explicit frmUnits(const telvo::ui::FormServices& services, QWidget* parent = nullptr);

  private:
    struct Page {
        telvo::ui::NumberEdit* entry = nullptr;
        QComboBox* unit = nullptr;
        std::vector<QLineEdit*> results;
        QLabel* note = nullptr;
    };
    QWidget* makePage(const CalculatorQuantity& quantity);
    void showConversions(const CalculatorQuantity& quantity, const Page& page);
};

} // namespace telvo::project::ui
