// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/temporaryFiles.h"

#include "base/files.h"
#include "base/text.h"

#include <charconv>
#include <chrono>
#include <optional>
#include <string_view>
#include <system_error>

namespace telvo {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view TemporaryEnding = ".tmp";
constexpr auto LongestOfStrangers = std::chrono::hours(24);

std::string hexadecimal(unsigned number) {
    char digits[8];
    const auto end = std::to_chars(digits, digits + sizeof digits, number, 16).ptr;
    return std::string(digits, end);
}

template <typename Number>
bool readWhole(std::string_view text, Number& number, int base) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return error == std::errc() && end == text.data() + text.size();
}

/// What the name of a temporary file tells of the process that made it.
struct Maker {
    unsigned long process = 0;
    std::optional<unsigned> space; ///< older versions did not tell it
};

/// Of ".NAME.PROCESS-COUNT-SPACE.tmp" or ".NAME.PROCESS-COUNT.tmp"; nothing for other names.
std::optional<Maker> makerOf(std::string_view name) {
    if (!name.starts_with('.') || !name.ends_with(TemporaryEnding)) return std::nullopt;
    name.remove_suffix(TemporaryEnding.size());
    const auto point = name.rfind('.');
    if (point == 0) return std::nullopt; // has no NAME
    name.remove_prefix(point + 1);
    const auto first = name.find('-');
    if (first == std::string_view::npos) return std::nullopt;
    const auto second = name.find('-', first + 1);
    Maker maker;
    int count = 0;
    if (!readWhole(name.substr(0, first), maker.process, 10)) return std::nullopt;
    if (!readWhole(name.substr(first + 1, second - first - 1), count, 10)) return std::nullopt;
    if (second == std::string_view::npos) return maker;
    unsigned space = 0;
    if (!readWhole(name.substr(second + 1), space, 16)) return std::nullopt;
    maker.space = space;
    return maker;
}

bool isLeft(const fs::directory_entry& file) {
    const auto maker = makerOf(utf8FromPath(file.path().filename()));
    if (!maker || !processes::isOwnFile(file.path())) return false;
    if (maker->space == processes::processSpace()) return !processes::isRunning(maker->process);
    std::error_code error;
    const auto written = file.last_write_time(error);
    return !error && fs::file_time_type::clock::now() - written > LongestOfStrangers;
}

} // namespace

std::string temporaryName(const std::string& name, int count) {
    // Only part of the name is kept: a longest possible name leaves no room for the rest. A cut
    // character would be no UTF-8, which some file systems refuse.
    constexpr std::size_t longest = 50;
    const std::string stem =
        isValidUtf8(name) ? name.substr(0, characterOffset(name, longest)) : name.substr(0, 100);
    return "." + stem + "." + std::to_string(processes::processNumber()) + "-" +
           std::to_string(count) + "-" + hexadecimal(processes::processSpace()) +
           std::string(TemporaryEnding);
}

std::size_t removeLeftTemporaryFiles(const fs::path& folder) {
    std::size_t removed = 0;
    std::error_code error;
    for (fs::directory_iterator file(folder.empty() ? fs::path(".") : folder, error), end;
         !error && file != end; file.increment(error)) {
        std::error_code kept;
        if (isLeft(*file) && fs::remove(file->path(), kept)) ++removed;
    }
    return removed;
}

} // namespace telvo
