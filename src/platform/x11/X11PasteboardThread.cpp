#include "platform/x11/X11PasteboardThread.h"

#include "foundation/Digest.h"
#include "foundation/Log.h"
#include "foundation/SerialQueue.h"
#include "platform/ImageCodec.h"
#include "platform/Platform.h"
#include "platform/linux/UriList.h"

#include <array>
#include <exception>

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Later copies wait for a picture that is being converted, so that all come in their order, but
/// not for longer than this: then the picture is dropped. The largest take a few seconds.
constexpr auto kPicturePatience = 10s;
/// After so many events the thread looks for tasks and deadlines.
constexpr int kEventsInARow = 64;

/// The snapshot of what we wrote; nobody has to be asked for that.
PasteboardSnapshot ownSnapshot(const PasteboardContents &contents)
{
    PasteboardSnapshot snapshot;
    snapshot.isOwnWrite = true;
    QList<QUrl> urls;
    for (const PasteboardContents::Entry &entry : contents.entries) {
        if (!snapshot.types.contains(entry.type))
            snapshot.types.append(entry.type);
        if (entry.type == PasteboardType::kString)
            snapshot.string = Utf8Text::fromUtf8(entry.data.bytes());
        else if (entry.type == PasteboardType::kHtml)
            snapshot.html = entry.data.bytes();
        else if (entry.type == PasteboardType::kRtf)
            snapshot.rtf = entry.data.bytes();
        else if (entry.type == PasteboardType::kFileUrl)
            urls.append(QUrl::fromEncoded(entry.data.bytes()));
    }
    if (!urls.isEmpty())
        snapshot.fileUrls = urls;
    return snapshot;
}

/// What \a codec returns; absent if it fails, most likely for want of memory.
template <typename Codec>
auto orNothing(Codec codec) -> decltype(codec())
{
    try {
        return codec();
    } catch (const std::exception &error) {
        printLine(u"Converting a picture failed: %1"_s.arg(QString::fromUtf8(error.what())));
        return std::nullopt;
    }
}

} // namespace

X11PasteboardThread::X11PasteboardThread(const ImageCodec &codec, SnapshotQueue &published,
                                         std::function<void()> onPublished)
    : m_codec(codec)
    , m_published(published)
    , m_onPublished(std::move(onPublished))
    , m_reader(m_connection)
    , m_server(m_connection,
               [this](const LazyBytes &picture, X11SelectionServer::PictureFormat format,
                      std::function<bool()> isWanted, X11SelectionServer::PictureDone done) {
                   encodePicture(picture, format, std::move(isWanted), std::move(done));
               })
    , m_manager(m_connection)
    , m_keepAlive(m_server)
    , m_applications(m_connection.requests(), m_entries)
    , m_wakeDescriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (m_wakeDescriptor < 0)
        throw PlatformError("no event descriptor is left");
    // From here on every copy is seen: the pasteboard as it is now counts as known.
    m_connection.watchOwner(m_connection.atom(u"CLIPBOARD"));
    m_connection.owner(m_connection.atom(u"CLIPBOARD"));
    m_reader.onRead = [this](X11SelectionReader::Copy copy) { addCopy(std::move(copy)); };
    m_thread = std::thread([this] { run(); });
}

X11PasteboardThread::~X11PasteboardThread()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    wake();
    m_thread.join();
    m_pictureQueue.reset(); // Its work posts to us.
    close(m_wakeDescriptor);
}

void X11PasteboardThread::write(const PasteboardContents &contents)
{
    post([this, contents] { m_server.write(contents); });
}

std::future<bool> X11PasteboardThread::alsoOwnPrimary()
{
    // A task has to be copyable, a promise is not.
    auto promise = std::make_shared<std::promise<bool>>();
    std::future<bool> isOwned = promise->get_future();
    post([this, promise] {
        m_server.alsoOwnPrimary([promise](bool isDone) { promise->set_value(isDone); });
    });
    return isOwned;
}

void X11PasteboardThread::keepAlive(quint64 notice)
{
    post([this, notice] { m_keepAlive.allow(notice, std::chrono::steady_clock::now()); });
}

void X11PasteboardThread::discard(quint64 notice)
{
    post([this, notice] { m_keepAlive.discard(notice); });
}

void X11PasteboardThread::post(Task task)
{
    {
        const std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    wake();
}

void X11PasteboardThread::wake()
{
    eventfd_write(m_wakeDescriptor, 1); // Fails only when the thread is to wake anyway.
}

void X11PasteboardThread::run()
{
    pthread_setname_np(pthread_self(), "pasteboard");
    while (!m_connection.isBroken()) {
        {
            const std::lock_guard lock(m_mutex);
            if (m_isEnding)
                return;
        }
        try {
            runTasks();
            const bool isMoreThere = handleEvents();
            expire();
            if (!m_reader.isReading())
                m_manager.answerWaiting(m_keepAlive.hasCopy());
            m_connection.flush();
            // Flushing may have read events on the way, of which the descriptor tells no more.
            const std::optional<X11Event::Any> event = m_connection.nextQueuedEvent();
            if (event)
                handle(*event);
            else if (!isMoreThere)
                sleep();
        } catch (const std::exception &error) {
            // Most likely a foreign program's data did not fit into the memory.
            printLine(u"Reading the pasteboard failed: %1"_s.arg(QString::fromUtf8(error.what())));
            m_reader.cancel();
        }
    }
}

void X11PasteboardThread::runTasks()
{
    std::deque<Task> tasks;
    {
        const std::lock_guard lock(m_mutex);
        tasks.swap(m_tasks);
    }
    for (const Task &task : tasks)
        task();
}

/// False when all that have come are handled.
bool X11PasteboardThread::handleEvents()
{
    for (int count = 0; count < kEventsInARow; ++count) {
        const std::optional<X11Event::Any> event = m_connection.nextEvent();
        if (!event)
            return false;
        handle(*event);
    }
    return true;
}

void X11PasteboardThread::handle(const X11Event::Any &any)
{
    const TimePoint now = std::chrono::steady_clock::now();
    if (const auto *notice = std::get_if<X11Event::OwnerChanged>(&any))
        handleOwner(*notice, now);
    else if (const auto *answered = std::get_if<X11Event::ConversionAnswered>(&any))
        m_reader.handle(*answered, now);
    else if (const auto *changed = std::get_if<X11Event::PropertyChanged>(&any))
        handleProperty(*changed, now);
    else if (const auto *request = std::get_if<X11Event::ConversionRequested>(&any))
        handleRequest(*request, now);
    else if (const auto *lost = std::get_if<X11Event::OwnershipLost>(&any))
        m_server.handle(*lost);
    else if (const auto *destroyed = std::get_if<X11Event::WindowDestroyed>(&any))
        m_server.handle(*destroyed);
}

void X11PasteboardThread::handleProperty(const X11Event::PropertyChanged &event, TimePoint now)
{
    if (!m_reader.handle(event, now) && !m_manager.handle(event))
        m_server.handle(event, now);
}

void X11PasteboardThread::handleRequest(const X11Event::ConversionRequested &request, TimePoint now)
{
    if (!m_manager.handle(request))
        m_server.handle(request, now);
}

void X11PasteboardThread::handleOwner(const X11Event::OwnerChanged &event, TimePoint now)
{
    if (m_manager.handle(event))
        return;
    // What a program leaves behind when it ends is no change that anybody made.
    if (event.isOwnerGone) {
        m_reader.ownerEnded();
        m_keepAlive.ownerEnded(event.ownedSince, now);
        return;
    }

    m_keepAlive.ownerChanged();
    const std::optional<PasteboardContents> written = m_server.takeWritten(event);
    if (written || event.owner == 0) {
        m_reader.cancel();
        publishAtOnce(written ? ownSnapshot(*written) : PasteboardSnapshot());
    } else if (m_server.isOurs(event.owner)) {
        m_reader.cancel(); // Taken over: the change is known.
    } else {
        const bool isBegun = m_reader.start(event, now);
        m_notice.number = m_published.addNotice();
        // While the owner works on its answer. One that takes the selection thousands of times is
        // in front, or is not, as it was before.
        if (isBegun)
            m_notice.front = m_applications.front();
    }
}

void X11PasteboardThread::expire()
{
    const TimePoint now = std::chrono::steady_clock::now();
    m_reader.expire(now);
    m_server.expire(now);
    while (m_publications.size() > 1 && m_publications.front().pictureDeadline <= now) {
        m_publications.pop_front();
        publishReady();
    }
}

std::optional<X11PasteboardThread::TimePoint> X11PasteboardThread::deadline() const
{
    std::optional<TimePoint> earliest = m_reader.deadline();
    const auto take = [&earliest](TimePoint candidate) {
        if (!earliest || candidate < *earliest)
            earliest = candidate;
    };
    if (const auto serving = m_server.deadline())
        take(*serving);
    if (m_publications.size() > 1)
        take(m_publications.front().pictureDeadline);
    return earliest;
}

/// Without a deadline nothing but an event or a task ends the sleep.
void X11PasteboardThread::sleep() const
{
    using std::chrono::milliseconds;
    int timeout = -1;
    if (const auto end = deadline()) {
        const auto rest = std::chrono::ceil<milliseconds>(*end - std::chrono::steady_clock::now());
        timeout = static_cast<int>(std::max(milliseconds(0), rest).count());
    }
    std::array<pollfd, 2> descriptors = {
        {{m_connection.fileDescriptor(), POLLIN, 0}, {m_wakeDescriptor, POLLIN, 0}}};
    poll(descriptors.data(), descriptors.size(), timeout);
    if (descriptors[1].revents != 0) {
        eventfd_t count = 0;
        eventfd_read(m_wakeDescriptor, &count);
    }
}

void X11PasteboardThread::addCopy(X11SelectionReader::Copy copy)
{
    m_keepAlive.setCopy(m_notice.number, copy);
    copy.snapshot.notice = m_notice.number;
    if (m_notice.front)
        copy.snapshot.frontmostApplication = m_applications.describe(*m_notice.front);
    if (copy.picture.isEmpty())
        return publish(std::move(copy.snapshot));
    const TimePoint deadline = std::chrono::steady_clock::now() + kPicturePatience;
    const quint64 id = ++m_lastPublicationId;
    m_publications.push_back({id, std::move(copy.snapshot), false, deadline});
    convertPicture(id, copy.picture);
}

void X11PasteboardThread::convertPicture(quint64 id, const QByteArray &picture)
{
    runElsewhere([this, id, picture] {
        std::optional<PasteboardImage> image =
            orNothing([&] { return m_codec.tiffFromPicture(picture); });
        if (image)
            image->digest = sha256Hex(image->tiff);
        post([this, id, image] { addPicture(id, image); });
    });
}

void X11PasteboardThread::encodePicture(const LazyBytes &picture,
                                        X11SelectionServer::PictureFormat format,
                                        std::function<bool()> isWanted,
                                        X11SelectionServer::PictureDone done)
{
    runElsewhere([this, picture, format, isWanted = std::move(isWanted), done = std::move(done)] {
        if (!isWanted())
            return;
        const std::optional<QByteArray> file = orNothing([&]() -> std::optional<QByteArray> {
            if (format == X11SelectionServer::PictureFormat::Png)
                return m_codec.pngFromPicture(picture.bytes());
            const auto image = m_codec.tiffFromPicture(picture.bytes());
            return image ? std::optional(image->tiff) : std::nullopt;
        });
        post([file, done] { done(file); });
    });
}

/// Pictures take long, and other programs must not wait for our answers meanwhile.
void X11PasteboardThread::runElsewhere(Task work)
{
    if (!m_pictureQueue)
        m_pictureQueue = std::make_unique<SerialQueue>("pasteboard.pictures");
    m_pictureQueue->enqueue([this, work = std::move(work)] {
        {
            const std::lock_guard lock(m_mutex);
            if (m_isEnding)
                return;
        }
        work();
    });
}

void X11PasteboardThread::addPicture(quint64 id, std::optional<PasteboardImage> image)
{
    for (Publication &publication : m_publications) {
        if (publication.id != id)
            continue;
        publication.snapshot.image = std::move(image);
        publication.isReady = true;
        return publishReady();
    }
}

/// Nobody else has to be asked about it.
void X11PasteboardThread::publishAtOnce(PasteboardSnapshot snapshot)
{
    m_notice = {m_published.addNotice(), std::nullopt};
    snapshot.notice = m_notice.number;
    publish(std::move(snapshot));
}

/// In the order of the copies: behind those that still wait.
void X11PasteboardThread::publish(PasteboardSnapshot snapshot)
{
    m_publications.push_back({++m_lastPublicationId, std::move(snapshot), true, {}});
    publishReady();
}

void X11PasteboardThread::publishReady()
{
    bool isNewsThere = false;
    while (!m_publications.empty() && m_publications.front().isReady) {
        m_published.publish(std::move(m_publications.front().snapshot));
        m_publications.pop_front();
        isNewsThere = true;
    }
    if (isNewsThere)
        m_onPublished();
}
