// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/studyRecord.h"

#include "base/files.h"
#include "cli/outputs.h"

namespace telvo::cli {

ExitStatus writeRecord(Console& console, study::Recorder& recorder, const std::string& target,
                       const WrittenResult& result) {
    if (result.digits) recorder.exported(withoutFolder(result.file));
    auto text = recorder.text(result.digits ? std::move(*result.digits)
                                            : study::TableDigits::of(*result.table),
                              result.table->rows, result.threads);
    if (!text) {
        console.complain(target + ": " + faultText(text.fault()));
        return FileTrouble;
    }
    return writeOrComplain(console, target, *text, existingFor(result.force));
}

} // namespace telvo::cli
