// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/StudyTableView.h"

#include "base/numbers.h"
#include "base/ui/NumberEdit.h"
#include "base/ui/qtText.h"

#include <cmath>
#include <numeric>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyledItemDelegate>
#include <utility>

namespace telvo::study::ui {

using telvo::ui::toQt;

namespace {

constexpr std::size_t SortedAtOnce = 20'000; // rows, without a thread

constexpr std::size_t LongestHeading = 16; // characters, on a line

/// A long heading with a line break at the blank that is nearest to its middle.
std::string onTwoLines(std::string label) {
    if (label.size() <= LongestHeading) return label;
    const std::size_t middle = label.size() / 2;
    const std::size_t before = label.rfind(' ', middle), after = label.find(' ', middle);
    const bool first = after == std::string::npos ||
                       (before != std::string::npos && middle - before <= after - middle);
    if (const std::size_t at = first ? before : after; at != std::string::npos) label[at] = '\n';
    return label;
}

bool sameColumns(const StudyTable& a, const StudyTable& b) {
    if (a.columns.size() != b.columns.size()) return false;
    for (std::size_t c = 0; c < a.columns.size(); ++c)
        if (a.columns[c].heading() != b.columns[c].heading()) return false;
    return true;
}

} // namespace

void StudyTableModel::setTable(std::shared_ptr<const StudyTable> table) {
    const bool same = sameColumns(*m_table, *table) && m_table->rows == table->rows;
    if (same) { // selection and scroll bars stay where they are
        m_table = std::move(table);
        m_order.clear();
        if (m_table->rows > 0)
            Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
        return;
    }
    beginResetModel();
    m_table = std::move(table);
    m_order.clear();
    endResetModel();
}

void StudyTableModel::setOrder(RowOrder order) {
    if (!order.empty() && order.size() != m_table->rows) return;
    Q_EMIT layoutAboutToBeChanged();
    m_order = std::move(order);
    Q_EMIT layoutChanged();
}

std::size_t StudyTableModel::rowAt(int place) const {
    const auto at = static_cast<std::size_t>(place);
    return m_order.empty() ? at : m_order[at];
}

int StudyTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_table->rows);
}

int StudyTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_table->columns.size());
}

QVariant StudyTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const auto column = static_cast<std::size_t>(index.column());
    const std::size_t row = rowAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        if (m_editing.text)
            if (const auto own = m_editing.text(rowAt(index.row()), index.column())) return *own;
        return toQt(shownCell(*m_table, row, column));
    case Qt::BackgroundRole:
    case Qt::ForegroundRole:
        return refusedLook(index, role);
    case Qt::ToolTipRole: {
        if (const QVariant why = refusedLook(index, role); why.isValid()) return why;
        const StudyCell cell = m_table->cell(row, column);
        if (const auto* number = std::get_if<double>(&cell))
            return std::isnan(*number) ? QString() : toQt(generalNumber(*number));
        const auto* text = std::get_if<std::string>(&cell);
        if (!text || text->empty()) return {};
        return QString("<span>" + toQt(*text).toHtmlEscaped() + "</span>");
    }
    case Qt::TextAlignmentRole:
        return static_cast<int>((m_table->columns[column].isText ? Qt::AlignLeft : Qt::AlignRight) |
                                Qt::AlignVCenter);
    default:
        return {};
    }
}

bool StudyTableModel::mayEdit(const QModelIndex& index) const {
    return index.isValid() && m_editing.mayEdit &&
           m_editing.mayEdit(rowAt(index.row()), index.column());
}

Qt::ItemFlags StudyTableModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags all = QAbstractTableModel::flags(index);
    return mayEdit(index) ? all | Qt::ItemIsEditable : all;
}

bool StudyTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole || !mayEdit(index)) return false;
    if (value.toString() != data(index, Qt::EditRole).toString())
        m_editing.take(rowAt(index.row()), index.column(), value.toString());
    return true;
}

/// Colors and words of a cell whose text is refused; nothing for any other cell.
QVariant StudyTableModel::refusedLook(const QModelIndex& index, int role) const {
    if (!m_editing.refusal) return {};
    const QString why = m_editing.refusal(rowAt(index.row()), index.column());
    if (why.isEmpty()) return {};
    if (role == Qt::ToolTipRole) return why;
    const bool ground = role == Qt::BackgroundRole;
    return telvo::ui::refusedColor(ground ? QPalette::Base : QPalette::Text);
}

QVariant StudyTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return {};
    const StudyColumn& column = m_table->columns[static_cast<std::size_t>(section)];
    if (role == Qt::DisplayRole) {
        const std::string label = onTwoLines(column.label);
        return toQt(column.unit.empty() ? label : label + "\n(" + column.unit + ")");
    }
    if (role == Qt::ToolTipRole) {
        const bool sorts = !m_editing.mayEdit || m_editing.sortable;
        const QString how =
            sorts ? "<br>" +
                        tr("Click to sort, once more the other way round, a third time as it was")
                  : QString();
        return QString("<span>" + toQt(column.heading()).toHtmlEscaped() + how + "</span>");
    }
    return {};
}

namespace {

/// Editors of cells: a list where there is something to choose from, else a line.
class CellDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex& index) const override {
        const auto& rows = *static_cast<const StudyTableModel*>(index.model());
        const auto& choices = rows.editing().choices;
        const QStringList list =
            choices ? choices(rows.rowAt(index.row()), index.column()) : QStringList();
        if (list.isEmpty()) {
            auto* line = new QLineEdit(parent);
            line->setObjectName("txtCell");
            line->setFrame(false);
            return line;
        }
        auto* box = new QComboBox(parent);
        box->setObjectName("cboCell");
        box->addItems(list);
        return box;
    }
    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        const QString text = index.data(Qt::EditRole).toString();
        if (auto* box = qobject_cast<QComboBox*>(editor))
            box->setCurrentIndex(std::max(box->findText(text), 0));
        else if (auto* line = static_cast<QLineEdit*>(editor); !line->isModified())
            line->setText(text);
    }
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override {
        const auto* box = qobject_cast<QComboBox*>(editor);
        model->setData(index, box ? box->currentText() : static_cast<QLineEdit*>(editor)->text());
    }
};

} // namespace

StudyTableView::StudyTableView(const QString& name, QWidget* parent)
    : QTableView(parent), m_model(new StudyTableModel(this)), m_sorting(new Background(this)) {
    setObjectName(name);
    setAccessibleName(tr("Table"));
    setModel(m_model);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setAlternatingRowColors(true);
    setTabKeyNavigation(false); // Tab leaves the table
    setWordWrap(false);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    horizontalHeader()->setSectionsClickable(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setResizeContentsPrecision(100);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, &StudyTableView::sortByHeading);
    connect(this, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
        Q_EMIT openRow(m_model->rowAt(index.row()), index.column());
    });
}

QSize StudyTableView::sizeHint() const {
    return QSize(60, 12) * fontMetrics().height();
}

QSize StudyTableView::minimumSizeHint() const {
    return QSize(16, 5) * fontMetrics().height();
}

void StudyTableView::setEditing(CellEditing editing) {
    m_model->setEditing(std::move(editing));
    setItemDelegate(new CellDelegate(this));
    setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
    horizontalHeader()->setSectionsClickable(m_model->editing().sortable);
}

void StudyTableView::setTable(std::shared_ptr<const StudyTable> table) {
    const bool same = sameColumns(*m_model->table(), *table);
    m_sorting->cancel();
    m_model->setTable(std::move(table));
    if (!same) {
        m_sortColumn = -1;
        horizontalHeader()->setSortIndicatorShown(false);
        m_fitted = false;
    }
    if (!std::exchange(m_fitted, true)) fitColumns();
    if (m_sortColumn >= 0) sort();
    Q_EMIT sortingChanged();
}

void StudyTableView::fitColumns() {
    resizeColumnsToContents();
    const int widest = fontMetrics().averageCharWidth() * 40;
    const int least = fontMetrics().averageCharWidth() * 9;
    const StudyTable& table = *m_model->table();
    for (int c = 0; c < m_model->columnCount(); ++c) {
        int wanted = columnWidth(c) + 6;
        if (table.rows > 0) // numbers of rows grow towards the end, which is not looked at
            wanted = std::max(wanted, fontMetrics().horizontalAdvance(toQt(shownCell(
                                          table, table.rows - 1, static_cast<std::size_t>(c)))) +
                                          16);
        setColumnWidth(c, std::clamp(wanted, least, widest));
    }
}

void StudyTableView::sortByHeading(int column) {
    if (m_sortColumn != column) {
        m_sortColumn = column;
        m_descending = false;
    } else if (!m_descending) {
        m_descending = true;
    } else {
        m_sortColumn = -1;
    }
    horizontalHeader()->setSortIndicatorShown(m_sortColumn >= 0);
    if (m_sortColumn >= 0)
        horizontalHeader()->setSortIndicator(m_sortColumn, m_descending ? Qt::DescendingOrder
                                                                        : Qt::AscendingOrder);
    sort();
}

void StudyTableView::sort() {
    if (m_sortColumn < 0) {
        m_sorting->cancel();
        m_model->setOrder({});
        Q_EMIT sortingChanged();
        return;
    }
    const auto table = m_model->table();
    const auto column = static_cast<std::size_t>(m_sortColumn);
    if (table->rows <= SortedAtOnce) {
        m_model->setOrder(sortedBy(*table, column, m_descending));
        return;
    }
    m_sorting->start([this, table, column, descending = m_descending](const std::stop_token& stop) {
        auto order = std::make_shared<RowOrder>(sortedBy(*table, column, descending, stop));
        return [this, order] {
            if (!order->empty()) m_model->setOrder(std::move(*order));
            Q_EMIT sortingChanged();
        };
    });
    Q_EMIT sortingChanged();
}

void StudyTableView::stopSorting() {
    m_sorting->cancel();
    m_sortColumn = -1;
    horizontalHeader()->setSortIndicatorShown(false);
    Q_EMIT sortingChanged();
}

std::optional<std::size_t> StudyTableView::currentRow() const {
    if (!currentIndex().isValid()) return std::nullopt;
    return m_model->rowAt(currentIndex().row());
}

void StudyTableView::goTo(std::size_t row, int column) {
    const RowOrder& order = m_model->order();
    std::size_t place = row;
    if (!order.empty())
        place =
            static_cast<std::size_t>(std::find(order.begin(), order.end(), row) - order.begin());
    setCurrentIndex(m_model->index(static_cast<int>(place), column));
}

std::vector<std::size_t> StudyTableView::selectedRows(std::size_t most) const {
    std::vector<int> places;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        for (int place = range.top(); place <= range.bottom() && places.size() < most; ++place)
            places.push_back(place);
    std::sort(places.begin(), places.end());
    std::vector<std::size_t> rows;
    for (const int place : places)
        rows.push_back(m_model->rowAt(place));
    return rows;
}

Result<std::string> StudyTableView::copied() const {
    const StudyTable& table = *m_model->table();
    RowOrder rows;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        for (int place = range.top(); place <= range.bottom(); ++place)
            rows.push_back(static_cast<std::uint32_t>(place));
    if (rows.size() <= 1) {
        rows.resize(std::min(table.rows, MostCopiedRows + 1));
        std::iota(rows.begin(), rows.end(), 0U);
    }
    if (rows.size() > MostCopiedRows)
        return Fault{"More than 200,000 rows are too many for the clipboard; export the table", ""};
    std::sort(rows.begin(), rows.end());
    for (std::uint32_t& row : rows)
        row = static_cast<std::uint32_t>(m_model->rowAt(static_cast<int>(row)));
    return tabText(table, rows);
}

void StudyTableView::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && state() != EditingState && m_model->mayEdit(currentIndex()))
        edit(currentIndex());
    else if (enter && currentIndex().isValid())
        Q_EMIT openRow(m_model->rowAt(currentIndex().row()), currentIndex().column());
    else
        QTableView::keyPressEvent(event);
}

void StudyTableView::contextMenuEvent(QContextMenuEvent* event) {
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex at =
        byKey ? currentIndex() : indexAt(viewport()->mapFromGlobal(event->globalPos()));
    if (!at.isValid()) return;
    const QPoint place =
        byKey ? viewport()->mapToGlobal(visualRect(at).center()) : event->globalPos();
    Q_EMIT menuAsked(m_model->rowAt(at.row()), at.column(), place);
}

} // namespace telvo::study::ui
