// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/ui/paintDrawing.h"

#include "base/numbers.h"
#include "base/ui/qtText.h"
#include "chart/ui/chartParts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <QCoreApplication>
#include <QFontMetricsF>
#include <QPainter>

namespace telvo::plot::ui {

using chart::ui::brokenAt;
using chart::ui::mixed;
using telvo::ui::toQt;

namespace {

using plot::Point;
using plot::Role;

QPointF point(Point p) {
    return {p.x, p.y};
}

QRectF rect(const plot::Box& box) {
    return {QPointF(box.left, box.top), QPointF(box.right, box.bottom)};
}

/// Colours that people with any colour vision tell apart, from the palette's text and base: coal in
/// greys, the accents blue for the zone, orange for what is caved, green for pillars left behind.
class Colours {
  public:
    explicit Colours(const QPalette& palette)
        : base(palette.color(QPalette::Base)), text(palette.color(QPalette::Text)),
          m_dark(base.lightness() < text.lightness()) {}

    QColor fill(Role role) const {
        switch (role) {
        case Role::Pillar:
            return mixed(base, text, 0.22);
        case Role::Coal:
            return mixed(base, text, 0.10);
        case Role::Barrier:
            return mixed(base, text, 0.32);
        case Role::LeftRow:
        case Role::Bleeder:
            return mixed(base, green, m_dark ? 0.5 : 0.4);
        case Role::ActiveGob:
        case Role::SlabCut:
            return mixed(base, orange, m_dark ? 0.2 : 0.16);
        case Role::SideGob:
            return mixed(base, yellow, m_dark ? 0.16 : 0.14);
        default:
            return base;
        }
    }
    QColor line(Role role) const {
        switch (role) {
        case Role::Amz:
            return accent(blue);
        case Role::ActiveGob:
        case Role::SlabCut:
        case Role::RetreatLine:
            return accent(orange);
        case Role::SideGob:
            return mixed(base, accent(yellow), 0.8);
        case Role::Entry:
        case Role::Pillar:
        case Role::Coal:
        case Role::Barrier:
        case Role::LeftRow:
        case Role::Bleeder:
            return mixed(base, text, 0.6);
        case Role::Dimension:
        case Role::EntryNumber:
            return mixed(base, text, 0.8);
        default:
            return text;
        }
    }

    const QColor base;
    const QColor text;

  private:
    QColor accent(const QColor& colour) const {
        return m_dark ? mixed(colour, text, 0.35) : colour;
    }

    const QColor blue{0x00, 0x72, 0xB2};
    const QColor orange{0xD5, 0x5E, 0x00};
    const QColor yellow{0xB0, 0x80, 0x00};
    const QColor green{0x00, 0x9E, 0x73};
    const bool m_dark;
};

/// Names stand out from figures.
bool isBold(Role role) {
    return role == Role::Name || role == Role::Letter || role == Role::Amz ||
           role == Role::PillarNumber || role == Role::Value;
}

class DrawingPainter {
  public:
    DrawingPainter(const plot::Drawing& drawing, QPainter& painter, const QPalette& palette,
                   const PageLayout& layout, const plot::View& view)
        : m_drawing(drawing), m_painter(painter), m_colours(palette), m_layout(layout),
          m_view(view), m_em(layout.em), m_plain(painter.font()), m_bold(painter.font()) {
        m_bold.setBold(true);
        const plot::TextMeasure measure{
            m_em, [this](std::string_view text, Role role) { return width(text, role); }};
        m_placed = plot::placeLabels(m_drawing, m_view, m_layout.plan, measure);
    }

    void shapes();
    void labels();
    void caption(const QRectF& page);
    void bar(const QRectF& page);
    void key(const QRectF& page);
    void notes(const QRectF& page);

  private:
    QPen pen(Role role, double width) const {
        QPen made(m_colours.line(role), width * m_em);
        made.setJoinStyle(Qt::MiterJoin);
        return made;
    }
    QPolygonF onPage(const std::vector<Point>& points) const;
    void polygon(const plot::Polygon& polygon);
    void hatch(const plot::Polygon& polygon, const QPolygonF& outline);
    void dimension(const plot::PlacedDimension& dimension);
    void arrow(QPointF tip, QPointF from);
    void text(const plot::PlacedText& text);
    void leader(const plot::PlacedText& text);
    double width(std::string_view text, Role role) const {
        return QFontMetricsF(isBold(role) ? m_bold : m_plain, m_painter.device())
            .horizontalAdvance(toQt(text));
    }

    const plot::Drawing& m_drawing;
    QPainter& m_painter;
    const Colours m_colours;
    const PageLayout& m_layout;
    const plot::View& m_view;
    const double m_em;
    const QFont m_plain;
    QFont m_bold;
    plot::Placement m_placed;
};

QPolygonF DrawingPainter::onPage(const std::vector<Point>& points) const {
    QPolygonF polygon;
    polygon.reserve(static_cast<qsizetype>(points.size()));
    for (const Point p : points)
        polygon.append(point(m_view.toPage(p)));
    return polygon;
}

void DrawingPainter::polygon(const plot::Polygon& shape) {
    const QPolygonF outline = onPage(shape.points);
    const bool zone = shape.role == Role::Amz;
    QPen edge = pen(shape.role, zone ? 0.16 : 0.07);
    if (shape.role == Role::SlabCut) edge.setStyle(Qt::DashLine);
    m_painter.setPen(shape.role == Role::Entry ? QPen(Qt::NoPen) : edge);
    QColor fill = zone ? m_colours.line(Role::Amz) : m_colours.fill(shape.role);
    if (zone) fill.setAlphaF(m_drawing.key ? 0 : 0.12F); // colours stay what the key says
    if (shape.colour != plot::NoColour) fill = scaleColour(shape.colour);
    m_painter.setBrush(fill);
    m_painter.drawPolygon(outline);
    if (shape.hatch != plot::Hatch::None) hatch(shape, outline);
}

void DrawingPainter::hatch(const plot::Polygon& shape, const QPolygonF& outline) {
    std::vector<Point> corners;
    for (const QPointF& corner : outline)
        corners.push_back({corner.x(), corner.y()});
    QList<QLineF> lines;
    for (const auto& [from, to] :
         plot::hatchLines(corners, shape.hatch, 0.9 * m_em, m_view.origin, m_layout.plan))
        lines.append({point(from), point(to)});
    QColor colour = m_colours.line(shape.role);
    colour.setAlphaF(0.45F);
    m_painter.setPen(QPen(colour, 0.06 * m_em));
    m_painter.drawLines(lines);
}

void DrawingPainter::shapes() {
    for (const plot::Polygon& shape : m_drawing.polygons)
        polygon(shape);
    m_painter.setBrush(Qt::NoBrush);
    // Where its figure has no room, an arc says nothing.
    const bool angle =
        std::any_of(m_placed.texts.begin(), m_placed.texts.end(),
                    [](const plot::PlacedText& text) { return text.role == Role::Angle; });
    for (const plot::Polyline& line : m_drawing.polylines) {
        const QPolygonF onPaper = onPage(line.points);
        if (line.role == Role::Angle && !angle) continue;
        m_painter.setPen(pen(line.role, line.role == Role::RetreatLine ? 0.22 : 0.1));
        m_painter.drawPolyline(onPaper);
    }
}

void DrawingPainter::arrow(QPointF tip, QPointF from) {
    const QLineF line(tip, from);
    if (line.length() <= 0) return;
    const QPointF along = QPointF(line.dx(), line.dy()) / line.length() * 0.55 * m_em;
    const QPointF aside = QPointF(-along.y(), along.x()) * 0.3;
    m_painter.setBrush(m_painter.pen().color());
    m_painter.drawPolygon(QPolygonF{tip, tip + along + aside, tip + along - aside});
}

void DrawingPainter::dimension(const plot::PlacedDimension& dimension) {
    using Ends = plot::PlacedDimension::Ends;
    const QPointF from = point(dimension.from);
    const QPointF to = point(dimension.to);
    m_painter.drawLine(from, to);
    switch (dimension.ends) {
    case Ends::Arrows:
        arrow(from, to);
        arrow(to, from);
        break;
    case Ends::ArrowsFromOutside: {
        const QPointF along = (to - from) / std::max(QLineF(from, to).length(), 1e-9) * m_em;
        for (const auto& [tip, tail] : {std::pair{from, from - along}, std::pair{to, to + along}}) {
            m_painter.drawLine(tip, tail);
            arrow(tip, tail);
        }
        break;
    }
    case Ends::Ticks:
        for (const QPointF end : {from, to})
            m_painter.drawLine(end + QPointF(-0.2, 0.2) * m_em, end + QPointF(0.2, -0.2) * m_em);
    }
}

void DrawingPainter::leader(const plot::PlacedText& text) {
    const QRectF box = rect(text.box);
    const QPointF target = point(*text.target);
    const QPointF start(std::clamp(target.x(), box.left(), box.right()),
                        std::clamp(target.y(), box.top(), box.bottom()));
    m_painter.setPen(pen(text.role, 0.08));
    m_painter.drawLine(start, target);
    m_painter.setBrush(m_colours.line(text.role));
    m_painter.drawEllipse(target, 0.15 * m_em, 0.15 * m_em);
}

void DrawingPainter::text(const plot::PlacedText& text) {
    const QRectF box = rect(text.box);
    m_painter.setPen(Qt::NoPen);
    if (text.role == Role::EntryNumber) {
        m_painter.setPen(pen(Role::EntryNumber, 0.08));
        m_painter.setBrush(m_colours.base);
        m_painter.drawEllipse(box);
    } else if (m_drawing.key || (text.role != Role::PillarNumber && text.role != Role::Angle &&
                                 (text.role != Role::Letter || text.target))) {
        // A plate keeps hatching and lines out of the letters; plain coal needs none.
        QColor plate = m_colours.base;
        plate.setAlphaF(0.85F);
        m_painter.setBrush(plate);
        m_painter.drawRoundedRect(box, 0.2 * m_em, 0.2 * m_em);
    }
    m_painter.save();
    m_painter.setPen(text.role == Role::Amz ? m_colours.line(Role::Amz) : m_colours.text);
    m_painter.setFont(isBold(text.role) ? m_bold : m_plain);
    m_painter.translate(box.center());
    if (text.upright) m_painter.rotate(-90);
    const QSizeF size = text.upright ? box.size().transposed() : box.size();
    const QRectF upright(QPointF(-size.width(), -size.height()), size * 2);
    m_painter.drawText(upright, Qt::AlignCenter | Qt::TextDontClip, toQt(text.wording));
    if (text.underlined) {
        m_painter.setPen(pen(Role::Dimension, 0.07));
        const double y = 0.45 * m_em;
        m_painter.drawLine(QPointF(-size.width() / 2, y), QPointF(size.width() / 2, y));
    }
    m_painter.restore();
}

void DrawingPainter::labels() {
    m_painter.setPen(pen(Role::Dimension, 0.05));
    for (const auto& [from, to] : m_placed.extensions)
        m_painter.drawLine(point(from), point(to));
    for (const plot::PlacedDimension& line : m_placed.dimensions) {
        m_painter.setPen(pen(Role::Dimension, 0.07));
        dimension(line);
    }
    for (const plot::PlacedText& label : m_placed.texts)
        if (label.target) leader(label);
    for (const plot::PlacedText& label : m_placed.texts)
        text(label);
}

void DrawingPainter::caption(const QRectF& page) {
    QRectF line(page.left() + 0.6 * m_em, m_layout.captionTop, page.width() - 1.2 * m_em, m_em);
    m_painter.setPen(m_colours.text);
    QFont font = m_bold;
    for (const std::string& words : m_drawing.caption) {
        m_painter.setFont(font);
        const QFontMetricsF metrics(font, m_painter.device());
        m_painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip,
                           metrics.elidedText(toQt(words), Qt::ElideRight, line.width()));
        line.translate(0, 1.1 * m_em);
        font = m_plain;
    }
}

void DrawingPainter::bar(const QRectF& page) {
    const plot::ScaleBar bar = plot::scaleBar(m_view.scale, std::min(12 * m_em, page.width() / 3));
    if (!(bar.size > 0)) return;
    const double left = page.left() + 0.6 * m_em;
    const double bottom = m_layout.barBottom;
    m_painter.setPen(pen(Role::Dimension, 0.07));
    for (int part = 0; part < 4; ++part) {
        m_painter.setBrush(part % 2 == 0 ? m_colours.text : m_colours.base);
        m_painter.drawRect(
            QRectF(left + bar.size * part / 4, bottom - 0.35 * m_em, bar.size / 4, 0.35 * m_em));
    }
    m_painter.setPen(m_colours.text);
    m_painter.setFont(m_plain);
    const QString label = toQt(generalNumber(bar.length, 6) + ' ' + m_drawing.unit);
    const QString note =
        QCoreApplication::translate("paintDrawing", "Dimensions in %1").arg(toQt(m_drawing.unit));
    const QFontMetricsF metrics(m_plain, m_painter.device());
    const double right = page.right() - 0.6 * m_em;
    const double after = left + bar.size + 0.4 * m_em;
    const QRectF line(after, bottom - 0.7 * m_em, right - after, m_em);
    m_painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, label);
    const double room = line.width() - metrics.horizontalAdvance(label) - 2 * m_em;
    if (metrics.horizontalAdvance(note) < room)
        m_painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter | Qt::TextDontClip, note);
}

void DrawingPainter::key(const QRectF& page) {
    if (!m_drawing.key || m_drawing.key->steps.empty()) return;
    const plot::ColourKey& key = *m_drawing.key;
    const QFontMetricsF metrics(m_plain, m_painter.device());
    const double box = 1.4 * m_em;
    const double gap = 0.4 * m_em;
    double needed = 0;
    for (const std::string& step : key.steps)
        needed += box + metrics.horizontalAdvance(toQt(step)) + 3 * gap;
    QRectF line(page.left() + 0.6 * m_em, m_layout.keyBottom - m_em, page.width() - 1.2 * m_em,
                m_em);
    m_painter.setFont(m_plain);
    m_painter.setPen(m_colours.text);
    const QString title = metrics.elidedText(toQt(key.title), Qt::ElideRight, line.width());
    m_painter.drawText(line.translated(0, -1.2 * m_em),
                       Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, title);
    // Where it is too long it is set smaller rather than cut.
    m_painter.save();
    const double scale = std::min(1.0, line.width() / needed);
    m_painter.translate(line.left(), line.center().y());
    m_painter.scale(scale, scale);
    double x = 0;
    for (std::size_t i = 0; i < key.steps.size(); ++i) {
        m_painter.setPen(pen(Role::Pillar, 0.07));
        m_painter.setBrush(scaleColour(key.colours[i]));
        m_painter.drawRect(QRectF(x, -0.4 * m_em, box, 0.8 * m_em));
        const QString step = toQt(key.steps[i]);
        const double width = metrics.horizontalAdvance(step);
        m_painter.setPen(m_colours.text);
        m_painter.drawText(QRectF(x + box + gap, -m_em, width, 2 * m_em),
                           Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, step);
        x += box + width + 3 * gap;
    }
    m_painter.restore();
}

void DrawingPainter::notes(const QRectF& page) {
    m_painter.setPen(m_colours.text);
    m_painter.setFont(m_plain);
    QRectF line(page.left() + 0.6 * m_em, m_layout.notesTop, page.width() - 1.2 * m_em, m_em);
    for (const QString& words : m_layout.notes) {
        m_painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, words);
        line.translate(0, m_em);
    }
}

} // namespace

QColor scaleColour(int step) {
    // From yellow over green and blue to dark violet, evenly darker.
    constexpr std::array<QRgb, plot::ColourSteps> colours = {0xFDE725, 0x5EC962, 0x21918C, 0x3B528B,
                                                             0x440154};
    return QColor(colours[static_cast<std::size_t>(std::clamp(step, 0, plot::ColourSteps - 1))]);
}

PageLayout pageLayout(const plot::Drawing& drawing, const QFont& font, const QPaintDevice* device,
                      const QRectF& page) {
    PageLayout layout;
    layout.em = QFontMetricsF(font, device).height();
    const double em = layout.em;
    layout.captionTop = page.top() + 0.3 * em;
    if (!drawing.notes.empty()) {
        QStringList sentences;
        for (const std::string& note : drawing.notes)
            sentences.append(toQt(note));
        layout.notes = brokenAt(sentences.join(' '), QFontMetricsF(font, device),
                                std::max(page.width() - 1.2 * em, em))
                           .split('\n');
    }
    layout.notesTop = page.bottom() - 0.4 * em - static_cast<double>(layout.notes.size()) * em;
    layout.barBottom = layout.notesTop - (layout.notes.isEmpty() ? 0.1 : 0.5) * em;
    const double lines = static_cast<double>(drawing.caption.size());
    layout.keyBottom = layout.barBottom - 0.8 * em;
    const bool key = drawing.key && !drawing.key->steps.empty();
    layout.plan = {page.left(), layout.captionTop + 1.1 * lines * em + 0.1 * em, page.right(),
                   layout.keyBottom - (key ? 2.3 * em : 0)};
    return layout;
}

void paintDrawing(const plot::Drawing& drawing, QPainter& painter, const QRectF& page,
                  const QPalette& palette, const plot::Zoom& zoom) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(page, palette.color(QPalette::Base));
    const PageLayout layout = pageLayout(drawing, painter.font(), painter.device(), page);
    const plot::View view = plot::viewOf(drawing, layout.plan, layout.em, zoom);
    DrawingPainter parts(drawing, painter, palette, layout, view);
    painter.save();
    painter.setClipRect(rect(layout.plan), Qt::IntersectClip);
    parts.shapes();
    parts.labels();
    painter.restore();
    parts.caption(page);
    parts.bar(page);
    parts.key(page);
    parts.notes(page);
    painter.restore();
}

} // namespace telvo::plot::ui
