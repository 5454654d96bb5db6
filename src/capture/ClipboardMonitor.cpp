#include "capture/ClipboardMonitor.h"

#include "foundation/Log.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kCheckInterval = 500ms;

void printIgnored(const RunningApplication &application)
{
    const QString &name = application.localizedName;
    printLine(u"Ignored clipboard change from app: "_s + (name.isEmpty() ? u"Unknown"_s : name) +
              u" ("_s + application.bundleIdentifier + u')');
}

} // namespace

ClipboardMonitor::ClipboardMonitor(Pasteboard &pasteboard, Scheduler &scheduler, const Clock &clock,
                                   ClipboardItemManager &itemManager,
                                   const PrivacySettingsManager &privacySettings,
                                   const FileReferences &fileReferences)
    : m_pasteboard(pasteboard)
    , m_scheduler(scheduler)
    , m_inspector(clock, privacySettings, fileReferences)
    , m_captures(itemManager)
{
    m_pausedNotices.begin(0); // Until the start.
    m_captures.onItem = [this](const ClipboardItem &item) {
        if (onNewClipboardItem)
            onNewClipboardItem(item);
    };
    m_captures.onPictureStored = [this] {
        if (onPictureStored)
            onPictureStored();
    };
    m_captures.onIdle = [this] {
        // There may be something that has had to wait.
        if (m_timer)
            checkForChanges();
    };
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
    noteSuspension();
}

void ClipboardMonitor::stopMonitoring()
{
    // Whoever else listens to the pasteboard is left alone.
    if (!m_timer)
        return;
    m_timer.reset();
    m_pasteboard.onChanged = {};
    noteSuspension();
}

void ClipboardMonitor::setPaused(bool paused)
{
    m_isPaused = paused;
    noteSuspension();
}

void ClipboardMonitor::setUserPaused(bool paused, std::optional<std::chrono::milliseconds> duration)
{
    m_userPauseTimer.reset();
    if (paused && duration && *duration > 0ms)
        m_userPauseTimer = m_scheduler.after(*duration, [this] { resumeFromUserPause(); });
    setUserFlag(paused);
}

void ClipboardMonitor::resumeFromUserPause()
{
    m_userPauseTimer.reset();
    setUserFlag(false);
}

void ClipboardMonitor::setUserFlag(bool paused)
{
    m_isUserPaused = paused;
    noteSuspension();
    emit clipboardMonitorPauseStateChanged();
}

void ClipboardMonitor::noteSuspension()
{
    if (!m_timer || m_isPaused || m_isUserPaused)
        m_pausedNotices.begin(m_pasteboard.noticedCount());
    else
        m_pausedNotices.end(m_pasteboard.noticedCount());
}

void ClipboardMonitor::checkForChanges()
{
    const quint64 changeCount = m_pasteboard.changeCount();
    if (changeCount == m_lastChangeCount || m_captures.isFull())
        return;
    // Several programs may have copied since the last look; none of it is to be lost. They are
    // taken while paused too, or what nobody is to see would wait there.
    const QList<PasteboardSnapshot> snapshots = m_pasteboard.takeSnapshotsSince(m_lastChangeCount);
    m_lastChangeCount = snapshots.isEmpty() ? changeCount : snapshots.last().changeCount;
    for (const PasteboardSnapshot &snapshot : snapshots) {
        processClipboardChange(snapshot);
        m_pausedNotices.forgetBefore(snapshot.notice);
    }
}

void ClipboardMonitor::processClipboardChange(const PasteboardSnapshot &snapshot)
{
    if (snapshot.isOwnWrite)
        return;
    // A pause is about recording; what an ignored program copied is not to stay anywhere.
    const bool isIgnored = m_inspector.isIgnored(snapshot);
    if (isIgnored)
        m_pasteboard.discard(snapshot);
    else
        m_pasteboard.keepAlive(snapshot);
    if (m_pausedNotices.contains(snapshot.notice))
        return;
    if (isIgnored)
        printIgnored(*snapshot.frontmostApplication);
    else
        m_captures.add(m_inspector.inspect(snapshot));
}
