// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Result.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace telvo::help {

/// One page of the help.
struct Topic {
    int level = 1;    ///< depth in the contents, 1 for a chapter
    std::string file; ///< "EntryHeight.htm"
    std::string title;
};

/// One line of the index. Several places may stand under the same words.
struct IndexLine {
    std::string words;
    std::string address; ///< "ReportPage2.htm#amz-area"
    std::string title;   ///< of its topic
};

/// A topic that a search found.
struct SearchHit {
    std::size_t topic = 0; ///< position in topics()
    std::string excerpt;   ///< the words around the first place, one line
};

/// The help as it lies in its folder: contents, index, the way from a control to its topic, search.
class HelpBook {
  public:
    /// Reads "contents.txt" of a folder that ends in the separator of the system.
    static Result<HelpBook> open(const std::string& folder);

    const std::string& folder() const { return m_folder; }
    const std::vector<Topic>& topics() const { return m_topics; }
    const std::vector<IndexLine>& index() const { return m_index; }

    /// Position of the topic an address leads to, with or without "#place"; npos: there is none.
    std::size_t find(std::string_view address) const;
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    /// Where F1 on a control of a form leads; "" where nothing is said about it.
    std::string addressOf(std::string_view form, std::string_view control) const;

    /// Where a printed line is explained on a topic: the place whose index words, without an
    /// " of a ..." behind them, are the longest with which the line begins; "" for none.
    std::string addressOfLine(std::string_view topicFile, std::string_view line) const;

    /// Where a message is explained: the line of the index on a topic called "Messages..." whose
    /// words the message holds in their order, "..." standing for anything; of several the one with
    /// most of them, "" for none.
    std::string addressOfMessage(std::string_view message) const;

    /// Topics that hold every word of the text, in their title, index words or text, upper and
    /// lower case alike. First come those with a word in the title or with the whole text in a line
    /// of the index. The texts are read by the first search.
    std::vector<SearchHit> search(std::string_view text);

  private:
    void readLine(std::string_view line);
    void readTexts();

    std::string m_folder;
    std::vector<Topic> m_topics;
    std::vector<IndexLine> m_index;
    std::map<std::string, std::string, std::less<>> m_controls;
    std::vector<std::string> m_texts; ///< one per topic
    std::vector<std::string> m_words; ///< index words of each topic in small letters, a line each
};

} // namespace telvo::help
