// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/ui/frmCaseTable.h"

#include "base/files.h"
#include "base/text.h"
#include "base/titles.h"
#include "base/ui/qtText.h"
#include "project/caseFacts.h"
#include "table/columns.h"
#include "table/ui/CaseTableModel.h"

#include <algorithm>
#include <QCheckBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QTableView>
#include <QVBoxLayout>

namespace telvo::table::ui {

using telvo::ui::Form;
using telvo::ui::FormServices;
using telvo::ui::fromQt;
using telvo::ui::toQt;
using telvo::ui::toQtLines;

namespace {

/// A label for text from a file, which is never markup.
QLabel* factLabel(const QString& name, const QString& caption, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setAccessibleName(caption);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    return label;
}

/// Those of the facts of a case that fit into the preview of a row.
std::vector<project::CaseFact> factsOf(const project::ProjectCase& current,
                                       const project::KeyFigures& figures, bool withFactors) {
    constexpr std::string_view shown[] = {"lblLoading", "lblDepth", "lblHeight", "lblEntries"};
    constexpr std::string_view factors[] = {"lblDevelopmentSF", "lblRetreatSF"};
    auto facts = project::caseFacts(current, figures);
    std::erase_if(facts, [&](const project::CaseFact& fact) {
        return std::ranges::find(shown, fact.control) == std::end(shown) &&
               (!withFactors || std::ranges::find(factors, fact.control) == std::end(factors));
    });
    return facts;
}

QString fileNameOf(const std::string& path) {
    return toQt(withoutFolder(path));
}

} // namespace

frmCaseTable::frmCaseTable(table::CaseTable table, const FormServices& services, QWidget* parent,
                           Figures figures)
    : Form("frmCaseTable", titles::Import, "CaseTable.htm", services, parent),
      m_table(std::move(table)), m_figures(std::move(figures)),
      m_model(new CaseTableModel(m_table, this)) {
    m_bad = static_cast<std::size_t>(
        std::count_if(m_table.rows.begin(), m_table.rows.end(),
                      [](const table::CaseRow& row) { return !row.good(); }));
    setWindowTitle(tr("Import Case - %1").arg(fileNameOf(m_table.file)));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(makeRemarks());

    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->setObjectName("splCaseTable");
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(makeTable());
    splitter->addWidget(makePreview());
    splitter->setStretchFactor(0, 1);
    layout->addWidget(splitter, 1);

    auto* buttons = makeButtons();
    m_load = addButton(*buttons, "cmdOK", tr("&Load Case"), QDialogButtonBox::AcceptRole);
    m_load->setToolTip(tr("Loads the selected row as the current case"));
    addButton(*buttons, "cmdCancel", tr("Cancel"), QDialogButtonBox::RejectRole)
        ->setToolTip(tr("Closes the window and leaves the case as it is"));
    connect(buttons, &QDialogButtonBox::accepted, this, &frmCaseTable::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmCaseTable::reject);
    layout->addWidget(buttons);

    connect(m_filter, &QLineEdit::textChanged, this, &frmCaseTable::filter);
    connect(m_onlyBad, &QCheckBox::toggled, this, &frmCaseTable::filter);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &frmCaseTable::showCurrent);
    connect(m_view, &QTableView::activated, this, &frmCaseTable::accept);
    filter();
    m_filter->setFocus();
    const QSize letter(fontMetrics().averageCharWidth(), fontMetrics().height());
    resize(letter.width() * 140, letter.height() * 40);
    splitter->setSizes({letter.height() * 22, letter.height() * 10});
}

frmCaseTable::~frmCaseTable() = default;

/// What has to be known beside the rows. It scrolls where it is long: the rows need the room.
QWidget* frmCaseTable::makeRemarks() {
    QStringList lines;
    for (const std::string& remark : table::remarks(m_table)) {
        const QString line = toQt(remark);
        lines.append(line.left(1).toUpper() + line.mid(1));
    }
    m_remarks = new QLabel(lines.join('\n'));
    m_remarks->setObjectName("lblRemarks");
    m_remarks->setAccessibleName(tr("What to know about the table"));
    m_remarks->setTextFormat(Qt::PlainText);
    m_remarks->setWordWrap(true);
    m_remarks->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_remarks->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_remarksArea = new QScrollArea(this);
    m_remarksArea->setObjectName("scrRemarks");
    m_remarksArea->setFrameShape(QFrame::NoFrame);
    m_remarksArea->setWidgetResizable(true);
    m_remarksArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_remarksArea->setWidget(m_remarks);
    m_remarksArea->setVisible(!lines.isEmpty());
    return m_remarksArea;
}

void frmCaseTable::resizeEvent(QResizeEvent* event) {
    Form::resizeEvent(event);
    constexpr int most = 6; // lines
    const int needed = m_remarks->heightForWidth(m_remarksArea->viewport()->width());
    m_remarksArea->setFixedHeight(std::min(needed, fontMetrics().lineSpacing() * most));
}

QWidget* frmCaseTable::makeTable() {
    auto* upper = new QWidget(this);
    auto* layout = new QVBoxLayout(upper);
    layout->setContentsMargins({});
    auto* bar = new QHBoxLayout;
    m_filter = new QLineEdit(upper);
    m_filter->setObjectName("txtFilter");
    m_filter->setAccessibleName(tr("Filter"));
    m_filter->setPlaceholderText(tr("Words in any column"));
    m_filter->setToolTip(tr("Shows the rows that hold every word in some column"));
    m_filter->setClearButtonEnabled(true);
    auto* caption = new QLabel(tr("&Filter:"), upper);
    caption->setBuddy(m_filter);
    m_onlyBad = new QCheckBox(tr("Only rows with &problems"), upper);
    m_onlyBad->setObjectName("chkProblems");
    m_onlyBad->setAccessibleName(tr("Only rows with problems"));
    m_onlyBad->setToolTip(tr("Shows the rows that cannot be loaded, with the reason"));
    m_onlyBad->setEnabled(m_bad > 0);
    m_count = new QLabel(upper);
    m_count->setObjectName("lblCount");
    bar->addWidget(caption);
    bar->addWidget(m_filter, 1);
    bar->addWidget(m_onlyBad);
    bar->addWidget(m_count);
    layout->addLayout(bar);

    m_view = new QTableView(upper);
    m_view->setObjectName("tblCases");
    m_view->setAccessibleName(tr("Rows of the table"));
    m_view->setToolTip(tr("Return or a double click loads the row"));
    m_view->setModel(m_model);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setAlternatingRowColors(true);
    m_view->setWordWrap(false);
    m_view->setTabKeyNavigation(false);
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_view, &QWidget::customContextMenuRequested, this, &frmCaseTable::showMenu);
    m_view->verticalHeader()->hide();
    m_view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_view->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    m_view->horizontalHeader()->setHighlightSections(false);
    const int letter = fontMetrics().averageCharWidth();
    for (int column = 0; column < m_model->columnCount(); ++column) {
        const QString name =
            m_model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        int width = std::max(letter * 9, fontMetrics().horizontalAdvance(name) + letter * 3);
        if (column == CaseTableModel::State) width = letter * (m_bad > 0 ? 30 : 18);
        if (column == CaseTableModel::FirstColumn + static_cast<int>(table::TitleColumn) ||
            column == CaseTableModel::FirstColumn + static_cast<int>(table::DescriptionColumn))
            width = letter * (column == CaseTableModel::FirstColumn ? 40 : 20);
        m_view->setColumnWidth(column, width);
    }
    layout->addWidget(m_view, 1);
    return upper;
}

QWidget* frmCaseTable::makePreview() {
    auto* lower = new QWidget(this);
    auto* column = new QVBoxLayout(lower);
    column->setContentsMargins({});
    // A title may be long: it has the whole width.
    m_facts.push_back(factLabel("lblTitle", tr("Title"), lower));
    QFont bold = font();
    bold.setBold(true);
    m_facts.back()->setFont(bold);
    column->addWidget(m_facts.back());
    auto* layout = new QHBoxLayout;
    column->addLayout(layout, 1);
    auto* left = new QWidget(lower);
    auto* facts = new QFormLayout(left);
    facts->setContentsMargins({});
    facts->setLabelAlignment(Qt::AlignLeft);
    for (const project::CaseFact& fact : factsOf({}, {}, m_figures != nullptr)) {
        m_facts.push_back(factLabel(toQt(fact.control), toQt(fact.caption), left));
        facts->addRow(toQt(fact.caption) + ":", m_facts.back());
    }
    m_notes = new QPlainTextEdit(lower);
    m_notes->setObjectName("txtDescription");
    m_notes->setAccessibleName(
        tr("Values that the file does not give, and the description; or why the row cannot be "
           "loaded"));
    m_notes->setToolTip(
        tr("Values that the file does not give, and the description of the case; or "
           "why the row cannot be loaded"));
    m_notes->setReadOnly(true);
    m_notes->setTabChangesFocus(true);
    m_notes->setMinimumHeight(fontMetrics().height() * 6);
    // Wide enough for the longest loading condition.
    QString widest;
    for (const std::string_view condition : project::LoadingConditionNames)
        if (const QString text = toQt(condition); text.size() > widest.size()) widest = text;
    m_facts[1]->setMinimumWidth(fontMetrics().horizontalAdvance(widest));
    layout->addWidget(left, 3);
    layout->addWidget(m_notes, 2);
    facts->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    return lower;
}

void frmCaseTable::filter() {
    m_model->setFilter(m_filter->text(), m_onlyBad->isChecked());
    const int shown = m_model->rowCount();
    QString text = tr("%1 of %2 rows")
                       .arg(toQt(std::to_string(shown)), toQt(std::to_string(m_table.rows.size())));
    if (m_bad > 0) text += tr(", %1 with problems").arg(toQt(std::to_string(m_bad)));
    m_count->setText(text);
    if (shown > 0) m_view->setCurrentIndex(m_model->index(0, CaseTableModel::Row));
    showCurrent();
}

const table::CaseRow* frmCaseTable::currentRow() const {
    const QModelIndex index = m_view->currentIndex();
    return index.isValid() ? &m_model->caseRow(index.row()) : nullptr;
}

void frmCaseTable::showMenu(const QPoint& place) {
    const table::CaseRow* row = currentRow();
    if (!addToCompare || !row || !row->good()) return;
    QMenu menu(this);
    menu.setObjectName("mnuCaseRow");
    connect(menu.addAction(tr("Add to &Compare")), &QAction::triggered, this,
            [this, row] { addToCompare(*row); });
    menu.exec(m_view->viewport()->mapToGlobal(place));
}

void frmCaseTable::showCurrent() {
    const table::CaseRow* row = currentRow();
    const bool good = row && row->good();
    m_load->setEnabled(good);
    std::vector<std::string> texts(m_facts.size());
    QString notes = row ? problemsOf(*row) : QString();
    if (good) {
        const project::ProjectCase& current = row->current;
        texts[0] = withoutControls(current.Title);
        const auto figures = m_figures ? m_figures(current) : project::KeyFigures{};
        std::size_t at = 1;
        for (project::CaseFact& fact : factsOf(current, figures, m_figures != nullptr))
            texts[at++] = std::move(fact.text);
        for (const std::string& remark : table::rowRemarks(*row))
            notes += toQt(remark) + '\n';
        if (!notes.isEmpty() && !current.Description.empty()) notes += '\n';
        notes += toQtLines(current.Description);
    }
    for (std::size_t i = 0; i < m_facts.size(); ++i) {
        m_facts[i]->setText(texts[i].empty() ? QStringLiteral("\u2013") : toQt(texts[i]));
        // Where the window is narrow; a tool tip would take a title like "<b>" for markup.
        m_facts[i]->setToolTip("<span>" + toQt(texts[i]).toHtmlEscaped() + "</span>");
    }
    m_notes->setPlainText(notes);
}

void frmCaseTable::accept() {
    const table::CaseRow* row = currentRow();
    if (!row) return;
    if (!row->good())
        return tell("Row " + std::to_string(row->number) + " cannot be loaded:\n" +
                        fromQt(problemsOf(*row)),
                    titles::Error);
    m_chosen = row->current;
    Form::accept();
}

} // namespace telvo::table::ui
