// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "study/output/StudyOutput.h"
#include "study/output/uncertaintyParts.h"
#include "study/questions/sampleBlock.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace telvo::study {

StudyOutput outputOf(ShareCurveAnswer answer) {
    const auto all = std::make_shared<const ShareCurveAnswer>(std::move(answer));
    const UncertaintyRequest& request = all->request;
    const AskedFragility& asked = all->asked;
    const ShareCurve* const kept = &all->made;
    const std::int16_t units = all->base.Units;
    StudyOutput output;
    output.answer = all;
    output.headline = kept->headline;
    output.tally = kept->tally;
    const std::string unit(asked.over.unit(units));
    const std::string over = asked.over.name();
    KeptTable table({{"criterion", ""},
                     {over, unit},
                     {"misses", ""},
                     {"low", ""},
                     {"high", ""},
                     {"computed", ""},
                     {"notComputed", ""}});
    for (std::size_t c = 0; c < request.criteria.size(); ++c) {
        const std::string criterion = request.criteria[c].text();
        KeptTable shown({{over, unit}, {"misses", "%"}, {"from", "%"}, {"to", "%"}});
        for (const ShareCurvePoint& point : kept->points[c]) {
            std::vector<TableCell> cells = {criterion, numberCell(point.x)};
            if (point.computed > 0) {
                cells.insert(cells.end(),
                             {numberCell(point.missed.value), numberCell(point.missed.low),
                              numberCell(point.missed.high)});
                shown.row({numberCell(point.x), shownPercent(point.missed.value),
                           shownPercent(point.missed.low), shownPercent(point.missed.high)});
            } else {
                cells.resize(5);
                shown.row({numberCell(point.x)});
            }
            cells.emplace_back(static_cast<double>(point.computed));
            cells.emplace_back(static_cast<double>(point.notComputed));
            table.row(std::move(cells));
        }
        output.shown.emplace_back("Share of samples that miss " + criterion, shown.take());
        if (const auto& average = kept->average[c]) {
            table.row({criterion + ", average",
                       {},
                       numberCell(average->value),
                       numberCell(average->low),
                       numberCell(average->high)});
            output.remarks.push_back("Over the whole, " + percentText(average->value) + " % miss " +
                                     criterion + " (" + percentText(average->low) + " to " +
                                     percentText(average->high) + " %)");
        }
        for (const ShareInterval& interval : kept->meets[c])
            output.remarks.push_back("At most " + percentText(*asked.share) + " % miss " +
                                     criterion + " from " +
                                     asked.over.text(interval.from, units, 4) +
                                     (interval.fromRange ? ", the end of the range," : "") +
                                     " to " + asked.over.text(interval.to, units, 4) +
                                     (interval.toRange ? ", the end of the range" : ""));
    }
    output.aimMet = !asked.share || !kept->meets.front().empty();
    if (asked.share)
        output.remarks.emplace_back(
            "Located between the values; a stretch that lies between two of them can be missed");
    output.remarks.emplace_back(ShareNote);
    output.table = table.take();
    output.json = [all, over, unit](JsonWriter& json) {
        const ShareCurve& made = all->made;
        json.member("headline", made.headline);
        json.member("note", ShareNote);
        json.member("over", over);
        json.member("unit", unit);
        jsonNumber(json, "share", all->asked.share);
        json.key("curves");
        json.beginArray();
        for (std::size_t c = 0; c < all->request.criteria.size(); ++c) {
            json.beginObject();
            json.member("criterion", all->request.criteria[c].text());
            json.key("points");
            json.beginArray();
            for (const ShareCurvePoint& point : made.points[c]) {
                json.beginObject();
                jsonNumber(json, "x", point.x);
                if (point.computed > 0) jsonEstimate(json, "misses", point.missed);
                jsonCount(json, "computed", point.computed);
                jsonCount(json, "notComputed", point.notComputed);
                json.endObject();
            }
            json.endArray();
            if (const auto& average = made.average[c]) jsonEstimate(json, "average", *average);
            json.key("meets");
            json.beginArray();
            for (const ShareInterval& one : made.meets[c]) {
                json.beginObject();
                jsonNumber(json, "from", one.from);
                jsonNumber(json, "fromEarliest", one.fromEarliest);
                jsonNumber(json, "fromLatest", one.fromLatest);
                jsonNumber(json, "to", one.to);
                jsonNumber(json, "toEarliest", one.toEarliest);
                jsonNumber(json, "toLatest", one.toLatest);
                json.endObject();
            }
            json.endArray();
            json.endObject();
        }
        json.endArray();
        jsonTally(json, made.tally);
    };
    return output;
}

} // namespace telvo::study
