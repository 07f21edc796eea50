// SPDX-License-Identifier: GPL-3.0-or-later
//
// Feeds arbitrary bytes to the readers of studies, of records of their runs and of parts of them. Aborts where a promise
// is broken.

#include "require.h"
#include "study/file/Record.h"
#include "study/file/SamplePart.h"

#include <cstdint>

using namespace telvo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (const auto study = study::readStudyText(bytes, "fuzz")) {
        const std::string text = study::studyText(*study);
        const auto again = study::readStudyText(text, "fuzz");
        require(static_cast<bool>(again), "what is written can be read");
        require(study::studyText(*again) == text, "and is written the same again");
        require(!study::filesOf(*study).front().starts_with('/'), "no file is named from the root");
    }
    if (const auto record = study::readRecord(bytes, "fuzz")) {
        const std::string text = study::recordText(*record);
        require(static_cast<bool>(study::readRecord(text, "fuzz")), "a record can be read again");
    }
    if (const auto part = study::readPart(bytes, "fuzz")) {
        const std::string text = study::partText(*part);
        require(static_cast<bool>(study::readPart(text, "fuzz")), "a part can be read again");
    }
    return 0;
}
