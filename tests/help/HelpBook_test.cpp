// SPDX-License-Identifier: GPL-3.0-or-later
#include "help/HelpBook.h"

#include "base/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace telvo::help {
namespace {

struct Book : testing::Test {
    test::TemporaryFolder folder;
    HelpBook made() const {
        folder.put("contents.txt", "T\t1\tPanel.htm\tThe panel\n"
                                   "T\t2\tDepth.htm\tDepth of Cover\n"
                                   "K\tzone\tDepth.htm#zone\n"
                                   "K\tAbutment\tDepth.htm\n"
                                   "C\tfrmParm/txtDepth\tDepth.htm\n"
                                   "C\tfrmParm/txtCenters_*\tPanel.htm#centers\n");
        folder.put("search.txt", "Panel.htm\tThe pillars of a panel, its depth and 21\xC2\xB0.\n"
                                 "Depth.htm\tOverburden above the pillars.\n");
        auto book = HelpBook::open(folder.root);
        EXPECT_TRUE(book);
        return std::move(*book);
    }
};

TEST_F(Book, ControlsLeadToTheirPlaceAndOneOfManyToThatOfAll) {
    const HelpBook book = made();
    EXPECT_EQ(book.addressOf("frmParm", "txtDepth"), "Depth.htm");
    EXPECT_EQ(book.addressOf("frmParm", "txtCenters_12"), "Panel.htm#centers");
    EXPECT_EQ(book.addressOf("frmOther", "txtDepth"), "") << "the same name in another form";
    EXPECT_EQ(book.addressOf("frmParm", "txtCenters"), "");
    EXPECT_EQ(book.find("Panel.htm#centers"), 0U);
    EXPECT_EQ(book.find("Pan"), HelpBook::npos);
}

TEST_F(Book, TheIndexIsSortedWithoutRegardToCase) {
    const HelpBook book = made();
    ASSERT_EQ(book.index().size(), 2U);
    EXPECT_EQ(book.index()[0].words, "Abutment");
    EXPECT_EQ(book.index()[1].address, "Depth.htm#zone");
    EXPECT_EQ(book.index()[1].title, "Depth of Cover");
}

TEST_F(Book, SearchWantsEveryWordAndPutsTitlesFirst) {
    HelpBook book = made();
    const auto depth = book.search("DEPTH");
    ASSERT_EQ(depth.size(), 2U);
    EXPECT_EQ(book.topics()[depth[0].topic].file, "Depth.htm");
    EXPECT_EQ(depth[1].excerpt, "The pillars of a panel, its depth and 21\xC2\xB0.");
    EXPECT_EQ(book.search("pillars overburden").size(), 1U);
    EXPECT_TRUE(book.search("pillars tunnel").empty());
    EXPECT_TRUE(book.search("  ").empty());
}

TEST_F(Book, SearchFindsTheWordsOfTheIndexToo) {
    HelpBook book = made();
    const auto found = book.search("Zone");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(book.topics()[found[0].topic].file, "Depth.htm");
    EXPECT_EQ(book.search("zone overburden").size(), 1U)
        << "one word of the index, one of the text";
}

TEST_F(Book, APrintedLineLeadsToTheLongestWordsItBeginsWith) {
    folder.put("contents.txt", "T\t1\tPage4.htm\tPage 4\n"
                               "K\tTOTAL\tPage4.htm#total\n"
                               "K\tTOTAL LOAD of a remnant\tPage4.htm#load\n"
                               "K\tTOTAL LOAD\tPage5.htm#load\n"
                               "K\tpage 4\tPage4.htm\n");
    const HelpBook book = *HelpBook::open(folder.root);
    EXPECT_EQ(book.addressOfLine("Page4.htm", "  TOTAL      4.33E+06"), "Page4.htm#total");
    EXPECT_EQ(book.addressOfLine("Page4.htm", " TOTAL    LOAD     1"), "Page4.htm#load");
    EXPECT_EQ(book.addressOfLine("Page4.htm", "page 4"), "") << "words of the page, not of a place";
    EXPECT_EQ(book.addressOfLine("Page4.htm", "*TOTAL of it"), "Page4.htm#total");
    EXPECT_EQ(book.addressOfLine("Page4.htm", "***"), "");
    EXPECT_EQ(book.addressOfLine("Page4.htm", ""), "");
}

TEST_F(Book, AMessageLeadsToTheEntryThatSaysMostOfIt) {
    folder.put("contents.txt", "T\t1\tMessages.htm\tMessages\n"
                               "T\t2\tMessagesFiles.htm\tFiles\n"
                               "K\t...: the file exists...\tMessagesFiles.htm#exists\n"
                               "K\tInvalid ...\tMessages.htm#invalid\n"
                               "K\tInvalid center-to-center distance #...\tMessages.htm#center\n"
                               "K\tthe file\tDepth.htm#file\n");
    const HelpBook book = *HelpBook::open(folder.root);
    EXPECT_EQ(book.addressOfMessage("a.TLV: the file exists; --force overwrites it"),
              "MessagesFiles.htm#exists");
    EXPECT_EQ(book.addressOfMessage("Invalid center-to-center distance #3"), "Messages.htm#center");
    EXPECT_EQ(book.addressOfMessage("Invalid entry height"), "Messages.htm#invalid");
    EXPECT_EQ(book.addressOfMessage("the file is gone"), "");
}

TEST_F(Book, AnExcerptIsCutBetweenCharacters) {
    std::string text = "Panel.htm\t";
    for (int i = 0; i < 200; ++i)
        text += "\xC2\xB0";
    HelpBook book = made();
    folder.put("search.txt", text + " word " + text.substr(10) + "\n");
    const auto found = book.search("word");
    ASSERT_EQ(found.size(), 1U);
    const std::string& cut = found[0].excerpt;
    for (std::size_t i = cut.find('\xC2'); i < cut.size(); i = cut.find('\xC2', i + 1))
        EXPECT_EQ(cut.at(i + 1), '\xB0');
    EXPECT_EQ(cut.find("...\xB0"), std::string::npos);
}

TEST_F(Book, AMissingOrEmptyHelpIsAFault) {
    EXPECT_EQ(faultText(HelpBook::open(folder.root).fault()),
              "Requested File not found: " + folder.root + "contents.txt");
    folder.put("contents.txt", "\n\nnonsense\tT\n");
    EXPECT_FALSE(HelpBook::open(folder.root));
}

} // namespace
} // namespace telvo::help
