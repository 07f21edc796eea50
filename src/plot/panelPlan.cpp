// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/panelPlan.h"

#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"
#include "engine/driver.h"
#include "engine/quantities.h"
#include "plot/planDimensions.h"
#include "plot/planGeometry.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace telvo::plot {

namespace {

std::vector<Point> corners(const Rect& r) {
    return {{r.left, r.bottom}, {r.right, r.bottom}, {r.right, r.top}, {r.left, r.top}};
}

/// A straight edge with two jogs, as a shape that is cut short ends.
std::vector<Point> brokenEdge(Point from, Point to, double jog) {
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const double length = std::hypot(dx, dy);
    std::vector<Point> edge{from};
    if (length > 8 * jog)
        for (const double place : {length / 3, 2 * length / 3})
            for (const auto& [step, aside] :
                 {std::pair{-1.0, 0.0}, {-0.5, 1.0}, {0.5, -1.0}, {1.0, 0.0}}) {
                const double t = (place + step * jog) / length;
                const double n = aside * jog / length;
                edge.push_back({from.x + t * dx - n * dy, from.y + t * dy + n * dx});
            }
    edge.push_back(to);
    return edge;
}

/// Draws the shapes and names of a plan that is laid out.
class Plan {
  public:
    Plan(const project::ProjectCase& current, const PlanOptions& options,
         const PlanOverlay* overlay, const PlanGeometry& plan)
        : m_current(current), m_options(options), m_overlay(overlay), m_plan(plan),
          m_unit(engine::unitName(engine::Kind::Length, plan.in.Units)),
          m_jog(std::min(0.012 * (plan.panel.width() - plan.panel.bottom),
                         0.1 * plan.panel.height())) {}

    Drawing make();

  private:
    void caption();
    void colour(const PlanOverlay::Cell& cell);
    void values();
    void activeGob();
    void panel();
    void side(const PlanSide& side);
    void barrier(const PlanSide& side, const Rect& beyond);
    void bleederRow(const PlanSide& side);
    void leftRow(int row, int pillar);
    void activeGobName();
    void miningZone();

    void add(Role role, std::vector<Point> points, std::string hint, Hatch hatch = Hatch::None) {
        if (points.size() >= 3)
            m_drawing.polygons.push_back({role, std::move(points), hatch, std::move(hint)});
    }
    void add(Role role, const Rect& rect, std::string hint, Hatch hatch = Hatch::None) {
        if (!rect.empty()) add(role, corners(rect), std::move(hint), hatch);
    }
    /// A gob between two straight edges: from `a` to `b`, and from `c` to `d`, the one that is
    /// broken where the gob is cut short.
    void gob(Role role, const std::array<Point, 4>& abcd, const Shown& extent, std::string name,
             Hatch hatch);
    std::string measure(double length) const { return lengthText(length) + ' ' + m_unit; }
    /// The names of a gob, with its true extent where it is cut short and no dimension tells it.
    std::vector<std::string> names(std::vector<std::string> names, const Shown& gob) const;

    const project::ProjectCase& m_current;
    const PlanOptions& m_options;
    const PlanOverlay* m_overlay;
    const PlanGeometry& m_plan;
    std::string m_unit;
    double m_jog;
    Drawing m_drawing;
};

std::vector<std::string> Plan::names(std::vector<std::string> names, const Shown& gob) const {
    if (gob.cut && m_options.PlotGobDims != 1)
        for (auto& name : names)
            name += ' ' + measure(gob.figure);
    return names;
}

void Plan::caption() {
    m_drawing.caption = {caseTitle(m_current),
                         std::string(project::LoadingConditionNames[m_plan.in.AnalysisCase - 1])};
    m_drawing.unit = m_unit;
    if (!m_overlay) return;
    m_drawing.caption.push_back(m_overlay->caption);
    m_drawing.key = m_overlay->key;
    m_drawing.notes = m_overlay->notes;
}

/// Colours the shape that was added last.
void Plan::colour(const PlanOverlay::Cell& cell) {
    Polygon& shape = m_drawing.polygons.back();
    shape.colour = cell.colour;
    if (!cell.hint.empty()) shape.hint = cell.hint;
}

void Plan::gob(Role role, const std::array<Point, 4>& abcd, const Shown& extent, std::string name,
               Hatch hatch) {
    std::vector<Point> shape{abcd[0], abcd[1]};
    auto edge =
        extent.cut ? brokenEdge(abcd[2], abcd[3], m_jog) : std::vector<Point>{abcd[2], abcd[3]};
    shape.insert(shape.end(), edge.begin(), edge.end());
    add(role, std::move(shape), std::move(name) + ": extent " + measure(extent.figure), hatch);
    if (extent.cut) m_drawing.polylines.push_back({Role::BreakLine, std::move(edge)});
}

void Plan::activeGob() {
    const Rect& r = m_plan.panel;
    if (m_plan.activeGob)
        gob(Role::ActiveGob, {{{r.left, 0}, {r.right, 0}, {r.right, r.top}, {r.left, r.top}}},
            m_plan.activeGob, "Active gob", Hatch::Rising);
}

void Plan::panel() {
    const engine::WorkingInputs& in = m_plan.in;
    const Rect standing{m_plan.panel.left, m_plan.panel.bottom, m_plan.panel.right, 0};
    add(Role::Entry, standing, "Entries and crosscuts, " + measure(in.We) + " wide");
    for (int row = 0; row * in.Sc < -standing.bottom; ++row)
        for (int i = 1; i <= in.NumberPillars; ++i) {
            add(Role::Pillar, clippedToHeights(m_plan.pillar(i, -row * in.Sc), standing.bottom, 0),
                "Pillar " + generalNumber(i) + ": " + measure(in.PillarGrossWidth[i]) +
                    " from rib to rib, " + measure(m_plan.ribLength) + " along the ribs");
            if (m_overlay && row * in.Sc < in.B) colour(m_overlay->pillars[i]);
        }
    if (m_plan.cutBelow)
        m_drawing.polylines.push_back(
            {Role::BreakLine, brokenEdge({standing.left, standing.bottom},
                                         {standing.right, standing.bottom}, m_jog)});

    for (int i = 1; i <= in.NumberPillars; ++i) {
        const auto at = m_plan.pillar(i, 0);
        m_drawing.texts.push_back({.role = Role::PillarNumber,
                                   .wordings = {generalNumber(i)},
                                   .at = Point{(at[0].x + at[2].x) / 2, (at[0].y + at[2].y) / 2},
                                   .roomWidth = in.PillarGrossWidth[i],
                                   .roomHeight = m_plan.ribLength});
    }
    const auto entryNumber = [&](int entry) {
        m_drawing.texts.push_back({.role = Role::EntryNumber,
                                   .wordings = {generalNumber(entry)},
                                   .at = Point{m_plan.entry[entry], standing.bottom},
                                   .offset = {0, -1.3}});
    };
    // The outermost ones first: where there is no room for all, the panel keeps its ends.
    entryNumber(1);
    for (int entry = m_plan.entries(); entry > 1; --entry)
        entryNumber(entry);
}

void Plan::leftRow(int row, int i) {
    if (!m_plan.activeGob || !m_plan.in.rowLeft(row)) return;
    const std::string letter(1, static_cast<char>('A' + row - 1));
    const double rise = std::abs(m_plan.rise(i));
    Text name{.role = Role::Letter, .wordings = {"Row " + letter, letter}};
    constexpr int most = 4 * MostPlanRows;
    for (int step = 1; step < most; ++step) {
        const auto whole = m_plan.pillar(i, step * m_plan.in.Sc);
        if (std::min(whole[0].y, whole[1].y) > m_plan.panel.top) break;
        // Skew ends of the first one that lie below the retreat line belong to the row there.
        add(Role::LeftRow, clippedToHeights(whole, 0, m_plan.panel.top),
            "Pillar of row " + letter + ", left in the active gob");
        const double low = std::min(whole[0].y, whole[1].y) + rise / 2;
        const double high = std::max(whole[2].y, whole[3].y) - rise / 2;
        name.rooms.push_back(
            common({whole[0].x, std::max(low, 0.0), whole[1].x, high}, m_plan.panel));
    }
    m_drawing.texts.push_back(std::move(name));
}

void Plan::bleederRow(const PlanSide& s) {
    const engine::WorkingInputs& in = m_plan.in;
    const std::string letter = s.k == engine::FirstSide ? "C" : "D";
    const double bottom = m_plan.panel.bottom;
    const double top = m_plan.panel.top;
    const double from = s.barrier.length + in.We;
    const Rect row = s.rect(from, s.gobStart, bottom, top);
    add(Role::Entry, s.rect(s.barrier.length, s.gobStart, bottom, top),
        "Bleeder entry of row " + letter + ", " + measure(in.We) + " wide");
    Text name{.role = Role::Letter, .wordings = {"Row " + letter, letter}};
    for (int step = static_cast<int>(std::ceil(top / in.Sc)); step * in.Sc > bottom; --step) {
        const Rect pillar =
            common(row, {row.left, step * in.Sc - in.PillarLengthAlong, row.right, step * in.Sc});
        if (pillar.empty()) continue;
        add(Role::Bleeder, pillar,
            "Pillar of row " + letter + ": " + measure(s.rowWidth.figure) + " x " +
                measure(in.PillarLengthAlong));
        if (step <= 0) name.rooms.push_back(pillar);
    }
    if (name.rooms.empty()) return;
    name.spills = {{s.rect(s.gobStart, s.end, bottom, top), name.rooms.front().centre()}};
    m_drawing.texts.push_back(std::move(name));
}

void Plan::barrier(const PlanSide& s, const Rect& beyond) {
    const bool first = s.k == engine::FirstSide;
    const double bottom = m_plan.panel.bottom;
    const double top = m_plan.panel.top;
    if (s.slab) {
        const Rect notch = s.rect(0, s.slab.length, 0, top);
        add(Role::SlabCut, notch,
            "Slab cut of " + measure(s.slab.figure) + " taken from the barrier", Hatch::Rising);
        // On its own side of the gob's dimension, which the leader would cross.
        Rect gob{m_plan.panel.left, 0, m_plan.panel.right, top};
        (first ? gob.right : gob.left) = m_plan.entry[m_plan.dimensionedEntry()];
        m_drawing.texts.push_back({.role = Role::Name,
                                   .wordings = {"Slab cut", "Slab"},
                                   .rooms = {notch},
                                   .spills = {{gob, notch.centre()}}});
    }
    if (!s.barrier) return;
    std::string hint = std::string(first ? "First" : "Second") + " barrier pillar, " +
                       measure(s.barrier.figure) + " wide";
    if (s.slab)
        hint += "; remnant beside the active gob " + measure(s.barrier.figure - s.slab.figure);
    std::vector<Point> shape{{s.x(0), bottom}, {s.x(0), 0}};
    if (s.slab) shape.push_back({s.x(s.slab.length), 0});
    if (s.slab.length < s.barrier.length) {
        shape.push_back({s.x(s.slab.length), top});
        shape.push_back({s.x(s.barrier.length), top});
    }
    shape.push_back({s.x(s.barrier.length), bottom});
    add(Role::Barrier, std::move(shape), std::move(hint));

    if (m_overlay) colour(m_overlay->barriers[s.k]);
    const Rect whole = s.rect(0, s.barrier.length, bottom, 0);
    m_drawing.texts.push_back({.role = Role::Letter,
                               .wordings = {first ? "First barrier" : "Second barrier", "Barrier"},
                               .rooms = {whole, s.rect(s.slab.length, s.barrier.length, 0, top)},
                               .spills = {{beyond, whole.centre()}}});
}

void Plan::side(const PlanSide& s) {
    const bool first = s.k == engine::FirstSide;
    const double bottom = m_plan.panel.bottom;
    const double top = m_plan.panel.top;
    const Rect beyond = s.rect(s.gobStart, s.end, bottom, top);
    std::vector<std::string> called{"Solid coal"};
    if (s.gob) {
        gob(Role::SideGob,
            {{{s.x(s.gobStart), bottom},
              {s.x(s.gobStart), top},
              {s.x(s.end), top},
              {s.x(s.end), bottom}}},
            s.gob, first ? "First side gob" : "Second side gob", Hatch::Falling);
        called = names(first ? std::vector<std::string>{"First side gob", "1st side gob", "Gob 1"}
                             : std::vector<std::string>{"Second side gob", "2nd side gob", "Gob 2"},
                       s.gob);
    } else {
        add(Role::Coal, beyond, "Solid coal");
        m_drawing.polylines.push_back(
            {Role::BreakLine, brokenEdge({s.x(s.end), top}, {s.x(s.end), bottom}, m_jog)});
    }
    m_drawing.texts.push_back(
        {.role = Role::Name, .wordings = std::move(called), .rooms = {beyond}});
    barrier(s, beyond);
    if (s.rowWidth) bleederRow(s);
}

void Plan::activeGobName() {
    if (!m_plan.activeGob) return;
    Rect room{m_plan.panel.left, 0, m_plan.panel.right, m_plan.panel.top};
    const int pillars = m_plan.in.NumberPillars;
    if (m_plan.in.rowLeft(1)) room.left = m_plan.entry[2] - m_plan.in.We / 2;
    if (m_plan.in.rowLeft(2)) room.right = m_plan.entry[pillars] + m_plan.in.We / 2;
    m_drawing.texts.push_back({.role = Role::Name,
                               .wordings = names({"Active gob", "Gob"}, m_plan.activeGob),
                               .rooms = {room}});
}

/// The figures of the coloured pillars, all in one row where they have room, and of the barriers.
void Plan::values() {
    if (!m_overlay) return;
    const engine::WorkingInputs& in = m_plan.in;
    for (int i = 1; i <= in.NumberPillars; ++i) {
        Text value{.role = Role::Value, .wordings = m_overlay->pillars[i].wordings};
        const double rise = std::abs(m_plan.rise(i));
        for (int row = 1; row < m_plan.rows; ++row) {
            const auto at = m_plan.pillar(i, -row * in.Sc);
            value.rooms.push_back({at[0].x, std::min(at[0].y, at[1].y) + rise / 2, at[1].x,
                                   std::max(at[2].y, at[3].y) - rise / 2});
        }
        m_drawing.texts.push_back(std::move(value));
    }
    for (const PlanSide* s : {&m_plan.first, &m_plan.second}) {
        const auto& wordings = m_overlay->barriers[s->k].wordings;
        if (s->barrier && !wordings.empty())
            m_drawing.texts.push_back(
                {.role = Role::Value,
                 .wordings = wordings,
                 .rooms = {
                     s->rect(0, s->barrier.length, std::max(-in.B, m_plan.panel.bottom), 0)}});
    }
}

void Plan::miningZone() {
    if (!(m_plan.in.B > 0)) return;
    const Rect& panel = m_plan.panel;
    const Rect zone{panel.left, std::max(-m_plan.in.B, panel.bottom), panel.right, 0};
    add(Role::Amz, zone, {}); // the hints of the pillars below stay in reach
    // Beside it, where need be on the paper beyond the plan.
    const auto beside = [&](const PlanSide& s) {
        return Text::Spill{
            s.rect(0, s.end + panel.width(), std::min(zone.bottom, -m_plan.in.Sc), 0),
            {s.x(0), zone.centre().y}};
    };
    m_drawing.texts.push_back({.role = Role::Amz,
                               .wordings = {"AMZ " + measure(m_plan.in.B), "AMZ"},
                               .rooms = {zone},
                               .spills = {beside(m_plan.second), beside(m_plan.first)}});
}

Drawing Plan::make() {
    caption();
    m_drawing.bounds = {m_plan.first.x(m_plan.first.end), m_plan.panel.bottom,
                        m_plan.second.x(m_plan.second.end), m_plan.panel.top};
    activeGob();
    panel();
    values();
    leftRow(1, 1);
    leftRow(2, m_plan.in.NumberPillars);
    side(m_plan.first);
    side(m_plan.second);
    activeGobName();
    miningZone();
    m_drawing.polylines.push_back(
        {Role::RetreatLine, {{m_plan.panel.left, 0}, {m_plan.panel.right, 0}}});
    addDimensions(m_plan, m_options, m_drawing);
    return std::move(m_drawing);
}

} // namespace

std::string caseTitle(const project::ProjectCase& current) {
    std::string name(trimmed(current.Title));
    const std::string& file = current.FileName;
    if (name.empty()) name = withoutFolder(file);
    return withoutControls(name);
}

namespace {

std::variant<Drawing, Refusal> panelPlan(const engine::WorkingInputs& in,
                                         const project::ProjectCase& current,
                                         const PlanOptions& options, const PlanOverlay* overlay) {
    const auto plan = planGeometry(in, options.PlotGobExtLoose == 1);
    if (!plan) return Refusal{"Invalid Pillar Dimensions", "Error", ""};
    return Plan(current, options, overlay, *plan).make();
}

} // namespace

std::variant<Drawing, Refusal> panelPlan(const project::ProjectCase& current,
                                         const PlanOptions& options, const PlanOverlay* overlay) {
    return panelPlan(engine::workingInputs(current.Input, current.Units, engine::DevelopmentLoad),
                     current, options, overlay);
}

std::variant<Drawing, Refusal> panelPlan(const run::Run& run, int pass, const PlanOptions& options,
                                         const PlanOverlay* overlay) {
    engine::WorkingInputs in = run.in;
    if (pass == engine::Development) {
        in.GobExtent[1] = 0;
        in.Slabcut = {};
    }
    return panelPlan(in, run.current, options, overlay);
}

} // namespace telvo::plot
