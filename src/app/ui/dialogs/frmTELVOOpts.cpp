// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/frmTELVOOpts.h"

#include "app/ui/dialogs/associate.h"
#include "base/titles.h"
#include "base/ui/NumberEdit.h"
#include "base/ui/qtText.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>

namespace telvo::app::ui {

using telvo::ui::describe;
using telvo::ui::fromQt;
using telvo::ui::NumberEdit;
using telvo::ui::toQt;

frmTELVOOpts::frmTELVOOpts(SettingsStore& store, std::string program, std::string dataHome,
                           const telvo::ui::FormServices& services, QWidget* parent)
    : SettingsForm(store, SettingsSaveMode::TELVOOptions, "frmTELVOOpts", titles::ProgramOptions,
                   "ProgramOptions.htm", services, parent),
      m_program(std::move(program)), m_dataHome(std::move(dataHome)) {
    auto* layout = new QVBoxLayout(this);
    auto* tabs = new QTabWidget(this);
    tabs->setObjectName("SSTab1");
    tabs->addTab(makeInputPage(), tr("&Input Options"));
    tabs->addTab(makeOutputPage(), tr("&Output Options"));
    tabs->addTab(makePlotPage(), tr("P&lot Options"));
    layout->addWidget(tabs);
    layout->addWidget(makeOkCancel());
    tie(
        [this](const Settings& settings) {
            const OptionsTexts shown = textsFromOptions(settings);
            m_rangeMin->setText(toQt(shown.PlotRangeMin));
            m_rangeMax->setText(toQt(shown.PlotRangeMax));
        },
        [this](Settings& settings) { acceptOptions(settings, texts()); });
    showValues();
}

QWidget* frmTELVOOpts::makeInputPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    addSwitch(*layout, "chkShowInputScreenOnLoad", {&Settings::ShowInputScreenOnLoad},
              tr("Open the input &screen after File, New"),
              tr("Opens the project parameters of a new project at once"));
    addSwitch(*layout, "chkIssueWarningCancel", {&Settings::IssueWarningCancel},
              tr("&Warn before Cancel discards input"),
              tr("Asks before the project parameters are left without OK"));
    addSwitch(*layout, "chkAskOfficeInstall", {&Settings::AskOfficeInstall},
              tr("As&k before a spreadsheet is opened"),
              tr("Asks whether a program for spreadsheets is installed"));
    auto* associate = new QPushButton(tr("&Associate File Extension..."));
    describe(*associate, "cmdAssociate", tr("Associate File Extension"),
             tr("Lets a double click on a project file open this program"));
    associate->setAutoDefault(false);
    connect(associate, &QPushButton::clicked, this, [this] {
        associateExtension(this->store().values().FileExtension, m_program, m_dataHome, messages());
    });
    auto* row = new QHBoxLayout;
    row->addWidget(associate);
    row->addStretch();
    layout->addSpacing(fontMetrics().height() / 2);
    layout->addLayout(row);
    layout->addStretch();
    return page;
}

QWidget* frmTELVOOpts::makeOutputPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* units = new QHBoxLayout;
    const QString forces = tr("Unit of loads and capacities in reports of English cases");
    units->addWidget(makeChoice("optOutputStrGradUnits", &Settings::OutputStrGradUnits,
                                tr("Forces (English Cases)"), {tr("Po&unds"), tr("&Tons")},
                                {forces, forces}, QBoxLayout::LeftToRight));
    const QString stresses = tr("Unit of strengths and stresses in reports of English cases");
    units->addWidget(makeChoice("optOutputStrUnits", &Settings::OutputStrUnits,
                                tr("Stresses (English Cases)"), {tr("p&si"), tr("ps&f")},
                                {stresses, stresses}, QBoxLayout::LeftToRight));
    layout->addLayout(units);
    layout->addWidget(makeChoice(
        "optRoundTELVOSF", &Settings::RoundTELVOSF, tr("Stability Factors (for This Session)"),
        {tr("&Rounded to two decimals"), tr("&Not rounded"), tr("&Cut to two decimals")},
        {tr("1.496 becomes 1.5; every start of the program begins with this"),
         tr("1.496 stays 1.496"), tr("1.496 becomes 1.49")},
        QBoxLayout::TopToBottom));
    layout->addWidget(makeRangeGroup());
    auto* windows = new QGroupBox(tr("Results"));
    auto* windowsLayout = new QVBoxLayout(windows);
    addSwitch(*windowsLayout, "chkViewChildWindow", {&Settings::ViewChildWindow},
              tr("Keep the results &window on top"),
              tr("The results window stays in front of the main window"));
    addSwitch(*windowsLayout, "chkPrintModuleHeader", {&Settings::PrintModuleHeader},
              tr("Print the mo&dule header"), tr("Puts the program's heading on printed reports"));
    layout->addWidget(windows);
    layout->addStretch();
    return page;
}

QWidget* frmTELVOOpts::makeRangeGroup() {
    auto* range = new QGroupBox(tr("Graph Range"));
    auto* form = new QFormLayout(range);
    m_rangeMin = addPercent(*form, "txtPlotRangeMin", tr("&Minimum:"),
                            tr("Lower end of graphs in percent of the case's value, %1")
                                .arg(rangeText(&Settings::PlotRangeMin)));
    m_rangeMax = addPercent(*form, "txtPlotRangeMax", tr("Ma&ximum:"),
                            tr("Upper end of graphs in percent of the case's value, %1")
                                .arg(rangeText(&Settings::PlotRangeMax)));
    return range;
}

QLineEdit* frmTELVOOpts::addPercent(QFormLayout& form, const QString& name, const QString& caption,
                                    const QString& toolTip) {
    auto* box = new NumberEdit(name);
    describe(*box, name, tr("Graph range, %1").arg(caption), toolTip);
    box->setFixedWidth(fontMetrics().averageCharWidth() * 10);
    watchNumbers(*box);
    auto* row = new QHBoxLayout;
    row->addWidget(box);
    row->addWidget(new QLabel(tr("%")));
    row->addStretch();
    auto* label = new QLabel(caption);
    label->setBuddy(box);
    form.addRow(label, row);
    return box;
}

QWidget* frmTELVOOpts::makePlotPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* dimensions = new QGroupBox(tr("Dimensions in Layout Plots"));
    auto* group = new QVBoxLayout(dimensions);
    addSwitch(*group, "chkPlotEntryDims", {&Settings::PlotEntryDims}, tr("&Entries"),
              tr("Writes the distances of the entries"));
    auto* crosscuts = addSwitch(*group, "chkPlotXcutDims", {&Settings::PlotXcutDims},
                                tr("&Crosscuts"), tr("Writes the distances of the crosscuts"));
    auto* below = new QHBoxLayout;
    below->addSpacing(fontMetrics().height());
    group->addLayout(below);
    auto* single =
        addSwitch(*below, "chkPlotSingleXcutDims", {&Settings::PlotSingleXcutDims},
                  tr("O&ne crosscut only"), tr("Writes the distance of one crosscut, not of all"));
    // It says how crosscuts are dimensioned, and nothing while they are not.
    single->setEnabled(crosscuts->isChecked());
    connect(crosscuts, &QCheckBox::toggled, single, &QWidget::setEnabled);
    addSwitch(*group, "chkPlotGobDims", {&Settings::PlotGobDims}, tr("&Gobs"),
              tr("Writes the extents of the gobs"));
    layout->addWidget(dimensions);
    addSwitch(
        *layout, "chkPlotGobExtLoose", {&Settings::PlotGobExtLoose}, tr("Cut &broad gobs short"),
        tr("Gobs end at a break line, so that the panel stays large; else they are to scale"));
    addSwitch(*layout, "chkPrintPlotReminder", {&Settings::PrintPlotReminder},
              tr("&Remind of the printer setup before a plot is printed"),
              tr("Shows a reminder before plots go to the printer"));
    layout->addStretch();
    return page;
}

OptionsTexts frmTELVOOpts::texts() const {
    return {fromQt(m_rangeMin->text()), fromQt(m_rangeMax->text())};
}

void frmTELVOOpts::accept() {
    if (auto refused = checkOptions(texts())) {
        refused->control = "txt" + refused->control;
        refuse(*refused);
        return;
    }
    if (refuseUnreadNumber()) return;
    m_modified = keepChanges();
    SettingsForm::accept();
}

void frmTELVOOpts::done(int result) {
    const std::string_view outcome =
        m_modified ? "Program Options Modified" : "Program Options Not Modified";
    SettingsForm::done(result);
    messages().history(outcome);
    messages().status(outcome);
}

} // namespace telvo::app::ui
