// SPDX-License-Identifier: GPL-3.0-or-later
#include "plot/ui/DistributionChart.h"

#include "base/numbers.h"
#include "base/ui/qtText.h"
#include "chart/ui/chartParts.h"
#include "chart/ui/paintPlot.h"
#include "plot/ui/paintDrawing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <QApplication>
#include <QHelpEvent>
#include <QToolTip>

namespace telvo::plot::ui {

using chart::ui::brokenAt;
using chart::ui::frameChart;
using chart::ui::inkAxes;
using chart::ui::paintPlot;
using chart::ui::paperPalette;
using chart::ui::Picture;
using chart::ui::PlainTicker;
using chart::ui::titleFont;
using telvo::ui::toQt;

using plot::Bar;

namespace {

constexpr int PaperFontPixels = 12;

} // namespace

DistributionChart::DistributionChart(const QString& name, QWidget* parent) : QCustomPlot(parent) {
    setObjectName(name);
    setLocale(QLocale::c());
    setAutoAddPlottableToLegend(false);
    setFocusPolicy(Qt::StrongFocus);
    const auto heading = chart::ui::addHeading(*this);
    m_title = heading.title;
    m_subtitle = heading.subtitle;
    m_notes = new QCPTextElement(this);
    m_notes->setTextFlags(Qt::AlignLeft | Qt::AlignVCenter);
    plotLayout()->addElement(4, 0, m_notes);
    frameChart(*this);
    connect(this, &QCustomPlot::afterLayout, this, &DistributionChart::placeLabels);
}

void DistributionChart::setDistribution(plot::Distribution distribution) {
    m_labels.clear(); // they point into the old one
    m_distribution = std::move(distribution);
    compose(palette(), font());
    setAccessibleName(toQt(m_distribution.caption[1]));
    QStringList words;
    for (const Bar& bar : m_distribution.bars)
        words.append(toQt(plot::barHint(m_distribution, bar)));
    words.append(toQt(m_distribution.total));
    setAccessibleDescription(words.join("; "));
}

bool DistributionChart::offScale(const Bar& bar) const {
    return !m_span.shows(bar.strength.value_or(0));
}

QColor DistributionChart::componentColour(std::size_t component) const {
    // Told apart by every colour vision, and by lightness on grey paper.
    constexpr std::array<QRgb, 4> colours = {0x0072B2, 0xCC79A7, 0xE69F00, 0x009E73};
    const auto source = static_cast<std::size_t>(m_distribution.components[component].source);
    return QColor(colours[source]);
}

void DistributionChart::compose(const QPalette& inPalette, const QFont& font) {
    m_palette = inPalette;
    m_font = font;
    clearPlottables();
    clearItems();
    m_labels.clear();
    setBackground(QBrush(m_palette.color(QPalette::Base)));
    m_span = plot::valueSpan(m_distribution);
    composeAxes();
    for (const Bar& bar : m_distribution.bars) {
        composeBar(bar);
        composeStrength(bar);
    }
    composeKey();
    const QColor text = m_palette.color(QPalette::Text);
    m_title->setFont(titleFont(m_font));
    for (QCPTextElement* element : {m_subtitle, m_notes})
        element->setFont(m_font);
    for (QCPTextElement* element : {m_title, m_subtitle, m_notes})
        element->setTextColor(text);
    fitTexts(size());
}

void DistributionChart::composeAxes() {
    inkAxes(*this, m_palette, m_font);
    xAxis->grid()->setVisible(false);
    xAxis->setSubTicks(false);
    xAxis->setTickLength(0);

    auto values = QSharedPointer<PlainTicker>::create();
    values->scientific = !m_distribution.bars.empty() && !m_distribution.bars.front().strength;
    yAxis->setTicker(values);
    auto ticker = QSharedPointer<QCPAxisTickerText>::create();
    bool cut = false;
    for (const Bar& bar : m_distribution.bars) {
        cut = cut || bar.cut;
        ticker->addTick((bar.left + bar.right) / 2,
                        toQt(bar.name).replace(' ', '\n') + (bar.cut ? "*" : ""));
    }
    xAxis->setTicker(ticker);
    xAxis->setLabel(cut ? tr("Pillar, widths to scale (* drawn narrower than it is)")
                        : tr("Pillar, widths to scale"));
    if (m_distribution.bars.empty()) return;
    const double left = m_distribution.bars.front().left;
    const double right = m_distribution.bars.back().right;
    const double margin = 0.03 * (right - left);
    xAxis->setRange(left - margin, right + margin);
}

void DistributionChart::composeBar(const Bar& bar) {
    QCPBars* below = nullptr;
    for (std::size_t c = 0; c < bar.parts.size(); ++c) {
        auto* part = new QCPBars(xAxis, yAxis);
        part->setObjectName(toQt("bar:" + bar.name + ':' + m_distribution.components[c].name));
        part->setWidthType(QCPBars::wtPlotCoords);
        part->setWidth(bar.right - bar.left);
        part->setPen(QPen(m_palette.color(QPalette::Base), 1));
        part->setBrush(componentColour(c));
        part->addData((bar.left + bar.right) / 2, bar.parts[c]);
        if (below) part->moveAbove(below);
        below = part;
    }
    addLabel(bar, false);
}

void DistributionChart::composeStrength(const Bar& bar) {
    if (!bar.strength) return;
    addLabel(bar, true);
    if (offScale(bar)) return;
    QCPGraph* line = addGraph();
    line->setObjectName(toQt("strength:" + bar.name));
    line->setPen(QPen(m_palette.color(QPalette::Text), 2.5));
    const double over = 0.04 * (bar.right - bar.left);
    line->addData({bar.left - over, bar.right + over}, {*bar.strength, *bar.strength}, true);
}

void DistributionChart::addLabel(const Bar& bar, bool ofStrength) {
    auto* label = new QCPItemText(this);
    label->setLayer("overlay"); // above the lines of the strengths
    label->setClipToAxisRect(false);
    label->position->setType(QCPItemPosition::ptAbsolute);
    label->setPositionAlignment(Qt::AlignCenter);
    label->setColor(m_palette.color(QPalette::Text));
    QFont bold = m_font;
    bold.setBold(!ofStrength);
    label->setFont(bold);
    label->setObjectName((ofStrength ? "strengthFigure:" : "figure:") + toQt(bar.name));
    m_labels.push_back({label, &bar, ofStrength});
}

void DistributionChart::composeKey() {
    legend->clearItems();
    const bool stresses = std::any_of(m_distribution.bars.begin(), m_distribution.bars.end(),
                                      [](const Bar& bar) { return bar.strength.has_value(); });
    legend->setVisible(stresses); // bars of one kind are named by the axis
    if (!stresses) return;
    legend->setFont(m_font);
    legend->setTextColor(m_palette.color(QPalette::Text));
    for (std::size_t c = 0; c < m_distribution.components.size(); ++c) {
        const bool arises = std::any_of(m_distribution.bars.begin(), m_distribution.bars.end(),
                                        [&](const Bar& bar) { return bar.parts[c] != 0; });
        if (!arises) continue;
        const QString object = toQt("bar:" + m_distribution.bars.front().name + ':' +
                                    m_distribution.components[c].name);
        for (int i = 0; i < plottableCount(); ++i)
            if (plottable(i)->objectName() == object) {
                plottable(i)->setName(toQt(m_distribution.components[c].name));
                plottable(i)->addToLegend();
            }
    }
    QCPGraph* sample = addGraph(); // a strength may be off the scale and so have no line
    sample->setPen(QPen(m_palette.color(QPalette::Text), 2.5));
    sample->setName(tr("Strength"));
    sample->addToLegend();
}

void DistributionChart::fitTexts(QSize size) {
    const QFontMetrics metrics(m_font);
    const int line = metrics.height();
    const int width = std::max(size.width() - 2 * line, line);
    m_title->setText(
        m_distribution.caption.empty()
            ? QString()
            : QFontMetrics(m_title->font())
                  .elidedText(toQt(m_distribution.caption.front()), Qt::ElideRight, width));
    QStringList subtitle;
    for (std::size_t i = 1; i < m_distribution.caption.size(); ++i)
        subtitle.append(toQt(m_distribution.caption[i]));
    m_subtitle->setText(brokenAt(subtitle.join(" - "), metrics, width));
    QStringList below;
    if (!m_distribution.total.empty())
        below.append(brokenAt(toQt(m_distribution.total), metrics, width));
    QString notes;
    for (const std::string& note : m_distribution.notes)
        notes += (notes.isEmpty() ? "" : " ") + toQt(note);
    if (!notes.isEmpty()) below.append(brokenAt(notes, metrics, width));
    m_notes->setText(below.join('\n'));
    m_notes->setMargins({line / 2, 0, line / 2, line / 4});
    yAxis->setLabel(metrics.elidedText(toQt(m_distribution.quantity), Qt::ElideRight,
                                       std::max(size.height() - 9 * line, 4 * line)));

    // The key on as many lines as it needs.
    int longest = 0;
    int together = 0;
    for (int i = 0; i < legend->itemCount(); ++i)
        if (auto* item = qobject_cast<QCPPlottableLegendItem*>(legend->item(i))) {
            const int room = metrics.horizontalAdvance(item->plottable()->name()) +
                             legend->iconSize().width() + line;
            longest = std::max(longest, room);
            together += room;
        }
    legend->setWrap(together <= width ? 0 : std::max(1, width / std::max(longest, 1)));
    legend->setFillOrder(QCPLegend::foColumnsFirst);
    fitFigures(size);
}

/// Figures are upright where bars are narrow, and find room above the highest bar. Ticks follow the
/// range only in the next layout, so that it cannot wait until the chart is drawn.
void DistributionChart::fitFigures(QSize size) {
    setViewport(QRect(QPoint(), size));
    for (const auto phase :
         {QCPLayoutElement::upPreparation, QCPLayoutElement::upMargins, QCPLayoutElement::upLayout})
        plotLayout()->update(phase);
    const double line = QFontMetricsF(m_font).height();
    double longest = 0;
    m_upright = false;
    for (const Label& label : m_labels) {
        QString text = toQt(label.ofStrength ? label.bar->strengthFigure : label.bar->figure);
        if (label.ofStrength && offScale(*label.bar)) text += QChar(0x2191); // an arrow up
        label.item->setText(text);
        const double width = QFontMetricsF(label.item->font()).horizontalAdvance(text);
        longest = std::max(longest, width);
        m_upright = m_upright || width > roomOf(*label.bar) - 0.3 * line;
    }
    m_length = (m_upright ? longest : line) + 0.3 * line;
    const double height = std::max(axisRect()->height(), 1);
    const double used = std::max(height - m_length - 0.2 * line, 0.4 * height);
    yAxis->setRange(m_span.lowest,
                    m_span.lowest + (m_span.highest - m_span.lowest) * height / used);
}

/// Width of a bar and of the gap beside it.
double DistributionChart::roomOf(const Bar& bar) const {
    double gap = bar.right - bar.left;
    for (const Bar& other : m_distribution.bars) {
        if (other.left >= bar.right) gap = std::min(gap, other.left - bar.right);
        if (other.right <= bar.left) gap = std::min(gap, bar.left - other.right);
    }
    return xAxis->coordToPixel(bar.right + gap) - xAxis->coordToPixel(bar.left);
}

void DistributionChart::placeLabels() {
    for (const Label& label : m_labels) {
        if (label.ofStrength) continue;
        QCPItemText* strength = nullptr;
        for (const Label& other : m_labels)
            if (other.ofStrength && other.bar == label.bar) strength = other.item;
        placeFigures(*label.bar, *label.item, strength);
    }
}

/// The strength on its line, the total on its bar or within it. Where they meet the total is shown.
void DistributionChart::placeFigures(const Bar& bar, QCPItemText& total, QCPItemText* strength) {
    const QRect plot = axisRect()->rect();
    const double x = xAxis->coordToPixel((bar.left + bar.right) / 2);
    const double half = m_length / 2;
    const double top = yAxis->coordToPixel(std::max(bar.height, 0.0));
    const bool line = bar.strength && !offScale(bar);
    const double strengthLine = line ? yAxis->coordToPixel(*bar.strength) : plot.top();
    // On top, unless the line of the strength runs through it there.
    double y = top - half;
    const bool crossed = line && y - half < strengthLine && strengthLine < y + half;
    const bool within = crossed && plot.bottom() - std::max(top, strengthLine) > m_length;
    if (within) y = std::max(top, strengthLine) + half;
    total.setRotation(m_upright ? -90 : 0);
    total.position->setCoords(x, y);
    // A plate keeps bars, lines and grid out of the figure.
    QColor plate = m_palette.color(QPalette::Base);
    plate.setAlpha(215);
    total.setBrush(plate);
    if (!strength) return;
    strength->setBrush(plate);
    const double above = std::max(strengthLine - half, plot.top() + half);
    strength->setRotation(m_upright ? -90 : 0);
    strength->position->setCoords(x, above);
    strength->setVisible(std::abs(above - y) >= 0.9 * m_length);
}

QSize DistributionChart::sizeHint() const {
    return QSize(50, 36) * fontMetrics().height();
}

QSize DistributionChart::minimumSizeHint() const {
    return QSize(26, 24) * fontMetrics().height();
}

bool DistributionChart::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QCustomPlot::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const double x = xAxis->pixelToCoord(help->x());
    for (const Bar& bar : m_distribution.bars)
        if (axisRect()->rect().contains(help->pos()) && x >= bar.left && x <= bar.right) {
            QToolTip::showText(help->globalPos(), toQt(plot::barHint(m_distribution, bar)), this);
            return true;
        }
    QToolTip::hideText();
    return true;
}

void DistributionChart::changeEvent(QEvent* event) {
    QCustomPlot::changeEvent(event);
    if (event->type() != QEvent::PaletteChange && event->type() != QEvent::FontChange) return;
    if (!m_title) return; // while it is being made
    compose(palette(), font());
    replot(rpQueuedReplot);
}

void DistributionChart::resizeEvent(QResizeEvent* event) {
    fitTexts(event->size());
    QCustomPlot::resizeEvent(event);
}

Picture distributionPicture(const plot::Distribution& distribution, const std::string& name) {
    Picture picture;
    picture.name = name;
    picture.csv = plot::distributionCsv(distribution);
    picture.paint = [distribution](QPainter& painter, const QRectF& page) {
        DistributionChart chart("Picture1");
        chart.setDistribution(distribution);
        QFont font = QApplication::font();
        font.setPixelSize(PaperFontPixels); // pictures count in pixels, whatever they end up on
        chart.compose(paperPalette(), font);
        chart.fitTexts(page.size().toSize());
        paintPlot(chart, painter, page);
    };
    return picture;
}

} // namespace telvo::plot::ui
