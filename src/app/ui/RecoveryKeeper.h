// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/recovery.h"
#include "base/Messages.h"

#include <functional>
#include <memory>
#include <optional>
#include <QDateTime>
#include <QLockFile>
#include <QString>
#include <QTimer>
#include <string>
#include <vector>

namespace telvo::app::ui {

/// A copy of a case in the temporary data folder that can be brought back.
struct KeptCopy {
    QString path;
    QString name; ///< of the case, in full
    QDateTime time;
    bool discarded = false; ///< let go by the user; else left behind by a program that ended
};

/// Keeps a copy of the unsaved case in the temporary data folder, so that a crash or a kill loses
/// at most the last seconds. Every running program has a copy and a lock of its own. What the user
/// lets go is kept there too, the last five of them.
class RecoveryKeeper {
  public:
    /// Given: unsaved  the case to keep; nothing when all is saved
    RecoveryKeeper(const std::string& folder, Messages& messages,
                   std::function<std::optional<UnsavedCase>()> unsaved);
    ~RecoveryKeeper();
    RecoveryKeeper(const RecoveryKeeper&) = delete;

    /// Something changed: the copy follows within `delay`.
    void touch();
    /// Brings the copy up to date at once. Returned: whether what is unsaved is kept.
    bool keep();
    /// Removes the copy: the case was saved or given up.
    void discard();

    /// Takes a case over; it is then in the program as an unsaved one.
    using Recover = std::function<void(UnsavedCase)>;

    /// Copies that programs left behind which no longer run: asks about each, the newest first,
    /// until one is taken. Yes opens a copy, No puts it among the discarded ones, Cancel leaves it
    /// for the next start.
    void offer(const Recover& recover);

    /// Keeps a case that the user lets go. What cannot be kept is told in the history.
    void keepDiscarded(const UnsavedCase& discarded);
    /// Discarded copies and those of programs that no longer run, the newest first.
    std::vector<KeptCopy> copies() const;
    /// Brings one of these back. Returned: whether it could be read.
    bool bringBack(const KeptCopy& copy, const Recover& recover);

    static constexpr int mostDiscarded = 5;
    static constexpr int delay = 2000; ///< milliseconds

  private:
    bool offerOne(const KeptCopy& copy, int others, const Recover& recover);
    bool write(const UnsavedCase& unsaved);
    std::vector<KeptCopy> list(const QString& pattern, bool discarded) const;
    std::optional<UnsavedCase> readOrTell(const QString& path);
    void discardCopy(const QString& path);
    void dropOldestDiscarded();

    Messages& m_messages;
    std::function<std::optional<UnsavedCase>()> m_unsaved;
    QString m_folder;
    QString m_path;
    std::unique_ptr<QLockFile> m_lock;
    QTimer m_timer;
    bool m_complained = false;
};

} // namespace telvo::app::ui
