// SPDX-License-Identifier: GPL-3.0-or-later
// Links and pictures are checked while the help is made; here what the program expects of it.
#include "base/files.h"
#include "base/text.h"
#include "explain/Working.h"
#include "help/HelpBook.h"
#include "library/resourceList.h"
#include "project/CaseFile.h"
#include "project/inputFields.h"
#include "report/sections.h"
#include "run/caseRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <set>

namespace telvo::help {
namespace {

namespace fs = std::filesystem;

struct Docs : testing::Test {
    HelpBook book = *HelpBook::open(TELVO_HELP_DIR);

    bool inIndex(std::string_view words) const {
        return std::any_of(book.index().begin(), book.index().end(),
                           [&](const IndexLine& line) { return line.words == words; });
    }
    static std::string page(const std::string& address) {
        return *readFile(TELVO_HELP_DIR + address.substr(0, address.find('#')));
    }
};

TEST_F(Docs, EveryFieldHasATopicWithTheRangeThatTheProgramChecks) {
    for (const project::InputField& row : project::InputFields) {
        if (!row.isTextBox()) continue;
        const bool distances = row.isDistances();
        const std::string control = project::controlOf({row.id, distances ? 9 : 0});
        const std::string address = book.addressOf("frmTELVOParm", control);
        ASSERT_NE(book.find(address), HelpBook::npos) << control;
        const std::string valid(row.valid);
        EXPECT_NE(page(address).find(distances ? valid : "<td>" + valid + "</td>"),
                  std::string::npos)
            << control << ": " << valid;
    }
}

TEST_F(Docs, EveryInputOfTheRecordStandsInTheIndex) {
    int inputs = 0;
    const project::ProjectInput input;
    project::visitInputFields(input, [&](const char* name, project::FieldKind, const auto&) {
        ++inputs;
        EXPECT_TRUE(inIndex(name)) << name;
    });
    EXPECT_EQ(inputs, 31);
}

/// All of the windows' sources in one text.
std::string sources() {
    std::string all;
    for (const auto& entry : fs::recursive_directory_iterator(TELVO_SOURCE_DIR))
        if (entry.path().extension() == ".cpp" || entry.path().extension() == ".h")
            all += *readFile(entry.path().string());
    return all;
}

TEST_F(Docs, EveryFormHasATopicAndEveryTopicThatAFormNamesIsThere) {
    const std::regex form("\"(frm[A-Z]\\w+)\""), topic("\"(\\w+\\.htm)\"");
    std::set<std::string> forms, topics;
    const std::string text = sources();
    const auto collect = [&](const std::regex& pattern, std::set<std::string>& found) {
        for (std::sregex_iterator i(text.begin(), text.end(), pattern), end; i != end; ++i)
            found.insert((*i)[1]);
    };
    collect(form, forms);
    collect(topic, topics);
    EXPECT_GT(forms.size(), 12U);
    for (const std::string& name : forms)
        EXPECT_TRUE(inIndex(name)) << name;
    EXPECT_GT(topics.size(), 10U);
    for (const std::string& name : topics)
        EXPECT_NE(book.find(name), HelpBook::npos) << name;
}

/// The labels of a page: what stands before dots, and the names of the barriers' load table.
std::set<std::string> labelsOf(const std::string& page) {
    static const std::set<std::string> loads = {"Tributary Area",   "Front Abutment",
                                                "Side Abutment",    "Pressure Arch",
                                                "Stability Factor", "LTRANSBAR"};
    std::set<std::string> labels;
    for (const auto line : splitLines(page)) {
        const std::size_t dots = line.find("..");
        const std::string label(trimmed(line.substr(0, std::min<std::size_t>(dots, 20))));
        if (dots == std::string_view::npos && loads.contains(label))
            labels.insert(label);
        else if (dots != std::string_view::npos && dots > 0)
            labels.emplace(trimmed(line.substr(0, std::min(dots, line.find(" #")))));
    }
    return labels;
}

TEST_F(Docs, EveryLineOfTheReportStandsInTheIndex) {
    std::set<std::string> labels;
    for (const char* folder : {TELVO_EXAMPLES_DIR, TELVO_CASES_DIR})
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            if (entry.path().extension() != ".TLV") continue;
            project::ProjectCase current;
            project::readCaseFile(entry.path().string(), current);
            const auto outcome = run::runCase(current);
            if (const auto* run = std::get_if<run::Run>(&outcome))
                for (const std::string& page : report::makeReport(*run).pages)
                    labels.merge(labelsOf(page));
        }
    EXPECT_GT(labels.size(), 50U);
    for (const std::string& label : labels)
        EXPECT_TRUE(inIndex(label)) << label;
}

TEST_F(Docs, EveryLineOfTheReportThatHasAValueLeadsToItsPlace) {
    project::ProjectCase current;
    int lines = 0;
    for (const char* file :
         {"two-side-gobs.TLV", "bleeder-rows-c-d.TLV", "metric-manual-arch.TLV"}) {
        project::readCaseFile(TELVO_EXAMPLES_DIR + ("/" + std::string(file)), current);
        const auto outcome = run::runCase(current);
        const auto pages = report::makeReport(std::get<run::Run>(outcome)).pages;
        for (std::size_t page = 0; page < pages.size(); ++page) {
            const std::string topic = "ReportPage" + std::to_string(page) + ".htm";
            for (const auto line : splitLines(pages[page])) {
                if (line.find("..") == std::string_view::npos && !line.starts_with('[')) continue;
                if (page == 0 && line.starts_with('[') &&
                    line.find("Gob]") == std::string_view::npos)
                    continue; // headings of the input
                ++lines;
                if (line.starts_with('[') && line.find("GOB") == std::string_view::npos) continue;
                EXPECT_NE(book.addressOfLine(topic, line), "") << topic << ": " << line;
            }
        }
    }
    EXPECT_GT(lines, 150);
}

TEST_F(Docs, TheSearchFindsWhatUsersAskFor) {
    for (const char* words :
         {"safety factor", "factor of safety", "goaf", "getting started", "quick start", "backup",
          "batch", "error", "shortcut", "screenshot", "density", "calibration", "recovery"})
        EXPECT_FALSE(book.search(words).empty()) << words;
}

/// The first part of a name that is not "inputs", without a pass: "TELVOSF.retreat" is TELVOSF.
std::string quantityOf(std::string key) {
    if (key.starts_with("inputs.")) key.erase(0, 7);
    return key.substr(0, key.find_first_of(".@"));
}

/// "C2" is the C of pillar 2, but "S1" a symbol of its own.
bool listed(const std::string& list, std::string symbol) {
    if (list.find("| `" + symbol + "` |") != std::string::npos) return true;
    while (!symbol.empty() && symbol.back() >= '0' && symbol.back() <= '9')
        symbol.pop_back();
    return list.find("| `" + symbol + "` |") != std::string::npos;
}

TEST(TheoryManual, ListsEverySymbolAndQuantityOfTheWorking) {
    const std::string list = *readFile(TELVO_DOCS_DIR "/theory/11-symbols.md");
    std::set<std::string> symbols, quantities;
    for (const char* folder : {TELVO_EXAMPLES_DIR, TELVO_CASES_DIR})
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            if (entry.path().extension() != ".TLV") continue;
            project::ProjectCase current;
            project::readCaseFile(entry.path().string(), current);
            const auto outcome = run::runCase(current);
            const auto* run = std::get_if<run::Run>(&outcome);
            if (!run) continue;
            for (const auto& chapter : explain::explain(*run, {}))
                for (const explain::Step& step : chapter.steps) {
                    if (!step.symbol.empty()) symbols.insert(step.symbol);
                    quantities.insert(quantityOf(step.key));
                }
        }
    EXPECT_GT(symbols.size(), 80U);
    for (const std::string& symbol : symbols)
        EXPECT_TRUE(listed(list, symbol)) << symbol;
    for (const std::string& quantity : quantities)
        EXPECT_NE(list.find("`" + quantity + "`"), std::string::npos) << quantity;
}

TEST_F(Docs, NoTopicIsEmpty) {
    for (const Topic& topic : book.topics())
        EXPECT_FALSE(book.search(topic.title).empty()) << topic.title;
    EXPECT_GT(book.topics().size(), 80U);
}

TEST(Documents, EveryOneOfTheListIsMade) {
    const std::string folder = TELVO_DOCUMENTS_DIR;
    const auto list = library::readResourceList(folder + std::string(library::ResourceListFile));
    ASSERT_TRUE(list) << list.fault().message;
    EXPECT_EQ(list->size(), 9U);
    for (const library::Resource& document : *list) {
        const auto bytes = readFile(folder + document.file);
        ASSERT_TRUE(bytes) << document.file;
        EXPECT_TRUE(bytes->starts_with(library::isTable(document.file) ? "PK" : "%PDF"))
            << document.file;
    }
}

} // namespace
} // namespace telvo::help
