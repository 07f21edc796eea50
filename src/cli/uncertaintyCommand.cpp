// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/uncertaintyCommand.h"

#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"
#include "cli/arguments.h"
#include "cli/outputs.h"
#include "cli/spelling.h"
#include "study/file/runStudy.h"

#include <CLI/CLI.hpp>

#include <bit>
#include <map>
#include <utility>

namespace telvo::cli {

namespace {

using study::Scatter;

/// "10%" or "0.1" as a part of 1.
std::optional<double> partOf(std::string_view text) {
    text = trimmed(text);
    if (!text.ends_with('%')) return numberOf(text);
    const auto percent = numberOf(text.substr(0, text.size() - 1));
    return percent ? std::optional(*percent / 100) : std::nullopt;
}

std::vector<std::string> partsOf(std::string_view text, char separator) {
    std::vector<std::string> parts;
    for (bool more = true; more;) {
        const std::size_t at = std::min(text.find(separator), text.size());
        parts.emplace_back(trimmed(text.substr(0, at)));
        more = at < text.size();
        text.remove_prefix(std::min(at + 1, text.size()));
    }
    return parts;
}

/// "800:900:1000" or "-5%:0%:10%"
std::optional<std::pair<std::vector<double>, bool>> pointsOf(std::string_view text) {
    std::vector<double> points;
    std::size_t percents = 0;
    for (std::string part : partsOf(text, ':')) {
        if (part.ends_with('%')) {
            part.pop_back();
            ++percents;
        }
        const auto value = numberOf(part);
        if (!value) return std::nullopt;
        points.push_back(*value);
    }
    if (percents != 0 && percents != points.size()) return std::nullopt;
    return std::pair(std::move(points), percents > 0);
}

/// Sets what "cov=0.05" says. Returned: whether it is known.
bool setPart(Scatter& scatter, const std::string& name, std::string_view text) {
    const std::map<std::string, std::optional<double> Scatter::*> numbers = {
        {"mean", &Scatter::mean},   {"sd", &Scatter::sd},   {"cov", &Scatter::cov},
        {"scale", &Scatter::scale}, {"low", &Scatter::low}, {"high", &Scatter::high},
        {"cut_sd", &Scatter::cutSd}};
    if (const auto known = numbers.find(name); known != numbers.end()) {
        const auto value = name == "cov" ? partOf(text) : numberOf(text);
        scatter.*(known->second) = value;
        return value.has_value();
    }
    auto points = pointsOf(text);
    if (!points) return false;
    if (name == "values" || name == "relative" || name == "percent") {
        scatter.pointsAre = name == "percent" || points->second ? Scatter::Points::Percent
                            : name == "relative"                ? Scatter::Points::Offsets
                                                                : Scatter::Points::Values;
        scatter.points = std::move(points->first);
        return true;
    }
    if (name == "weights") scatter.weights = std::move(points->first);
    if (name == "shapes") scatter.shapes = std::move(points->first);
    return name == "weights" || name == "shapes";
}

Result<Scatter> scatterOfText(const std::string& text) {
    const Fault shape{"written like 800:1000, 800:900:1000 or normal,cov=5%", text};
    Scatter scatter;
    if (auto points = pointsOf(text)) {
        if (points->first.size() != 2 && points->first.size() != 3) return shape;
        scatter.shape =
            points->first.size() == 2 ? Scatter::Shape::Uniform : Scatter::Shape::Triangular;
        scatter.pointsAre = points->second ? Scatter::Points::Percent : Scatter::Points::Values;
        scatter.points = std::move(points->first);
        return scatter;
    }
    const std::vector<std::string> parts = partsOf(text, ',');
    const auto named = study::shapeNamed(parts.front());
    if (!named) {
        const std::vector<std::string> names(study::shapeNames().begin(),
                                             study::shapeNames().end());
        if (const auto near = nearest(parts.front(), names))
            return Fault{"is no distribution; near it: " + *near, parts.front()};
        return shape;
    }
    scatter.shape = *named;
    for (std::size_t i = 1; i < parts.size(); ++i) {
        const std::size_t at = parts[i].find('=');
        if (at == std::string::npos ||
            !setPart(scatter, std::string(trimmed(parts[i].substr(0, at))),
                     std::string_view(parts[i]).substr(at + 1)))
            return Fault{"is no parameter of a distribution such as cov=5% or relative=-0.5:0:2",
                         parts[i]};
    }
    return scatter;
}

/// "DepthCover", "DepthCover=normal,cov=5%"
Result<study::ScatteredInput> scatteredOf(const std::string& text) {
    const std::size_t at = std::min(text.find('='), text.size());
    const auto variable = variableOf(std::string(trimmed(text.substr(0, at))));
    if (!variable) return variable.fault();
    study::ScatteredInput input{{*variable}, {}, false};
    if (at == text.size()) return input;
    auto scatter = scatterOfText(text.substr(at + 1));
    if (!scatter) return scatter.fault();
    input.scatter = std::move(*scatter);
    return input;
}

/// "EntryHeight,EntryWidth=0.3"
Result<study::AskedUncertainty::Together> togetherOf(const std::string& text) {
    const Fault shape{"written like EntryHeight,EntryWidth=0.3", text};
    const std::size_t at = text.find('=');
    if (at == std::string::npos) return shape;
    const std::vector<std::string> names = partsOf(std::string_view(text).substr(0, at), ',');
    const auto rank = numberOf(std::string_view(text).substr(at + 1));
    if (names.size() != 2 || !rank) return shape;
    const auto first = variableOf(names[0]), second = variableOf(names[1]);
    if (!first) return first.fault();
    if (!second) return second.fault();
    return study::AskedUncertainty::Together{*first, *second, *rank};
}

/// The study that a call asks for. Faults: what is written wrong, with its option
Result<study::Study::Request> studyOf(const UncertaintyCall& call) {
    study::AskedUncertainty asked;
    const auto wrong = [](std::string_view option, const Fault& fault) {
        return Fault{faultText(fault), std::string(option)};
    };
    for (const std::string& text : call.vary) {
        auto input = scatteredOf(text);
        if (!input) return wrong("--vary", input.fault());
        asked.vary.push_back(std::move(*input));
    }
    for (const std::string& text : call.correlate) {
        const auto pair = togetherOf(text);
        if (!pair) return wrong("--correlate", pair.fault());
        asked.correlated.push_back(*pair);
    }
    for (const std::string& text : call.criteria) {
        auto criteria = criteriaOf(text);
        if (!criteria) return wrong("--for", criteria.fault());
        asked.limits.insert(asked.limits.end(), criteria->begin(), criteria->end());
    }
    if (!call.halfWidth.empty()) {
        asked.halfWidth = partOf(call.halfWidth);
        if (!asked.halfWidth) return Fault{"written like 10%", "--half-width"};
    }
    const std::uint64_t per = (call.samples + call.replicates - 1) / call.replicates;
    asked.plan = {call.method == "latin-hypercube" ? sampling::Method::LatinHypercube
                  : call.method == "monte-carlo"   ? sampling::Method::MonteCarlo
                                                   : sampling::Method::Sobol,
                  call.replicates, std::countr_zero(std::bit_ceil(per)), call.seed};
    asked.indices = call.indices;
    if (call.over.empty()) {
        if (!call.share.empty()) return Fault{"needs --over", "--share"};
        return study::Study::Request(std::move(asked));
    }
    auto axis = axisOf(call.over);
    if (!axis) return wrong("--over", axis.fault());
    study::AskedFragility curve{std::move(asked), axis->variable, std::move(axis->values), {}, {}};
    if (!call.share.empty()) {
        curve.share = partOf(call.share);
        if (!curve.share) return Fault{"written like 5%", "--share"};
    }
    return study::Study::Request(std::move(curve));
}

} // namespace

CLI::App* addUncertainty(CLI::App& app, UncertaintyCall& request) {
    constexpr std::uint64_t mostSamples = std::uint64_t{1} << 24;
    CLI::App* command = app.add_subcommand(
        "uncertainty", "tell how many samples miss a criterion where inputs scatter");
    addInputs(*command, request.inputs);
    literal(command->add_option("--vary", request.vary,
                                "input that scatters: INPUT as usual, INPUT=LOW:HIGH evenly, "
                                "INPUT=LOW:LIKELY:HIGH, or INPUT=normal,cov=5%; may be repeated; "
                                "what usually scatters if not given"))
        ->expected(1)
        ->take_all()
        ->option_text("INPUT=SHAPE");
    literal(command->add_option("--correlate", request.correlate,
                                "rank correlation of two inputs; may be repeated"))
        ->expected(1)
        ->take_all()
        ->option_text("INPUT,INPUT=RANK");
    literal(command->add_option("--for", request.criteria,
                                "criterion: QUANTITY>=VALUE or QUANTITY<=VALUE, the value of a "
                                "stability factor may be \"suggested\"; may be repeated; all "
                                "factors against the suggested ones if not given"))
        ->expected(1)
        ->take_all()
        ->option_text("CRITERION");
    literal(
        command->add_option("--over", request.over, "the share over the values of another input"))
        ->option_text("INPUT=FROM:TO:STEP");
    command
        ->add_option("--share", request.share,
                     "with --over: where at most this share misses, such as 5%")
        ->option_text("PERCENT");
    command
        ->add_option("--half-width", request.halfWidth,
                     "stop when every share is known to this part of itself, such as 10%")
        ->option_text("PERCENT");
    command
        ->add_option(
            "--samples", request.samples,
            "samples, at most where a half width is given; made a power of 2 per replicate")
        ->check(CLI::Range(std::uint64_t{1}, mostSamples))
        ->capture_default_str()
        ->option_text("N");
    command->add_option("--replicates", request.replicates, "independent sets of samples")
        ->check(CLI::Range(std::size_t{1}, std::size_t{1024}))
        ->capture_default_str()
        ->option_text("N");
    command->add_option("--method", request.method, "how samples are drawn")
        ->check(CLI::IsMember({"sobol", "latin-hypercube", "monte-carlo"}))
        ->capture_default_str();
    command->add_option("--seed", request.seed, "another one gives other samples")
        ->capture_default_str()
        ->option_text("N");
    command->add_flag(
        "--indices", request.indices,
        "also first-order and total indices of Sobol', or Shapley effects where inputs "
        "are correlated");
    literal(command->add_option("--samples-out", request.samplesFile,
                                "write the samples of the one case to this file, .csv"))
        ->option_text("FILE");
    addRounding(*command, request.options);
    addStudyTarget(*command, request.target);
    addStudyThreads(*command, request.jobs);
    command->footer(
        "The limits are empirical: the share of samples that miss one is no probability of "
        "failure.\nExit status 4: the half width was not reached, or no value has at most the "
        "share.\n\n"
        "Example:\n  telvo-cli uncertainty panel.TLV --vary DepthCover=normal,cov=5% --vary "
        "EntryHeight --for \"TELVOSF.retreat>=1.5\"");
    return command;
}

ExitStatus writeSamples(Console& console, const std::string& target,
                        const study::ResultTable& samples, bool force) {
    TextOutput output(console, target, existingFor(force));
    study::writeCsv(samples, [&](std::string_view piece) {
        output.print(piece);
        return true;
    });
    return output.finish();
}

int runUncertainty(Console& console, const UncertaintyCall& request) {
    const auto asked = studyOf(request);
    if (!asked) return console.wrongUsage(faultText(asked.fault()));
    const bool writes = !request.samplesFile.empty();
    if (writes && !request.over.empty())
        return console.wrongUsage("--samples-out: a share over an input keeps no samples");
    if (writes && request.inputs.given.size() > 1)
        return console.wrongUsage("--samples-out: there are samples of several cases");
    if (writes &&
        !mayWriteMade(console, request.samplesFile, request.target.force, request.inputs.given))
        return FileTrouble;
    std::vector<study::ResultTable> samples;
    const int status = askCases(
        console, request.inputs, request.target,
        [&](const project::ProjectCase& current) -> Result<Answer> {
            const study::Study study{
                {}, current.FileName, current.Units, request.options.RoundTELVOSF, *asked};
            const study::NamedCase cases[] = {{current.FileName, current}};
            auto made = study::runStudy(study, cases, request.jobs);
            if (!made) return made.fault();
            if (writes) samples.push_back(std::move(made->samples));
            return Answer{std::move(*made), *asked};
        },
        request.options.RoundTELVOSF, request.jobs);
    if (!writes || samples.empty()) return status;
    if (samples.size() > 1)
        return console.wrongUsage("--samples-out: there are samples of several cases");
    const ExitStatus written =
        writeSamples(console, request.samplesFile, samples.front(), request.target.force);
    return written == AllGood ? status : written;
}

} // namespace telvo::cli
