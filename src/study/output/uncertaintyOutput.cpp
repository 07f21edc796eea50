// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"
#include "study/output/jsonParts.h"
#include "study/output/StudyOutput.h"
#include "study/output/uncertaintyParts.h"
#include "study/questions/sampleBlock.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace telvo::study {

using sampling::Estimate;

namespace {

std::string numberText(double value) {
    return generalNumber(value);
}

/// The statistics, one to a row.
class Statistics {
  public:
    void add(std::string statistic, const std::string& criterion, std::string of,
             const Estimate& value) {
        m_table.row({std::move(statistic), criterion, std::move(of), numberCell(value.value),
                     numberCell(value.low), numberCell(value.high)});
    }
    void add(std::string statistic, const std::string& criterion, std::string of, double value) {
        m_table.row({std::move(statistic), criterion, std::move(of), numberCell(value)});
    }
    void count(std::string statistic, const std::string& criterion, std::string of,
               const Estimate& value, std::uint64_t count) {
        m_table.row({std::move(statistic), criterion, std::move(of), numberCell(value.value),
                     numberCell(value.low), numberCell(value.high), static_cast<double>(count)});
    }
    void count(std::string statistic, const std::string& criterion, std::string of,
               std::uint64_t count) {
        m_table.row({std::move(statistic),
                     criterion,
                     std::move(of),
                     {},
                     {},
                     {},
                     static_cast<double>(count)});
    }
    ResultTable take() { return m_table.take(); }

  private:
    KeptTable m_table{{{"statistic", ""},
                       {"criterion", ""},
                       {"of", ""},
                       {"value", ""},
                       {"low", ""},
                       {"high", ""},
                       {"samples", ""}}};
};

constexpr const char* AnyOfThem = "any of them";

ResultTable statisticsOf(const UncertaintyResult& result, const UncertaintyRequest& request) {
    const Uncertainty& all = result.answer->made;
    Statistics table;
    const auto converging = [&](const std::string& criterion,
                                const std::vector<Convergence>& steps) {
        for (const Convergence& step : steps)
            table.count("convergence", criterion, "", step.missed, step.samples);
    };
    for (std::size_t c = 0; c < all.criteria.size(); ++c)
        table.count("misses", request.criteria[c].text(), "", all.criteria[c].missed,
                    all.criteria[c].misses);
    table.count("misses", AnyOfThem, "", all.any,
                all.samples.size() - all.tally.notComputed() - all.byMask.front());
    for (std::size_t a = 0; a < all.criteria.size(); ++a)
        for (std::size_t b = a + 1; b < all.criteria.size(); ++b)
            table.add("misses both", request.criteria[a].text(), request.criteria[b].text(),
                      all.joint(a, b));
    for (const UncertainInput& input : request.inputs) {
        table.add("input mean", "", input.shownName(), input.distribution.mean());
        table.add("input sd", "", input.shownName(), input.distribution.sd());
    }
    if (const auto& correlation = all.sampler->correlation())
        for (const RankPair& pair : request.correlated) {
            const std::string first = request.inputs[pair.first].shownName(),
                              second = request.inputs[pair.second].shownName();
            table.add("rank correlation of inputs", first, second,
                      sampling::ofRanks(correlation->used.at(pair.first, pair.second)));
        }
    for (std::size_t c = 0; c < all.criteria.size(); ++c) {
        const CriterionShare& share = all.criteria[c];
        const std::string criterion = request.criteria[c].text();
        table.add("mean", criterion, "", share.mean);
        table.add("sd", criterion, "", share.sd);
        for (std::size_t q = 0; q < ShownQuantiles.size(); ++q)
            table.add("quantile", criterion, numberText(ShownQuantiles[q]), share.quantiles[q]);
        for (std::size_t j = 0; j < request.inputs.size(); ++j) {
            const Importance& one = result.importance[c][j];
            const std::string input = request.inputs[j].shownName();
            table.add("rank correlation", criterion, input, one.rankCorrelation);
            table.add("first order of bins", criterion, input, one.betweenBins);
            if (one.missesAt) table.add("sd from mean in misses", criterion, input, *one.missesAt);
        }
        if (c < result.indices.size())
            for (std::size_t j = 0; j < request.inputs.size(); ++j) {
                const std::string input = request.inputs[j].shownName();
                const SobolStudy& indices = result.indices[c];
                table.add("first order", criterion, input, indices.outcome[j].first);
                table.add("total", criterion, input, indices.outcome[j].total);
                table.add("first order of misses", criterion, input, indices.misses[j].first);
                table.add("total of misses", criterion, input, indices.misses[j].total);
            }
        if (c < result.shapley.size())
            for (std::size_t j = 0; j < request.inputs.size(); ++j) {
                const std::string input = request.inputs[j].shownName();
                table.add("Shapley", criterion, input, result.shapley[c].outcome[j]);
                table.add("Shapley of misses", criterion, input, result.shapley[c].misses[j]);
            }
        converging(criterion, all.convergence[c]);
        const Histogram& histogram = share.histogram;
        if (histogram.below > 0) table.count("bin", criterion, "below", histogram.below);
        for (std::size_t b = 0; b < histogram.counts.size(); ++b)
            table.count("bin", criterion,
                        numberText(histogram.first + static_cast<double>(b) * histogram.width),
                        histogram.counts[b]);
        if (histogram.above > 0) table.count("bin", criterion, "above", histogram.above);
    }
    converging(AnyOfThem, all.convergenceOfAny);
    return table.take();
}

void showShares(StudyOutput& output, const Uncertainty& all, const UncertaintyRequest& request) {
    KeptTable shares(
        {{"criterion", ""}, {"misses", "%"}, {"from", "%"}, {"to", "%"}, {"samples", ""}});
    const auto row = [&](const std::string& name, const Estimate& missed, std::uint64_t count) {
        shares.row({name, shownPercent(missed.value), shownPercent(missed.low),
                    shownPercent(missed.high), static_cast<double>(count)});
    };
    for (std::size_t c = 0; c < all.criteria.size(); ++c)
        row(std::to_string(c + 1) + "  " + request.criteria[c].text(), all.criteria[c].missed,
            all.criteria[c].misses);
    if (all.criteria.size() > 1)
        row(std::string("   ") + AnyOfThem, all.any,
            all.samples.size() - all.tally.notComputed() - all.byMask.front());
    output.shown.emplace_back("Share of samples that miss each criterion, with its 95 % interval",
                              shares.take());
    if (all.criteria.size() < 2) return;
    std::vector<TableColumn> columns = {{"", ""}};
    for (std::size_t c = 0; c < all.criteria.size(); ++c)
        columns.push_back({std::to_string(c + 1), ""});
    KeptTable joint(columns);
    for (std::size_t a = 0; a < all.criteria.size(); ++a) {
        std::vector<TableCell> cells = {std::to_string(a + 1)};
        for (std::size_t b = 0; b < all.criteria.size(); ++b)
            cells.push_back(shownPercent(all.joint(a, b)));
        joint.row(std::move(cells));
    }
    output.shown.emplace_back("Share of samples that miss two of them together, %", joint.take());
}

void showOutcomes(StudyOutput& output, const Uncertainty& all, const UncertaintyRequest& request) {
    std::vector<TableColumn> columns = {{"result", ""}, {"mean", ""}, {"sd", ""}};
    constexpr std::size_t shownOnes[] = {1, 3, 4, 5, 7};
    for (const std::size_t q : shownOnes)
        columns.push_back({generalNumber(100 * ShownQuantiles[q]) + " %", ""});
    KeptTable results(columns);
    for (std::size_t c = 0; c < all.criteria.size(); ++c) {
        const CriterionShare& share = all.criteria[c];
        std::vector<TableCell> cells = {request.criteria[c].outcome.name(),
                                        shownNumber(share.mean.value), shownNumber(share.sd)};
        for (const std::size_t q : shownOnes)
            cells.push_back(shownNumber(share.quantiles[q].value));
        results.row(std::move(cells));
    }
    output.shown.emplace_back(
        "How the results spread: mean, standard deviation and the values that "
        "a part of the samples does not exceed",
        results.take());
}

void showInputs(StudyOutput& output, const UncertaintyResult& result,
                const UncertaintyRequest& request, std::int16_t units) {
    const bool indices = !result.indices.empty();
    std::vector<TableColumn> columns = {{"input", ""},      {"mean", ""},
                                        {"sd", ""},         {"unit", ""},
                                        {"rank corr.", ""}, {"part of variance", ""},
                                        {"in misses", "sd"}};
    if (indices) {
        columns.push_back({"first order", ""});
        columns.push_back({"total", ""});
    }
    const bool shapley = !result.shapley.empty();
    if (shapley) columns.push_back({"Shapley", ""});
    std::vector<std::size_t> order(request.inputs.size());
    for (std::size_t j = 0; j < order.size(); ++j)
        order[j] = j;
    KeptTable inputs(columns);
    const std::vector<Importance>& importance = result.importance.front();
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return importance[a].betweenBins > importance[b].betweenBins;
    });
    for (const std::size_t j : order) {
        const UncertainInput& input = request.inputs[j];
        const Importance& one = importance[j];
        std::vector<TableCell> cells = {input.shownName(),
                                        shownNumber(input.distribution.mean()),
                                        shownNumber(input.distribution.sd()),
                                        std::string(input.variable.unit(units)),
                                        shownNumber(one.rankCorrelation),
                                        shownNumber(one.betweenBins)};
        cells.push_back(one.missesAt ? shownNumber(*one.missesAt) : TableCell());
        if (indices) {
            // Below 0 is within the interval of 0.
            const IndexPair& pair = result.indices.front().outcome[j];
            cells.push_back(shownNumber(std::max(pair.first.value, 0.0)));
            cells.push_back(shownNumber(std::max(pair.total.value, 0.0)));
        }
        if (shapley)
            cells.push_back(shownNumber(std::max(result.shapley.front().outcome[j].value, 0.0)));
        inputs.row(std::move(cells));
    }
    output.shown.emplace_back("What drives " + request.criteria.front().outcome.name() +
                                  ": inputs as they scatter, the most important first",
                              inputs.take());
}

void showConvergence(StudyOutput& output, const Uncertainty& all,
                     const UncertaintyRequest& request) {
    KeptTable steps({{"samples", ""}, {"misses", "%"}, {"from", "%"}, {"to", "%"}});
    for (const Convergence& step : all.convergence.front())
        steps.row({static_cast<double>(step.samples), shownPercent(step.missed.value),
                   shownPercent(step.missed.low), shownPercent(step.missed.high)});
    output.shown.emplace_back(
        "How the share that misses " + request.criteria.front().text() + " settles", steps.take());
}

void addRemarks(StudyOutput& output, const UncertaintyResult& result,
                const UncertaintyRequest& request) {
    const Uncertainty& all = result.answer->made;
    if (std::string where = whereMissesLie(result.importance.front(), request); !where.empty())
        output.remarks.push_back(std::move(where));
    for (std::size_t j = 0; j < request.inputs.size(); ++j)
        if (result.importance.front()[j].turnsBack)
            output.remarks.push_back("The result turns back over " + request.inputs[j].shownName() +
                                     ": its rank correlation says too little");
    if (const auto& correlation = all.sampler->correlation();
        correlation && correlation->change > 0)
        output.remarks.push_back(
            "The correlations contradict each other; they were changed by up to " +
            generalNumber(correlation->change, 2));
    constexpr double many = 0.01;
    const auto lost = static_cast<double>(all.tally.notComputed());
    if (lost > many * static_cast<double>(all.samples.size()))
        output.remarks.emplace_back("More than 1 % of the samples could not be computed: the "
                                    "shares are those of the others");
    if (request.plan.replicates < 2)
        output.remarks.emplace_back(
            "With one replicate the intervals are those of plain random samples");
    if (all.samples.stopped)
        output.remarks.emplace_back("It was stopped: this is what was complete by then");
    if (!all.halfWidthMet)
        output.remarks.push_back("The half width asked for, " +
                                 generalNumber(100 * *request.halfWidth) +
                                 " % of a share, was not reached with all samples");
    output.remarks.emplace_back(ShareNote);
}

/// The samples, drawn again block by block.
ResultTable samplesOf(const std::shared_ptr<const UncertaintyResult>& kept,
                      const UncertaintyRequest& request) {
    const Uncertainty& all = kept->answer->made;
    const project::ProjectCase& base = all.evaluator->base();
    ResultTable table;
    table.columns.push_back({"id", ""});
    std::vector<std::size_t> columnOf; // of the evaluator's variables
    for (std::size_t v = 0; v < all.evaluator->variables().size(); ++v) {
        const Variable& variable = all.evaluator->variables()[v];
        for (const project::FieldId id : variable.fields(base.Input)) {
            table.columns.push_back({project::nameOf(id), std::string(variable.unit(base.Units))});
            columnOf.push_back(v);
        }
    }
    std::vector<std::size_t> outcomeOf; // criteria with outcomes of their own
    for (std::size_t c = 0; c < request.criteria.size(); ++c) {
        const Outcome& outcome = request.criteria[c].outcome;
        if (std::any_of(outcomeOf.begin(), outcomeOf.end(), [&](std::size_t other) {
                return request.criteria[other].outcome.name() == outcome.name();
            }))
            continue;
        outcomeOf.push_back(c);
        table.columns.push_back(
            {outcome.name(), std::string(engine::unitName(outcome.kind(), base.Units))});
    }
    for (const Criterion& criterion : request.criteria)
        table.columns.push_back({"misses " + criterion.text(), ""});
    table.columns.push_back({"message", ""});
    table.rows = all.samples.size();
    struct Drawn {
        std::size_t from = ~std::size_t{0};
        std::vector<std::vector<double>> columns;
    };
    table.read = [kept, columnOf, outcomeOf, criteria = request.criteria.size(),
                  columns = drawnColumns(base, all.scattered), drawn = std::make_shared<Drawn>()](
                     std::size_t row, std::vector<TableCell>& cells) {
        const Uncertainty& result = kept->answer->made;
        const std::size_t per = result.samples.perReplicate, i = row % per;
        const std::size_t first = i / SamplesPerBlock * SamplesPerBlock;
        if (drawn->from != row - (i - first)) {
            drawn->from = row - (i - first);
            drawn->columns.assign(result.scattered.size(), std::vector<double>(SamplesPerBlock));
            std::vector<double*> out;
            for (auto& column : drawn->columns)
                out.push_back(column.data());
            result.sampler->block(row / per, first, std::min(SamplesPerBlock, per - first), out);
        }
        std::size_t cell = 0;
        cells[cell++] = static_cast<double>(row + 1);
        for (const std::size_t v : columnOf)
            cells[cell++] = numberCell(columns[v].of(drawn->columns[columns[v].input][i - first]));
        for (const std::size_t c : outcomeOf)
            cells[cell++] = numberCell(result.samples.outcomes[c][row]);
        if (!result.isComputed(row)) {
            cells.back() = result.evaluator->whyNot(result.variables(row));
            return;
        }
        for (std::size_t c = 0; c < criteria; ++c)
            cells[cell++] = static_cast<double>(result.samples.missed[row] >> c & 1);
    };
    return table;
}

void jsonSteps(JsonWriter& json, const std::vector<Convergence>& steps) {
    json.key("convergence");
    json.beginArray();
    for (const Convergence& step : steps) {
        json.beginObject();
        json.key("samples");
        json.number(static_cast<std::size_t>(step.samples));
        jsonEstimate(json, "misses", step.missed);
        json.endObject();
    }
    json.endArray();
}

void jsonCriterion(JsonWriter& json, const UncertaintyResult& result,
                   const UncertaintyRequest& request, std::size_t c, std::int16_t units) {
    const CriterionShare& share = result.answer->made.criteria[c];
    const Criterion& criterion = request.criteria[c];
    json.beginObject();
    json.member("criterion", criterion.text());
    json.member("quantity", criterion.outcome.name());
    json.member("unit", engine::unitName(criterion.outcome.kind(), units));
    jsonEstimate(json, "misses", share.missed);
    jsonCount(json, "samples", share.misses);
    jsonEstimate(json, "mean", share.mean);
    jsonNumber(json, "sd", share.sd);
    json.key("quantiles");
    json.beginArray();
    for (std::size_t q = 0; q < ShownQuantiles.size(); ++q) {
        json.beginObject();
        jsonNumber(json, "of", ShownQuantiles[q]);
        jsonNumber(json, "value", share.quantiles[q].value);
        jsonNumber(json, "low", share.quantiles[q].low);
        jsonNumber(json, "high", share.quantiles[q].high);
        json.endObject();
    }
    json.endArray();
    json.key("histogram");
    json.beginObject();
    jsonNumber(json, "first", share.histogram.first);
    jsonNumber(json, "width", share.histogram.width);
    jsonCount(json, "below", share.histogram.below);
    jsonCount(json, "above", share.histogram.above);
    json.key("counts");
    json.beginArray();
    for (const std::uint64_t count : share.histogram.counts)
        json.number(static_cast<std::size_t>(count));
    json.endArray();
    json.endObject();
    json.key("cumulative");
    json.beginArray();
    for (const auto& [value, part] : share.cumulative) {
        json.beginArray();
        json.number(value);
        json.number(part);
        json.endArray();
    }
    json.endArray();
    jsonSteps(json, result.answer->made.convergence[c]);
    json.key("importance");
    json.beginArray();
    for (std::size_t j = 0; j < request.inputs.size(); ++j) {
        const Importance& one = result.importance[c][j];
        json.beginObject();
        json.member("input", request.inputs[j].shownName());
        jsonNumber(json, "rankCorrelation", one.rankCorrelation);
        jsonNumber(json, "betweenBins", one.betweenBins);
        json.key("binMeans");
        json.beginArray();
        for (const double mean : one.binMeans)
            json.number(mean);
        json.endArray();
        jsonNumber(json, "sdFromMeanInMisses", one.missesAt);
        if (c < result.indices.size()) {
            jsonEstimate(json, "firstOrder", result.indices[c].outcome[j].first);
            jsonEstimate(json, "total", result.indices[c].outcome[j].total);
            jsonEstimate(json, "firstOrderOfMisses", result.indices[c].misses[j].first);
            jsonEstimate(json, "totalOfMisses", result.indices[c].misses[j].total);
        }
        if (c < result.shapley.size()) {
            jsonEstimate(json, "shapley", result.shapley[c].outcome[j]);
            jsonEstimate(json, "shapleyOfMisses", result.shapley[c].misses[j]);
        }
        json.endObject();
    }
    json.endArray();
    json.endObject();
}

} // namespace

StudyOutput outputOf(UncertaintyResult result) {
    const auto kept = std::make_shared<const UncertaintyResult>(std::move(result));
    const UncertaintyRequest& request = kept->answer->request;
    const std::int16_t units = kept->answer->base.Units;
    const Uncertainty& all = kept->answer->made;
    StudyOutput output;
    output.answer = kept->answer;
    output.headline = all.headline;
    output.tally = all.tally;
    output.aimMet = all.halfWidthMet;
    output.table = statisticsOf(*kept, request);
    showShares(output, all, request);
    showOutcomes(output, all, request);
    showInputs(output, *kept, request, units);
    showConvergence(output, all, request);
    addRemarks(output, *kept, request);
    output.samples = samplesOf(kept, request);
    output.json = [kept, units](JsonWriter& json) {
        const UncertaintyRequest& asked = kept->answer->request;
        const Uncertainty& shown = kept->answer->made;
        json.member("headline", shown.headline);
        json.member("note", ShareNote);
        jsonCount(json, "samples", shown.samples.size());
        jsonCount(json, "seed", asked.plan.seed);
        json.key("stopped");
        json.boolean(shown.samples.stopped);
        json.key("criteria");
        json.beginArray();
        for (std::size_t c = 0; c < shown.criteria.size(); ++c)
            jsonCriterion(json, *kept, asked, c, units);
        json.endArray();
        jsonEstimate(json, "missesAny", shown.any);
        json.key("samplesByMisses");
        json.beginArray();
        for (std::size_t mask = 0; mask < shown.byMask.size(); ++mask) {
            if (shown.byMask[mask] == 0) continue;
            json.beginObject();
            json.key("misses");
            json.beginArray();
            for (std::size_t c = 0; c < shown.criteria.size(); ++c)
                if ((mask >> c & 1) != 0) json.text(asked.criteria[c].text());
            json.endArray();
            jsonCount(json, "samples", shown.byMask[mask]);
            json.endObject();
        }
        json.endArray();
        json.key("inputs");
        json.beginArray();
        for (const UncertainInput& input : asked.inputs) {
            json.beginObject();
            json.member("input", input.shownName());
            json.member("unit", input.variable.unit(units));
            jsonNumber(json, "mean", input.distribution.mean());
            jsonNumber(json, "sd", input.distribution.sd());
            json.endObject();
        }
        json.endArray();
        jsonTally(json, shown.tally);
    };
    return output;
}

} // namespace telvo::study
