// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/AtomicFile.h"
#include "base/files.h"
#include "base/sourceDate.h"
#include "table/PointLocale.h"

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <xlsxwriter.h>

/// What the writers of workbooks share.
namespace telvo::table {

/// A workbook under construction in a file. The first thing that goes wrong stays.
class Book {
  public:
    explicit Book(const std::string& path) {
        // Rows go to the file as they are made, so that the memory does not grow with the table.
        lxw_workbook_options options = {LXW_TRUE, nullptr, LXW_FALSE};
        m_book = workbook_new_opt(path.c_str(), &options);
        if (!m_book) m_fault = Fault{"a temporary file cannot be written", path};
        if (m_book) {
            if (const auto date = sourceDate()) {
                lxw_doc_properties properties = {};
                properties.created = static_cast<time_t>(*date);
                check(workbook_set_properties(m_book, &properties), "workbook");
            }
            m_bold = workbook_add_format(m_book);
            format_set_bold(m_bold);
        }
    }
    Book(const Book&) = delete;
    Book& operator=(const Book&) = delete;
    ~Book() {
        if (m_book) workbook_close(m_book);
    }

    lxw_worksheet* addSheet(const char* name) {
        return m_book ? workbook_add_worksheet(m_book, name) : nullptr;
    }
    lxw_format* bold() const { return m_bold; }
    lxw_format* addFormat() { return m_book ? workbook_add_format(m_book) : nullptr; }

    void fail(Fault fault) {
        if (!m_fault) m_fault = std::move(fault);
    }
    void check(lxw_error error, const std::string& where) {
        if (error != LXW_NO_ERROR) fail({lxw_strerror(error), where});
    }
    const std::optional<Fault>& fault() const { return m_fault; }

    void close() {
        if (m_book) check(workbook_close(std::exchange(m_book, nullptr)), "workbook");
    }

  private:
    lxw_workbook* m_book = nullptr;
    lxw_format* m_bold = nullptr;
    std::optional<Fault> m_fault;
};

/// The bytes of a workbook that fill(book) makes.
template <typename Fill>
Result<std::string> bookBytes(Fill&& fill) {
    std::error_code error;
    const auto folder = std::filesystem::temp_directory_path(error);
    // Never committed: the file only holds the workbook until its bytes are read.
    auto scratch = AtomicFile::create(utf8FromPath(folder / "telvo-table.xlsx"));
    if (!scratch) return scratch.fault();
    const std::string path = utf8FromPath(scratch->temporaryPath());
    {
        const PointLocale point;
        Book book(path);
        if (!book.fault()) fill(book);
        book.close();
        if (book.fault()) return *book.fault();
    }
    return readFile(path);
}

} // namespace telvo::table
