// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/JsonWriter.h"
#include "study/output/ResultTable.h"
#include "study/tally.h"

#include <optional>
#include <string_view>

/// Parts of JSON that several studies write.
namespace telvo::study {

/// A member that is null where there is no number.
void jsonNumber(JsonWriter& json, std::string_view name, double value);
void jsonNumber(JsonWriter& json, std::string_view name, const std::optional<double>& value);
/// The members "evaluated", "uncomputable" and "messages".
void jsonTally(JsonWriter& json, const Tally& tally);
/// The member "rows": rows as objects with the names of the columns.
void jsonRows(JsonWriter& json, const ResultTable& table);

} // namespace telvo::study
