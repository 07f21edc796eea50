// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/output/jsonParts.h"
#include "study/output/ResultTable.h"
#include "study/questions/uncertainty.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

/// What the answers from samples are written with.
namespace telvo::study {

/// A table that is kept as it is shown.
class KeptTable {
  public:
    explicit KeptTable(std::vector<TableColumn> columns) { m_table.columns = std::move(columns); }

    void row(std::vector<TableCell> cells) {
        cells.resize(m_table.columns.size());
        m_rows->push_back(std::move(cells));
    }
    ResultTable take() {
        m_table.rows = m_rows->size();
        m_table.read = [rows = m_rows](std::size_t row, std::vector<TableCell>& cells) {
            cells = (*rows)[row];
        };
        return std::move(m_table);
    }

  private:
    ResultTable m_table;
    std::shared_ptr<std::vector<std::vector<TableCell>>> m_rows =
        std::make_shared<std::vector<std::vector<TableCell>>>();
};

/// To the digits that a reader of an estimate wants.
TableCell shownNumber(double value);
TableCell shownPercent(double share);

void jsonEstimate(JsonWriter& json, std::string_view name, const sampling::Estimate& estimate);
void jsonCount(JsonWriter& json, std::string_view name, std::uint64_t count);

} // namespace telvo::study
