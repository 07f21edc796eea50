// SPDX-License-Identifier: GPL-3.0-or-later
//
// A workbook as the packed file that it is.
#include "table/workbookReader.h"

#include <zip.h>

#include <algorithm>
#include <memory>

namespace telvo::table {

namespace {

struct ErrorText {
    zip_error_t error{};
    ErrorText() { zip_error_init(&error); }
    ErrorText(const ErrorText&) = delete;
    ~ErrorText() { zip_error_fini(&error); }
    std::string text() { return zip_error_strerror(&error); }
};

/// A part while it is unpacked. All parts together may not grow beyond the limit.
class ZipPart {
  public:
    ZipPart(zip_file_t* part, const zip_stat_t& stat, std::uint64_t packedAtMost,
            std::shared_ptr<std::uint64_t> unpacked)
        : m_part(part, zip_fclose), m_packed(std::min<std::uint64_t>(stat.comp_size, packedAtMost)),
          m_unpacked(std::move(unpacked)) {}

    Result<std::size_t> read(char* into, std::size_t size) {
        const auto got = zip_fread(m_part.get(), into, size);
        if (got < 0)
            return Fault{"is damaged: " + std::string(zip_file_strerror(m_part.get())), {}};
        m_own += static_cast<std::uint64_t>(got);
        *m_unpacked += static_cast<std::uint64_t>(got);
        if (*m_unpacked > MaxUnpackedBytes)
            return Fault{"the workbook unpacks to more than " +
                             std::to_string(MaxUnpackedBytes >> 20) + " MB and is not read",
                         {}};
        // Counted as it comes: what the file says of its sizes may be a lie.
        if (m_own > FreeRatioBytes && m_own / MaxUnpackedRatio > m_packed)
            return Fault{"unpacks to more than " + std::to_string(MaxUnpackedRatio) +
                             " times its size and is not read",
                         {}};
        return static_cast<std::size_t>(got);
    }

  private:
    std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> m_part;
    std::uint64_t m_packed;
    std::uint64_t m_own = 0;
    std::shared_ptr<std::uint64_t> m_unpacked;
};

constexpr std::size_t MaxParts = 10'000;

/// Number of entries in the directory of a packed file, at most; the library takes some hundred
/// bytes of memory for each before it tells their number.
std::size_t entryCount(std::string_view bytes) {
    constexpr std::string_view mark = "PK\x01\x02";
    std::size_t count = 0;
    for (auto at = bytes.find(mark); at != std::string_view::npos && count <= MaxParts;
         at = bytes.find(mark, at + mark.size()))
        ++count;
    return count;
}

} // namespace

Result<CaseTable> readWorkbook(std::string_view bytes, const std::string& file,
                               const ReadWatch& watch) {
    if (bytes.starts_with("\xD0\xCF\x11\xE0"))
        return Fault{"is an old workbook (.xls) or one with a password; save it as .xlsx without a "
                     "password",
                     file};
    if (entryCount(bytes) > MaxParts) return Fault{"has too many parts for a workbook", file};
    ErrorText error;
    zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error.error);
    zip_t* opened = source ? zip_open_from_source(source, ZIP_RDONLY, &error.error) : nullptr;
    if (!opened) {
        zip_source_free(source);
        return Fault{"is not an XLSX workbook, or damaged: " + error.text(), file};
    }
    const std::unique_ptr<zip_t, void (*)(zip_t*)> archive(opened, zip_discard);
    const auto unpacked = std::make_shared<std::uint64_t>(0);
    const auto parts = [&](const std::string& name) -> Result<std::optional<PartReader>> {
        zip_stat_t stat;
        zip_stat_init(&stat);
        if (zip_stat(archive.get(), name.c_str(), ZIP_FL_NOCASE, &stat) != 0)
            return std::optional<PartReader>();
        zip_file_t* part = zip_fopen_index(archive.get(), stat.index, 0);
        if (!part) {
            const bool locked = (stat.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 &&
                                stat.encryption_method != ZIP_EM_NONE;
            return Fault{locked ? "is encrypted; save the workbook without a password"
                                : "is damaged: " + std::string(zip_strerror(archive.get())),
                         {}};
        }
        auto reader = std::make_shared<ZipPart>(part, stat, bytes.size(), unpacked);
        return std::optional<PartReader>(
            [reader](char* into, std::size_t size) { return reader->read(into, size); });
    };
    return readWorkbookParts(parts, file, watch);
}

} // namespace telvo::table
