// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/RecoveryKeeper.h"

#include <cstdint>
#include <functional>
#include <QListWidget>
#include <QTimer>
#include <QWidget>
#include <string>
#include <vector>

class QLabel;

namespace telvo::app {
class SettingsStore;
}

namespace telvo::app::ui {

/// What the entries of the start page do.
struct StartActions {
    std::function<void(std::int16_t units)> newCase;
    std::function<void()> open;
    std::function<void()> tutorial;
    std::function<void(int slot)> openRecent;
    std::function<void(const KeptCopy&)> bringBack;
    std::function<void(const std::string& path)> openExample;
};

/// A list whose entries are chosen with one click or with Enter.
class ChoiceList : public QListWidget {
    Q_OBJECT
  public:
    ChoiceList(const char* name, const QString& accessibleName, QWidget* parent);

    /// After it was filled anew.
    void restart();

  Q_SIGNALS:
    void chosen(int row);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
};

/// What has the place of the case as long as nothing was entered: a new case, a project file, the
/// recent ones, copies that can be brought back, the examples with their plans, the tutorial.
class StartPage : public QWidget {
    Q_OBJECT
  public:
    StartPage(StartActions actions, std::vector<std::string> examples, QWidget* parent);

    /// Given: copies  what can be brought back
    void showLists(const SettingsStore& settings, std::vector<KeptCopy> copies);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    QWidget* makeCommands();
    void showNextExample();

    StartActions m_actions;
    std::vector<std::string> m_examples;
    std::vector<KeptCopy> m_copies;
    QLabel* m_recentLabel = nullptr;
    ChoiceList* m_recent = nullptr;
    QLabel* m_copiesLabel = nullptr;
    ChoiceList* m_copyList = nullptr;
    ChoiceList* m_exampleList = nullptr;
    QTimer m_drawing; ///< one picture after the other, so that the window is there at once
    int m_drawn = 0;
};

} // namespace telvo::app::ui
