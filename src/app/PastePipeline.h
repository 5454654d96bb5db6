#pragma once

#include "app/PasteboardItemWriter.h"
#include "platform/Workspace.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class ClipboardMonitor;
class PasteKeystroke;
class Scheduler;

/// Brings an entry of the history into the program that the person came from: writes it to the
/// pasteboard, hides the window, gives the focus back and types the paste command, on a fixed
/// timeline. Only a target that has not got the focus by then is waited for a while. Main thread
/// only.
///
/// While it runs, and around copies that the program makes itself, capture is paused, so that
/// nothing of it comes back as a new entry. What the person copies in the last two tenths of a
/// second of a run, when the keys are sent already, or while the target is waited for, is not recorded
/// either.
class PastePipeline
{
public:
    /// Everything handed in must outlive the pipeline.
    PastePipeline(Pasteboard &pasteboard, Workspace &workspace, PasteKeystroke &keystroke,
                  Scheduler &scheduler, ClipboardMonitor &monitor,
                  ClipboardItemManager &itemManager, const UserDefaults &defaults,
                  const ImageCodec &codec, ScopedFileLease &fileLease);
    ~PastePipeline();
    PastePipeline(const PastePipeline &) = delete;
    PastePipeline &operator=(const PastePipeline &) = delete;

    /// The program that entries are pasted into, until another is set.
    void setPreviouslyActiveApp(const RunningApplication &application)
    {
        m_previouslyActiveApp = application;
    }

    /// Starts a run and returns at once. A second run does not wait for the first.
    void pasteItem(const ClipboardItem &item);

    /// From the first step of a run to its end.
    bool isPasting() const { return m_isPasting; }

    /// To be called just before this program writes to the pasteboard without pasting.
    void internalCopyWillWrite();

    /// To be called first of all when the program ends.
    void applicationWillTerminate();

    /// Hides the history window.
    std::function<void()> onHideWindow;

private:
    /// What a run keeps from its start.
    struct Run
    {
        quint64 number;
        std::optional<RunningApplication> target;
        std::optional<QUuid> leaseID; ///< Of the file that is pasted.
    };

    void refocus(const Run &run);
    void sendKeystroke(const Run &run);
    bool requirePermission();
    void pressKeys(const Run &run, std::chrono::milliseconds patience);
    void pressKeysAgain(const Run &run, std::chrono::milliseconds patience);
    bool releaseKeys();
    void endRun(const Run &run, bool isPosted);
    bool hasLease(const Run &run) const;
    void finishPaste(std::chrono::milliseconds delay);
    void later(std::chrono::milliseconds delay, std::function<void()> step);

    Workspace &m_workspace;
    PasteKeystroke &m_keystroke;
    Scheduler &m_scheduler;
    ClipboardMonitor &m_monitor;
    const UserDefaults &m_defaults;
    ScopedFileLease &m_fileLease;
    PasteboardItemWriter m_writer;
    std::optional<RunningApplication> m_previouslyActiveApp;
    quint64 m_runCount = 0;
    bool m_isPasting = false;
    /// Steps that are still to come look at it: once it is gone, so is the pipeline.
    std::shared_ptr<char> m_alive = std::make_shared<char>();
};
