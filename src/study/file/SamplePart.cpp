// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/file/SamplePart.h"

#include "base/numbers.h"
#include "base/text.h"
#include "study/file/recordedJson.h"
#include "study/file/sha256.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace telvo::study {

namespace {

constexpr std::string_view PartTag = "TELVO study part";
constexpr int PartVersion = 1;
constexpr std::string_view NoResults = "-";

std::optional<std::size_t> countOf(std::string_view text) {
    std::size_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

/// A line per sample: which criteria it misses, as a number, and its outcomes; "-" for one that could
/// not be computed.
std::string linesOf(const Samples& samples) {
    std::string text;
    for (std::size_t s = 0; s < samples.size(); ++s) {
        if (samples.missed[s] == Samples::NotComputed) {
            text.append(NoResults).append("\n");
            continue;
        }
        text += std::to_string(samples.missed[s]);
        for (const auto& outcome : samples.outcomes) {
            text += ',';
            if (!std::isnan(outcome[s])) appendGeneralNumber(text, outcome[s]);
        }
        text += '\n';
    }
    return text;
}

/// Faults: a line that is none, too few or too many of them
std::optional<Fault> readLines(std::string_view text, Samples& samples) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    for (auto& outcome : samples.outcomes)
        outcome.assign(samples.size(), none);
    samples.missed.assign(samples.size(), Samples::NotComputed);
    const std::size_t criteria = samples.outcomes.size();
    std::size_t s = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const Fault wrong{"samples: sample " + std::to_string(s + 1) + " is none", ""};
        if (s == samples.size()) return wrong;
        if (line != NoResults) {
            std::size_t comma = std::min(line.find(','), line.size());
            const auto mask = countOf(line.substr(0, comma));
            if (!mask || *mask >> criteria != 0) return wrong;
            samples.missed[s] = static_cast<std::uint16_t>(*mask);
            for (auto& outcome : samples.outcomes) {
                if (comma == line.size()) return wrong;
                line.remove_prefix(comma + 1);
                comma = std::min(line.find(','), line.size());
                if (comma == 0) continue;
                const auto value = numberOf(line.substr(0, comma));
                if (!value || !std::isfinite(*value)) return wrong;
                outcome[s] = *value;
            }
            if (comma != line.size()) return wrong;
        }
        ++s;
    }
    if (s != samples.size())
        return Fault{"samples: there are " + std::to_string(s) + " of " +
                         std::to_string(samples.size()),
                     ""};
    return std::nullopt;
}

/// Replicates of a part of a plan.
std::pair<std::size_t, std::size_t> replicatesOf(const sampling::Plan& plan, const Part& part) {
    const std::size_t first = plan.replicates * (part.k - 1) / part.n;
    return {first, plan.replicates * part.k / part.n - first};
}

} // namespace

Result<Part> partNamed(std::string_view text) {
    const std::size_t slash = text.find('/');
    if (slash != std::string_view::npos) {
        const auto k = countOf(text.substr(0, slash)), n = countOf(text.substr(slash + 1));
        if (k && n && *k >= 1 && *k <= *n) return Part{*k, *n};
    }
    return Fault{"a part is written like 2/5", std::string(text)};
}

Result<Samples> samplesOfPart(const Study& study, const project::ProjectCase& base,
                              const Part& part, unsigned threads) {
    const auto* asked = std::get_if<AskedUncertainty>(&study.request);
    if (!asked) return Fault{"only a study of the kind \"uncertainty\" comes in parts", ""};
    const auto request = requestOf(*asked, base);
    if (!request) return request.fault();
    return drawSamples(base, *request, part, study.RoundTELVOSF, threads);
}

std::string partText(const SamplePart& part) {
    std::string text;
    JsonWriter json(text);
    json.beginObject();
    json.member("record", std::string(PartTag) + " " + std::to_string(PartVersion));
    json.member("program", part.program);
    json.member("moduleBuild", part.moduleBuild);
    json.key("study");
    writeStudy(json, part.study);
    json.key("part");
    json.number(part.part.k);
    json.key("parts");
    json.number(part.part.n);
    json.key("criteria");
    json.number(part.samples.outcomes.size());
    json.key("samples");
    json.beginObject();
    writeText(json, "", linesOf(part.samples));
    json.endObject();
    json.endObject();
    return text + "\n";
}

Result<SamplePart> readPart(std::string_view bytes, const std::string& name) {
    const Json root = Json::parse(bytes.begin(), bytes.end(), nullptr, false);
    const std::string kind =
        root.is_object() && root.contains("record") && root["record"].is_string()
            ? root["record"].get<std::string>()
            : std::string();
    if (!kind.starts_with(PartTag)) return Fault{"is no part of a study", name};
    if (kind != std::string(PartTag) + " " + std::to_string(PartVersion))
        return Fault{"is a \"" + excerpt(asUtf8(kind)) + "\", which this program does not read",
                     name};
    std::optional<Fault> fault;
    SamplePart part;
    const JsonMembers members(root, "", fault);
    part.program = members.text("program");
    part.moduleBuild = members.text("moduleBuild");
    part.study = members.below("study").recordedStudy();
    part.part = {members.count("part"), members.count("parts")};
    const std::size_t criteria = members.count("criteria");
    const std::string lines = members.below("samples").checkedText();
    if (fault) return Fault{fault->message, name};
    const auto study = readStudyText(part.study.text, part.study.name);
    if (!study) return study.fault();
    const auto* asked = std::get_if<AskedUncertainty>(&study->request);
    constexpr std::size_t mostCriteria = 15;
    if (!asked || part.part.k < 1 || part.part.k > part.part.n ||
        part.part.n > asked->plan.replicates || criteria < 1 || criteria > mostCriteria)
        return Fault{"is a part that its study does not have", name};
    std::tie(part.samples.firstReplicate, part.samples.replicates) =
        replicatesOf(asked->plan, part.part);
    part.samples.perReplicate = static_cast<std::size_t>(asked->plan.perReplicate());
    if (part.samples.size() > lines.size()) // a line has a character at least
        return Fault{"samples: there are fewer than the part has", name};
    part.samples.outcomes.resize(criteria);
    if (const auto wrong = readLines(lines, part.samples)) return Fault{wrong->message, name};
    return part;
}

Result<Samples> mergedSamples(std::vector<SamplePart> parts) {
    if (parts.empty()) return Fault{"A part is missing", ""};
    const SamplePart first{parts.front().program,
                           parts.front().moduleBuild,
                           parts.front().study,
                           parts.front().part,
                           {}};
    std::vector<Samples> samples;
    for (SamplePart& part : parts) {
        const auto sameCases = [&] {
            if (part.study.cases.size() != first.study.cases.size()) return false;
            for (std::size_t i = 0; i < first.study.cases.size(); ++i)
                if (part.study.cases[i].text != first.study.cases[i].text) return false;
            return true;
        };
        if (part.study.text != first.study.text || part.part.n != first.part.n || !sameCases())
            return Fault{"The parts are not of one study", part.study.name};
        if (part.program != first.program || part.moduleBuild != first.moduleBuild)
            return Fault{"The parts were made by different programs: " + first.program + " and " +
                             part.program,
                         part.study.name};
        samples.push_back(std::move(part.samples));
    }
    const auto study = restored(first.study);
    if (!study) return study.fault();
    const auto request =
        requestOf(std::get<AskedUncertainty>(study->first.request), study->second.front().second);
    if (!request) return request.fault();
    return joinSamples(std::move(samples), *request);
}

} // namespace telvo::study
