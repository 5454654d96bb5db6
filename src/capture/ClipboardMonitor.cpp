#include "capture/ClipboardMonitor.h"

#include "core/ClipboardItemManager.h"

#include <QPointer>

using namespace std::chrono_literals;

namespace {

constexpr auto kCheckInterval = 500ms;

} // namespace

ClipboardMonitor::ClipboardMonitor(Pasteboard &pasteboard, const Workspace &workspace,
                                   Scheduler &scheduler, const Clock &clock,
                                   ClipboardItemManager &itemManager,
                                   const PrivacySettingsManager &privacySettings,
                                   const FileReferences &fileReferences)
    : m_pasteboard(pasteboard)
    , m_scheduler(scheduler)
    , m_itemManager(itemManager)
    , m_itemFactory(workspace, clock, privacySettings, fileReferences)
{
}

ClipboardMonitor::~ClipboardMonitor()
{
    stopMonitoring();
}

void ClipboardMonitor::startMonitoring()
{
    m_lastChangeCount = m_pasteboard.changeCount();
    m_timer = m_scheduler.every(kCheckInterval, [this] { checkForChanges(); });
    m_pasteboard.onChanged = [this] { checkForChanges(); };
}

void ClipboardMonitor::stopMonitoring()
{
    // Whoever else listens to the pasteboard is left alone.
    if (!m_timer)
        return;
    m_timer.reset();
    m_pasteboard.onChanged = {};
}

void ClipboardMonitor::setUserPaused(bool paused, std::optional<std::chrono::milliseconds> duration)
{
    m_userPauseTimer.reset();
    m_isUserPaused = paused;
    if (paused && duration && *duration > 0ms)
        m_userPauseTimer = m_scheduler.after(*duration, [this] { resumeFromUserPause(); });
    emit clipboardMonitorPauseStateChanged();
}

void ClipboardMonitor::resumeFromUserPause()
{
    m_userPauseTimer.reset();
    m_isUserPaused = false;
    emit clipboardMonitorPauseStateChanged();
}

void ClipboardMonitor::checkForChanges()
{
    const quint64 changeCount = m_pasteboard.changeCount();
    if (changeCount == m_lastChangeCount)
        return;
    // Several programs may have copied since the last look; none of it is to be lost. They are
    // taken while paused too, or what nobody is to see would wait there.
    const QList<PasteboardSnapshot> snapshots = m_pasteboard.takeSnapshotsSince(m_lastChangeCount);
    m_lastChangeCount = snapshots.isEmpty() ? changeCount : snapshots.last().changeCount;
    if (m_isPaused || m_isUserPaused)
        return;
    for (const PasteboardSnapshot &snapshot : snapshots) {
        m_pasteboard.keepAlive(snapshot);
        processClipboardChange(snapshot);
    }
}

void ClipboardMonitor::processClipboardChange(const PasteboardSnapshot &snapshot)
{
    if (snapshot.isOwnWrite)
        return;
    const auto item = m_itemFactory.makeClipboardItem(snapshot);
    if (!item)
        return;
    m_itemManager.addItem(*item, item->imageRepresentation ? pictureCompletion() : nullptr);
    if (onNewClipboardItem)
        onNewClipboardItem(*item);
}

std::function<void()> ClipboardMonitor::pictureCompletion()
{
    return [monitor = QPointer(this)] {
        if (monitor && monitor->onPictureStored)
            monitor->onPictureStored();
    };
}
