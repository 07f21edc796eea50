// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/output/jsonParts.h"

#include <cmath>
#include <string>
#include <vector>

namespace telvo::study {

void jsonNumber(JsonWriter& json, std::string_view name, double value) {
    json.key(name);
    std::isfinite(value) ? json.number(value) : json.null();
}

void jsonNumber(JsonWriter& json, std::string_view name, const std::optional<double>& value) {
    json.key(name);
    value ? json.number(*value) : json.null();
}

void jsonTally(JsonWriter& json, const Tally& tally) {
    json.key("evaluated");
    json.number(tally.runs);
    json.key("uncomputable");
    json.number(tally.notComputed());
    json.key("messages");
    json.beginArray();
    for (const Tally::Left& left : tally.left) {
        json.beginObject();
        json.member("message", left.message);
        json.key("runs");
        json.number(left.runs);
        json.endObject();
    }
    json.endArray();
}

void jsonRows(JsonWriter& json, const ResultTable& table) {
    json.key("rows");
    json.beginArray();
    std::vector<TableCell> cells;
    for (std::size_t row = 0; row < table.rows; ++row) {
        cells.assign(table.columns.size(), {});
        table.read(row, cells);
        json.beginObject();
        for (std::size_t i = 0; i < cells.size(); ++i) {
            json.key(table.columns[i].name);
            if (const double* number = std::get_if<double>(&cells[i]))
                json.number(*number);
            else if (const auto* text = std::get_if<std::string>(&cells[i]))
                json.text(*text);
            else
                json.null();
        }
        json.endObject();
    }
    json.endArray();
}

} // namespace telvo::study
