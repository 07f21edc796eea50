// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/ui/studies/Background.h"
#include "study/ui/studies/StudyTable.h"

#include <functional>
#include <memory>
#include <optional>
#include <QAbstractTableModel>
#include <QStringList>
#include <QTableView>

namespace telvo::study::ui {

/// Cells that the user edits, by row and column of the table.
struct CellEditing {
    std::function<bool(std::size_t row, int column)> mayEdit;
    /// To choose from; empty where a text is typed.
    std::function<QStringList(std::size_t row, int column)> choices;
    std::function<void(std::size_t row, int column, const QString& text)> take;
    /// Why the text of a cell is refused; empty where it is not.
    std::function<QString(std::size_t row, int column)> refusal;
    /// The text of a cell that is refused, in the place of its own; may be empty.
    std::function<std::optional<QString>(std::size_t row, int column)> text = {};
    bool sortable = false; ///< headings sort all the same
};

/// The rows of a study for a view, in the order by which they are sorted. Rows keep their number
/// in the table whatever the order.
class StudyTableModel : public QAbstractTableModel {
    Q_OBJECT
  public:
    using QAbstractTableModel::QAbstractTableModel;

    void setTable(std::shared_ptr<const StudyTable> table);
    void setOrder(RowOrder order);
    void setEditing(CellEditing editing) { m_editing = std::move(editing); }
    const CellEditing& editing() const { return m_editing; }
    bool mayEdit(const QModelIndex& index) const;
    const std::shared_ptr<const StudyTable>& table() const { return m_table; }
    const RowOrder& order() const { return m_order; }
    /// The row of the table that stands in a place.
    std::size_t rowAt(int place) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  private:
    QVariant refusedLook(const QModelIndex& index, int role) const;

    CellEditing m_editing;
    std::shared_ptr<const StudyTable> m_table = std::make_shared<StudyTable>();
    RowOrder m_order;
};

/// Table of a study: headings sort, Enter and double click open the case of a row.
class StudyTableView : public QTableView {
    Q_OBJECT
  public:
    StudyTableView(const QString& name, QWidget* parent);

    /// Another table; it keeps the sorting where it has the same columns.
    void setTable(std::shared_ptr<const StudyTable> table);
    /// Lets cells be edited; rows then stay in the order of the table.
    void setEditing(CellEditing editing);
    const StudyTableModel& rows() const { return *m_model; }
    /// The row with the focus, of the table.
    std::optional<std::size_t> currentRow() const;
    /// Goes to a cell, by row of the table.
    void goTo(std::size_t row, int column);
    /// Rows of the table that are marked, from the top; at most `most`.
    std::vector<std::size_t> selectedRows(std::size_t most) const;
    /// Tab separated: of the selected rows where there are several, else of all.
    /// Faults: more rows than the clipboard takes
    Result<std::string> copied() const;
    bool isSorting() const { return m_sorting->isBusy(); }
    void stopSorting();

  Q_SIGNALS:
    void openRow(std::size_t row, int column);
    void menuAsked(std::size_t row, int column, const QPoint& globalPos);
    void sortingChanged();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  private:
    void sortByHeading(int column);
    void sort();
    void fitColumns();

    StudyTableModel* m_model;
    Background* m_sorting;
    int m_sortColumn = -1; ///< none: rows as they come
    bool m_descending = false;
    bool m_fitted = false;
};

} // namespace telvo::study::ui
