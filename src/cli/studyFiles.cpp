// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/studyFiles.h"

#include "base/escapes.h"
#include "base/files.h"
#include "cli/cases.h"

#include <algorithm>

namespace telvo::cli {

namespace {

/// The same table with the first and the last value of every input; as it is where that would hide
/// that its lists do not fit together.
study::SweepRequest endsOf(const study::SweepRequest& request) {
    std::size_t rows = 1;
    for (const study::SweepAxis& axis : request.axes) {
        if (request.linked && axis.values.size() != request.axes.front().values.size())
            return request;
        if (axis.values.empty() || axis.values.size() > study::MostSweepRows / rows) return request;
        if (!request.linked) rows *= axis.values.size();
    }
    study::SweepRequest ends = request;
    for (study::SweepAxis& axis : ends.axes)
        if (axis.values.size() > 2) axis.values = {axis.values.front(), axis.values.back()};
    return ends;
}

} // namespace

std::vector<LoadedStudy> loadStudies(Console& console, const std::string& file,
                                     ExitStatus& status) {
    std::vector<LoadedStudy> all;
    const auto bytes = readFile(file, study::MaxStudyBytes);
    auto studies =
        bytes ? study::readStudies(*bytes, file) : Result<std::vector<study::Study>>(bytes.fault());
    if (!studies) {
        console.complain(faultText(studies.fault()));
        raise(status, FileTrouble);
        return all;
    }
    const auto folder = pathFromUtf8(file).parent_path();
    for (study::Study& one : *studies) {
        LoadedStudy loaded{file, std::move(one), {}};
        if (studies->size() > 1) {
            auto path = pathFromUtf8(file);
            if (path.extension() == ".study") path.replace_extension();
            loaded.name = utf8FromPath(path) + "." +
                          std::string(study::kindName(loaded.study.request)) + ".study";
        }
        bool whole = true;
        for (const std::string& name : study::filesOf(loaded.study)) {
            CaseOutcome outcome = readCase(console, utf8FromPath(folder / pathFromUtf8(name)));
            if (!outcome.current) {
                console.complain(loaded.name + ": " + outcome.message);
                raise(status, outcome.status);
                whole = false;
                break;
            }
            loaded.cases.emplace_back(withEscapedBytes(name), std::move(*outcome.current));
        }
        if (whole) all.push_back(std::move(loaded));
    }
    return all;
}

std::optional<Fault> checkStudy(const LoadedStudy& loaded) {
    study::Study tried = loaded.study;
    if (auto* sweep = std::get_if<study::SweepRequest>(&tried.request)) *sweep = endsOf(*sweep);
    const auto made = study::runStudy(tried, loaded.cases);
    if (!made) return made.fault();
    if (!made->computed)
        return Fault{made->headline.empty() ? study::tallyText(made->tally) : made->headline, ""};
    return std::nullopt;
}

} // namespace telvo::cli
