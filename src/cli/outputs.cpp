// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/outputs.h"

#include "base/files.h"
#include "base/InputFile.h"
#include "base/temporaryFiles.h"
#include "project/CaseFile.h"
#include "report/reportFile.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace telvo::cli {

namespace {

namespace fs = std::filesystem;

/// What has a name, a link that leads nowhere included.
enum class Named { Nothing, File, Stream };

Named namedBy(const std::string& target) {
    std::error_code error;
    const fs::path path = pathFromUtf8(target);
    const fs::file_type type = fs::status(path, error).type();
    if (type == fs::file_type::character || type == fs::file_type::fifo) return Named::Stream;
    return fs::symlink_status(path, error).type() == fs::file_type::not_found ? Named::Nothing
                                                                              : Named::File;
}

/// The first bytes of a file; nothing when it cannot be read.
std::string startOf(const std::string& path) {
    constexpr std::size_t most = 4096;
    std::string bytes(most, '\0');
    auto file = InputFile::open(path);
    std::size_t had = 0;
    while (file && had < most) {
        const auto got = file->read(bytes.data() + had, most - had);
        if (!got || *got == 0) break;
        had += *got;
    }
    bytes.resize(had);
    return bytes;
}

bool isInput(const std::string& target, const std::vector<std::string>& inputs) {
    const fs::path path = pathFromUtf8(target);
    return std::any_of(inputs.begin(), inputs.end(), [&](const std::string& input) {
        std::error_code error;
        return fs::equivalent(path, pathFromUtf8(fileOf(input)), error);
    });
}

/// Complains of a file that nothing made from cases takes the place of.
bool isProtected(Console& console, const std::string& target,
                 const std::vector<std::string>& inputs) {
    if (project::hasCaseTag(startOf(target))) {
        console.complain(target + ": is a case file, which is not written over");
        return true;
    }
    if (!isInput(target, inputs)) return false;
    console.complain(target + ": is read by the same call and not written over");
    return true;
}

} // namespace

bool isStandardOutput(const std::string& target) {
    return target == "-";
}

bool isNamed(const std::string& target) {
    return namedBy(target) == Named::File;
}

Existing existingFor(bool force) {
    return force ? Existing::Replace : Existing::Refuse;
}

bool mayWrite(Console& console, const std::string& target, bool force) {
    if (force || namedBy(target) != Named::File) return true;
    console.complain(target + ": the file exists; --force overwrites it");
    return false;
}

bool mayWriteMade(Console& console, const std::string& target, bool force,
                  const std::vector<std::string>& inputs) {
    if (namedBy(target) != Named::File) return true;
    return !isProtected(console, target, inputs) && mayWrite(console, target, force);
}

bool mayWriteReport(Console& console, const std::string& target, bool force,
                    const std::vector<std::string>& inputs) {
    if (namedBy(target) != Named::File) return true;
    if (isProtected(console, target, inputs)) return false;
    std::error_code error;
    const bool empty = fs::is_empty(pathFromUtf8(target), error) && !error;
    if (force || empty || report::beginsLikeReport(startOf(target))) return true;
    console.complain(target + ": is no report; --force overwrites it all the same");
    return false;
}

void tellRemarks(Console& console, const std::string& path,
                 const std::vector<std::string>& remarks) {
    for (const std::string& remark : remarks)
        console.complain(path + ": " + remark);
}

ExitStatus writeOrComplain(Console& console, const std::string& path, std::string_view bytes,
                           Existing existing) {
    std::vector<std::string> remarks;
    const Status written = writeFile(path, bytes, existing, &remarks);
    tellRemarks(console, path, remarks);
    if (written) return AllGood;
    console.complain(faultText(written.fault()));
    return FileTrouble;
}

int saveAs(Console& console, project::ProjectCase current, const std::string& target, bool force) {
    if (isStandardOutput(target)) {
        const auto text = project::writeCaseText(current);
        if (!text) {
            console.complain(faultText(text.fault()));
            return FileTrouble;
        }
        console.print(*text);
        return console.finish();
    }
    if (!mayWrite(console, target, force)) return FileTrouble;
    std::vector<std::string> remarks;
    const Status saved = project::saveCaseFile(current, target, existingFor(force), &remarks);
    tellRemarks(console, target, remarks);
    if (saved) return AllGood;
    console.complain(faultText(saved.fault()));
    return FileTrouble;
}

TextOutput::TextOutput(Console& console, const std::string& target, Existing existing)
    : m_console(console) {
    if (target.empty() || isStandardOutput(target)) return;
    m_target = target;
    removeLeftTemporaryFiles(pathFromUtf8(target).parent_path());
    auto file = AtomicFile::create(target, existing);
    if (file)
        m_file.emplace(std::move(*file));
    else
        m_fault = file.fault();
}

void TextOutput::print(std::string_view text) {
    if (!isFile()) return m_console.print(text);
    if (m_fault) return;
    if (const Status written = m_file->write(text); !written) m_fault = written.fault();
}

ExitStatus TextOutput::finish() {
    if (!isFile()) return m_console.finish();
    if (!m_fault)
        if (const Status done = m_file->commit(); !done) m_fault = done.fault();
    if (!m_fault) {
        tellRemarks(m_console, m_target, m_file->remarks());
        return AllGood;
    }
    m_console.complain(faultText(*m_fault));
    return FileTrouble;
}

} // namespace telvo::cli
