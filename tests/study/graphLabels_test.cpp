// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/graph/graphLabels.h"

#include <gtest/gtest.h>

#include <random>

namespace telvo::study {
namespace {

TEST(GraphLabels, EndLabelsStandAtTheirLinesWhereThereIsRoom) {
    const EndLabel apart[] = {{50, 10}, {100, 10}};
    EXPECT_EQ(columnTops(apart, 0, 200, 4), (std::vector<double>{45, 95}));
    // 45 + 10 + 4 = 59 for the second, which would stand at 47.
    const EndLabel near[] = {{50, 10}, {52, 10}};
    EXPECT_EQ(columnTops(near, 0, 200, 4), (std::vector<double>{45, 59}));
    // From the bottom up: 200 - 10 = 190, and 190 - 4 - 10 = 176.
    const EndLabel low[] = {{198, 10}, {199, 10}};
    EXPECT_EQ(columnTops(low, 0, 200, 4), (std::vector<double>{176, 190}));
    const EndLabel high[] = {{1, 10}};
    EXPECT_EQ(columnTops(high, 0, 200, 4), (std::vector<double>{0}));
    EXPECT_TRUE(columnTops({}, 0, 200, 4).empty());
}

TEST(GraphLabels, InkFollowsALine) {
    std::vector<Pixel> ink;
    const Pixel line[] = {{0, 0}, {30, 40}}; // 50 long
    addInk(ink, line, 4);
    EXPECT_EQ(ink.size(), 15U); // 13 from 0 to 48, both ends once more
    for (std::size_t i = 1; i < ink.size(); ++i)
        EXPECT_LE(std::hypot(ink[i].x - ink[i - 1].x, ink[i].y - ink[i - 1].y), 4.001);
    std::vector<Pixel> point;
    addInk(point, std::vector<Pixel>{{7, 8}}, 4);
    EXPECT_EQ(point, (std::vector<Pixel>{{7, 8}}));
}

TEST(GraphLabels, ALabelAvoidsInkAndTheEdge) {
    const PixelBox plot{0, 0, 400, 300};
    const MarkLabel middle[] = {{{200, 150}, 30, 12}};
    // Nothing in the way: at the right above, the first choice.
    auto boxes = labelBoxes(middle, {}, plot, 5);
    EXPECT_EQ(boxes[0].left, 205);
    EXPECT_EQ(boxes[0].bottom(), 145);
    std::vector<Pixel> ink; // a rising curve lies there
    addInk(ink, std::vector<Pixel>{{100, 250}, {300, 50}}, 4);
    boxes = labelBoxes(middle, ink, plot, 5);
    for (const Pixel& point : ink)
        EXPECT_FALSE(boxes[0].contains(point));
    const MarkLabel corner[] = {{{396, 3}, 30, 12}};
    EXPECT_TRUE(plot.contains(labelBoxes(corner, {}, plot, 5)[0]));
}

// Drawn places of two marks: the worst reading of a graph is a number beside the wrong curve.
TEST(GraphLabels, NoLabelIsReadAsThatOfTheOtherMark) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> x(60, 340), y(40, 260), apart(-30, 30);
    const PixelBox plot{0, 0, 400, 300};
    for (int i = 0; i < 2000; ++i) {
        const Pixel first{x(random), y(random)};
        const Pixel second{first.x + apart(random) / 10, first.y + apart(random)};
        if (std::hypot(first.x - second.x, first.y - second.y) < 8) continue;
        const MarkLabel labels[] = {{first, 32, 14}, {second, 32, 14}};
        const auto boxes = labelBoxes(labels, {}, plot, 5);
        ASSERT_EQ(boxes.size(), 2U);
        EXPECT_FALSE(boxes[0].intersects(boxes[1])) << i;
        EXPECT_LT(boxes[0].distanceTo(first), boxes[0].distanceTo(second)) << i;
        EXPECT_LT(boxes[1].distanceTo(second), boxes[1].distanceTo(first)) << i;
    }
    // Both in one place: no label is wrong, and they do not cover each other.
    const MarkLabel same[] = {{{200, 150}, 32, 14}, {{200, 150}, 32, 14}};
    const auto boxes = labelBoxes(same, {}, plot, 5);
    EXPECT_FALSE(boxes[0].intersects(boxes[1]));
}

} // namespace
} // namespace telvo::study
