// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ui/Form.h"
#include "chart/ui/picture.h"
#include "study/graph/GraphOptions.h"
#include "study/graph/sfGraph.h"

#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

class QCheckBox;
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
    /// All values of the parameter that give that case a factor.
    std::function<std::vector<Crossing>(double target)> valuesAt;
};

/// What the graph window has done for it.
struct GraphActions : chart::ui::PictureActions {
    /// The same graph of the case that is open now.
    std::function<std::variant<GraphSubject, Refusal>()> ofOpenCase;
    /// Opens the options; nothing when they stay as they are.
    std::function<std::optional<GraphOptions>(QWidget* parent)> editOptions;
};

/// A parametric graph in a window of its own, not modal: curves with a cross-hair, values at a
/// typed stability factor, copy, export and print. It follows the open case unless it is pinned to
/// the case that it shows; F5 computes it anew in any case.
class frmGraph : public telvo::ui::Form {
    Q_OBJECT
  public:
    frmGraph(GraphSubject subject, const GraphOptions& options, GraphActions actions,
             const telvo::ui::FormServices& services, QWidget* parent = nullptr);

    /// The graph as it leaves the program.
    chart::ui::Picture picture() const;

    /// To be called when the open case changed.
    /// Given: reason  why the graph is no longer that of the open case; empty when it still is
    void caseChanged(const std::string& reason);
    /// The case that is shown has another name now.
    void setCaseName(const std::string& name);

  private:
    QLabel* textLabel(const QString& name, const QString& accessibleName);
    QHBoxLayout* makeTargetRow();
    void showSubject(GraphSubject subject);
    void showTitle();
    void computeAnew();
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
    QCheckBox* m_pin = nullptr;
    std::string m_reason;          ///< why it is not the graph of the open case; empty: it is
    std::optional<double> m_found; ///< the target whose values are shown
};

} // namespace telvo::study::ui
