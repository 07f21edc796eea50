// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/output/StudyOutput.h"

#include "base/numbers.h"
#include "study/output/jsonParts.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace telvo::study {

namespace {

std::string_view unitOf(const Outcome& outcome, std::int16_t units) {
    return engine::unitName(outcome.kind(), units);
}

void jsonPoint(JsonWriter& json, std::string_view name, const std::optional<GraphPoint>& point) {
    json.key(name);
    if (!point) return json.null();
    json.beginObject();
    jsonNumber(json, "x", point->x);
    jsonNumber(json, "y", point->y);
    json.endObject();
}

void jsonSpan(JsonWriter& json, std::string_view name, const Span& span) {
    json.key(name);
    json.beginArray();
    json.number(span.low);
    json.number(span.high);
    json.endArray();
}

void jsonJumps(JsonWriter& json, const std::vector<Jump>& jumps) {
    json.key("jumps");
    json.beginArray();
    for (const Jump& jump : jumps) {
        json.beginObject();
        jsonNumber(json, "x", jump.x);
        jsonNumber(json, "before", jump.before);
        jsonNumber(json, "after", jump.after);
        json.member("rule", jump.rule);
        json.endObject();
    }
    json.endArray();
}

TableCell cellOf(const std::optional<double>& value) {
    return value ? numberCell(*value) : TableCell();
}

/// The rule of an interval: of the end that is a jump.
std::string ruleOf(const Interval& interval) {
    const std::string from = interval.from.kind == EndKind::Jump ? interval.from.rule : "";
    const std::string to = interval.to.kind == EndKind::Jump ? interval.to.rule : "";
    if (from.empty() || from == to) return to;
    return to.empty() ? from : from + "; " + to;
}

std::string_view stateName(DesignPoint::State state) {
    switch (state) {
    case DesignPoint::State::Required:
        return "required";
    case DesignPoint::State::Everywhere:
        return "everywhere";
    case DesignPoint::State::Never:
        return "never";
    case DesignPoint::State::Uncomputable:
        break;
    }
    return "uncomputable";
}

std::string targetText(const Criterion& criterion) {
    return criterion.text().substr(criterion.outcome.name().size());
}

} // namespace

std::string tallyText(const Tally& tally) {
    std::string text = groupedCount(tally.runs) + (tally.runs == 1 ? " run" : " runs");
    if (tally.left.empty()) return text;
    text += ", " + groupedCount(tally.notComputed()) + " of them not computed: ";
    for (std::size_t i = 0; i < tally.left.size(); ++i)
        text +=
            (i > 0 ? "; " : "") + groupedCount(tally.left[i].runs) + " x " + tally.left[i].message;
    return text;
}

std::string flagText(std::uint16_t flags) {
    std::string text;
    for (int flag = 0; flag < 16; ++flag)
        if ((flags >> flag & 1) != 0) text += (text.empty() ? "" : " ") + std::to_string(flag);
    return text;
}

std::string shownText(const StudyOutput& output) {
    std::string text;
    if (!output.headline.empty()) text += output.headline + "\n\n";
    if (output.shown.empty() && output.table.rows > 0) text += alignedText(output.table) + "\n";
    for (const auto& [title, table] : output.shown)
        text += title + "\n" + alignedText(table) + "\n";
    for (const std::string& remark : output.remarks)
        text += remark + "\n";
    if (output.tally.runs > 0) text += tallyText(output.tally) + "\n";
    return text;
}

StudyOutput outputOf(Tornado result, const TornadoRequest& request,
                     const project::ProjectCase& base) {
    const auto answer =
        std::make_shared<const TornadoAnswer>(TornadoAnswer{base, request, std::move(result)});
    const std::shared_ptr<const Tornado> kept(answer, &answer->made);
    const std::int16_t units = base.Units;
    const std::string unit(unitOf(request.outcome, units));
    StudyOutput output;
    output.answer = answer;
    output.headline = kept->headline;
    output.tally = kept->tally;
    output.table.columns = {{"input", ""},    {"unit", ""},        {"own", ""},
                            {"low", ""},      {"high", ""},        {"atLow", unit},
                            {"atHigh", unit}, {"least", unit},     {"leastAt", ""},
                            {"most", unit},   {"mostAt", ""},      {"swing", unit},
                            {"jumps", ""},    {"notComputed", ""}, {"withoutEffect", ""}};
    output.table.rows = kept->bars.size();
    output.table.read = [kept, units](std::size_t row, std::vector<TableCell>& cells) {
        const TornadoBar& bar = kept->bars[row];
        cells[0] = bar.variable.name();
        cells[1] = std::string(bar.variable.unit(units));
        cells[2] = numberCell(bar.own);
        cells[14] = bar.withoutEffect;
        if (!bar.withoutEffect.empty() && !bar.least) return;
        cells[3] = numberCell(bar.range.low);
        cells[4] = numberCell(bar.range.high);
        cells[5] = cellOf(bar.atLow);
        cells[6] = cellOf(bar.atHigh);
        if (bar.least) {
            cells[7] = numberCell(bar.least->y);
            cells[8] = numberCell(bar.least->x);
        }
        if (bar.most) {
            cells[9] = numberCell(bar.most->y);
            cells[10] = numberCell(bar.most->x);
        }
        cells[11] = numberCell(bar.swing());
        cells[12] = static_cast<double>(bar.jumps.size());
        cells[13] = static_cast<double>(bar.notComputed);
    };
    output.json = [kept, request, units](JsonWriter& json) {
        json.member("headline", kept->headline);
        json.member("quantity", request.outcome.name());
        json.member("unit", unitOf(request.outcome, units));
        jsonNumber(json, "own", kept->own);
        json.key("bars");
        json.beginArray();
        for (const TornadoBar& bar : kept->bars) {
            json.beginObject();
            json.member("input", bar.variable.name());
            json.member("label", bar.variable.label());
            json.member("unit", bar.variable.unit(units));
            jsonNumber(json, "own", bar.own);
            jsonSpan(json, "range", bar.range);
            jsonNumber(json, "atLow", bar.atLow);
            jsonNumber(json, "atHigh", bar.atHigh);
            jsonPoint(json, "least", bar.least);
            jsonPoint(json, "most", bar.most);
            jsonJumps(json, bar.jumps);
            json.key("notComputed");
            json.number(bar.notComputed);
            json.member("withoutEffect", bar.withoutEffect);
            json.endObject();
        }
        json.endArray();
        jsonTally(json, kept->tally);
    };
    return output;
}

StudyOutput outputOf(Sweep result) {
    const auto kept = std::make_shared<const Sweep>(std::move(result));
    const project::ProjectCase& base = kept->base();
    StudyOutput output;
    output.answer = kept;
    output.tally = kept->tally;
    output.computed = output.tally.notComputed() < output.tally.runs;
    if (kept->stopped) output.remarks.emplace_back("The table broke off; rows beyond are missing");
    output.table.columns.push_back({"id", ""});
    std::vector<std::size_t> axisOf; // of each input column
    for (std::size_t axis = 0; axis < kept->request.axes.size(); ++axis) {
        const Variable& variable = kept->request.axes[axis].variable;
        for (const project::FieldId id : variable.fields(base.Input)) {
            output.table.columns.push_back(
                {project::nameOf(id), std::string(variable.unit(base.Units))});
            axisOf.push_back(axis);
        }
    }
    for (const Outcome& outcome : kept->request.outcomes)
        output.table.columns.push_back({outcome.name(), std::string(unitOf(outcome, base.Units))});
    output.table.columns.push_back({"flags", ""});
    output.table.columns.push_back({"message", ""});
    output.table.rows = kept->rows();
    output.table.read = [kept, axisOf](std::size_t row, std::vector<TableCell>& cells) {
        std::size_t cell = 0;
        cells[cell++] = static_cast<double>(row + 1);
        for (const std::size_t axis : axisOf)
            cells[cell++] = numberCell(kept->input(row, axis));
        for (const auto& outcome : kept->outcomes)
            cells[cell++] = numberCell(outcome[row]);
        if (kept->computed[row])
            cells[cell] = flagText(kept->flags[row]);
        else
            cells[cell + 1] = kept->message(row);
    };
    output.json = [kept, table = output.table](JsonWriter& json) {
        jsonRows(json, table);
        jsonTally(json, kept->tally);
    };
    return output;
}

StudyOutput outputOf(Found result, const FindRequest& request, const project::ProjectCase& base) {
    const auto answer =
        std::make_shared<const FindAnswer>(FindAnswer{base, request, std::move(result)});
    const std::shared_ptr<const Found> kept(answer, &answer->made);
    const std::int16_t units = base.Units;
    const std::string unit(request.variable.unit(units));
    const std::string valueUnit(unitOf(request.criterion.outcome, units));
    StudyOutput output;
    output.answer = answer;
    output.headline = kept->headline;
    output.tally = kept->tally;
    output.aimMet = !kept->intervals.empty();
    output.computed = !kept->curve.empty() || output.aimMet;
    output.remarks.push_back(kept->searched);
    output.table.columns = {{"from", unit},
                            {"to", unit},
                            {"fromEnd", ""},
                            {"toEnd", ""},
                            {"practicalFrom", unit},
                            {"practicalTo", unit},
                            {"atFrom", valueUnit},
                            {"atTo", valueUnit},
                            {"rule", ""}};
    output.table.rows = kept->intervals.size();
    output.table.read = [kept](std::size_t row, std::vector<TableCell>& cells) {
        const Interval& interval = kept->intervals[row];
        cells[0] = numberCell(interval.from.x);
        cells[1] = numberCell(interval.to.x);
        cells[2] = std::string(endName(interval.from.kind));
        cells[3] = std::string(endName(interval.to.kind));
        cells[4] = cellOf(interval.practicalFrom);
        cells[5] = cellOf(interval.practicalTo);
        cells[6] = numberCell(interval.from.value);
        cells[7] = numberCell(interval.to.value);
        cells[8] = ruleOf(interval);
    };
    output.json = [kept, request, unit](JsonWriter& json) {
        json.member("headline", kept->headline);
        json.member("input", request.variable.name());
        json.member("unit", unit);
        json.member("criterion", request.criterion.text());
        jsonSpan(json, "in", request.in);
        jsonNumber(json, "step", request.step);
        json.key("intervals");
        json.beginArray();
        for (const Interval& interval : kept->intervals) {
            json.beginObject();
            jsonNumber(json, "from", interval.from.x);
            jsonNumber(json, "to", interval.to.x);
            json.member("fromEnd", endName(interval.from.kind));
            json.member("toEnd", endName(interval.to.kind));
            if (const std::string rule = ruleOf(interval); !rule.empty()) json.member("rule", rule);
            jsonNumber(json, "atFrom", interval.from.value);
            jsonNumber(json, "atTo", interval.to.value);
            jsonNumber(json, "practicalFrom", interval.practicalFrom);
            jsonNumber(json, "practicalTo", interval.practicalTo);
            json.endObject();
        }
        json.endArray();
        jsonNumber(json, "answer", kept->answer);
        jsonNumber(json, "atAnswer",
                   kept->answer ? std::optional<double>(kept->answerValue) : std::nullopt);
        json.member("searched", kept->searched);
        jsonTally(json, kept->tally);
    };
    return output;
}

StudyOutput outputOf(DesignChart result, const DesignChartRequest& request,
                     const project::ProjectCase& base) {
    const auto answer =
        std::make_shared<const DesignAnswer>(DesignAnswer{base, request, std::move(result)});
    const std::shared_ptr<const DesignChart> kept(answer, &answer->made);
    const std::int16_t units = base.Units;
    const std::string unit(request.required.unit(units));
    StudyOutput output;
    output.answer = answer;
    output.headline = kept->headline;
    output.tally = kept->tally;
    output.table.columns = {
        {"target", ""},      {request.over.name(), std::string(request.over.unit(units))},
        {"state", ""},       {request.required.name(), unit},
        {"practical", unit}, {"holdsElsewhere", ""}};
    std::vector<std::pair<std::size_t, std::size_t>> rows; // curve and point
    output.aimMet = output.computed = false;
    for (std::size_t curve = 0; curve < kept->curves.size(); ++curve)
        for (std::size_t point = 0; point < kept->curves[curve].points.size(); ++point) {
            rows.emplace_back(curve, point);
            const DesignPoint& one = kept->curves[curve].points[point];
            if (one.state != DesignPoint::State::Uncomputable) output.computed = true;
            if (one.hasValue()) output.aimMet = true;
        }
    output.table.rows = rows.size();
    output.table.read = [kept, rows](std::size_t row, std::vector<TableCell>& cells) {
        const DesignCurve& curve = kept->curves[rows[row].first];
        const DesignPoint& point = curve.points[rows[row].second];
        cells[0] = targetText(curve.criterion);
        cells[1] = numberCell(point.over);
        cells[2] = std::string(stateName(point.state));
        if (point.hasValue()) cells[3] = numberCell(point.required);
        cells[4] = cellOf(point.practical);
        cells[5] = std::string(point.holdsElsewhere ? "yes" : "");
    };
    output.json = [kept, request, unit, units](JsonWriter& json) {
        json.member("headline", kept->headline);
        json.member("input", request.required.name());
        json.member("unit", unit);
        json.member("over", request.over.name());
        json.member("overUnit", request.over.unit(units));
        json.member("direction", kept->direction == Direction::FromOn ? "fromOn" : "upTo");
        json.key("curves");
        json.beginArray();
        for (const DesignCurve& curve : kept->curves) {
            json.beginObject();
            json.member("criterion", curve.criterion.text());
            json.key("points");
            json.beginArray();
            for (const DesignPoint& point : curve.points) {
                json.beginObject();
                jsonNumber(json, "over", point.over);
                json.member("state", stateName(point.state));
                jsonNumber(json, "required",
                           point.hasValue() ? std::optional<double>(point.required) : std::nullopt);
                jsonNumber(json, "practical", point.practical);
                json.key("holdsElsewhere");
                json.boolean(point.holdsElsewhere);
                json.endObject();
            }
            json.endArray();
            json.endObject();
        }
        json.endArray();
        jsonTally(json, kept->tally);
    };
    return output;
}

StudyOutput outputOf(Scenarios result, const std::vector<Outcome>& outcomes,
                     const project::ProjectCase& base) {
    const auto answer =
        std::make_shared<const ScenarioAnswer>(ScenarioAnswer{outcomes, std::move(result)});
    const std::shared_ptr<const Scenarios> kept(answer, &answer->made);
    const std::int16_t units = base.Units;
    StudyOutput output;
    output.answer = answer;
    output.table.columns.push_back({"scenario", ""});
    for (const Outcome& outcome : outcomes)
        output.table.columns.push_back({outcome.name(), std::string(unitOf(outcome, units))});
    output.table.columns.push_back({"flags", ""});
    output.table.columns.push_back({"message", ""});
    for (const ScenarioRow& row : kept->rows) {
        ++output.tally.runs;
        if (!row.run) output.tally.leaveOut(row.message);
    }
    output.computed = output.tally.notComputed() < output.tally.runs;
    const std::size_t count = outcomes.size();
    output.table.rows = kept->rows.size() + 1;
    output.table.read = [kept, count](std::size_t row, std::vector<TableCell>& cells) {
        if (row == kept->rows.size()) {
            cells[0] = std::string("worst of these");
            for (std::size_t i = 0; i < count; ++i)
                if (kept->worst[i]) cells[i + 1] = cellOf(kept->rows[*kept->worst[i]].outcomes[i]);
            return;
        }
        const ScenarioRow& one = kept->rows[row];
        cells[0] = one.name.empty() ? std::string("the case itself") : one.name;
        for (std::size_t i = 0; i < count; ++i)
            cells[i + 1] = cellOf(one.outcomes[i]);
        if (one.run)
            cells[count + 1] = flagText(one.flags);
        else
            cells[count + 2] = one.message;
    };
    output.json = [table = output.table, tally = output.tally](JsonWriter& json) {
        jsonRows(json, table);
        jsonTally(json, tally);
    };
    return output;
}

StudyOutput outputOf(Comparison result, bool onlyDifferences) {
    const auto kept = std::make_shared<const Comparison>(std::move(result));
    StudyOutput output;
    output.answer = kept;
    std::vector<std::size_t> shown;
    for (std::size_t row = 0; row < kept->rows.size(); ++row)
        if (!onlyDifferences || kept->rows[row].differs) shown.push_back(row);
    output.table.columns = {{"name", ""}, {"unit", ""}};
    const std::string& base = kept->cases[kept->base].name;
    for (std::size_t i = 0; i < kept->cases.size(); ++i)
        output.table.columns.push_back({kept->cases[i].name, ""});
    for (std::size_t i = 0; i < kept->cases.size(); ++i) {
        ++output.tally.runs;
        if (!kept->cases[i].run) output.tally.leaveOut(kept->cases[i].message);
        if (i == kept->base) continue;
        output.table.columns.push_back({kept->cases[i].name + " - " + base, ""});
        output.table.columns.push_back({kept->cases[i].name + " %", ""});
    }
    const auto inputs = static_cast<std::size_t>(
        std::count_if(kept->rows.begin(), kept->rows.end(), [](const ComparedRow& row) {
            return row.kind == ComparedRow::Kind::Input && row.differs;
        }));
    const auto results = static_cast<std::size_t>(
        std::count_if(kept->rows.begin(), kept->rows.end(), [](const ComparedRow& row) {
            return row.kind == ComparedRow::Kind::Result && row.differs;
        }));
    output.headline = groupedCount(inputs) + (inputs == 1 ? " input and " : " inputs and ") +
                      groupedCount(results) +
                      (results == 1 ? " result differ" : " results differ") + " from " + base;
    output.table.rows = shown.size();
    output.table.read = [kept, shown](std::size_t line, std::vector<TableCell>& cells) {
        const ComparedRow& row = kept->rows[shown[line]];
        cells[0] = row.name;
        cells[1] = row.unit;
        std::size_t next = 2 + kept->cases.size();
        for (std::size_t i = 0; i < kept->cases.size(); ++i) {
            cells[2 + i] = row.values.empty() ? TableCell(row.texts[i]) : cellOf(row.values[i]);
            if (i == kept->base) continue;
            cells[next++] = cellOf(kept->difference(row, i));
            cells[next++] = cellOf(kept->percent(row, i));
        }
    };
    output.json = [kept, shown, headline = output.headline](JsonWriter& json) {
        json.member("headline", headline);
        json.member("base", kept->cases[kept->base].name);
        json.key("cases");
        json.beginArray();
        for (const ComparedCase& one : kept->cases) {
            json.beginObject();
            json.member("file", one.name);
            json.member("message", one.message);
            json.endObject();
        }
        json.endArray();
        json.key("rows");
        json.beginArray();
        for (const std::size_t which : shown) {
            const ComparedRow& row = kept->rows[which];
            json.beginObject();
            json.member("name", row.name);
            json.member("label", row.label);
            json.member("unit", row.unit);
            json.key("differs");
            json.boolean(row.differs);
            json.key("values");
            json.beginArray();
            for (std::size_t i = 0; i < kept->cases.size(); ++i) {
                if (row.values.empty())
                    json.text(row.texts[i]);
                else if (row.values[i])
                    json.number(*row.values[i]);
                else
                    json.null();
            }
            json.endArray();
            for (const bool percent : {false, true}) {
                json.key(percent ? "percents" : "differences");
                json.beginArray();
                for (std::size_t i = 0; i < kept->cases.size(); ++i) {
                    const auto by = percent ? kept->percent(row, i) : kept->difference(row, i);
                    by ? json.number(*by) : json.null();
                }
                json.endArray();
            }
            json.endObject();
        }
        json.endArray();
    };
    return output;
}

} // namespace telvo::study
