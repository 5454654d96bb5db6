#pragma once

#include "platform/Pasteboard.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/SnapshotQueue.h"
#include "platform/x11/X11Applications.h"
#include "platform/x11/X11ClipboardManager.h"
#include "platform/x11/X11KeepAlive.h"
#include "platform/x11/X11SelectionConnection.h"
#include "platform/x11/X11SelectionReader.h"
#include "platform/x11/X11SelectionServer.h"

#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>

class ImageCodec;
class SerialQueue;

/// The thread that talks with other programs about selections. It sleeps until the server or one
/// of our other threads wants something.
///
/// Unless stated otherwise, functions run on that thread and the fields are its own.
class X11PasteboardThread
{
public:
    /// Publishes into \a published and then calls \a onPublished, on its own thread. All must
    /// outlive it.
    /// \throws PlatformError if the display cannot be used.
    X11PasteboardThread(const ImageCodec &codec, SnapshotQueue &published,
                        std::function<void()> onPublished);
    ~X11PasteboardThread();
    X11PasteboardThread(const X11PasteboardThread &) = delete;
    X11PasteboardThread &operator=(const X11PasteboardThread &) = delete;

    /// Returns at once. Any thread.
    void write(const PasteboardContents &contents);
    std::future<bool> alsoOwnPrimary();
    /// See Pasteboard, for the change with that notice.
    void keepAlive(quint64 notice);
    void discard(quint64 notice);

private:
    using TimePoint = std::chrono::steady_clock::time_point;
    using Task = std::function<void()>;

    /// What is known of the latest change before anything of it was read.
    struct Notice
    {
        quint64 number = 0;
        std::optional<X11Applications::Front> front;
    };

    /// A copy that was read and waits for its turn, or for its picture.
    struct Publication
    {
        quint64 id = 0;
        PasteboardSnapshot snapshot;
        bool isReady = false;
        TimePoint pictureDeadline; ///< How long later copies wait for the picture.
    };

    void post(Task task);
    void wake();
    void run();
    void runTasks();
    bool handleEvents();
    void handle(const X11Event::Any &event);
    void handleProperty(const X11Event::PropertyChanged &event, TimePoint now);
    void handleRequest(const X11Event::ConversionRequested &request, TimePoint now);
    void handleOwner(const X11Event::OwnerChanged &event, TimePoint now);
    void expire();
    void sleep() const;
    std::optional<TimePoint> deadline() const;

    void addCopy(X11SelectionReader::Copy copy);
    void convertPicture(quint64 id, const QByteArray &picture);
    void encodePicture(const LazyBytes &picture, X11SelectionServer::PictureFormat format,
                       std::function<bool()> isWanted, X11SelectionServer::PictureDone done);
    void runElsewhere(Task work);
    void addPicture(quint64 id, std::optional<PasteboardImage> image);
    void publishAtOnce(PasteboardSnapshot snapshot);
    void publish(PasteboardSnapshot snapshot);
    void publishReady();

    const ImageCodec &m_codec;
    SnapshotQueue &m_published;
    std::function<void()> m_onPublished;

    X11SelectionConnection m_connection;
    X11SelectionReader m_reader;
    X11SelectionServer m_server;
    X11ClipboardManager m_manager;
    X11KeepAlive m_keepAlive;
    DesktopEntries m_entries; ///< Apart from the main thread's, for the sake of what it remembers.
    X11Applications m_applications;
    Notice m_notice;
    std::deque<Publication> m_publications; ///< Oldest first; the first one is not ready.
    quint64 m_lastPublicationId = 0;

    int m_wakeDescriptor = -1;
    std::mutex m_mutex; ///< Guards the two fields below.
    std::deque<Task> m_tasks;
    bool m_isEnding = false;

    std::unique_ptr<SerialQueue> m_pictureQueue; ///< Made for the first picture.
    std::thread m_thread;
};
