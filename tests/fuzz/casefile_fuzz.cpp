// SPDX-License-Identifier: GPL-3.0-or-later
//
// Feeds arbitrary bytes to the case file reader and takes what it accepts down the whole road:
// write and read again, run, report. Aborts where a promise of the reader or writer is broken.

#include "base/text.h"
#include "project/CaseFile.h"
#include "project/checks.h"
#include "project/units.h"
#include "report/sections.h"
#include "require.h"
#include "run/caseRun.h"

#include <cmath>
#include <cstdint>
#include <string_view>

using namespace telvo;

namespace {

void writeAndReadAgain(project::ProjectCase current) {
    const auto text = project::writeCaseText(current);
    if (!text) return; // a title that grew too long when it became UTF-8
    project::ProjectCase again = project::newCase(project::English);
    const auto reading = project::readCaseText(*text, "again", again);
    require(reading.accepted && !reading.fault, "a written case can be read");
    again.FileName = current.FileName;
    require(again == current, "a case is read back as it was written");
    require(*project::writeCaseText(again) == *text, "saving twice writes the same bytes");
}

void runAndReport(const project::ProjectCase& current) {
    const auto outcome = run::runCase(current);
    if (const auto* run = std::get_if<run::Run>(&outcome)) {
        for (const double factor : run->results.TELVOSF)
            require(std::isfinite(factor), "no factor is infinite");
        for (const std::string& page : report::makeReport(*run).pages) {
            require(page.ends_with("\r\n"), "a page ends with a line break");
        }
    } else if (const auto* fault = std::get_if<Fault>(&outcome)) {
        require(!fault->message.empty() && !fault->where.empty(), "a fault names what and where");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    project::ProjectCase current = project::newCase(project::English);
    const project::ProjectCase before = current;
    const auto reading = project::readCaseText(bytes, "fuzz", current);
    require(reading.accepted || (reading.fault && current == before),
            "an unknown tag changes nothing and is told");
    require(current.Input.NumberEntries >= 1 && current.Input.NumberEntries <= project::MaxEntries,
            "the entry count stays in its range");
    require(current.Input.Anal <= 3, "the loading condition stays in its range");
    if (!reading.fault) {
        writeAndReadAgain(current);
        runAndReport(current);
        (void)project::checkAcceptance(project::textsFromInput(current.Input));
        if (project::convertCase(current)) runAndReport(current);
    }
    project::ProjectCase imported = before;
    const auto section = project::readCaseSection(bytes, "fuzz", imported);
    require(section.accepted || (section.fault && imported == before),
            "a file without a case changes nothing and is told");
    if (section.accepted && !section.fault) writeAndReadAgain(imported);
    project::ProjectCase older = before;
    (void)project::readCaseItems(bytes, 49, "fuzz", older);
    return 0;
}
