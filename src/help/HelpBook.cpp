// SPDX-License-Identifier: GPL-3.0-or-later
#include "help/HelpBook.h"

#include "base/files.h"
#include "base/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace telvo::help {

namespace {

constexpr std::size_t ExcerptBefore = 40; // bytes
constexpr std::size_t ExcerptLength = 140;

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string lowered(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), lower);
    return out;
}

std::vector<std::string> wordsIn(std::string_view text) {
    std::vector<std::string> words;
    std::size_t from = 0;
    while ((from = text.find_first_not_of(" \t\r\n", from)) != std::string_view::npos) {
        const std::size_t to = std::min(text.find_first_of(" \t\r\n", from), text.size());
        words.emplace_back(text.substr(from, to - from));
        from = to;
    }
    return words;
}

/// With one blank between two words.
std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words)
        text.append(text.empty() ? "" : " ").append(word);
    return text;
}

/// The text between tabs; what is missing is empty.
std::array<std::string_view, 4> columnsOf(std::string_view line) {
    std::array<std::string_view, 4> columns;
    for (std::string_view& column : columns) {
        const std::size_t tab = std::min(line.find('\t'), line.size());
        column = line.substr(0, tab);
        line.remove_prefix(std::min(tab + 1, line.size()));
    }
    return columns;
}

/// No piece of a character of several bytes is left at the ends.
std::string excerpt(const std::string& text, std::size_t place) {
    const auto inCharacter = [&](std::size_t i) {
        return i < text.size() && (static_cast<unsigned char>(text[i]) & 0xC0U) == 0x80U;
    };
    std::size_t from = place > ExcerptBefore ? place - ExcerptBefore : 0;
    if (from > 0) from = std::min(text.find(' ', from), place);
    std::size_t to = std::min(from + ExcerptLength, text.size());
    while (inCharacter(from))
        ++from;
    while (inCharacter(to))
        --to;
    return (from > 0 ? "..." : "") + std::string(trimmed(text.substr(from, to - from))) +
           (to < text.size() ? "..." : "");
}

constexpr std::string_view MessageTopics = "Messages";
constexpr std::string_view Anything = "...";

/// Number of characters of `pattern` besides its "..." when `text` holds them in their order, else
/// 0.
std::size_t heldInOrder(std::string_view text, std::string_view pattern) {
    std::size_t held = 0;
    while (!pattern.empty()) {
        const std::size_t gap = std::min(pattern.find(Anything), pattern.size());
        const std::string_view part = pattern.substr(0, gap);
        const std::size_t place = text.find(part);
        if (place == std::string_view::npos) return 0;
        text.remove_prefix(place + part.size());
        pattern.remove_prefix(std::min(gap + Anything.size(), pattern.size()));
        held += part.size();
    }
    return held;
}

} // namespace

Result<HelpBook> HelpBook::open(const std::string& folder) {
    const auto bytes = readFile(folder + "contents.txt");
    if (!bytes) return bytes.fault();
    HelpBook book;
    book.m_folder = folder;
    for (const auto line : splitLines(*bytes))
        book.readLine(line);
    if (book.m_topics.empty()) return Fault{"The help is empty: " + folder, {}};
    std::stable_sort(
        book.m_index.begin(), book.m_index.end(),
        [](const IndexLine& a, const IndexLine& b) { return lowered(a.words) < lowered(b.words); });
    return book;
}

void HelpBook::readLine(std::string_view line) {
    const auto [kind, first, second, third] = columnsOf(line);
    if (kind == "T") {
        Topic topic{1, std::string(second), std::string(third)};
        std::from_chars(first.data(), first.data() + first.size(), topic.level);
        m_topics.push_back(std::move(topic));
    } else if (kind == "K" && !m_topics.empty()) {
        m_index.push_back({std::string(first), std::string(second), m_topics.back().title});
    } else if (kind == "C") {
        m_controls.emplace(first, second);
    }
}

std::size_t HelpBook::find(std::string_view address) const {
    const std::string_view file = address.substr(0, address.find('#'));
    const auto found = std::find_if(m_topics.begin(), m_topics.end(),
                                    [&](const Topic& topic) { return topic.file == file; });
    return found == m_topics.end() ? npos : static_cast<std::size_t>(found - m_topics.begin());
}

std::string HelpBook::addressOf(std::string_view form, std::string_view control) const {
    std::string name = std::string(form).append("/").append(control);
    if (const auto found = m_controls.find(name); found != m_controls.end()) return found->second;
    // One of many alike: "form/txtXcutCenters_*" stands for all of them.
    if (const std::size_t number = name.rfind('_'); number != std::string::npos) {
        name.replace(number + 1, std::string::npos, "*");
        if (const auto found = m_controls.find(name); found != m_controls.end())
            return found->second;
    }
    return {};
}

std::string HelpBook::addressOfLine(std::string_view topicFile, std::string_view line) const {
    std::string text = joined(wordsIn(line));   // columns are as wide as their numbers
    text.erase(0, text.find_first_not_of('*')); // of a footnote
    std::string_view found;
    std::size_t longest = 0;
    for (const IndexLine& entry : m_index) {
        const std::string_view address = entry.address;
        const std::size_t place = address.find('#');
        if (place == std::string_view::npos || address.substr(0, place) != topicFile) continue;
        const std::string_view words =
            std::string_view(entry.words).substr(0, entry.words.find(" of a "));
        if (words.size() <= longest || !text.starts_with(words)) continue;
        found = address;
        longest = words.size();
    }
    return std::string(found);
}

std::string HelpBook::addressOfMessage(std::string_view message) const {
    std::string found;
    std::size_t most = 0;
    for (const IndexLine& entry : m_index) {
        if (!entry.address.starts_with(MessageTopics)) continue;
        const std::size_t held = heldInOrder(message, entry.words);
        if (held <= most) continue;
        found = entry.address;
        most = held;
    }
    return found;
}

void HelpBook::readTexts() {
    m_texts.resize(m_topics.size());
    m_words.resize(m_topics.size());
    for (const IndexLine& line : m_index)
        if (const std::size_t topic = find(line.address); topic != npos)
            m_words[topic].append(lowered(line.words)).append("\n");
    const auto bytes = readFile(m_folder + "search.txt");
    if (!bytes) return; // the titles are searched all the same
    for (const auto line : splitLines(*bytes)) {
        const auto columns = columnsOf(line);
        if (const std::size_t topic = find(columns[0]); topic != npos) m_texts[topic] = columns[1];
    }
}

std::vector<SearchHit> HelpBook::search(std::string_view text) {
    if (m_texts.empty()) readTexts();
    const std::vector<std::string> words = wordsIn(lowered(text));
    const std::string phrase = lowered(trimmed(text));
    std::vector<SearchHit> named, inText;
    for (std::size_t i = 0; i < m_topics.size() && !words.empty(); ++i) {
        const std::string title = lowered(m_topics[i].title);
        const std::string body = lowered(m_texts[i]);
        const auto in = [](const std::string& where) {
            return
                [&where](const std::string& word) { return where.find(word) != std::string::npos; };
        };
        if (!std::all_of(words.begin(), words.end(), [&](const std::string& word) {
                return in(title)(word) || in(m_words[i])(word) || in(body)(word);
            }))
            continue;
        std::size_t place = body.size();
        for (const std::string& word : words)
            place = std::min(place, body.find(word));
        const bool first =
            std::any_of(words.begin(), words.end(), in(title)) || in(m_words[i])(phrase);
        (first ? named : inText)
            .push_back({i, excerpt(m_texts[i], place == body.size() ? 0 : place)});
    }
    named.insert(named.end(), inText.begin(), inText.end());
    return named;
}

} // namespace telvo::help
