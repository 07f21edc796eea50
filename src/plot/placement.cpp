// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/placement.h"

#include <algorithm>
#include <cmath>

namespace telvo::plot {

namespace {

// All in ems.
constexpr double ArrowRoom = 1.2; // of both arrows of a dimension
constexpr double Gap = 0.3;       // around a figure on its line
constexpr double Aside = 0.95;    // from a dimension line to a figure beside it
constexpr double Circle = 1.5;    // diameter, around an entry number
constexpr double LongLeader = 6;  // that a shorter wording avoids
constexpr double WordGap = 0.2;   // at both ends of a text

Box boxAround(Point centre, double width, double height) {
    return {centre.x - width / 2, centre.y - height / 2, centre.x + width / 2,
            centre.y + height / 2};
}

double distance(Point a, Point b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

class Placer {
  public:
    Placer(const Drawing& drawing, const View& view, const Box& area, const TextMeasure& measure)
        : m_drawing(drawing), m_view(view), m_area(area), m_measure(measure), m_em(measure.em) {}

    Placement place();

  private:
    bool isFree(const Box& box) const;
    void take(PlacedText text);
    void takeLine(Point from, Point to);
    void fixed(const Text& text);
    void floating(const Text& text);
    bool intoRoom(const Text& text, const std::string& wording, const Rect& room,
                  std::optional<Point> target);
    void chain(const DimensionChain& chain);
    bool figure(const DimensionChain& chain, const Figure& figure, PlacedDimension& space);
    bool figure(const DimensionChain& chain, const std::string& text, bool toScale,
                PlacedDimension& space);

    const Drawing& m_drawing;
    const View& m_view;
    const Box& m_area;
    const TextMeasure& m_measure;
    double m_em;
    std::vector<Box> m_taken;
    bool m_chainShown = true; ///< the last one
    Placement m_placed;
};

bool Placer::isFree(const Box& box) const {
    return std::none_of(m_taken.begin(), m_taken.end(),
                        [&](const Box& other) { return other.overlaps(box); });
}

void Placer::take(PlacedText text) {
    m_taken.push_back(text.box);
    m_placed.texts.push_back(std::move(text));
}

void Placer::takeLine(Point from, Point to) {
    const double half = 0.15 * m_em;
    m_taken.push_back({std::min(from.x, to.x) - half, std::min(from.y, to.y) - half,
                       std::max(from.x, to.x) + half, std::max(from.y, to.y) + half});
}

void Placer::fixed(const Text& text) {
    const Point at = m_view.toPage(*text.at);
    const Point centre{at.x + text.offset.x * m_em, at.y - text.offset.y * m_em};
    for (const std::string& wording : text.wordings) {
        const double width = m_measure.width(wording, text.role);
        if (text.roomWidth > 0 && width > text.roomWidth * m_view.scale) continue;
        if (text.roomHeight > 0 && m_em > text.roomHeight * m_view.scale) continue;
        const bool circle = text.role == Role::EntryNumber;
        const Box box = circle ? boxAround(centre, Circle * m_em, Circle * m_em)
                               : boxAround(centre, width, m_em);
        if (!m_area.contains(box) || !isFree(box)) continue;
        take({text.role, wording, box});
        return;
    }
}

bool Placer::intoRoom(const Text& text, const std::string& wording, const Rect& room,
                      std::optional<Point> target) {
    const Box whole = m_view.toPage(room);
    const double edge = 0.05 * m_em;
    const Box seen{std::max(whole.left, m_area.left) + edge, std::max(whole.top, m_area.top) + edge,
                   std::min(whole.right, m_area.right) - edge,
                   std::min(whole.bottom, m_area.bottom) - edge};
    const double length = m_measure.width(wording, text.role);
    const Point wish = target ? *target : seen.centre();
    for (const bool upright : {false, true}) {
        const double width = upright ? m_em : length;
        const double height = upright ? length : m_em;
        if (width > seen.width() || height > seen.height()) continue;

        constexpr int spots = 15;
        std::vector<std::pair<double, Point>> centres;
        for (int ix = 0; ix < spots; ++ix) {
            for (int iy = 0; iy < spots; ++iy) {
                const Point centre{
                    seen.left + width / 2 + (seen.width() - width) * ix / (spots - 1),
                    seen.top + height / 2 + (seen.height() - height) * iy / (spots - 1)};
                centres.push_back({distance(centre, wish), centre});
            }
        }
        std::stable_sort(centres.begin(), centres.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        // Two texts in one line would read as one.
        const double gap = 2 * WordGap * m_em;
        const auto best = std::find_if(centres.begin(), centres.end(), [&](const auto& spot) {
            return isFree(
                boxAround(spot.second, width + (upright ? 0 : gap), height + (upright ? gap : 0)));
        });
        if (best == centres.end()) continue;
        const bool shortest = wording == text.wordings.back();
        if (target && !shortest && best->first > LongLeader * m_em) continue;
        take({text.role, wording, boxAround(best->second, width, height), upright, false, target});
        return true;
    }
    return false;
}

void Placer::floating(const Text& text) {
    for (const std::string& wording : text.wordings)
        for (const Rect& room : text.rooms)
            if (intoRoom(text, wording, room, std::nullopt)) return;
    for (const std::string& wording : text.wordings) {
        for (const Text::Spill& spill : text.spills) {
            const Point target = m_view.toPage(spill.target);
            if (m_area.contains(boxAround(target, 0, 0)) &&
                intoRoom(text, wording, spill.room, target))
                return;
        }
    }
}

bool Placer::figure(const DimensionChain& chain, const Figure& wanted, PlacedDimension& space) {
    if (!m_chainShown && !wanted.detailed.empty() &&
        figure(chain, wanted.detailed, wanted.toScale, space))
        return true;
    return figure(chain, wanted.text, wanted.toScale, space);
}

/// Places a figure at a space of its chain and sets how the space ends.
bool Placer::figure(const DimensionChain& chain, const std::string& text, bool toScale,
                    PlacedDimension& space) {
    const double width = m_measure.width(text, Role::Dimension);
    const double length = distance(space.from, space.to);
    const Point middle{(space.from.x + space.to.x) / 2, (space.from.y + space.to.y) / 2};
    using Ends = PlacedDimension::Ends;
    const auto tryAt = [&](double along, double aside, Ends ends) {
        const Point centre = chain.vertical ? Point{middle.x + aside, middle.y - along}
                                            : Point{middle.x + along, middle.y - aside};
        const Box box =
            chain.vertical ? boxAround(centre, m_em, width) : boxAround(centre, width, m_em);
        if (!m_area.contains(box) || !isFree(box)) return false;
        space.ends = ends;
        take({Role::Dimension, text, box, chain.vertical, !toScale});
        return true;
    };
    const Ends narrow = length >= ArrowRoom * m_em ? Ends::Arrows : Ends::Ticks;
    if (chain.outside && length < width + ArrowRoom * m_em) {
        const Ends ends = narrow == Ends::Arrows ? narrow : Ends::ArrowsFromOutside;
        const double beyond =
            length / 2 + (ends == Ends::Arrows ? Gap : ArrowRoom) * m_em + width / 2;
        // Below it nothing else is dimensioned, beyond it the barriers may be.
        if (chain.offset < 0 && tryAt(0, -Aside * m_em, narrow)) return true;
        return tryAt(beyond, 0, ends) || tryAt(-beyond, 0, ends);
    }
    if (length >= width + ArrowRoom * m_em && tryAt(0, 0, Ends::Arrows)) return true;
    if (length >= width + Gap * m_em && tryAt(0, 0, Ends::Ticks)) return true;
    const double outwards = chain.offset < 0 ? -1 : 1;
    if (tryAt(0, outwards * Aside * m_em, narrow)) return true;
    return !chain.vertical && tryAt(0, -outwards * Aside * m_em, narrow);
}

void Placer::chain(const DimensionChain& chain) {
    const auto onLine = [&](double stop, double offset) {
        Point p = m_view.toPage(chain.vertical ? Point{chain.line, stop} : Point{stop, chain.line});
        (chain.vertical ? p.x : p.y) += (chain.vertical ? 1 : -1) * offset * m_em;
        return p;
    };
    const std::size_t textsBefore = m_placed.texts.size();
    const std::size_t takenBefore = m_taken.size();
    std::vector<PlacedDimension> spaces;
    for (std::size_t i = 0; i < chain.figures.size(); ++i) {
        PlacedDimension space{onLine(chain.stops[i], chain.offset),
                              onLine(chain.stops[i + 1], chain.offset)};
        if (!figure(chain, chain.figures[i], space)) space.ends = PlacedDimension::Ends::Ticks;
        spaces.push_back(space);
    }
    const std::size_t shown = m_placed.texts.size() - textsBefore;
    m_chainShown = shown >= (chain.complete ? spaces.size() : 1);
    if (!m_chainShown) { // a line without figures says nothing
        m_placed.texts.resize(textsBefore);
        m_taken.resize(takenBefore);
        return;
    }
    for (const PlacedDimension& space : spaces) {
        m_placed.dimensions.push_back(space);
        takeLine(space.from, space.to);
    }
    if (!chain.extensions) return;
    const double beyond = chain.offset + (chain.offset < 0 ? -0.3 : 0.3);
    for (const double stop : chain.stops) {
        m_placed.extensions.push_back({onLine(stop, 0), onLine(stop, beyond)});
        takeLine(onLine(stop, 0), onLine(stop, beyond));
    }
}

Placement Placer::place() {
    for (const Text& text : m_drawing.texts)
        if (text.at) fixed(text);
    for (const DimensionChain& c : m_drawing.chains)
        chain(c);
    for (const Text& text : m_drawing.texts)
        if (!text.at) floating(text);
    return std::move(m_placed);
}

} // namespace

bool Box::overlaps(const Box& other) const {
    return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
}

bool Box::contains(const Box& other) const {
    return other.left >= left && other.right <= right && other.top >= top && other.bottom <= bottom;
}

Box View::toPage(const Rect& r) const {
    const Point upperLeft = toPage(Point{r.left, r.top});
    const Point lowerRight = toPage(Point{r.right, r.bottom});
    return {upperLeft.x, upperLeft.y, lowerRight.x, lowerRight.y};
}

View viewOf(const Drawing& drawing, const Box& area, double em, const Zoom& zoom) {
    const Margins& m = drawing.margins;
    const Box inner{area.left + m.left * em, area.top + m.top * em, area.right - m.right * em,
                    area.bottom - m.bottom * em};
    constexpr double least = 1; // of a window that leaves no room at all
    View view;
    view.scale = std::min(std::max(inner.width(), least) / drawing.bounds.width(),
                          std::max(inner.height(), least) / drawing.bounds.height());
    Point middle = drawing.bounds.centre();
    Point page = inner.centre();
    if (zoom.factor != 1) {
        view.scale *= zoom.factor;
        middle = zoom.centre;
        page = area.centre();
    }
    view.origin = {page.x - view.scale * middle.x, page.y + view.scale * middle.y};
    return view;
}

Placement placeLabels(const Drawing& drawing, const View& view, const Box& area,
                      const TextMeasure& measure) {
    return Placer(drawing, view, area, measure).place();
}

std::vector<std::pair<Point, Point>> hatchLines(const std::vector<Point>& polygon, Hatch hatch,
                                                double step, Point origin, const Box& area) {
    std::vector<std::pair<Point, Point>> lines;
    if (hatch == Hatch::None || polygon.size() < 3) return lines;
    // Along a line x + slope * y stays the same; y runs downwards.
    const double slope = hatch == Hatch::Rising ? 1 : -1;
    const auto across = [&](Point p) { return p.x + slope * p.y; };
    const auto order = [&](Point a, Point b) { return across(a) < across(b); };
    const auto [least, most] = std::minmax_element(polygon.begin(), polygon.end(), order);
    const double top = slope > 0 ? area.top : area.bottom;
    const double bottom = slope > 0 ? area.bottom : area.top;
    const double from = std::max(across(*least), across({area.left, top}));
    const double to = std::min(across(*most), across({area.right, bottom}));
    const double anchor = across(origin);
    std::vector<Point> crossings;
    for (double c = anchor + std::ceil((from - anchor) / step) * step; c < to; c += step) {
        crossings.clear();
        for (std::size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
            const double a = across(polygon[j]) - c;
            const double b = across(polygon[i]) - c;
            if ((a < 0) == (b < 0)) continue;
            const double t = a / (a - b);
            crossings.push_back({polygon[j].x + t * (polygon[i].x - polygon[j].x),
                                 polygon[j].y + t * (polygon[i].y - polygon[j].y)});
        }
        std::sort(crossings.begin(), crossings.end(), [](Point a, Point b) { return a.x < b.x; });
        for (std::size_t i = 0; i + 1 < crossings.size(); i += 2)
            lines.push_back({crossings[i], crossings[i + 1]});
    }
    return lines;
}

ScaleBar scaleBar(double scale, double widest) {
    const double longest = widest / scale;
    if (!(longest > 0) || !std::isfinite(longest)) return {};
    const double power = std::pow(10, std::floor(std::log10(longest)));
    double length = power;
    for (const double step : {2.0, 5.0})
        if (step * power <= longest) length = step * power;
    return {length, length * scale};
}

} // namespace telvo::plot
