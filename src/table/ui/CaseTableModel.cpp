// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/ui/CaseTableModel.h"

#include "base/text.h"
#include "base/ui/qtText.h"
#include "table/columns.h"

#include <algorithm>
#include <numeric>
#include <QApplication>
#include <QFont>
#include <QStyle>

namespace telvo::table::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

/// The text of one column; of a bad row, whose record is not whole, nothing but the title.
std::string shownCell(const table::CaseRow& row, std::size_t column) {
    if (column != table::TitleColumn && !row.good()) return {};
    const std::string text = table::cellText(row.current, column);
    return column < table::UnitsColumn ? withoutControls(text) : text;
}

/// A row that can be loaded, and whether the file gives all of its values.
QString stateOf(const table::CaseRow& row) {
    const auto blank = row.blank.count();
    if (blank == 0) return QObject::tr("OK");
    return blank == 1 ? QObject::tr("OK, 1 cell blank")
                      : QObject::tr("OK, %1 cells blank").arg(blank);
}

QString remarksOf(const table::CaseRow& row) {
    QStringList lines;
    for (const std::string& remark : table::rowRemarks(row))
        lines.append(toQt(remark));
    return lines.join('\n');
}

} // namespace

QString problemsOf(const table::CaseRow& row) {
    QStringList lines;
    for (const Fault& fault : row.faults)
        lines.append(toQt(faultText(fault)));
    return lines.join('\n');
}

CaseTableModel::CaseTableModel(const table::CaseTable& table, QObject* parent)
    : QAbstractTableModel(parent), m_table(table), m_shown(table.rows.size()) {
    std::iota(m_shown.begin(), m_shown.end(), 0U);
}

void CaseTableModel::setFilter(const QString& text, bool onlyBad) {
    std::vector<std::string> words;
    for (const QString& word : text.toLower().split(' ', Qt::SkipEmptyParts))
        words.push_back(fromQt(word));
    if (!words.empty() && m_searchTexts.empty()) makeSearchTexts();
    beginResetModel();
    m_shown.clear();
    for (std::size_t row = 0; row < m_table.rows.size(); ++row)
        if (passes(row, words, onlyBad)) m_shown.push_back(static_cast<std::uint32_t>(row));
    endResetModel();
}

void CaseTableModel::makeSearchTexts() {
    m_searchTexts.reserve(m_table.rows.size());
    for (const table::CaseRow& row : m_table.rows)
        m_searchTexts.push_back(fromQt(toQt(table::searchText(row)).toLower()));
}

bool CaseTableModel::passes(std::size_t row, const std::vector<std::string>& words,
                            bool onlyBad) const {
    if (onlyBad && m_table.rows[row].good()) return false;
    return std::all_of(words.begin(), words.end(), [&](const std::string& word) {
        return m_searchTexts[row].find(word) != std::string::npos;
    });
}

const table::CaseRow& CaseTableModel::caseRow(int shownRow) const {
    return m_table.rows[m_shown[static_cast<std::size_t>(shownRow)]];
}

int CaseTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int CaseTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : FirstColumn + static_cast<int>(table::columns().size());
}

QVariant CaseTableModel::data(const QModelIndex& index, int role) const {
    const table::CaseRow& row = caseRow(index.row());
    const auto column = static_cast<std::size_t>(index.column() - FirstColumn);
    switch (role) {
    case Qt::DisplayRole:
        if (index.column() == Row) return toQt(std::to_string(row.number));
        if (index.column() == State)
            return row.good() ? stateOf(row) : toQt(table::firstProblem(row));
        return toQt(shownCell(row, column));
    case Qt::DecorationRole:
        if (index.column() == State && !row.good())
            return QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
        return {};
    case Qt::ToolTipRole:
        // A rich text, so that a title like "<b>" is not taken for one.
        if (index.column() == State) {
            const QString text = row.good() ? remarksOf(row) : problemsOf(row);
            if (!text.isEmpty())
                return QString("<span style='white-space:pre'>" + text.toHtmlEscaped() + "</span>");
        }
        return {};
    case Qt::TextAlignmentRole:
        if (index.column() == Row ||
            (index.column() >= FirstColumn && column >= table::FirstFieldColumn))
            return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
        return {};
    default:
        return {};
    }
}

QVariant CaseTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return {};
    if (section < FirstColumn) {
        if (role == Qt::DisplayRole) return section == Row ? tr("Row") : tr("State");
        return {};
    }
    const table::Column& column = table::columns()[static_cast<std::size_t>(section - FirstColumn)];
    if (role == Qt::DisplayRole) return toQt(column.name);
    if (role != Qt::ToolTipRole) return {};
    const auto english = toQt(project::fieldUnit(column.kind, project::English));
    const auto metric = toQt(project::fieldUnit(column.kind, project::Metric));
    QString tip = toQt(column.meaning);
    if (!english.isEmpty()) tip += ", " + (english == metric ? english : english + " | " + metric);
    return tip + "\n" + tr("Valid: %1").arg(toQt(column.valid));
}

} // namespace telvo::table::ui
