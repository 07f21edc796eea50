// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/findCommand.h"

#include "cli/arguments.h"

#include <CLI/CLI.hpp>

#include <utility>

namespace telvo::cli {

CLI::App* addFind(CLI::App& app, FindRequest& request) {
    CLI::App* command =
        app.add_subcommand("find", "find the values of an input with which a criterion holds");
    addCasesAndInput(*command, request.words, request.listFile);
    literal(command->add_option("--for", request.criterion,
                                "criterion: QUANTITY>=VALUE or QUANTITY<=VALUE; the value of a "
                                "stability factor may be \"suggested\""))
        ->option_text("CRITERION")
        ->required();
    literal(command->add_option("--in", request.in,
                                "where to look; half to double the case's value if not given"))
        ->option_text("LOW:HIGH");
    command
        ->add_option("--step", request.step,
                     "practical step to which the answer is rounded; 1 ft or 0.5 m for most "
                     "lengths if not given")
        ->check(CLI::PositiveNumber)
        ->option_text("STEP");
    addRounding(*command, request.options);
    addStudyTarget(*command, request.target);
    command->footer(
        "Factors jump and turn back, so that the answer is a list of intervals. Their ends are\n"
        "crossing, jump (with the rule that switches), range or uncomputable. Exit status 4: "
        "it holds nowhere.\n\n"
        "Example:\n  telvo-cli find panel.TLV BarrierSecondGob --for "
        "\"BarrierSF.retreat.second>=1.5\" --in 50:300 --step 1");
    return command;
}

int runFind(Console& console, const FindRequest& request) {
    const auto named = casesAndInput(request.words, request.listFile);
    if (!named) return console.wrongUsage(faultText(named.fault()));
    auto criteria = criteriaOf(request.criterion);
    if (!criteria) return console.wrongUsage("--for: " + faultText(criteria.fault()));
    if (criteria->size() > 1) return console.wrongUsage("--for: one value is wanted");
    std::optional<study::Span> in;
    if (!request.in.empty()) {
        const auto span = spanOf(request.in);
        if (!span) return console.wrongUsage("--in: " + faultText(span.fault()));
        in = *span;
    }
    const auto ask = [&](const project::ProjectCase& current) -> Result<Answer> {
        const study::Variable& variable = named->variable;
        const study::FindRequest asked{
            variable, criteria->front(), in ? *in : study::defaultSearchRange(current, variable),
            request.step > 0 ? request.step : study::defaultStep(variable, current.Units)};
        auto found = study::find(current, asked, request.options.RoundTELVOSF);
        if (!found) return found.fault();
        return Answer{study::outputOf(std::move(*found), asked, current), asked};
    };
    const auto nothing = [](JsonWriter& json) {
        json.key("headline");
        json.null();
        json.key("intervals");
        json.beginArray();
        json.endArray();
        for (const char* count : {"evaluated", "uncomputable"}) {
            json.key(count);
            json.number(0);
        }
    };
    return askCases(console, named->cases, request.target, ask, request.options.RoundTELVOSF, 1,
                    nothing);
}

} // namespace telvo::cli
