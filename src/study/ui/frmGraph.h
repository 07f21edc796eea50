// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/Form.h"
#include "plot/ui/picture.h"
#include "study/GraphOptions.h"
#include "study/sfGraph.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

class QHBoxLayout;
class QLabel;
class QPushButton;

namespace telvo::ui {
class NumberEdit;
}

namespace telvo::study::ui {

class GraphView;

/// What the graph window shows.
struct GraphSubject {
    SfGraph graph;
    std::string caseName; ///< of the case it was computed for
    std::string csv;      ///< its numbers: graphCsv()
};

/// What the graph window has done for it.
struct GraphActions : telvo::ui::PictureActions {
    /// All values of the parameter that give a factor.
    std::function<std::vector<Crossing>(double target)> valuesAt;
    /// Opens the options; nothing when they stay as they are.
    std::function<std::optional<GraphOptions>(QWidget* parent)> editOptions;
};

/// A parametric graph in a window of its own, not modal: curves with a cross-hair, values at a
/// typed stability factor, copy, export and print.
class frmGraph : public telvo::ui::Form {
    Q_OBJECT
  public:
    frmGraph(GraphSubject subject, const GraphOptions& options, GraphActions actions,
             const telvo::ui::FormServices& services, QWidget* parent = nullptr);

    /// The graph as it leaves the program.
    telvo::ui::Picture picture() const;

  private:
    QLabel* textLabel(const QString& name, const QString& accessibleName);
    QHBoxLayout* makeTargetRow();
    void showReading();
    void findTarget();
    void editOptions();
    void copy();
    void exportGraph();
    void print();

    GraphSubject m_subject;
    GraphActions m_actions;
    GraphView* m_view = nullptr;
    QLabel* m_reading = nullptr;
    telvo::ui::NumberEdit* m_target = nullptr;
    QLabel* m_crossings = nullptr;
    std::optional<double> m_found; ///< the target whose values are shown
};

} // namespace telvo::study::ui
