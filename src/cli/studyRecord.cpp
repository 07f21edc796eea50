// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/studyRecord.h"

#include "base/files.h"
#include "cli/outputs.h"
#include "run/Run.h"

#include <cmath>
#include <ctime>

namespace telvo::cli {

namespace {

std::string timeNow() {
    const std::time_t now = std::time(nullptr);
    const auto days =
        std::chrono::floor<std::chrono::days>(std::chrono::system_clock::from_time_t(now));
    const std::chrono::year_month_day date(days);
    const auto seconds = static_cast<int>(now % 86400);
    char text[40];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ",
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), seconds / 3600, seconds / 60 % 60,
                  seconds % 60);
    return text;
}

} // namespace

std::string recordFileOf(const std::string& result) {
    std::filesystem::path path = pathFromUtf8(result);
    path.replace_extension();
    return utf8FromPath(path) + (path.extension() == ".study" ? ".json" : ".study.json");
}

void Recorder::add(const study::Study& study, const std::string& name,
                   std::span<const study::NamedCase> cases, const study::Tally& tally) {
    auto own = study::recorded(study, name, cases);
    if (own)
        m_record.studies.push_back(std::move(*own));
    else
        m_faults.push_back(own.fault());
    m_record.tally.runs += tally.runs;
    for (const study::Tally::Left& left : tally.left)
        m_record.tally.leaveOut(left.message, left.runs);
}

ExitStatus Recorder::write(Console& console, const std::string& target, const std::string& result,
                           const study::ResultTable& table, bool csv, unsigned threads,
                           bool force) {
    for (const Fault& fault : m_faults) {
        console.complain(target + ": " + faultText(fault));
        return FileTrouble;
    }
    m_record.program = "TELVO " TELVO_VERSION;
    m_record.moduleBuild = run::ModuleBuild;
    m_record.time = timeNow();
    m_record.machine = TELVO_SYSTEM;
    m_record.threads = threads;
    study::setTable(m_record, table);
    if (csv) m_record.file = withoutFolder(result);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - m_start;
    m_record.seconds = std::round(seconds.count() * 1000) / 1000;
    return writeOrComplain(console, target, study::recordText(m_record), existingFor(force));
}

} // namespace telvo::cli
