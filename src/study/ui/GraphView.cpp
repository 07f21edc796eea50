// SPDX-License-Identifier: GPL-3.0-or-later
#include "study/ui/GraphView.h"

#include "base/ui/qtText.h"

#include <QKeyEvent>

namespace telvo::study::ui {

using telvo::ui::toQt;

namespace {

constexpr int SmallStep = 1;
constexpr int LargeStep = 10;
constexpr double JumpReachPixels = 6; // between the mouse and a jump that it points at

} // namespace

GraphView::GraphView(const QString& name, SfGraph graph, std::string caption,
                     const GraphOptions& options, QWidget* parent)
    : GraphChart(std::move(graph), caption, parent), m_reading(subject().ownValue) {
    setObjectName(name);
    setAccessibleName(tr("Graph"));
    setAccessibleDescription(toQt(caption));
    setWhatsThis(tr("Move the mouse over the graph, or press the left and right arrow keys, to "
                    "read values off the curves. Ctrl makes large steps."));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setOptions(options);
}

void GraphView::setGraph(SfGraph graph, const std::string& caption) {
    setSubject(std::move(graph), caption);
    setAccessibleDescription(toQt(caption));
    m_reading = subject().ownValue;
    setOptions(options());
}

void GraphView::setOptions(const GraphOptions& options) {
    compose(options, {palette(), font(), logicalDpiY() / 72.0});
    draw();
    Q_EMIT readingChanged();
}

void GraphView::draw() {
    const QColor text = palette().color(QPalette::Text);
    m_line = new QCPItemStraightLine(this);
    m_line->setLayer("overlay");
    m_line->setPen(QPen(text, 1, Qt::DashLine));
    m_marks.clear();
    for (std::size_t i = 0; i < subject().curves.size(); ++i) {
        auto* mark = new QCPItemTracer(this);
        mark->setLayer("overlay");
        mark->setStyle(QCPItemTracer::tsCircle);
        mark->setSize(JumpReachPixels * ink().pointsToPixels);
        mark->setPen(QPen(text, 1.5));
        mark->setBrush(palette().color(QPalette::Base));
        m_marks.push_back(mark);
    }
    moveCrossHair();
    replot(QCustomPlot::rpQueuedReplot);
}

void GraphView::moveCrossHair() {
    const double x = axisValue(m_reading);
    m_line->point1->setCoords(x, 0);
    m_line->point2->setCoords(x, 1);
    for (std::size_t i = 0; i < m_marks.size(); ++i) {
        const auto factor = factorAt(subject(), subject().curves[i], m_reading);
        m_marks[i]->setVisible(factor.has_value());
        if (factor) m_marks[i]->position->setCoords(x, *factor);
    }
}

void GraphView::setReading(double x) {
    x = nearestReading(subject(), options(), x);
    if (x == m_reading) return;
    m_reading = x;
    moveCrossHair();
    layer("overlay")->replot();
    Q_EMIT readingChanged();
}

double GraphView::closeBy() const {
    // The chart is not laid out before it is shown.
    const double perPixel = xAxis->range().size() / std::max({axisRect()->width(), width() / 2, 1});
    return fromAxis(subject(), options(), JumpReachPixels * perPixel);
}

QString GraphView::readingLines() const {
    const std::string jumps = jumpsNear(subject(), options(), m_reading, closeBy());
    return toQt(readingText(subject(), options(), m_reading) + (jumps.empty() ? "" : "\n") + jumps);
}

QSize GraphView::sizeHint() const {
    return QSize(46, 30) * fontMetrics().height();
}

QSize GraphView::minimumSizeHint() const {
    return QSize(24, 18) * fontMetrics().height();
}

void GraphView::resizeEvent(QResizeEvent* event) {
    GraphChart::resizeEvent(event);
    Q_EMIT readingChanged(); // what lies close by depends on the size
}

void GraphView::changeEvent(QEvent* event) {
    GraphChart::changeEvent(event);
    // Before the first drawing there is nothing to draw anew.
    if ((event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) && m_line)
        setOptions(options());
}

void GraphView::paintEvent(QPaintEvent* event) {
    GraphChart::paintEvent(event);
    if (!hasFocus()) return;
    // A line around it; the focus frame of some styles tints what it surrounds.
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void GraphView::mouseMoveEvent(QMouseEvent* event) {
    GraphChart::mouseMoveEvent(event);
    if (axisRect()->rect().contains(event->pos()))
        setReading(fromAxis(subject(), options(), xAxis->pixelToCoord(event->position().x())));
}

void GraphView::keyPressEvent(QKeyEvent* event) {
    const int steps = event->modifiers() & Qt::ControlModifier ? LargeStep : SmallStep;
    const double way = fromAxis(subject(), options(), steps * readingStep(subject(), options()));
    switch (event->key()) {
    case Qt::Key_Left:
        setReading(m_reading - way);
        break;
    case Qt::Key_Right:
        setReading(m_reading + way);
        break;
    case Qt::Key_Home:
        setReading(subject().low);
        break;
    case Qt::Key_End:
        setReading(subject().high);
        break;
    default:
        GraphChart::keyPressEvent(event);
    }
}

void GraphView::focusInEvent(QFocusEvent* event) {
    GraphChart::focusInEvent(event);
    update();
}

void GraphView::focusOutEvent(QFocusEvent* event) {
    GraphChart::focusOutEvent(event);
    update();
}

} // namespace telvo::study::ui
