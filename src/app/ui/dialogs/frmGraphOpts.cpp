// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/frmGraphOpts.h"

#include "base/text.h"
#include "base/titles.h"
#include "base/ui/qtText.h"
#include "study/graph/GraphOptions.h"
#include "study/graph/sfGraph.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabWidget>

namespace telvo::app::ui {

using telvo::ui::describe;
using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

constexpr int LongestTitle = 80; // more would not fit beside an axis

} // namespace

frmGraphOpts::frmGraphOpts(SettingsStore& store, const telvo::ui::FormServices& services,
                           QWidget* parent)
    : SettingsForm(store, SettingsSaveMode::Graph, "frmGraphOpts", titles::GraphOptions,
                   "GraphOptions.htm", services, parent) {
    auto* layout = new QVBoxLayout(this);
    auto* tabs = new QTabWidget(this);
    tabs->setObjectName("SSTab1");
    tabs->addTab(makeDrawingPage(), tr("&Drawing"));
    tabs->addTab(makeTitlesPage(), tr("&Titles"));
    layout->addWidget(tabs);
    addSwitch(*layout, "chkGraphSetParams", {&Settings::GraphSetParams},
              tr("Sho&w these options before a graph is drawn"),
              tr("Opens this dialog whenever a graph is chosen from the menu"));
    layout->addWidget(makeOkCancel());
    showValues();
}

QWidget* frmGraphOpts::makeDrawingPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* row = new QHBoxLayout;
    const QString lines = tr("Lines across the graph at the numbers of its axes");
    row->addWidget(
        makeChoice("optGridStyle", &Settings::GridStyle, tr("Grid"),
                   {tr("&None"), tr("Hori&zontal lines"), tr("&Vertical lines"), tr("&Both")},
                   {lines, lines, lines, lines}, QBoxLayout::TopToBottom));
    row->addWidget(makeCurvesGroup());
    layout->addLayout(row);
    const QString units = tr("Units of the horizontal axis; a case that is opened sets its own");
    layout->addWidget(makeChoice("optGraphUnits", &Settings::GraphUnits, tr("Axis Units"),
                                 {tr("&English (ft)"), tr("&Metric (m)")}, {units, units},
                                 QBoxLayout::LeftToRight));
    layout->addStretch();
    return page;
}

QWidget* frmGraphOpts::makeCurvesGroup() {
    auto* frame =
        makeChoice("optGraphStyle", &Settings::GraphStyle, tr("Curves"),
                   {tr("&Symbols"), tr("&Lines"), tr("Lines &and symbols")},
                   {tr("Curves are drawn as rows of symbols"), tr("Curves are drawn as lines"),
                    tr("Curves are drawn as lines with symbols")},
                   QBoxLayout::TopToBottom, study::SymbolsOnly);
    auto* layout = qobject_cast<QBoxLayout*>(frame->layout());
    auto* form = new QFormLayout;
    auto* size = new QSpinBox;
    describe(*size, "spnSymbolSize", tr("Symbol size"),
             tr("Size in points, %1").arg(rangeText(&Settings::SymbolSize)));
    limit(*size, &Settings::SymbolSize);
    size->setSuffix(tr(" pt"));
    form->addRow(tr("Symbol s&ize:"), size);
    layout->addLayout(form);
    tie([=](const Settings& settings) { size->setValue(settings.SymbolSize); },
        [=](Settings& settings) {
            settings.SymbolSize = static_cast<std::int16_t>(size->value());
        });
    addSwitch(*layout, "chkCurveLegend", {&Settings::CurveLegend}, tr("Le&gend"),
              tr("Draws a key of the curves above the graph"));
    return frame;
}

QWidget* frmGraphOpts::makeTitlesPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    addTitle(*form, "txtGraphTitle", tr("&Graph title:"),
             tr("Title on top of the graphs of the open case; another case begins with \"TELVO\""),
             [](Settings& settings) -> std::string& { return settings.GraphTitle; });
    layout->addLayout(form);

    auto* horizontal = new QGroupBox(tr("Horizontal Axis"));
    auto* xForm = new QFormLayout(horizontal);
    const QStringList captions = {tr("Entr&y height:"),        tr("De&pth of cover:"),
                                  tr("Crosscut &angle:"),      tr("Crosscut &spacing:"),
                                  tr("&First barrier width:"), tr("Second &barrier width:")};
    for (std::size_t i = 0; i < study::GraphKinds; ++i)
        addTitle(*xForm, QString("txtXAxisTitle_%1").arg(i), captions[static_cast<qsizetype>(i)],
                 tr("Title below the graph \"%1\"; the unit follows it")
                     .arg(toQt(study::GraphRows[i].caption)),
                 [i](Settings& settings) -> std::string& { return settings.XAxisTitle[i]; });
    layout->addWidget(horizontal);

    auto* vertical = new QGroupBox(tr("Vertical Axis"));
    auto* yForm = new QFormLayout(vertical);
    addTitle(*yForm, "txtYAxisTitle_0", tr("P&illars:"),
             tr("Title at the left of graphs of the stability factor"),
             [](Settings& settings) -> std::string& { return settings.YAxisTitle[0]; });
    addTitle(*yForm, "txtYAxisTitle_1", tr("Ba&rriers:"),
             tr("Title at the left of graphs of a barrier's stability factor"),
             [](Settings& settings) -> std::string& { return settings.YAxisTitle[1]; });
    layout->addWidget(vertical);
    layout->addStretch();
    return page;
}

void frmGraphOpts::addTitle(QFormLayout& form, const QString& name, const QString& caption,
                            const QString& toolTip, std::function<std::string&(Settings&)> title) {
    auto* box = new QLineEdit;
    describe(*box, name, tr("Title, %1").arg(caption), toolTip);
    box->setMaxLength(LongestTitle);
    box->setMinimumWidth(fontMetrics().averageCharWidth() * 32);
    form.addRow(caption, box);
    tie(
        [=](const Settings& settings) {
            Settings shown = settings;
            box->setText(toQt(title(shown)));
            box->setCursorPosition(0);
        },
        [=](Settings& settings) { title(settings) = trimmed(fromQt(box->text())); });
}

void frmGraphOpts::accept() {
    m_modified = keepChanges();
    SettingsForm::accept();
}

void frmGraphOpts::done(int result) {
    const std::string_view outcome =
        m_modified ? "Graph Options Modified" : "Graph Options Not Modified";
    SettingsForm::done(result);
    messages().history(outcome);
    messages().status(outcome);
}

} // namespace telvo::app::ui
