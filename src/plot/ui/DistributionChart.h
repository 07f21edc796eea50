// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/ui/customPlot.h"
#include "chart/ui/picture.h"
#include "plot/distribution.h"

#include <QPalette>
#include <vector>

namespace telvo::plot::ui {

/// A distribution as bars across the panel: widths to scale, parts stacked, the total on top, the
/// strength as a line across its bar. A strength far above the rest is an arrow at the upper edge.
/// Bars carry the object names "bar:NAME:COMPONENT", strength lines "strength:NAME".
class DistributionChart : public QCustomPlot {
    Q_OBJECT
  public:
    explicit DistributionChart(const QString& name, QWidget* parent = nullptr);

    void setDistribution(plot::Distribution distribution);
    const plot::Distribution& distribution() const { return m_distribution; }

    /// Draws everything anew; the widget itself follows its own palette and font.
    void compose(const QPalette& palette, const QFont& font);
    /// Breaks and cuts the texts for a chart of this size.
    void fitTexts(QSize size);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    struct Label {
        QCPItemText* item = nullptr;
        const plot::Bar* bar = nullptr;
        bool ofStrength = false;
    };

    void composeAxes();
    void composeBar(const plot::Bar& bar);
    void composeStrength(const plot::Bar& bar);
    void composeKey();
    void addLabel(const plot::Bar& bar, bool ofStrength);
    QColor componentColour(std::size_t component) const;
    void fitFigures(QSize size);
    double roomOf(const plot::Bar& bar) const;
    void placeLabels();
    void placeFigures(const plot::Bar& bar, QCPItemText& total, QCPItemText* strength);
    bool offScale(const plot::Bar& bar) const;

    plot::Distribution m_distribution;
    QPalette m_palette;
    QFont m_font;
    plot::ValueSpan m_span; ///< of the axis of values
    bool m_upright = false; ///< figures
    double m_length = 0;    ///< room of a figure on its bar; pixels
    QCPTextElement* m_title = nullptr;
    QCPTextElement* m_subtitle = nullptr;
    QCPTextElement* m_notes = nullptr;
    std::vector<Label> m_labels;
};

/// A distribution that leaves the program.
chart::ui::Picture distributionPicture(const plot::Distribution& distribution,
                                       const std::string& name);

} // namespace telvo::plot::ui
