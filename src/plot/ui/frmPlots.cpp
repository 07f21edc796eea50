// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/ui/frmPlots.h"

#include "base/files.h"
#include "base/note.h"
#include "base/text.h"
#include "base/titles.h"
#include "base/ui/qtText.h"
#include "engine/questions.h"
#include "plot/distribution.h"
#include "plot/ui/DistributionChart.h"
#include "plot/ui/frmPrintPlotReminder.h"
#include "plot/ui/paintDrawing.h"
#include "plot/ui/PlanView.h"

#include <QActionGroup>
#include <QMenuBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <utility>

namespace telvo::plot::ui {

using chart::ui::paperPalette;
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
    struct Choice {
        const char* name;
        QString text;
        Kind kind;
    };
    const Choice choices[] = {
        {"mnuPanelLayout", tr("Panel &Layout"), Kind::PanelLayout},
        {"mnuCapacity", tr("Pillar Load Bearing &Capacity"), Kind::Capacity},
        {"mnuStresses", tr("Individual Pillar &Stresses"), Kind::Stresses},
        {"mnuCapacityPlan", tr("Colored Plan: C&apacity"), Kind::CapacityPlan},
        {"mnuStressPlan", tr("Colored Plan: Str&esses"), Kind::StressPlan},
        {"mnuStrengthToStressPlan", tr("Colored Plan: Strength &to Stress"),
         Kind::StrengthToStressPlan},
    };
    for (const Choice& choice : choices)
        addChoice(*m_kinds, choice.name, choice.text, static_cast<int>(choice.kind));
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

frmPlots::Kind frmPlots::kind() const {
    return static_cast<Kind>(m_kinds->checkedAction()->data().toInt());
}

int frmPlots::pass() const {
    return m_passes->checkedAction()->data().toInt();
}

plot::Distribution frmPlots::distribution() const {
    const bool capacity = kind() == Kind::Capacity || kind() == Kind::CapacityPlan;
    return capacity ? plot::capacityDistribution(run(), m_view.shown.options)
                    : plot::stressDistribution(run(), m_view.shown.options, pass());
}

std::variant<plot::Drawing, Refusal> frmPlots::drawing() const {
    if (kind() == Kind::PanelLayout) return plot::panelPlan(run(), pass(), m_view.plan);
    const auto what = kind() == Kind::StrengthToStressPlan ? plot::Coloured::StrengthToStress
                                                           : plot::Coloured::Total;
    const auto overlay = plot::planOverlay(distribution(), what, m_view.shown.options.RoundTELVOSF);
    return plot::panelPlan(run(), pass(), m_view.plan, &overlay);
}

void frmPlots::showPlot() {
    // Nothing of a capacity depends on the pass.
    const bool capacity = kind() == Kind::Capacity;
    const bool retreat = engine::lastPass(run().in) == engine::Retreat;
    m_passes->actions().constFirst()->setEnabled(!capacity);
    m_passes->actions().constLast()->setEnabled(!capacity && retreat);
    const bool bars = capacity || kind() == Kind::Stresses;
    m_stack->setCurrentWidget(bars ? static_cast<QWidget*>(m_chart) : m_plan);
    if (bars) {
        m_chart->setDistribution(distribution());
        m_chart->replot();
        return;
    }
    auto made = drawing();
    if (const auto* refused = std::get_if<Refusal>(&made))
        m_plan->setMessage(toQt(refused->message));
    else
        m_plan->setDrawing(std::get<plot::Drawing>(std::move(made)));
}

Picture frmPlots::picture() const {
    const std::string file = withoutFolder(run().current.FileName);
    const std::string name = file.substr(0, file.find_last_of('.')) + ' ' +
                             fromQt(m_kinds->checkedAction()->iconText().remove(':'));
    Picture made;
    if (m_stack->currentWidget() == m_chart) {
        made = distributionPicture(distribution(), name);
        made.caseName = file;
        return made;
    }
    made.name = name;
    made.caseName = file;
    if (kind() != Kind::PanelLayout) made.csv = plot::distributionCsv(distribution());
    auto shown = drawing();
    made.paint = [shown = std::move(shown)](QPainter& painter, const QRectF& page) {
        if (const auto* drawn = std::get_if<plot::Drawing>(&shown))
            paintDrawing(*drawn, painter, page, paperPalette());
    };
    return made;
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
