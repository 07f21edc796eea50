// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <vector>

class QLabel;
class QScrollArea;

namespace telvo::plot::ui {
class PlanView;
}

namespace telvo::app {
class ProjectSession;
class SettingsStore;
} // namespace telvo::app

namespace telvo::app::ui {

/// The open case at a glance: what it is called, its loading condition, its main dimensions, the
/// stability factors of its values, and the plan of the panel.
class CaseOverview : public QWidget {
    Q_OBJECT
  public:
    CaseOverview(const ProjectSession& session, const SettingsStore& settings,
                 QWidget* parent = nullptr);

    void showCase();

  private:
    void showKept();
    void showFacts();
    void showPlan();

    const ProjectSession& m_session;
    const SettingsStore& m_settings;
    QLabel* m_title = nullptr;
    QLabel* m_file = nullptr;
    QScrollArea* m_keptBox = nullptr;
    QLabel* m_kept = nullptr; ///< what the case file did not give
    QWidget* m_factBox = nullptr;
    QLabel* m_automatic = nullptr; ///< automatic values of the record that are not its own
    std::vector<QLabel*> m_facts;  ///< in the order of project::caseFacts()
    plot::ui::PlanView* m_plan = nullptr;
};

} // namespace telvo::app::ui
