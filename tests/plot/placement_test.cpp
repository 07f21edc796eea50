// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/placement.h"

#include "base/text.h"
#include "plot/plans.h"

#include <filesystem>

namespace telvo::plot {
namespace {

/// Letters of common proportions; wide ones, so that real fonts take less.
const TextMeasure Estimate{14, [](std::string_view text, Role) {
                               return 8.5 * static_cast<double>(characterCount(text));
                           }};

bool placed(const Placement& placement, Role role, const std::string& wording) {
    return std::any_of(placement.texts.begin(), placement.texts.end(), [&](const auto& text) {
        return text.role == role && text.wording == wording;
    });
}

TEST(PlaceLabels, NoLabelOfAnExampleCoversAnotherOrLeavesThePage) {
    for (const auto& file : std::filesystem::directory_iterator(TELVO_EXAMPLES_DIR)) {
        const project::ProjectCase panel = example(file.path().stem().string());
        for (const std::int16_t loose : {std::int16_t{0}, std::int16_t{1}}) {
            const Drawing plan = planOf(panel, {1, 1, loose, 1, loose});
            for (const Box& page : {Box{0, 0, 900, 650}, Box{10, 20, 420, 270}, Box{0, 0, 60, 40}})
                for (const Zoom& zoom : {Zoom{}, Zoom{3, {0, 0}}, Zoom{20, {100, -90}}}) {
                    SCOPED_TRACE(file.path().string());
                    const View view = viewOf(plan, page, Estimate.em, zoom);
                    const auto texts = placeLabels(plan, view, page, Estimate).texts;
                    for (std::size_t i = 0; i < texts.size(); ++i) {
                        EXPECT_TRUE(page.contains(texts[i].box)) << texts[i].wording;
                        for (std::size_t j = 0; j < i; ++j)
                            EXPECT_FALSE(texts[i].box.overlaps(texts[j].box))
                                << texts[i].wording << " / " << texts[j].wording;
                    }
                }
        }
    }
}

TEST(PlaceLabels, ALargePageShowsEveryNameAndFigure) {
    const Box page{0, 0, 1400, 1100};
    const Drawing plan = planOf(example("bleeder-rows-c-d"), {});
    const Placement all = placeLabels(plan, viewOf(plan, page, Estimate.em), page, Estimate);
    for (const char* name : {"Active gob", "First side gob", "Second side gob", "Slab cut"})
        EXPECT_TRUE(placed(all, Role::Name, name)) << name;
    for (const char* name : {"First barrier", "Second barrier", "Row C", "Row D"})
        EXPECT_TRUE(placed(all, Role::Letter, name)) << name;
    EXPECT_TRUE(placed(all, Role::Amz, "AMZ 127 ft"));
    for (const char* number : {"1", "2", "3", "4"})
        EXPECT_TRUE(placed(all, Role::PillarNumber, number) &&
                    placed(all, Role::EntryNumber, number));
    for (const std::string& figure : figures(plan))
        EXPECT_TRUE(placed(all, Role::Dimension, figure.substr(0, figure.find('_')))) << figure;
}

TEST(PlaceLabels, WhereThereIsNoRoomNamesGetShorterAndThenALeader) {
    Drawing drawing;
    drawing.bounds = {0, 0, 100, 100};
    const View view{1, {0, 100}}; // the page has the drawing's own size
    const Box page{0, 0, 100, 100};
    const auto only = [&](const Text& text) {
        drawing.texts = {text};
        return placeLabels(drawing, view, page, Estimate).texts;
    };
    Text text{.role = Role::Letter, .wordings = {"First", "1"}};
    text.rooms = {{0, 0, 60, 20}}; // "First" takes 42.5 x 14
    EXPECT_EQ(only(text).at(0).wording, "First");
    text.rooms = {{0, 0, 20, 60}};
    EXPECT_TRUE(only(text).at(0).upright);
    text.rooms = {{0, 0, 20, 20}};
    EXPECT_EQ(only(text).at(0).wording, "1");
    text.rooms = {{0, 0, 5, 20}};
    EXPECT_TRUE(only(text).empty());
    text.spills = {{{5, 0, 100, 100}, {2.5, 10}}};
    const auto led = only(text);
    ASSERT_EQ(led.size(), 1U);
    EXPECT_EQ(*led[0].target, (Point{2.5, 90}));
    EXPECT_LT(led[0].box.left, 20); // as near as it goes
}

int side(Point a, Point b, Point c) {
    const double turn = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    return (turn > 0) - (turn < 0);
}

bool cross(Point a, Point b, Point c, Point d) {
    return side(a, b, c) * side(a, b, d) < 0 && side(c, d, a) * side(c, d, b) < 0;
}

TEST(PlaceLabels, NoLeaderCrossesADimension) {
    int leaders = 0;
    for (const char* name : {"two-side-gobs", "one-side-gob-slab-cut", "bleeder-rows-c-d"})
        for (const double cut : {3.0, 8.0, 20.0}) {
            project::ProjectCase panel = example(name);
            panel.Input.SlabcutFirstGob = panel.Input.SlabcutSecondGob = cut;
            const Drawing plan = planOf(panel, {});
            for (const Box& page : {Box{0, 0, 900, 700}, Box{0, 0, 500, 420}}) {
                const View view = viewOf(plan, page, Estimate.em);
                const Placement made = placeLabels(plan, view, page, Estimate);
                for (const PlacedText& text : made.texts) {
                    if (!text.target) continue;
                    ++leaders;
                    const Point start{std::clamp(text.target->x, text.box.left, text.box.right),
                                      std::clamp(text.target->y, text.box.top, text.box.bottom)};
                    for (const PlacedDimension& line : made.dimensions)
                        EXPECT_FALSE(cross(start, *text.target, line.from, line.to))
                            << name << ' ' << cut << ' ' << text.wording;
                }
            }
        }
    EXPECT_GT(leaders, 10);
}

TEST(PlaceLabels, UnequalDistancesWithoutRoomAreTheSummandsOfTheWidth) {
    project::ProjectCase panel = example("retreat-one-section");
    panel.Input.NumberEntries = 4;
    panel.Input.XcutCenters[1] = 80;
    panel.Input.XcutCenters[2] = 95;
    panel.Input.XcutCenters[3] = 70;
    const Drawing plan = planOf(panel, {});
    const auto shown = [&](const Box& page) {
        return placeLabels(plan, viewOf(plan, page, Estimate.em), page, Estimate);
    };
    const Placement wide = shown({0, 0, 1400, 1100});
    EXPECT_TRUE(placed(wide, Role::Dimension, "95") && placed(wide, Role::Dimension, "245"));
    int summands = 0;
    for (double width = 200; width < 900; width += 20) {
        const Placement made = shown({0, 0, width, 0.8 * width});
        const bool sum = placed(made, Role::Dimension, "80 + 95 + 70 = 245");
        EXPECT_FALSE(sum && placed(made, Role::Dimension, "95")) << width;
        summands += sum;
    }
    EXPECT_GT(summands, 0);
}

TEST(ViewOf, KeepsTheScaleEqualAndTheZoomedPointInTheMiddle) {
    Drawing drawing;
    drawing.bounds = {-100, -50, 300, 50};
    drawing.margins = {1, 2, 3, 4};
    const Box page{0, 0, 440, 260};
    const View fitted = viewOf(drawing, page, 10);
    EXPECT_DOUBLE_EQ(fitted.scale, 1); // 400 of the page for 400 wide; the height has room
    EXPECT_EQ(fitted.toPage(Point{-100, 0}), (Point{10, 140}));
    EXPECT_EQ(fitted.toDrawing(fitted.toPage(Point{12, 34})), (Point{12, 34}));
    const View zoomed = viewOf(drawing, page, 10, {4, {200, 20}});
    EXPECT_DOUBLE_EQ(zoomed.scale, 4);
    EXPECT_EQ(zoomed.toPage(Point{200, 20}), (Point{220, 130}));
}

TEST(HatchLines, StayWithinTheirShapeAndThePage) {
    // An L; lines at 45 degrees leave its notch out.
    const std::vector<Point> shape{{0, 0}, {100, 0}, {100, 40}, {40, 40}, {40, 100}, {0, 100}};
    for (const Hatch hatch : {Hatch::Rising, Hatch::Falling}) {
        const auto lines = hatchLines(shape, hatch, 7, {3, 5}, {0, 0, 100, 100});
        EXPECT_GT(lines.size(), 15U);
        for (const auto& [a, b] : lines) {
            EXPECT_NEAR(std::abs(a.x - b.x), std::abs(a.y - b.y), 1e-9);
            const Point middle{(a.x + b.x) / 2, (a.y + b.y) / 2};
            EXPECT_FALSE(middle.x > 40 + 1e-9 && middle.y > 40 + 1e-9);
        }
    }
    EXPECT_LT(hatchLines(shape, Hatch::Rising, 7, {0, 0}, {0, 0, 10, 10}).size(), 4U);
}

TEST(ScaleBar, IsTheLongestRoundLengthThatFits) {
    EXPECT_DOUBLE_EQ(scaleBar(0.5, 120).length, 200); // 240 would fit
    EXPECT_DOUBLE_EQ(scaleBar(0.5, 120).size, 100);
    EXPECT_DOUBLE_EQ(scaleBar(2, 120).length, 50);
    EXPECT_DOUBLE_EQ(scaleBar(1, 100).length, 100);
    EXPECT_EQ(scaleBar(0, 100).size, 0);
}

} // namespace
} // namespace telvo::plot
