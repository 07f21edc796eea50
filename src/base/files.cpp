// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"

#include "base/InputFile.h"
#include "base/temporaryFiles.h"

#include <algorithm>

namespace telvo {

namespace fs = std::filesystem;

fs::path pathFromUtf8(std::string_view utf8) {
    return fs::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string utf8FromPath(const fs::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

std::string withoutFolder(std::string_view path) {
    return std::string(path.substr(path.find_last_of("/\\") + 1)); // npos + 1 is 0
}

Result<std::string> readFile(const std::string& path, std::size_t most) {
    if (path.find('\0') != std::string::npos)
        return Fault{"the file name holds a NUL character", path.substr(0, path.find('\0'))};
    auto input = InputFile::open(path);
    if (!input) return input.fault();
    const Fault tooLarge = {"is larger than " + std::to_string(most >> 20) + " MB", path};
    if (input->size() > most) return tooLarge;
    std::string bytes;
    // Reading in growing steps keeps the memory within the size of what is really there.
    std::size_t step = std::clamp<std::size_t>(static_cast<std::size_t>(input->size()) + 1,
                                               std::size_t{16} << 10, std::size_t{1} << 20);
    for (;;) {
        const std::size_t had = bytes.size();
        bytes.resize(had + step);
        const auto got = input->read(bytes.data() + had, step);
        if (!got) return got.fault();
        bytes.resize(had + *got);
        if (bytes.size() > most) return tooLarge;
        if (*got == 0) return bytes;
        step = std::min(std::max(bytes.size(), std::size_t{16} << 10), most + 1 - bytes.size());
    }
}

Status writeFile(const std::string& path, std::string_view bytes, Existing existing,
                 std::vector<std::string>* remarks) {
    removeLeftTemporaryFiles(pathFromUtf8(path).parent_path());
    auto file = AtomicFile::create(path, existing);
    if (!file) return file.fault();
    if (Status written = file->write(bytes); !written) return written;
    if (Status done = file->commit(); !done) return done;
    if (remarks) *remarks = file->remarks();
    return success();
}

} // namespace telvo
