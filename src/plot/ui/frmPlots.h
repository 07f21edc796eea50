// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/Form.h"
#include "chart/ui/picture.h"
#include "plot/pictures.h"
#include "report/ShownRun.h"

#include <functional>

class QAction;
class QActionGroup;
class QMenuBar;
class QStackedWidget;

namespace telvo::plot::ui {

class DistributionChart;
class PlanView;

/// What a plots window shows, and how.
struct PlotsView {
    report::ShownRun shown;
    plot::PlanOptions plan;
    bool remindBeforePrint = true;
};

/// What the plots window needs from above it.
struct PlotActions : chart::ui::PictureActions {
    std::function<void()> stopReminding; ///< of the printer before a plot is printed
};

/// The plots window of a run: panel layout, pillar capacity, pillar stresses, coloured plans.
class frmPlots : public telvo::ui::Form {
    Q_OBJECT
  public:
    frmPlots(PlotsView view, PlotActions actions, const telvo::ui::FormServices& services,
             QWidget* parent = nullptr);

    /// Shows the window, not modal.
    void load();
    /// Shows another run in the plot that is chosen.
    void setRun(PlotsView view);
    /// The same case has another name now.
    void setCaseName(const std::string& fileName);
    /// What is shown, as it leaves the program.
    chart::ui::Picture picture() const;

  private:
    QMenuBar* makeMenu();
    QAction* addChoice(QActionGroup& group, const QString& name, const QString& text, int value);
    QDialogButtonBox* makeButtonRow();
    void showPlot();
    bool remindOfPrinter();
    void print();

    plot::PictureKind kind() const;
    int pass() const;
    const run::Run& run() const { return *m_view.shown.run; }

    PlotsView m_view;
    PlotActions m_actions;
    QActionGroup* m_kinds = nullptr;
    QActionGroup* m_passes = nullptr;
    QStackedWidget* m_stack = nullptr;
    PlanView* m_plan = nullptr;
    DistributionChart* m_chart = nullptr;
};

} // namespace telvo::plot::ui
