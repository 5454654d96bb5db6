#pragma once

#include "capture/ClipboardCopy.h"
#include "core/ClipboardItem.h"
#include "foundation/SerialQueue.h"

#include <QList>
#include <QObject>

#include <functional>
#include <mutex>

class ClipboardItemManager;

/// Makes the entries of copies and puts them into the history, in the order in which they were
/// copied. What is quick to make is made at once; the rest, and whatever comes while there is some,
/// on a queue of its own. Main thread only.
///
/// Ending the queue puts into the history what is still being made.
class CaptureQueue : public QObject
{
    Q_OBJECT

public:
    /// \a itemManager must outlive the queue.
    explicit CaptureQueue(ClipboardItemManager &itemManager);
    ~CaptureQueue() override;

    void add(ClipboardCopy copy);

    /// Too much is in memory at once; further copies had better wait elsewhere.
    bool isFull() const;

    /// Called with each entry, after it was handed to the history.
    std::function<void(const ClipboardItem &item)> onItem;

    /// Called when the entry of a picture has got its files.
    std::function<void()> onPictureStored;

    /// Called when nothing is being made any more.
    std::function<void()> onIdle;

private:
    struct Made
    {
        std::optional<ClipboardItem> item;
        qsizetype byteCount = 0; ///< Of the copy.
    };

    void announce(const std::optional<ClipboardItem> &item);
    void announceMade();

    // On any thread.
    std::optional<ClipboardItem> record(const ClipboardCopy &copy);

    // On the queue.
    void recordSlowly(const ClipboardCopy &copy);

    ClipboardItemManager &m_itemManager;
    std::function<void()> m_pictureCompletion;
    qsizetype m_underwayCount = 0;
    qsizetype m_underwayBytes = 0;
    std::mutex m_mutex;                       ///< Guards the field below.
    QList<Made> m_made;                       ///< In their order.
    SerialQueue m_queue{"tessarine.capture"}; ///< Ends before what its work touches.
};
