#pragma once

#include "foundation/Timestamp.h"
#include "platform/FileAccess.h"

#include <QUuid>

#include <chrono>

class Clock;
class FileReferences;
class ScheduledWork;
class Scheduler;
class UserDefaults;

/// Holds the access to a file that was handed to another program, until that program has had time
/// to read it. Main thread only.
///
/// There is one lease at a time; a new one ends the former. Each has an id, so that a release that
/// was scheduled for an earlier lease does not end a later one, and a watchdog, so that none stays
/// for ever. Reasons are for the log only.
class ScopedFileLease
{
public:
    /// Everything handed in must outlive the lease.
    ScopedFileLease(const FileReferences &fileReferences, Scheduler &scheduler, const Clock &clock,
                    const UserDefaults &defaults);
    ~ScopedFileLease();
    ScopedFileLease(const ScopedFileLease &) = delete;
    ScopedFileLease &operator=(const ScopedFileLease &) = delete;

    /// Begins a lease even if access is refused, which is no error: the other program may reach the
    /// file by other means.
    void beginScopedFileURLAccess(const QUrl &url);

    /// Of the present lease; absent if there is none.
    std::optional<QUuid> leaseID() const { return m_activeScopedFileURLLeaseID; }

    /// Whether the present lease really holds its file.
    bool isAccessing() const { return m_activeScopedFileURLAccessing != nullptr; }

    /// Ends the present lease, if there is one.
    void releaseActiveScopedFileURLIfNeeded(const QString &reason);

    /// Ends the present lease after \a delay, unless another has taken its place by then.
    void scheduleScopedFileURLRelease(const QString &reason, std::chrono::milliseconds delay);

private:
    void releaseIfStill(const std::optional<QUuid> &leaseID, const QString &reason);
    void logRelease(const QString &reason) const;

    const FileReferences &m_fileReferences;
    Scheduler &m_scheduler;
    const Clock &m_clock;
    const UserDefaults &m_defaults;

    std::optional<QUrl> m_activeScopedFileURL;
    /// Null if access was refused.
    std::unique_ptr<FileAccess::Scope> m_activeScopedFileURLAccessing;
    std::optional<QUuid> m_activeScopedFileURLLeaseID;
    std::unique_ptr<ScheduledWork> m_activeScopedFileURLWatchdog;
    std::optional<Timestamp> m_activeScopedFileURLLeaseStartedAt;
    /// Scheduled releases look at it: once it is gone, so is the lease.
    std::shared_ptr<char> m_alive = std::make_shared<char>();
};
