// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/studies/exportRecord.h"

#include "base/files.h"
#include "study/file/Recorder.h"

#include <filesystem>
#include <system_error>

namespace telvo::study::ui {

namespace {

/// Whether a table of values was written with the rows and columns that the console gives it.
bool isSweepAsWritten(const Asked& asked, const ExportedTable& exported) {
    const auto* sweep = std::get_if<SweepRequest>(&asked.study.request);
    if (!sweep || !exported.order.empty() || !exported.path.ends_with(".csv")) return false;
    std::vector<std::string> names{"id"};
    for (const SweepAxis& axis : sweep->axes)
        for (const project::FieldId id : axis.variable.fields(asked.cases.front().second.Input))
            names.push_back(project::nameOf(id));
    for (const Outcome& outcome : sweep->outcomes)
        names.push_back(outcome.name());
    names.insert(names.end(), {"flags", "message"});
    return std::equal(
        names.begin(), names.end(), exported.table.columns.begin(), exported.table.columns.end(),
        [](const std::string& name, const StudyColumn& column) { return name == column.name; });
}

} // namespace

Status writeRecordOf(const Asked& asked, ExportedTable exported) {
    const std::string path = recordFileOf(exported.path);
    std::error_code error;
    if (std::filesystem::exists(pathFromUtf8(path), error)) {
        const auto bytes = readFile(path);
        if (!bytes || !readRecord(*bytes, path))
            return Fault{"is there already and is no record of a run", path};
    }
    Recorder recorder;
    recorder.add(asked.study, asked.study.caseFile, asked.cases, exported.tally);
    const std::string file = withoutFolder(exported.path);
    Result<std::string> text = Fault{};
    if (isSweepAsWritten(asked, exported)) {
        recorder.exported(file);
        text = recorder.text(std::move(exported.digits), exported.table.rows, asked.threads);
    } else {
        const auto again = runStudy(asked.study, asked.cases, asked.threads);
        if (!again) return again.fault();
        RunRecord ofFile;
        exported.digits.into(ofFile, exported.table.rows);
        recorder.exported(file, ofFile.digest);
        text = recorder.text(TableDigits::of(again->table), again->table.rows, asked.threads);
    }
    return text ? writeFile(path, *text) : Status(text.fault());
}

} // namespace telvo::study::ui
