// SPDX-License-Identifier: GPL-3.0-or-later
#include "explain/Working.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <set>
#include <utility>

namespace telvo::explain {

namespace {

/// Letters to insert, drop or change until the one is the other, letter case aside.
std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t change = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, change});
        }
    }
    return row.back();
}

std::string lowered(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return out;
}

} // namespace

const Step* findStep(const Chapters& chapters, std::string_view key) {
    for (const Chapter& chapter : chapters)
        for (const Step& step : chapter.steps)
            if (step.key == key) return &step;
    return nullptr;
}

Chapters leadingTo(const Chapters& chapters, std::string_view key) {
    std::set<std::string_view> wanted;
    const std::string parts = std::string(key) + ".";
    for (const Chapter& chapter : chapters)
        for (const Step& step : chapter.steps)
            if (step.key == key || step.key.starts_with(parts)) wanted.insert(step.key);
    // A step stands behind all that it needs, so one walk backwards finds everything.
    for (auto chapter = chapters.rbegin(); chapter != chapters.rend(); ++chapter)
        for (auto step = chapter->steps.rbegin(); step != chapter->steps.rend(); ++step)
            if (wanted.contains(step->key))
                for (const Operand& operand : step->operands)
                    wanted.insert(operand.key);
    Chapters selected;
    for (const Chapter& chapter : chapters) {
        Chapter kept{chapter.title, {}, chapter.note};
        std::copy_if(chapter.steps.begin(), chapter.steps.end(), std::back_inserter(kept.steps),
                     [&](const Step& step) { return wanted.contains(step.key); });
        if (!kept.steps.empty()) selected.push_back(std::move(kept));
    }
    return selected;
}

std::vector<std::string> nearMatches(const Chapters& chapters, std::string_view name,
                                     std::size_t most) {
    const std::string meant = lowered(name);
    std::vector<std::pair<std::size_t, std::string>> ranked;
    for (const Chapter& chapter : chapters)
        for (const Step& step : chapter.steps) {
            const std::string key = lowered(step.key);
            const bool part = key.find(meant) != std::string::npos;
            const std::size_t distance =
                part ? 0
                     : std::min(editDistance(meant, key),
                                editDistance(meant, key.substr(0, key.find('.'))));
            if (part || distance <= std::max<std::size_t>(2, meant.size() / 3))
                ranked.emplace_back(distance, step.key);
        }
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    if (ranked.size() > most) ranked.resize(most);
    std::vector<std::string> keys;
    for (auto& [distance, key] : ranked)
        keys.push_back(std::move(key));
    return keys;
}

} // namespace telvo::explain
