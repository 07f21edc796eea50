// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/ui/frmPlots.h"

#include "base/files.h"
#include "base/note.h"
#include "base/text.h"
#include "base/titles.h"
#include "base/ui/qtText.h"
#include "engine/questions.h"
#include "plot/ui/DistributionChart.h"
#include "plot/ui/frmPrintPlotReminder.h"
#include "plot/ui/PlanView.h"
#include "plot/ui/plotPicture.h"

#include <QActionGroup>
#include <QMenuBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <utility>

namespace telvo::plot::ui {

using chart::ui::Picture;
using telvo::ui::Form;
using telvo::ui::FormServices;
using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

constexpr char HelpTopic[] = "Plots.htm";

} // namespace

frmPlots::frmPlots(PlotsView view, PlotActions actions, const FormServices& services,
                   QWidget* parent)
    : Form("frmPlots", titles::Plots, HelpTopic, services, parent), m_view(std::move(view)),
      m_actions(std::move(actions)) {
    // With all the buttons of a window; only a dialog stays above its parent.
    setWindowFlags((parent ? Qt::Dialog : Qt::Window) | Qt::WindowTitleHint |
                   Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint |
                   Qt::WindowCloseButtonHint);
    setWindowTitle(toQt(titles::Plots) + toQt(withoutFolder(run().current.FileName)));

    m_plan = new PlanView("Picture1", this);
    m_chart = new DistributionChart("Picture2", this);
    m_stack = new QStackedWidget(this);
    m_stack->addWidget(m_plan);
    m_stack->addWidget(m_chart);
    auto* layout = new QVBoxLayout(this);
    layout->setMenuBar(makeMenu());
    layout->addWidget(m_stack, 1);
    layout->addWidget(makeButtonRow());
    showPlot();
    m_plan->setFocus();
}

QAction* frmPlots::addChoice(QActionGroup& group, const QString& name, const QString& text,
                             int value) {
    auto* choice = group.addAction(text);
    choice->setObjectName(name);
    choice->setCheckable(true);
    choice->setData(value);
    return choice;
}

QMenuBar* frmPlots::makeMenu() {
    auto* bar = new QMenuBar(this);
    bar->setNativeMenuBar(false); // a menu of this window, not of the program
    auto* menu = bar->addMenu(tr("Se&ttings"));
    menu->setObjectName("mnuSettings");
    m_kinds = new QActionGroup(this);
    for (const plot::PictureRow& row : plot::PictureRows)
        addChoice(*m_kinds, toQt(row.control), tr(row.caption.data()), static_cast<int>(row.kind));
    m_kinds->actions().constFirst()->setChecked(true);
    menu->addActions(m_kinds->actions());
    menu->addSeparator();

    m_passes = new QActionGroup(this);
    auto* development =
        addChoice(*m_passes, "mnuDevelopment", tr("&Development"), engine::Development);
    auto* retreat = addChoice(*m_passes, "mnuRetreat", tr("&Retreat"), engine::Retreat);
    (engine::lastPass(run().in) == engine::Retreat ? retreat : development)->setChecked(true);
    menu->addActions(m_passes->actions());
    for (QActionGroup* group : {m_kinds, m_passes})
        connect(group, &QActionGroup::triggered, this, &frmPlots::showPlot);
    return bar;
}

QDialogButtonBox* frmPlots::makeButtonRow() {
    auto* buttons = makeButtons();
    const auto add = [&](const QString& name, const QString& caption, const QString& toolTip) {
        auto* made = addButton(*buttons, name, caption, QDialogButtonBox::ActionRole);
        made->setToolTip(toolTip);
        return made;
    };
    auto* copy = add("cmdCopy", tr("&Copy"), tr("Copies the plot to the clipboard"));
    connect(copy, &QPushButton::clicked, this, [this] {
        m_actions.copyPicture(picture(), this);
        telvo::note(messages(), "Plot copied to clipboard");
    });
    auto* exporting = add("cmdExport", tr("&Export..."),
                          tr("Writes the plot as a picture, or its numbers, into a file"));
    connect(exporting, &QPushButton::clicked, this,
            [this] { m_actions.exportPicture(picture(), this); });
    auto* printing = add("cmdPrint", tr("&Print"), tr("Prints the plot on one page"));
    connect(printing, &QPushButton::clicked, this, &frmPlots::print);
    auto* close = addButton(*buttons, "cmdClose", tr("Cl&ose"), QDialogButtonBox::RejectRole);
    close->setToolTip(tr("Closes this window (Esc)"));
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    return buttons;
}

void frmPlots::load() {
    show();
    telvo::note(messages(), "Plots displayed");
}

void frmPlots::setRun(PlotsView view) {
    m_view = std::move(view);
    setWindowTitle(toQt(titles::Plots) + toQt(withoutFolder(run().current.FileName)));
    if (engine::lastPass(run().in) != engine::Retreat)
        m_passes->actions().constFirst()->setChecked(true);
    showPlot();
}

void frmPlots::setCaseName(const std::string& name) {
    m_view.shown.rename(name);
    setWindowTitle(toQt(titles::Plots) + toQt(withoutFolder(run().current.FileName)));
}

plot::PictureKind frmPlots::kind() const {
    return static_cast<plot::PictureKind>(m_kinds->checkedAction()->data().toInt());
}

int frmPlots::pass() const {
    return m_passes->checkedAction()->data().toInt();
}

void frmPlots::showPlot() {
    const plot::PictureRow& row = plot::rowOf(kind());
    const bool retreat = engine::lastPass(run().in) == engine::Retreat;
    m_passes->actions().constFirst()->setEnabled(row.ofPass);
    m_passes->actions().constLast()->setEnabled(row.ofPass && retreat);
    m_stack->setCurrentWidget(row.isPlan ? static_cast<QWidget*>(m_plan) : m_chart);
    if (!row.isPlan) {
        m_chart->setDistribution(
            plot::distributionOf(row.kind, run(), m_view.shown.options, pass()));
        m_chart->replot();
        return;
    }
    auto made = plot::planOf(row.kind, run(), m_view.shown.options, pass(), m_view.plan);
    if (const auto* refused = std::get_if<Refusal>(&made))
        m_plan->setMessage(toQt(refused->message));
    else
        m_plan->setDrawing(std::get<plot::Drawing>(std::move(made)));
}

Picture frmPlots::picture() const {
    auto made = plotPicture(kind(), run(), m_view.shown.options, pass(), m_view.plan);
    Picture picture;
    if (auto* drawn = std::get_if<Picture>(&made)) picture = std::move(*drawn);
    const std::string file = withoutFolder(run().current.FileName);
    picture.name = file.substr(0, file.find_last_of('.')) + ' ' +
                   fromQt(m_kinds->checkedAction()->iconText().remove(':'));
    picture.caseName = file;
    if (!picture.paint) picture.paint = [](QPainter&, const QRectF&) {}; // the window says why
    return picture;
}

bool frmPlots::remindOfPrinter() {
    if (!m_view.remindBeforePrint) return true;
    frmPrintPlotReminder reminder(services(), this);
    if (reminder.exec() != QDialog::Accepted) return false;
    if (reminder.isLast()) {
        m_view.remindBeforePrint = false;
        m_actions.stopReminding();
    }
    return true;
}

void frmPlots::print() {
    if (remindOfPrinter()) m_actions.printPicture(picture(), this);
}

} // namespace telvo::plot::ui
