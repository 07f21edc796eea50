// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "study/graph/graphReading.h"
#include "study/ui/drawings/Drawing.h"

#include <vector>

namespace telvo::study::ui {

/// A parametric graph as a chart: every piece of a curve is a series of its own, so that a jump is
/// a gap with a dotted connector between an open and a closed end. Titles above, limits labelled at
/// the right, the case's own points marked and labelled where nothing is in the way.
/// Series carry the object names "piece:NAME", "symbols:NAME", "jumps:NAME" (connectors),
/// "open:NAME" and "closed:NAME" (ends), "own:NAME" and "limit:LABEL".
class GraphChart : public QCustomPlot {
    Q_OBJECT
  public:
    /// Given: caption  which graph of which case, written below the title
    GraphChart(SfGraph graph, std::string caption, QWidget* parent = nullptr);

    /// Draws everything anew.
    void compose(const GraphOptions& options, const ChartInk& ink);
    /// Cuts and breaks the texts for a chart of this size.
    void fitTexts(QSize size);

    const SfGraph& subject() const { return m_graph; }
    /// Another graph of the same kind; drawn by the next compose().
    void setSubject(SfGraph graph, std::string caption);
    const GraphOptions& options() const { return m_options; }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    QColor curveColour(std::size_t curve) const;
    const ChartInk& ink() const { return m_ink; }
    double axisValue(double x) const { return toAxis(m_graph, m_options, x); }

  private:
    struct LimitLabel {
        QCPItemText* item = nullptr;
        QString text;
        GraphPoint end; ///< right end of the line, on the axis
    };
    struct OwnLabel {
        QCPItemText* item = nullptr;
        GraphPoint at;
    };

    QCPGraph* addSeries(const QString& name, const std::vector<GraphPoint>& points);
    void addMarks(const QString& name, const std::vector<GraphPoint>& points,
                  const QCPScatterStyle& style);
    QCPItemText* addLabel(const QColor& colour, const QFont& font);
    void composeTitles();
    void composeAxes();
    void composeLimits();
    void composeCurve(std::size_t index);
    void composeEnds(std::size_t index);
    void composeOwnPoint(std::size_t index);
    void composeKey();
    void placeLabels();
    void placeLimitLabels();
    void placeOwnLabels();
    std::vector<GraphPoint> drawnInk() const; ///< in pixels

    SfGraph m_graph;
    std::string m_caption;
    GraphOptions m_options;
    ChartInk m_ink;
    QCPTextElement* m_title = nullptr;
    QCPTextElement* m_subtitle = nullptr;
    std::vector<LimitLabel> m_limitLabels;
    std::vector<OwnLabel> m_ownLabels;
};

/// A graph that leaves the program.
/// Given: csv   its numbers: graphCsv()
chart::ui::Picture graphPicture(const SfGraph& graph, const GraphOptions& options,
                                const std::string& caseName, const std::string& csv);

/// "SF vs Depth of Cover - North Mains".
std::string graphCaption(const SfGraph& graph, const std::string& caseName);

} // namespace telvo::study::ui
