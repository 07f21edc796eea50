// SPDX-License-Identifier: GPL-3.0-or-later
#include "table/exactNumbers.h"

#include <algorithm>
#include <memory>
#include <vector>
#include <zip.h>

namespace telvo::table {

namespace {

constexpr std::string_view TextStart = "\" t=\"inlineStr\"><is><t>";
constexpr std::string_view TextEnd = "</t></is></c>";
constexpr std::size_t DigitsOfLibrary = 16;
constexpr zip_uint32_t QuickPacking = 2; // of 9: the slowest step of a large table

bool isHex(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

bool looksEscaped(std::string_view text) {
    return text.size() >= 7 && text[0] == '_' && text[1] == 'x' && text[6] == '_' &&
           std::all_of(text.begin() + 2, text.begin() + 6, isHex);
}

std::string marksReplaced(std::string_view sheet) {
    const std::string start = std::string(TextStart) + std::string(ExactNumberMark);
    std::string out;
    out.reserve(sheet.size());
    std::size_t done = 0;
    for (auto mark = sheet.find(start); mark != std::string_view::npos;
         mark = sheet.find(start, done)) {
        const auto digits = mark + start.size();
        const auto end = std::min(sheet.find(TextEnd, digits), sheet.size());
        out += sheet.substr(done, mark - done);
        out += "\"><v>";
        out += sheet.substr(digits, end - digits);
        out += "</v></c>";
        done = std::min(end + TextEnd.size(), sheet.size());
    }
    return out += sheet.substr(done);
}

Fault zipFault(zip_error_t* error) {
    return {std::string("the workbook cannot be packed: ") + zip_error_strerror(error), {}};
}

} // namespace

bool needsExactNumber(std::string_view shortest) {
    const auto mantissa = shortest.substr(0, shortest.find('E'));
    return std::count_if(mantissa.begin(), mantissa.end(), [](char c) {
               return c >= '0' && c <= '9';
           }) > static_cast<std::ptrdiff_t>(DigitsOfLibrary);
}

std::string escapedText(std::string_view text) {
    std::string out;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto rest = text.substr(at);
        if (looksEscaped(rest)) out += "_x005F";
        if (rest.starts_with("\xEF\xBF\xBE") || rest.starts_with("\xEF\xBF\xBF")) {
            // The two characters of Unicode that XML does not have.
            out += rest[2] == '\xBE' ? "_xFFFE_" : "_xFFFF_";
            at += 2;
            continue;
        }
        out += text[at];
    }
    return out;
}

Result<std::string> withExactNumbers(std::string_view workbook, std::size_t sheets) {
    zip_error_t error;
    zip_error_init(&error);
    const std::unique_ptr<zip_error_t, void (*)(zip_error_t*)> errorEnd(&error, zip_error_fini);
    zip_source_t* made = zip_source_buffer_create(workbook.data(), workbook.size(), 0, &error);
    if (!made) return zipFault(&error);
    zip_source_keep(made); // the archive takes one hold of it, the reading below another
    const std::unique_ptr<zip_source_t, void (*)(zip_source_t*)> packed(made, zip_source_free);
    zip_t* opened = zip_open_from_source(packed.get(), 0, &error);
    if (!opened) {
        zip_source_free(packed.get());
        return zipFault(&error);
    }
    std::unique_ptr<zip_t, void (*)(zip_t*)> archive(opened, zip_discard);

    zip_stat_t stat;
    std::vector<std::string> contents(sheets); // held until the archive is closed
    for (std::size_t n = 0; n < sheets; ++n) {
        const std::string part = "xl/worksheets/sheet" + std::to_string(n + 1) + ".xml";
        std::string& sheet = contents[n];
        zip_stat_init(&stat);
        if (zip_stat(opened, part.c_str(), 0, &stat) != 0) return zipFault(zip_get_error(opened));
        sheet.resize(static_cast<std::size_t>(stat.size));
        {
            const std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> file(
                zip_fopen_index(opened, stat.index, 0), zip_fclose);
            if (!file) return zipFault(zip_get_error(opened));
            if (zip_fread(file.get(), sheet.data(), sheet.size()) !=
                static_cast<zip_int64_t>(sheet.size()))
                return zipFault(zip_file_get_error(file.get()));
        }
        if (sheet.find(ExactNumberMark) == std::string::npos) continue;
        sheet = marksReplaced(sheet);
        zip_source_t* content = zip_source_buffer(opened, sheet.data(), sheet.size(), 0);
        if (!content || zip_file_replace(opened, stat.index, content, 0) != 0) {
            zip_source_free(content);
            return zipFault(zip_get_error(opened));
        }
        if (zip_set_file_compression(opened, stat.index, ZIP_CM_DEFLATE, QuickPacking) != 0)
            return zipFault(zip_get_error(opened));
    }
    if (zip_close(opened) != 0) return zipFault(zip_get_error(opened)); // and is discarded
    (void)archive.release();

    zip_stat_init(&stat);
    if (zip_source_stat(packed.get(), &stat) != 0 || zip_source_open(packed.get()) != 0)
        return zipFault(zip_source_error(packed.get()));
    std::string out(static_cast<std::size_t>(stat.size), '\0');
    const auto got = zip_source_read(packed.get(), out.data(), out.size());
    zip_source_close(packed.get());
    if (got != static_cast<zip_int64_t>(out.size()))
        return zipFault(zip_source_error(packed.get()));
    return out;
}

} // namespace telvo::table
