// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/graph/graphLabels.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace telvo::study {

namespace {

constexpr double LongestLine = 4000; // pixels of a line's piece that are looked at

// What is worse than covering any number of points of ink, the worst last.
constexpr double Outside = 1e3;  // of the plot
constexpr double Covering = 5e5; // of the other label
constexpr double Misread = 1e6;  // nearer to the mark of the other curve

/// Where a label may stand beside its mark: at its corners, above, below, beside it.
std::vector<PixelBox> boxesBeside(const MarkLabel& label, double away) {
    static constexpr std::array<std::array<int, 2>, 8> sides = {
        {{1, -1}, {-1, -1}, {1, 1}, {-1, 1}, {0, -1}, {0, 1}, {1, 0}, {-1, 0}}};
    std::vector<PixelBox> boxes;
    for (const auto& [x, y] : sides) {
        // In the middle a little farther away than at the corners.
        const double gap = x == 0 || y == 0 ? 1.6 * away : away;
        const auto shift = [gap](int side, double length) {
            return side > 0 ? gap : side < 0 ? -gap - length : -length / 2;
        };
        boxes.push_back({label.mark.x + shift(x, label.width),
                         label.mark.y + shift(y, label.height), label.width, label.height});
    }
    return boxes;
}

} // namespace

bool PixelBox::contains(const Pixel& point) const {
    return point.x >= left && point.x <= right() && point.y >= top && point.y <= bottom();
}

bool PixelBox::contains(const PixelBox& other) const {
    return other.left >= left && other.right() <= right() && other.top >= top &&
           other.bottom() <= bottom();
}

bool PixelBox::intersects(const PixelBox& other) const {
    return left < other.right() && other.left < right() && top < other.bottom() &&
           other.top < bottom();
}

double PixelBox::distanceTo(const Pixel& point) const {
    return std::hypot(std::max({left - point.x, point.x - right(), 0.0}),
                      std::max({top - point.y, point.y - bottom(), 0.0}));
}

std::vector<double> columnTops(std::span<const EndLabel> labels, double top, double bottom,
                               double gap) {
    std::vector<double> tops;
    double free = top;
    for (const EndLabel& label : labels) {
        tops.push_back(std::max(free, label.y - label.height / 2));
        free = tops.back() + label.height + gap;
    }
    for (std::size_t i = labels.size(); i-- > 0;) {
        tops[i] = std::min(tops[i], bottom - labels[i].height);
        bottom = tops[i] - gap;
    }
    return tops;
}

void addInk(std::vector<Pixel>& ink, std::span<const Pixel> line, double step) {
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (i > 0) {
            const Pixel &from = line[i - 1], &to = line[i];
            const double length = std::min(std::hypot(to.x - from.x, to.y - from.y), LongestLine);
            for (double done = 0; done < length; done += step)
                ink.push_back({from.x + (to.x - from.x) * (done / length),
                               from.y + (to.y - from.y) * (done / length)});
        }
        ink.push_back(line[i]);
    }
}

std::vector<PixelBox> labelBoxes(std::span<const MarkLabel> labels, std::span<const Pixel> ink,
                                 const PixelBox& plot, double away) {
    if (labels.empty()) return {};
    struct Choice {
        std::vector<PixelBox> boxes;
        std::vector<double> costs;
    };
    std::vector<Choice> choices;
    for (const MarkLabel& label : labels) {
        Choice& choice = choices.emplace_back();
        choice.boxes = boxesBeside(label, away);
        for (const PixelBox& box : choice.boxes) {
            auto cost = static_cast<double>(std::count_if(
                ink.begin(), ink.end(), [&](const Pixel& p) { return box.contains(p); }));
            if (!plot.contains(box)) cost += Outside;
            for (const MarkLabel& other : labels)
                if (other.mark != label.mark &&
                    box.distanceTo(other.mark) <= box.distanceTo(label.mark))
                    cost += Misread;
            choice.costs.push_back(cost);
        }
    }
    const Choice& first = choices.front();
    if (choices.size() == 1) {
        const auto best = std::min_element(first.costs.begin(), first.costs.end());
        return {first.boxes[static_cast<std::size_t>(best - first.costs.begin())]};
    }
    // There are two curves at most, so that all pairs of places can be weighed.
    const Choice& second = choices[1];
    double least = HUGE_VAL;
    std::size_t bestFirst = 0, bestSecond = 0;
    for (std::size_t i = 0; i < first.boxes.size(); ++i)
        for (std::size_t j = 0; j < second.boxes.size(); ++j) {
            const double cost = first.costs[i] + second.costs[j] +
                                (second.boxes[j].intersects(first.boxes[i]) ? Covering : 0);
            if (cost >= least) continue;
            least = cost;
            bestFirst = i;
            bestSecond = j;
        }
    return {first.boxes[bestFirst], second.boxes[bestSecond]};
}

} // namespace telvo::study
