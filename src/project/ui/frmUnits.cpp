// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/ui/frmUnits.h"

#include "base/titles.h"
#include "base/ui/qtText.h"
#include "project/ui/readOnlyLine.h"

#include <QGridLayout>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <utility>

namespace telvo::project::ui {

using telvo::ui::fromQt;
using telvo::ui::NumberEdit;
using telvo::ui::toQt;

namespace {

/// A tab's caption with the letter that chooses it.
QString withLetter(const QString& quantity) {
    const std::pair<const char*, const char*> captions[] = {
        {"Length", QT_TR_NOOP("&Length")},
        {"Load", QT_TR_NOOP("L&oad")},
        {"Load Gradient", QT_TR_NOOP("Load &Gradient")},
        {"Stress", QT_TR_NOOP("&Stress")},
        {"Stress Gradient", QT_TR_NOOP("Stress G&radient")},
        {"Unit Weight", QT_TR_NOOP("&Unit Weight")}};
    for (const auto& [name, caption] : captions)
        if (quantity == QLatin1String(name)) return frmUnits::tr(caption);
    return quantity;
}

} // namespace

frmUnits::frmUnits(const telvo::ui::FormServices& services, QWidget* parent)
    : Form("frmUnits", titles::UnitConversion, "UnitConversion.htm", services, parent) {
    auto* tabs = new QTabWidget(this);
    tabs->setObjectName("SSTab1");
    tabs->setAccessibleName(tr("Quantity"));
    for (const CalculatorQuantity& quantity : calculatorQuantities())
        tabs->addTab(makePage(quantity), withLetter(toQt(quantity.name)));
    // A quantity is chosen to type its value.
    const auto goToEntry = [this](int tab) {
        if (tab < 0) return; // a click beside the tabs
        showControl(toQt(calculatorQuantities()[static_cast<std::size_t>(tab)].control));
    };
    connect(tabs, &QTabWidget::tabBarClicked, this, goToEntry, Qt::QueuedConnection);
    goToEntry(0);

    auto* buttons = makeButtons();
    auto* close = addButton(*buttons, "cmdClose", tr("&Close"), QDialogButtonBox::RejectRole);
    close->setToolTip(tr("Closes the calculator"));
    connect(buttons, &QDialogButtonBox::rejected, this, &frmUnits::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs);
    layout->addWidget(buttons);
}

QWidget* frmUnits::makePage(const CalculatorQuantity& quantity) {
    const QString quantityName = toQt(quantity.name);
    const QString entryName = toQt(quantity.control);
    auto* widget = new QWidget;
    auto* grid = new QGridLayout(widget);
    grid->setColumnStretch(1, 1);

    Page page;
    page.entry = new NumberEdit(entryName, widget);
    page.entry->setAccessibleName(quantityName);
    page.entry->setToolTip(tr("Any number in the unit beside it, such as 12.5 or 3.2E6"));
    page.unit = new QComboBox(widget);
    page.unit->setObjectName(QString(entryName).replace(0, 3, "cbo"));
    page.unit->setAccessibleName(tr("Unit of the entry"));
    page.unit->setToolTip(tr("Unit in which the value is entered"));
    auto* entryLabel = new QLabel(tr("&Value:"), widget);
    entryLabel->setBuddy(page.entry);
    grid->addWidget(entryLabel, 0, 0);
    grid->addWidget(page.entry, 0, 1);
    grid->addWidget(page.unit, 0, 2);

    int row = 1;
    for (const CalculatorUnit& unit : quantity.units) {
        const QString name = toQt(unit.name);
        page.unit->addItem(toQt(unit.symbol));
        page.unit->setItemData(row - 1, name, Qt::ToolTipRole);
        auto* result = makeReadOnlyLine(QString("%1Result_%2").arg(entryName).arg(row),
                                        tr("%1 in %2").arg(quantityName, name), widget);
        result->setAlignment(Qt::AlignRight);
        result->setMinimumWidth(result->fontMetrics().averageCharWidth() * 24);
        page.results.push_back(result);
        grid->addWidget(new QLabel(name, widget), row, 0);
        grid->addWidget(result, row, 1);
        grid->addWidget(new QLabel(toQt(unit.symbol), widget), row, 2);
        ++row;
    }
    grid->setRowStretch(row, 1);
    page.note = new QLabel(widget);
    page.note->setObjectName(QString(entryName).replace(0, 3, "lbl") + "Note");
    page.note->setWordWrap(true);
    grid->addWidget(page.note, row + 1, 0, 1, 3);

    const auto refresh = [this, &quantity, page] { showConversions(quantity, page); };
    connect(page.entry, &QLineEdit::textChanged, this, refresh);
    connect(page.unit, &QComboBox::currentIndexChanged, this, refresh);
    connect(page.entry, &NumberEdit::pasteRefused, this,
            [this](const QString& message) { tell(fromQt(message), titles::Error); });
    return widget;
}

void frmUnits::showConversions(const CalculatorQuantity& quantity, const Page& page) {
    const auto from = static_cast<std::size_t>(page.unit->currentIndex());
    const Conversions made = convertEntry(fromQt(page.entry->text()), quantity, from);
    for (std::size_t i = 0; i < page.results.size(); ++i) {
        page.results[i]->setText(toQt(made.results[i]));
        page.results[i]->setCursorPosition(0);
    }
    page.note->setText(toQt(made.note));
}

} // namespace telvo::project::ui
