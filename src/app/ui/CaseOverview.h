// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <map>
#include <QWidget>
#include <string>

class QLabel;
class QScrollArea;
class QVBoxLayout;

namespace telvo::plot::ui {
class PlanView;
}

namespace telvo::app::ui {

class Program;

/// The open case at a glance: what it is called, its loading condition, its main dimensions, the
/// stability factors of its values, and the plan of the panel.
class CaseOverview : public QWidget {
    Q_OBJECT
  public:
    explicit CaseOverview(Program& program, QWidget* parent = nullptr);

    void showCase();

  private:
    void addFact(QVBoxLayout& layout, const std::string& name, const QString& caption);
    void showKept();
    void showFacts();
    void showPlan();

    Program& m_program;
    QLabel* m_title = nullptr;
    QLabel* m_file = nullptr;
    QScrollArea* m_keptBox = nullptr;
    QLabel* m_kept = nullptr; ///< what the case file did not give
    QWidget* m_factBox = nullptr;
    QLabel* m_automatic = nullptr; ///< automatic values of the record that are not its own
    std::map<std::string, QLabel*> m_facts;
    plot::ui::PlanView* m_plan = nullptr;
};

} // namespace telvo::app::ui
