// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/RecoveryKeeper.h"

#include "app/recovery.h"
#include "base/files.h"
#include "base/ui/qtText.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <utility>

namespace telvo::app::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

const QString NamePattern = QStringLiteral("~recovery-*.tmp");

QString lockPath(const QString& path) {
    return path + QStringLiteral(".lock");
}

/// A lock that only the death of its owner frees, however old it is.
std::unique_ptr<QLockFile> lockFor(const QString& path) {
    auto lock = std::make_unique<QLockFile>(lockPath(path));
    lock->setStaleLockTime(0);
    return lock;
}

} // namespace

RecoveryKeeper::RecoveryKeeper(const std::string& folder, Messages& messages,
                               std::function<std::optional<project::ProjectCase>()> unsaved)
    : m_messages(messages), m_unsaved(std::move(unsaved)), m_folder(toQt(folder)) {
    const QString name = QStringLiteral("~recovery-%1-%2.tmp")
                             .arg(QCoreApplication::applicationPid())
                             .arg(QDateTime::currentMSecsSinceEpoch());
    m_path = m_folder + name;
    m_timer.setSingleShot(true);
    m_timer.setInterval(delay);
    QObject::connect(&m_timer, &QTimer::timeout, [this] { keep(); });
}

RecoveryKeeper::~RecoveryKeeper() = default;

void RecoveryKeeper::touch() {
    // A timer that runs is not begun anew: steady typing must not put the copy off.
    if (!m_timer.isActive()) m_timer.start();
}

bool RecoveryKeeper::keep() {
    m_timer.stop();
    const auto unsaved = m_unsaved();
    if (unsaved) return write(*unsaved);
    discard();
    return true;
}

bool RecoveryKeeper::write(const project::ProjectCase& unsaved) {
    std::optional<Fault> fault;
    if (!m_lock) {
        auto lock = lockFor(m_path);
        if (lock->tryLock(0))
            m_lock = std::move(lock);
        else
            fault = Fault{"The lock file cannot be written", fromQt(lockPath(m_path))};
    }
    if (!fault) {
        const auto text = recoveryText(unsaved);
        if (!text)
            fault = text.fault();
        else if (const Status written = writeFile(fromQt(m_path), *text); !written)
            fault = written.fault();
    }
    if (fault && !std::exchange(m_complained, true))
        m_messages.history("No recovery copy of the unsaved case can be kept: " +
                           faultText(*fault));
    return !fault;
}

void RecoveryKeeper::discard() {
    m_timer.stop();
    if (!m_lock) return;
    QFile::remove(m_path);
    m_lock.reset(); // removes the lock file
}

void RecoveryKeeper::offer(const std::function<void(project::ProjectCase)>& recover) {
    const auto copies =
        QDir(m_folder).entryInfoList({NamePattern}, QDir::Files | QDir::Hidden, QDir::Time);
    for (const QFileInfo& copy : copies)
        if (copy.absoluteFilePath() != QFileInfo(m_path).absoluteFilePath() &&
            offerOne(copy.absoluteFilePath(), recover))
            return;
}

bool RecoveryKeeper::offerOne(const QString& path,
                              const std::function<void(project::ProjectCase)>& recover) {
    const auto lock = lockFor(path);
    if (!lock->tryLock(0)) return false; // its program is running
    const QString time =
        QFileInfo(path).lastModified().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    const auto bytes = readFile(fromQt(path));
    auto kept =
        bytes ? readRecovery(*bytes, fromQt(path)) : Result<project::ProjectCase>(bytes.fault());
    if (!kept) {
        // Out of the way of the next start, but not thrown away.
        QFile::rename(path, path + QStringLiteral(".damaged"));
        m_messages.tell(faultText(kept.fault()));
        return false;
    }
    const Answer answer = m_messages.ask(
        "TELVO ended without saving the case: " + kept->FileName + "\nA copy of " + fromQt(time) +
            " was kept. Open it?\nYes opens the copy, No removes it, Cancel asks again at the "
            "next start.",
        Buttons::YesNoCancel, Answer::Yes, {});
    if (answer == Answer::Cancel) return false;
    if (answer == Answer::Yes) {
        recover(*kept);
        if (!keep()) return true; // the old copy stays until there is a new one
    }
    QFile::remove(path);
    return answer == Answer::Yes;
}

} // namespace telvo::app::ui
