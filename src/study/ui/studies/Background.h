// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <QObject>
#include <stop_token>
#include <thread>

namespace telvo::study::ui {

/// Runs one job at a time in a thread of its own and shows its outcome in the thread of the window.
/// A newer job takes the place of one that waits, and of the outcome of one that runs.
class Background : public QObject {
    Q_OBJECT
  public:
    /// What shows an outcome; called in the thread of the window.
    using Show = std::function<void()>;
    /// Has to look at its token now and then when it takes long. What it throws becomes failed().
    using Job = std::function<Show(std::stop_token)>;

    explicit Background(QObject* parent);
    ~Background() override;

    void start(Job job);
    /// Drops what waits and what runs; nothing of it is shown.
    void cancel();
    /// Asks the job that runs to end, and shows what it has then.
    void stop();
    bool isBusy() const { return m_busy; }

  Q_SIGNALS:
    void failed(const QString& why);

  private:
    void work(const std::stop_token& ends);
    void deliver(std::size_t number, Show show, const QString& why);

    std::mutex m_mutex;
    std::condition_variable_any m_wake;
    Job m_waiting;
    std::stop_source m_running;
    std::size_t m_number = 0; ///< of the newest job
    bool m_busy = false;      ///< as the window sees it
    std::jthread m_thread;    ///< last, so that it ends first
};

} // namespace telvo::study::ui
