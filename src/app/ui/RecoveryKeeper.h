// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Messages.h"
#include "project/ProjectInput.h"

#include <functional>
#include <memory>
#include <optional>
#include <QLockFile>
#include <QString>
#include <QTimer>
#include <string>

namespace telvo::app::ui {

/// Keeps a copy of the unsaved case in the temporary data folder, so that a crash or a kill loses
/// at most the last seconds. Every running program has a copy and a lock of its own.
class RecoveryKeeper {
  public:
    /// Given: unsaved  the case to keep; nothing when all is saved
    RecoveryKeeper(const std::string& folder, Messages& messages,
                   std::function<std::optional<project::ProjectCase>()> unsaved);
    ~RecoveryKeeper();
    RecoveryKeeper(const RecoveryKeeper&) = delete;

    /// Something changed: the copy follows within `delay`.
    void touch();
    /// Brings the copy up to date at once. Returned: whether what is unsaved is kept.
    bool keep();
    /// Removes the copy: the case was saved or given up.
    void discard();

    /// Copies that programs left behind which no longer run: asks about each until one is taken.
    /// `recover` takes the case over. Yes opens a copy, No removes it, Cancel leaves it for the
    /// next start.
    void offer(const std::function<void(project::ProjectCase)>& recover);

    static constexpr int delay = 2000; ///< milliseconds

  private:
    bool offerOne(const QString& path, const std::function<void(project::ProjectCase)>& recover);
    bool write(const project::ProjectCase& unsaved);

    Messages& m_messages;
    std::function<std::optional<project::ProjectCase>()> m_unsaved;
    QString m_folder;
    QString m_path;
    std::unique_ptr<QLockFile> m_lock;
    QTimer m_timer;
    bool m_complained = false;
};

} // namespace telvo::app::ui
