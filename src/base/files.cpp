// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>

namespace telvo {

namespace fs = std::filesystem;

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, CloseFile>;

OpenFile openForReading(const fs::path& path) {
#ifdef _WIN32
    return OpenFile(_wfopen(path.c_str(), L"rb"));
#else
    return OpenFile(std::fopen(path.c_str(), "rb"));
#endif
}

Fault readFault(const std::string& path, int error) {
    if (error == ENOENT || error == ENOTDIR) return {"Requested File not found: " + path, ""};
    return {"cannot be read: " + std::generic_category().message(error), path};
}

} // namespace

fs::path pathFromUtf8(std::string_view utf8) {
    return fs::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string utf8FromPath(const fs::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

Result<std::string> readFile(const std::string& path) {
    if (path.find('\0') != std::string::npos)
        return Fault{"the file name holds a NUL character", path.substr(0, path.find('\0'))};
    const fs::path file = pathFromUtf8(path);
    std::error_code error;
    if (fs::is_directory(file, error)) return Fault{"cannot be read: it is a directory", path};

    errno = 0;
    const OpenFile input = openForReading(file);
    if (!input) return readFault(path, errno);
    std::string bytes;
    // Reading in growing steps keeps the memory within the size of what is really there.
    std::size_t step = std::size_t{16} << 10;
    for (;;) {
        const std::size_t had = bytes.size();
        bytes.resize(had + step);
        const std::size_t got = std::fread(bytes.data() + had, 1, step, input.get());
        bytes.resize(had + got);
        if (bytes.size() > MaxFileBytes)
            return Fault{"is larger than " + std::to_string(MaxFileBytes >> 20) + " MB", path};
        if (got < step) break;
        step = std::min(bytes.size(), MaxFileBytes + 1 - bytes.size());
    }
    if (std::ferror(input.get())) return readFault(path, errno);
    return bytes;
}

Status writeFile(const std::string& path, std::string_view bytes) {
    auto file = AtomicFile::create(path);
    if (!file) return file.fault();
    if (Status written = file->write(bytes); !written) return written;
    return file->commit();
}

} // namespace telvo
