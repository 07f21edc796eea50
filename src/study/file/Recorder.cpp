// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/file/Recorder.h"

#include "base/files.h"
#include "run/Run.h"

#include <cmath>
#include <cstdio>
#include <ctime>
#include <filesystem>

namespace telvo::study {

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

void Recorder::add(const Study& study, const std::string& name, std::span<const NamedCase> cases,
                   const Tally& tally) {
    auto own = recorded(study, name, cases);
    if (own)
        m_record.studies.push_back(std::move(*own));
    else if (!m_fault)
        m_fault = own.fault();
    m_record.tally.runs += tally.runs;
    for (const Tally::Left& left : tally.left)
        m_record.tally.leaveOut(left.message, left.runs);
}

void Recorder::exported(const std::string& file, std::string digest) {
    m_record.file = file;
    m_record.fileDigest = std::move(digest);
}

Result<std::string> Recorder::text(TableDigits digits, std::size_t rows, unsigned threads) {
    if (m_fault) return *m_fault;
    m_record.program = "TELVO " TELVO_VERSION;
    m_record.moduleBuild = run::ModuleBuild;
    m_record.time = timeNow();
    m_record.machine = TELVO_SYSTEM;
    m_record.threads = threads;
    digits.into(m_record, rows);
    if (!m_record.file.empty() && m_record.fileDigest.empty())
        m_record.fileDigest = m_record.digest;
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - m_start;
    m_record.seconds = std::round(seconds.count() * 1000) / 1000;
    return recordText(m_record);
}

} // namespace telvo::study
