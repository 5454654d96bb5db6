#include "app/ScopedFileLease.h"

#include "core/ClipboardItem.h"
#include "core/FileReferences.h"
#include "foundation/FilePath.h"
#include "foundation/TaggedLog.h"
#include "platform/Clock.h"
#include "platform/Scheduler.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kLeaseWatchdogTimeout = 8s;

} // namespace

ScopedFileLease::ScopedFileLease(const FileReferences &fileReferences, Scheduler &scheduler,
                                 const Clock &clock, const UserDefaults &defaults)
    : m_fileReferences(fileReferences)
    , m_scheduler(scheduler)
    , m_clock(clock)
    , m_defaults(defaults)
{
}

ScopedFileLease::~ScopedFileLease() = default;

void ScopedFileLease::beginScopedFileURLAccess(const QUrl &url)
{
    releaseActiveScopedFileURLIfNeeded(u"normal"_s);
    const QUuid leaseID = QUuid::createUuid();
    m_activeScopedFileURL = url;
    m_activeScopedFileURLAccessing = m_fileReferences.startAccess(url);
    m_activeScopedFileURLLeaseID = leaseID;
    if (!isAccessing()) {
        logDragPaste(m_defaults, [&] {
            return u"beginScopedFileURLAccess startAccessing returned false path="_s
                   + FilePath::of(url);
        });
        return;
    }
    m_activeScopedFileURLLeaseStartedAt = m_clock.now();
    m_activeScopedFileURLWatchdog = m_scheduler.after(
        kLeaseWatchdogTimeout, [this, leaseID] { releaseIfStill(leaseID, u"watchdog timeout"_s); });
    logDragPaste(m_defaults, [&] {
        return u"beginScopedFileURLAccess started path="_s + FilePath::of(url) + u" lease="_s
               + uuidString(leaseID);
    });
}

void ScopedFileLease::releaseActiveScopedFileURLIfNeeded(const QString &reason)
{
    m_activeScopedFileURLWatchdog.reset();
    if (isAccessing()) {
        m_activeScopedFileURLAccessing.reset();
        logRelease(reason);
    }
    m_activeScopedFileURL.reset();
    m_activeScopedFileURLLeaseID.reset();
    m_activeScopedFileURLLeaseStartedAt.reset();
}

void ScopedFileLease::scheduleScopedFileURLRelease(const QString &reason,
                                                   std::chrono::milliseconds delay)
{
    if (!m_activeScopedFileURL)
        return;
    m_scheduler.runAfter(delay, [this, alive = std::weak_ptr(m_alive),
                                 leaseID = m_activeScopedFileURLLeaseID, reason] {
        if (!alive.expired())
            releaseIfStill(leaseID, reason);
    });
}

void ScopedFileLease::releaseIfStill(const std::optional<QUuid> &leaseID, const QString &reason)
{
    if (m_activeScopedFileURLLeaseID == leaseID)
        releaseActiveScopedFileURLIfNeeded(reason);
}

void ScopedFileLease::logRelease(const QString &reason) const
{
    logDragPaste(m_defaults, [&] {
        const auto held = m_clock.now() - m_activeScopedFileURLLeaseStartedAt.value();
        const auto heldMs = std::chrono::duration_cast<std::chrono::milliseconds>(held).count();
        return u"releaseActiveScopedFileURLIfNeeded reason="_s + reason + u" path="_s
               + FilePath::of(m_activeScopedFileURL.value()) + u" heldMs="_s
               + QString::number(heldMs);
    });
}
