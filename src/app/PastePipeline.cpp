#include "app/PastePipeline.h"

#include "app/ScopedFileLease.h"
#include "capture/ClipboardMonitor.h"
#include "foundation/TaggedLog.h"
#include "platform/PasteKeystroke.h"
#include "platform/Scheduler.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kPasteRefocusDelay = 250ms;
constexpr auto kPasteKeystrokeDelay = 150ms;
/// A window manager that has much to do may not have brought the target to the front by then.
constexpr auto kFocusRetryDelay = 20ms;
constexpr auto kFocusPatience = 600ms;
constexpr auto kPasteFinishDelay = 200ms;
constexpr auto kPasteLeaseReleaseDelay = 350ms;
constexpr auto kInternalCopyPauseDuration = 600ms;

QString nameOrUnknown(const RunningApplication &application)
{
    return application.localizedName.isEmpty() ? u"Unknown"_s : application.localizedName;
}

} // namespace

PastePipeline::PastePipeline(Pasteboard &pasteboard, Workspace &workspace,
                             PasteKeystroke &keystroke, Scheduler &scheduler,
                             ClipboardMonitor &monitor, ClipboardItemManager &itemManager,
                             const UserDefaults &defaults, const ImageCodec &codec,
                             ScopedFileLease &fileLease)
    : m_workspace(workspace)
    , m_keystroke(keystroke)
    , m_scheduler(scheduler)
    , m_monitor(monitor)
    , m_defaults(defaults)
    , m_fileLease(fileLease)
    , m_writer(pasteboard, itemManager, fileLease, codec, defaults)
{
}

PastePipeline::~PastePipeline() = default;

void PastePipeline::pasteItem(const ClipboardItem &item)
{
    m_fileLease.releaseActiveScopedFileURLIfNeeded(u"normal"_s);
    m_isPasting = true;
    m_monitor.setPaused(true);
    logDragPaste(m_defaults, [&] {
        return u"pasteItem start type=%1 id=%2"_s.arg(rawValue(item.contentType),
                                                      uuidString(item.id));
    });
    m_writer.write(item);
    printLine(u"Item copied to clipboard"_s);
    const Run run{++m_runCount, m_previouslyActiveApp, m_fileLease.leaseID()};
    if (onHideWindow)
        onHideWindow();
    later(kPasteRefocusDelay, [this, run] { refocus(run); });
}

void PastePipeline::internalCopyWillWrite()
{
    // The flag is no count: a paste that ends meanwhile ends this pause too.
    m_monitor.setPaused(true);
    later(kInternalCopyPauseDuration, [this] { m_monitor.setPaused(false); });
}

void PastePipeline::applicationWillTerminate()
{
    m_fileLease.releaseActiveScopedFileURLIfNeeded(u"app terminate"_s);
}

void PastePipeline::refocus(const Run &run)
{
    if (!run.target) {
        if (hasLease(run))
            m_fileLease.releaseActiveScopedFileURLIfNeeded(u"no previous app for paste"_s);
        finishPaste(0ms);
        return;
    }
    printLine(u"Activating previous app: "_s + nameOrUnknown(*run.target));
    m_workspace.activate(*run.target);
    m_keystroke.prepare(*run.target);
    later(kPasteKeystrokeDelay, [this, run] { sendKeystroke(run); });
}

void PastePipeline::sendKeystroke(const Run &run)
{
    if (requirePermission())
        pressKeys(run, kFocusPatience);
    else
        endRun(run, false);
}

bool PastePipeline::requirePermission()
{
    if (m_keystroke.isPermitted()) {
        printLine(u"Accessibility permission: GRANTED ✓"_s);
        return true;
    }
    printLine(u"Accessibility permission: DENIED ✗"_s);
    printLine(u"ERROR: 需要辅助功能权限才能自动粘贴！"_s);
    printLine(u"请在 系统设置 → 隐私与安全性 → 辅助功能 中授权 Xcode"_s);
    m_keystroke.requestPermission();
    return false;
}

void PastePipeline::pressKeys(const Run &run, std::chrono::milliseconds patience)
{
    switch (m_keystroke.postKeyDown()) {
    case PasteKeystroke::KeyDown::Posted:
        printLine(u"Posted keyDown event"_s);
        endRun(run, releaseKeys());
        return;
    case PasteKeystroke::KeyDown::Failed:
        printLine(u"ERROR: Failed to create keyDown event!"_s);
        endRun(run, false);
        return;
    case PasteKeystroke::KeyDown::TargetNotFocused: break;
    }
    if (patience > 0ms) {
        later(kFocusRetryDelay,
              [this, run, patience] { pressKeysAgain(run, patience - kFocusRetryDelay); });
        return;
    }
    printLine(u"The paste target is not in front; the entry stays on the clipboard"_s);
    endRun(run, false);
}

void PastePipeline::pressKeysAgain(const Run &run, std::chrono::milliseconds patience)
{
    // Of a run that was begun meanwhile the pasteboard is, and it goes to its end by itself.
    if (run.number == m_runCount)
        pressKeys(run, patience);
}

bool PastePipeline::releaseKeys()
{
    if (!m_keystroke.postKeyUp()) {
        printLine(u"ERROR: Failed to create keyUp event!"_s);
        return false;
    }
    printLine(u"Posted keyUp event"_s);
    printLine(u"Simulated Cmd+V paste completed"_s);
    return true;
}

void PastePipeline::endRun(const Run &run, bool isPosted)
{
    if (hasLease(run) && isPosted)
        m_fileLease.scheduleScopedFileURLRelease(u"paste event posted"_s, kPasteLeaseReleaseDelay);
    else if (hasLease(run))
        m_fileLease.releaseActiveScopedFileURLIfNeeded(u"paste event not posted"_s);
    finishPaste(isPosted ? kPasteFinishDelay : 0ms);
}

/// A paste that was begun meanwhile ends its lease itself.
bool PastePipeline::hasLease(const Run &run) const
{
    return run.leaseID && run.leaseID == m_fileLease.leaseID();
}

void PastePipeline::finishPaste(std::chrono::milliseconds delay)
{
    later(delay, [this] {
        m_isPasting = false;
        m_monitor.setPaused(false);
    });
}

void PastePipeline::later(std::chrono::milliseconds delay, std::function<void()> step)
{
    m_scheduler.runAfter(delay, [alive = std::weak_ptr(m_alive), step = std::move(step)] {
        if (!alive.expired())
            step();
    });
}
