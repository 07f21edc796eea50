// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/tornadoCommand.h"

#include "base/numbers.h"
#include "base/text.h"
#include "cli/arguments.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <utility>

namespace telvo::cli {

namespace {

/// "10%" as a number.
std::optional<double> percentOf(std::string_view text) {
    text = trimmed(text);
    if (!text.ends_with('%')) return std::nullopt;
    return numberOf(text.substr(0, text.size() - 1));
}

/// "DepthCover=800:1000", "EntryHeight=-5%:10%"
Result<study::RangedInput> rangedInput(const std::string& text) {
    const Fault shape{"written like DepthCover=800:1000 or DepthCover=-5%:5%", text};
    const auto at = text.find('=');
    const auto colon = text.find(':');
    if (at == std::string::npos || colon == std::string::npos || colon < at) return shape;
    const auto variable = variableOf(std::string(trimmed(text.substr(0, at))));
    if (!variable) return variable.fault();
    const std::string low = text.substr(at + 1, colon - at - 1), high = text.substr(colon + 1);
    study::Range range;
    if (const auto from = percentOf(low), to = percentOf(high); from && to) {
        range = {study::Range::Form::Percent, *from, *to};
    } else {
        const auto span = spanOf(low + ":" + high);
        if (!span) return shape;
        range = {study::Range::Form::Absolute, span->low, span->high};
    }
    if (!(range.low < range.high)) return Fault{"the range is empty", text};
    return study::RangedInput{*variable, range, true};
}

} // namespace

CLI::App* addTornado(CLI::App& app, TornadoRequest& request) {
    CLI::App* command =
        app.add_subcommand("tornado", "tell which inputs move a result most, each by itself");
    addInputs(*command, request.inputs);
    literal(command->add_option("--quantity", request.quantity,
                                "result that is looked at, named as by results; the panel's "
                                "stability factor if not given"))
        ->option_text("NAME");
    command
        ->add_option("--range", request.range,
                     "range of every input: a percentage such as 10%; what is usual for each if "
                     "not given")
        ->option_text("PERCENT");
    literal(command->add_option("--vary", request.vary,
                                "range of one input: INPUT=LOW:HIGH or INPUT=-5%:5%; may be "
                                "repeated"))
        ->expected(1)
        ->take_all()
        ->option_text("INPUT=LOW:HIGH");
    addRounding(*command, request.options);
    addStudyTarget(*command, request.target);
    command->add_flag("--spider", request.target.look.spider,
                      "the picture shows all inputs as lines over one axis instead of bars");
    command->footer("Inputs without effect come last, with the reason.\n\n"
                    "Examples:\n  telvo-cli tornado panel.TLV --quantity TELVOSF.retreat\n"
                    "  telvo-cli tornado panel.TLV -o tornado.svg");
    return command;
}

int runTornado(Console& console, const TornadoRequest& request) {
    std::optional<study::Outcome> outcome;
    if (!request.quantity.empty()) {
        auto named = outcomeOf(request.quantity);
        if (!named) return console.wrongUsage(faultText(named.fault()));
        outcome = std::move(*named);
    }
    std::optional<double> percent;
    if (!request.range.empty()) {
        percent = percentOf(request.range);
        if (!percent || !(*percent > 0))
            return console.wrongUsage("--range: a percentage above 0 such as 10% is wanted");
    }
    std::vector<study::RangedInput> own;
    for (const std::string& text : request.vary) {
        auto input = rangedInput(text);
        if (!input) return console.wrongUsage("--vary: " + faultText(input.fault()));
        own.push_back(std::move(*input));
    }
    return askCases(
        console, request.inputs, request.target,
        [&](const project::ProjectCase& current) -> Result<Answer> {
            study::TornadoRequest asked{outcome ? *outcome : study::defaultOutcome(current),
                                        study::defaultRanges(current)};
            for (study::RangedInput& input : asked.inputs) {
                if (percent) {
                    input.range = {study::Range::Form::Percent, -*percent, *percent};
                    input.edited = true;
                }
                for (const study::RangedInput& each : own)
                    if (each.variable == input.variable) input = each;
            }
            for (const study::RangedInput& each : own)
                if (std::none_of(asked.inputs.begin(), asked.inputs.end(),
                                 [&](const study::RangedInput& input) {
                                     return input.variable == each.variable;
                                 }))
                    asked.inputs.push_back(each);
            auto made = study::tornado(current, asked);
            if (!made) return made.fault();
            return Answer{study::outputOf(std::move(*made), asked, current), asked};
        },
        request.options.RoundTELVOSF);
}

} // namespace telvo::cli
