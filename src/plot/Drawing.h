// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

/// A drawing to scale as plain shapes. Positions are in drawing units (those of the case, ft | m),
/// x to the right and y up. Offsets on paper are in ems, the height of a normal line of text, so
/// that texts keep their size and their distance from what they name at every scale.
namespace telvo::plot {

/// What a shape stands for; the painter picks colours and pens by it.
enum class Role {
    Entry,        // floor of entries and crosscuts
    Coal,         // solid coal beside the panel
    Pillar,       // standing pillar of the panel
    LeftRow,      // pillar of row A or B, left in the active gob
    Barrier,      // barrier pillar
    Bleeder,      // pillar of row C or D
    ActiveGob,    //
    SideGob,      //
    SlabCut,      // part of a barrier that the slab cut takes
    Amz,          // active mining zone
    RetreatLine,  //
    BreakLine,    // edge at which a shape is cut short
    Angle,        // arc and figure of the crosscut angle
    Dimension,    //
    EntryNumber,  // in a circle
    PillarNumber, //
    Value,        // figure of a coloured pillar or barrier
    Letter,       // name of a row, a barrier, the zone
    Name          // name of a gob or of solid coal
};

enum class Hatch { None, Rising, Falling };

/// Steps of the colour scale, 0 the lightest on white paper, and what is not coloured by it.
inline constexpr int ColourSteps = 5;
inline constexpr int NoColour = -1;

/// What the colours of a drawing stand for.
struct ColourKey {
    std::string title;
    std::vector<std::string> steps; ///< what each colour stands for
    std::vector<int> colours;       ///< of the steps
};

struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

/// A rectangle; empty unless left < right and bottom < top.
struct Rect {
    double left = 0;
    double bottom = 0;
    double right = 0;
    double top = 0;

    double width() const { return right - left; }
    double height() const { return top - bottom; }
    bool empty() const { return !(left < right && bottom < top); }
    Point centre() const { return {(left + right) / 2, (bottom + top) / 2}; }
    bool operator==(const Rect&) const = default;
};

/// The common part of two rectangles, which may be empty.
Rect common(const Rect& a, const Rect& b);

struct Polygon {
    Role role = Role::Coal;
    std::vector<Point> points;
    Hatch hatch = Hatch::None;
    std::string hint;      ///< shown where the pointer rests on it
    int colour = NoColour; ///< step of the colour scale in place of the role's own colour
};

struct Polyline {
    Role role = Role::BreakLine;
    std::vector<Point> points;
};

/// A text that is shown where it has room: at a fixed place or anywhere within its rooms.
struct Text {
    Role role = Role::Name;
    /// From the fullest to the shortest; the first one that finds room is shown.
    std::vector<std::string> wordings = {};

    /// Where a text with a fixed place has its centre; `offset` in ems on paper, y up.
    std::optional<Point> at = std::nullopt;
    Point offset = {};
    /// Room around a fixed place that the text must fit into; 0 is no limit. Drawing units.
    double roomWidth = 0;
    double roomHeight = 0;

    /// Where a text without a fixed place may stand, best room first. It may stand upright there,
    /// read from the right.
    std::vector<Rect> rooms = {};
    /// Rooms of others, taken when its own are too narrow; a leader then runs to `target`.
    struct Spill {
        Rect room;
        Point target;
    };
    std::vector<Spill> spills = {};
};

/// A figure of a dimension line; one whose feature is cut short is underlined.
struct Figure {
    std::string text;
    bool toScale = true;
    /// Taken first where the chain before this one found no room: it says what that would have.
    std::string detailed = {};
};

/// A line of dimensions in a row, with a figure for each space between two stops.
struct DimensionChain {
    bool vertical = false;
    std::vector<double> stops = {};   ///< ascending; x values, or y values of a vertical chain
    std::vector<Figure> figures = {}; ///< one fewer than stops
    double line = 0;                  ///< where its features end, on the other axis
    double offset = 0;      ///< of the dimension line from there, in ems on paper; up, right
    bool extensions = true; ///< lines from the feature to the dimension line
    bool outside = false;   ///< a figure may stand beyond the ends
    bool complete = false;  ///< shown with all its figures or not at all
};

/// Room around the shapes for what is offset from them, in ems.
struct Margins {
    double left = 1;
    double bottom = 1;
    double right = 1;
    double top = 1;
};

struct Drawing {
    std::vector<std::string> caption; ///< lines
    std::optional<ColourKey> key = {};
    std::vector<std::string> notes = {}; ///< sentences below the drawing
    std::string unit;                    ///< of the drawing units, such as "ft"
    Rect bounds;                         ///< of all shapes
    Margins margins;
    std::vector<Polygon> polygons; ///< those behind come first
    std::vector<Polyline> polylines;
    std::vector<DimensionChain> chains;
    std::vector<Text> texts; ///< those that matter most come first
};

/// Hint of the topmost polygon at a point that has one; empty where there is none.
std::string hintAt(const Drawing& drawing, Point at);

/// The part of a convex polygon between two heights; no points where nothing is left.
std::vector<Point> clippedToHeights(const std::vector<Point>& polygon, double bottom, double top);

} // namespace telvo::plot
