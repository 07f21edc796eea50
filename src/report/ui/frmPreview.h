// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/Form.h"
#include "report/ui/ReportPrinter.h"

class QHBoxLayout;
class QLabel;
class QPrintPreviewWidget;
class QPushButton;

namespace telvo::report::ui {

/// Print preview: the sheets of a job as they will leave the printer.
class frmPreview : public telvo::ui::Form {
    Q_OBJECT
  public:
    frmPreview(PrintJob job, const telvo::ui::FormServices& services, ReportPrinter& printer,
               QWidget* parent = nullptr);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    QPushButton* viewButton(QHBoxLayout& row, const QString& name, const QString& caption,
                            const QString& toolTip);
    QHBoxLayout* makeViewRow();
    void makeCommands(QDialogButtonBox& buttons);
    void goToSheet(int step);
    void showSheetNumber();
    void copy();
    void print();
    void setUpPrinter();
    void paintAgain();

    PrintJob m_job;
    ReportPrinter& m_printer;
    bool m_announced = false;
    QPrintPreviewWidget* m_sheets = nullptr;
    QLabel* m_sheetLabel = nullptr;
    QPushButton* m_previous = nullptr;
    QPushButton* m_next = nullptr;
};

} // namespace telvo::report::ui
