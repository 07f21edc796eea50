// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "table/CaseTable.h"

#include <QAbstractTableModel>
#include <string>
#include <vector>

namespace telvo::table::ui {

/// The rows of a case table for a view, as many as pass the filter. Cells are made when they are
/// shown, so that a table of 100,000 rows opens at once.
class CaseTableModel : public QAbstractTableModel {
    Q_OBJECT
  public:
    enum Columns { Row, State, FirstColumn };

    explicit CaseTableModel(const table::CaseTable& table, QObject* parent = nullptr);

    /// Shows the rows that hold every word of the text in some column, and with `onlyBad` have a
    /// problem.
    void setFilter(const QString& text, bool onlyBad);
    const table::CaseRow& caseRow(int shownRow) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    void makeSearchTexts();
    bool passes(std::size_t row, const std::vector<std::string>& words, bool onlyBad) const;

    const table::CaseTable& m_table;
    std::vector<std::uint32_t> m_shown;     // indices of rows
    std::vector<std::string> m_searchTexts; // of each row, in small letters; made when first needed
};

/// Why a row cannot be read, one line per cell; empty where it can.
QString problemsOf(const table::CaseRow& row);

} // namespace telvo::table::ui
