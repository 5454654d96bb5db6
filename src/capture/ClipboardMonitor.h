#pragma once

#include "capture/CaptureQueue.h"
#include "capture/CopyInspector.h"
#include "capture/PausedNotices.h"
#include "platform/Scheduler.h"

#include <QObject>

#include <functional>

class ClipboardItemManager;

/// Watches the pasteboard and passes everything new on to the history. Main thread only.
///
/// Two flags suspend it, either one alone: one that the program sets around its own writes, and one
/// that the user sets. What is copied meanwhile is never captured, not even afterwards; what was
/// copied before is captured, however late its program gives it out.
class ClipboardMonitor : public QObject
{
    Q_OBJECT

public:
    /// Everything handed over must outlive the monitor, which takes Pasteboard::onChanged.
    ClipboardMonitor(Pasteboard &pasteboard, Scheduler &scheduler, const Clock &clock,
                     ClipboardItemManager &itemManager,
                     const PrivacySettingsManager &privacySettings,
                     const FileReferences &fileReferences);
    /// What is still being made into an entry goes into the history.
    ~ClipboardMonitor() override;

    /// Looks at the pasteboard twice a second from now on, and at once when it says that it has
    /// changed. What lies on it now is not captured.
    void startMonitoring();
    void stopMonitoring();

    bool isPaused() const { return m_isPaused; }
    /// The program's own flag. It is not counted: whoever clears it clears it for all.
    void setPaused(bool paused);

    bool isUserPaused() const { return m_isUserPaused; }
    /// Pauses for \a duration, or until resumed if there is none or it is zero. Replaces an earlier
    /// pause.
    void setUserPaused(bool paused, std::optional<std::chrono::milliseconds> duration = {});
    void resumeFromUserPause();

    /// The change of the pasteboard that was acted on last.
    quint64 lastChangeCount() const { return m_lastChangeCount; }

    /// Called for each captured entry, in the order of the copies, after it was handed to the
    /// history. Large ones take their time.
    std::function<void(const ClipboardItem &item)> onNewClipboardItem;

    /// Called some time after a picture was captured, when its entry has got its files.
    std::function<void()> onPictureStored;

signals:
    /// The user's flag was set or cleared.
    void clipboardMonitorPauseStateChanged();

private:
    void checkForChanges();
    void processClipboardChange(const PasteboardSnapshot &snapshot);
    void setUserFlag(bool paused);
    void noteSuspension();

    Pasteboard &m_pasteboard;
    Scheduler &m_scheduler;
    CopyInspector m_inspector;
    CaptureQueue m_captures;
    quint64 m_lastChangeCount = 0;
    std::unique_ptr<ScheduledWork> m_timer;
    bool m_isPaused = false;
    bool m_isUserPaused = false;
    PausedNotices m_pausedNotices;
    std::unique_ptr<ScheduledWork> m_userPauseTimer;
};
