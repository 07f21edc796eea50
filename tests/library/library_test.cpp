// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/TemporaryFolder.h"
#include "library/resourceList.h"
#include "library/viewedFile.h"

#include <gtest/gtest.h>

namespace telvo::library {
namespace {

TEST(ViewedFile, ShowsTextsOfAllLineEndsAndRefusesTheRest) {
    const test::TemporaryFolder folder;
    const auto shown = [](const std::string& path) {
        const auto read = readForView(path);
        return read ? *read : "! " + read.fault().message;
    };
    EXPECT_EQ(shown(folder.put("a", "\xEF\xBB\xBFone\r\ntwo\n\nthree")), "one\ntwo\n\nthree\n");
    EXPECT_EQ(shown(folder.put("b", "90\xB0 caf\xE9\r")), "90° café\n"); // Windows-1252
    EXPECT_EQ(shown(folder.put("c", "")), "");
    EXPECT_EQ(shown(folder.put("d", "end\x1A")), "end\x1A\n");
    EXPECT_EQ(shown(folder.put("e", std::string("PK\0\1", 4))), "! The file is not a text file");
    EXPECT_EQ(shown(folder.put("f", "\1\2\3\4 some words")), "! The file is not a text file");
    EXPECT_EQ(shown(folder.root), "! This is not a file that can be shown");
#ifndef _WIN32
    EXPECT_EQ(shown("/dev/zero"), "! This is not a file that can be shown");
#endif
    const std::string missing = folder.root + "none";
    EXPECT_EQ(shown(missing), "! Requested File not found: " + missing);
    EXPECT_EQ(shown(folder.put("whole", std::string(MaxViewedBytes, 'x'))).size(),
              MaxViewedBytes + 1);
    EXPECT_EQ(shown(folder.put("large", std::string(MaxViewedBytes + 1, 'x'))),
              "! The file has 11 MB; files above 10 MB are not shown");
}

TEST(ViewedFile, FiltersAreOfferedAndTyped) {
    const auto filters = browseFilters("TLV");
    ASSERT_EQ(filters.size(), 4U);
    EXPECT_EQ(filters[0].label, "Project Files (*.TLV)");
    EXPECT_EQ(filters[1].patterns, "*.KRV");
    EXPECT_EQ(browseFilters("").size(), 3U);
    using Patterns = std::vector<std::string>;
    EXPECT_EQ(typedPatterns(" *.txt;*.log , dat .out"),
              (Patterns{"*.txt", "*.log", "*.dat", "*.out"}));
    EXPECT_EQ(typedPatterns("panel.TLV"), Patterns{"panel.TLV"});
    EXPECT_EQ(typedPatterns(" ; "), Patterns{"*"});
}

TEST(ResourceList, NamesDocumentsOfItsOwnFolderOnly) {
    const auto read = readResourceText("# documents\r\n\r\nTELVO.PDF; Program manual\n"
                                       "Cases.xlsx ;Case table; template",
                                       "list");
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, (std::vector<Resource>{{"TELVO.PDF", "Program manual"},
                                            {"Cases.xlsx", "Case table; template"}}));
    EXPECT_TRUE(isTable("Cases.XLSX"));
    EXPECT_FALSE(isTable("TELVO.PDF"));
    for (const std::string line :
         {"TELVO.PDF", ";title", "a;", "../a;b", "/etc/passwd;b", "c:\\a;b", "..;b"}) {
        const auto refused = readResourceText("x;y\n" + line, "list");
        ASSERT_FALSE(refused) << line;
        EXPECT_EQ(refused.fault().where, "list, line 2") << line;
    }
    std::string many;
    for (std::size_t i = 0; i <= MaxResources; ++i)
        many += "a;b\n";
    EXPECT_FALSE(readResourceText(many, "list"));
}

} // namespace
} // namespace telvo::library
