// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/RecoveryKeeper.h"

#include "base/files.h"
#include "base/ui/qtText.h"

#include <algorithm>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <utility>

namespace telvo::app::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

const QString NamePattern = QStringLiteral("~recovery-*.tmp");
const QString DiscardedPattern = QStringLiteral("~discarded-*.tmp");
constexpr qint64 HeadBytes = 65536; // of a copy: its first line names the case

QString lockPath(const QString& path) {
    return path + QStringLiteral(".lock");
}

/// A file name that no other copy has: process, time and a count within it.
QString copyName(const char* kind) {
    static int count = 0;
    return QStringLiteral("~%1-%2-%3-%4.tmp")
        .arg(QLatin1String(kind))
        .arg(QCoreApplication::applicationPid())
        .arg(QDateTime::currentMSecsSinceEpoch())
        .arg(++count);
}

/// Name of the case in a copy, by its first line; nothing for a text that is no copy.
QString caseNameOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {};
    return toQt(recoveredName(file.read(HeadBytes).toStdString()));
}

/// A lock that only the death of its owner frees, however old it is.
std::unique_ptr<QLockFile> lockFor(const QString& path) {
    auto lock = std::make_unique<QLockFile>(lockPath(path));
    lock->setStaleLockTime(0);
    return lock;
}

} // namespace

RecoveryKeeper::RecoveryKeeper(const std::string& folder, Messages& messages,
                               std::function<std::optional<UnsavedCase>()> unsaved)
    : m_messages(messages), m_unsaved(std::move(unsaved)), m_folder(toQt(folder)) {
    m_path = m_folder + copyName("recovery");
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

bool RecoveryKeeper::write(const UnsavedCase& unsaved) {
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
        m_messages.tell("No recovery copy of the unsaved case can be kept: " + faultText(*fault) +
                        "\nWhat is not saved is lost if the program or the computer stops.");
    return !fault;
}

void RecoveryKeeper::discard() {
    m_timer.stop();
    if (!m_lock) return;
    QFile::remove(m_path);
    m_lock.reset(); // removes the lock file
}

std::vector<KeptCopy> RecoveryKeeper::list(const QString& pattern, bool discarded) const {
    std::vector<KeptCopy> found;
    for (const QFileInfo& copy :
         QDir(m_folder).entryInfoList({pattern}, QDir::Files | QDir::Hidden, QDir::Time)) {
        const QString path = copy.absoluteFilePath();
        if (path == QFileInfo(m_path).absoluteFilePath()) continue;
        if (!discarded && !lockFor(path)->tryLock(0)) continue; // its program is running
        found.push_back({path, caseNameOf(path), copy.lastModified(), discarded});
    }
    return found;
}

std::vector<KeptCopy> RecoveryKeeper::copies() const {
    std::vector<KeptCopy> all = list(NamePattern, false);
    for (KeptCopy& copy : list(DiscardedPattern, true))
        all.push_back(std::move(copy));
    std::stable_sort(all.begin(), all.end(),
                     [](const KeptCopy& a, const KeptCopy& b) { return a.time > b.time; });
    return all;
}

std::optional<UnsavedCase> RecoveryKeeper::readOrTell(const QString& path) {
    const auto bytes = readFile(fromQt(path));
    auto kept = bytes ? readRecovery(*bytes, fromQt(path)) : Result<UnsavedCase>(bytes.fault());
    if (kept) return std::move(*kept);
    // Out of the way of the next start, but not thrown away.
    QFile::rename(path, path + QStringLiteral(".damaged"));
    m_messages.tell(faultText(kept.fault()) + "\nIt was renamed to: " + fromQt(path) + ".damaged");
    return std::nullopt;
}

void RecoveryKeeper::offer(const Recover& recover) {
    const auto waiting = list(NamePattern, false);
    for (std::size_t i = 0; i < waiting.size(); ++i)
        if (offerOne(waiting[i], static_cast<int>(waiting.size() - i) - 1, recover)) return;
}

bool RecoveryKeeper::offerOne(const KeptCopy& copy, int others, const Recover& recover) {
    const auto lock = lockFor(copy.path);
    if (!lock->tryLock(0)) return false;
    const auto kept = readOrTell(copy.path);
    if (!kept) return false;
    const std::string question =
        recoveryQuestion(kept->current.FileName,
                         fromQt(copy.time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))), others);
    switch (m_messages.ask(question, Buttons::YesNoCancel, Answer::Yes, {})) {
    case Answer::Yes:
        recover(*kept);
        if (keep()) QFile::remove(copy.path); // the old copy stays until there is a new one
        return true;
    case Answer::No:
        discardCopy(copy.path);
        return false;
    default:
        return false;
    }
}

void RecoveryKeeper::keepDiscarded(const UnsavedCase& discarded) {
    std::optional<Fault> fault;
    const auto text = recoveryText(discarded);
    if (!text)
        fault = text.fault();
    else if (const Status written = writeFile(fromQt(m_folder + copyName("discarded")), *text);
             !written)
        fault = written.fault();
    if (fault)
        m_messages.history("No copy of the discarded case can be kept: " + faultText(*fault));
    dropOldestDiscarded();
}

void RecoveryKeeper::discardCopy(const QString& path) {
    const QString kept = m_folder + copyName("discarded");
    if (!QFile::rename(path, kept)) return;
    // It counts from now on, however old it is: the newest five stay.
    if (QFile file(kept); file.open(QIODevice::ReadWrite))
        file.setFileTime(QDateTime::currentDateTime(), QFileDevice::FileModificationTime);
    dropOldestDiscarded();
}

void RecoveryKeeper::dropOldestDiscarded() {
    const auto kept = list(DiscardedPattern, true);
    for (std::size_t i = mostDiscarded; i < kept.size(); ++i)
        QFile::remove(kept[i].path);
}

bool RecoveryKeeper::bringBack(const KeptCopy& copy, const Recover& recover) {
    const auto lock = copy.discarded ? nullptr : lockFor(copy.path);
    if (lock && !lock->tryLock(0)) return false;
    const auto kept = readOrTell(copy.path);
    if (!kept) return false;
    recover(*kept);
    if (keep()) QFile::remove(copy.path);
    return true;
}

} // namespace telvo::app::ui
