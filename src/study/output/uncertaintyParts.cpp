// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/output/uncertaintyParts.h"

#include "base/numbers.h"

namespace telvo::study {

using sampling::Estimate;

TableCell shownNumber(double value) {
    return *numberOf(generalNumber(value, 4));
}

TableCell shownPercent(double share) {
    return shownNumber(100 * share);
}

void jsonEstimate(JsonWriter& json, std::string_view name, const Estimate& estimate) {
    json.key(name);
    json.beginObject();
    jsonNumber(json, "value", estimate.value);
    jsonNumber(json, "low", estimate.low);
    jsonNumber(json, "high", estimate.high);
    json.endObject();
}

void jsonCount(JsonWriter& json, std::string_view name, std::uint64_t count) {
    json.key(name);
    json.number(static_cast<std::size_t>(count));
}

} // namespace telvo::study
