// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "table/TableBuilder.h"
#include "table/workbookParts.h"

#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::table {

/// Reads the rows of a sheet into a table, and then the merged ranges, which stand behind the rows.
class SheetReader : public XmlHandler {
  public:
    enum Extent {
        WholeSheet,
        FirstCase // enough to know whether the sheet has cases
    };
    SheetReader(TableBuilder& builder, const SharedTexts& shared, const Styles& styles,
                Extent extent, const ReadWatch& watch)
        : m_builder(builder), m_shared(shared.texts), m_dates(styles.dates), m_extent(extent),
          m_watch(watch) {}

    /// Whether the first row of the sheet names an input field.
    bool headed() const { return m_headed; }

    void start(std::string_view name, const XmlAttributes& attributes) override;
    void end(std::string_view name) override;
    void characters(std::string_view text) override;

    /// After the last element: refuses the cells that are merged with another one.
    Status finish();

  private:
    struct Range {
        std::uint32_t firstRow = 0, lastRow = 0;
        std::size_t firstColumn = 0, lastColumn = 0;
    };

    std::string place() const;
    void startRow(const XmlAttributes& attributes);
    void startCell(const XmlAttributes& attributes);
    void endCell();
    Cell readCell() const;
    Cell readNumberCell(std::string_view value) const;
    void endRow();
    void addMerged(std::string_view reference);

    TableBuilder& m_builder;
    const std::deque<std::string_view>& m_shared;
    const std::vector<bool>& m_dates;
    const Extent m_extent;
    const ReadWatch& m_watch;
    std::vector<Cell> m_cells;
    std::size_t m_used = 0; // of m_cells, in this row
    std::vector<Range> m_merged;
    bool m_headed = false;
    bool m_behindRows = false;
    std::uint32_t m_row = 0;
    std::size_t m_column = 0;
    std::size_t m_next = 0;
    std::string m_type;
    std::uint64_t m_style = 0;
    std::string m_text;
    TextRuns m_runs;
    bool m_hasFormula = false;
    bool m_hasValue = false;
    bool m_takesValue = false;
};

} // namespace telvo::table
