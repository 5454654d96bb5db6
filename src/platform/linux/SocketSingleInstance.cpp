#include "platform/linux/SocketSingleInstance.h"

#include "foundation/Log.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QSocketNotifier>
#include <QTimer>

#include <cerrno>
#include <cstddef>
#include <cstring>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kPatience = 2s;

constexpr char kAnswer = 's';
constexpr qsizetype kMaxTokenBytes = 4096;
constexpr int kMaxWaiting = 64;

/// Each of those that are served takes a descriptor.
constexpr qsizetype kMaxVisitors = 32;

/// How long nobody is let in after descriptors have run out.
constexpr auto kRestFromVisitors = 250ms;

} // namespace

/// A local socket that keeps the bounds of messages.
class SocketSingleInstance::Socket
{
public:
    explicit Socket(int descriptor = ::socket(AF_UNIX,
                                              SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
        : m_descriptor(descriptor)
    {
    }
    ~Socket() { ::close(m_descriptor); }
    Socket(const Socket &) = delete;
    Socket &operator=(const Socket &) = delete;

    int descriptor() const { return m_descriptor; }

    /// Returns 0, or the error.
    int listenAt(const QByteArray &name) const
    {
        const Address address(name);
        const bool isListening = ::bind(m_descriptor, address.generic(), address.length) == 0 &&
                                 ::listen(m_descriptor, kMaxWaiting) == 0;
        return isListening ? 0 : errno;
    }

    /// Returns 0, or the error.
    int connectTo(const QByteArray &name) const
    {
        const Address address(name);
        return ::connect(m_descriptor, address.generic(), address.length) == 0 ? 0 : errno;
    }

    bool isOfSameUser() const
    {
        ucred peer{};
        socklen_t length = sizeof peer;
        return ::getsockopt(m_descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 &&
               peer.uid == ::getuid();
    }

    bool send(const QByteArray &message) const
    {
        return ::send(m_descriptor, message.constData(), size_t(message.size()), MSG_NOSIGNAL) ==
               message.size();
    }

    /// Empty at the end, or after an error.
    QByteArray receive() const
    {
        QByteArray message(kMaxTokenBytes, Qt::Uninitialized);
        message.resize(
            std::max<ssize_t>(0, ::recv(m_descriptor, message.data(), size_t(message.size()), 0)));
        return message;
    }

    bool waitUntilReadable(std::chrono::milliseconds patience) const
    {
        const QDeadlineTimer deadline(patience);
        pollfd wanted{m_descriptor, POLLIN, 0};
        int result = 0;
        do
            result = ::poll(&wanted, 1, int(deadline.remainingTime()));
        while (result < 0 && errno == EINTR);
        return result > 0;
    }

private:
    struct Address
    {
        /// In the name space without files, whose names begin with a zero.
        explicit Address(const QByteArray &name)
            : length(socklen_t(offsetof(sockaddr_un, sun_path) + 1 + size_t(name.size())))
        {
            local.sun_family = AF_UNIX;
            std::memcpy(local.sun_path + 1, name.constData(), size_t(name.size()));
        }
        const sockaddr *generic() const { return reinterpret_cast<const sockaddr *>(&local); }

        sockaddr_un local{};
        socklen_t length;
    };

    int m_descriptor;
};

/// A second process, as the first one sees it: it says one thing, and is answered. One that takes
/// too long to say it is sent away.
class SocketSingleInstance::Visitor : public QObject
{
public:
    Visitor(std::unique_ptr<Socket> socket, SocketSingleInstance &host)
        : QObject(&host.m_visitors)
        , m_socket(std::move(socket))
        , m_host(host)
    {
        auto *notifier = new QSocketNotifier(m_socket->descriptor(), QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
            notifier->setEnabled(false);
            hear();
        });
        QTimer::singleShot(kPatience, this, &QObject::deleteLater);
    }
    ~Visitor() override { m_host.letVisitorsIn(); }

private:
    void hear()
    {
        const QByteArray token = m_socket->receive();
        // A program that is ending keeps silent; the visitor sees its end.
        if (!m_host.onActivated && !token.isEmpty())
            return;
        if (!token.isEmpty()) {
            m_host.onActivated(QString::fromUtf8(token.chopped(1)));
            // It may have grown tired of waiting.
            [[maybe_unused]] const bool isTold = m_socket->send(QByteArray(1, kAnswer));
        }
        deleteLater();
    }

    std::unique_ptr<Socket> m_socket;
    SocketSingleInstance &m_host;
};

SocketSingleInstance::SocketSingleInstance(const QString &directory)
    : m_name("tessarine-" + QByteArray::number(::getuid()) + '-' +
             QCryptographicHash::hash(directory.toUtf8(), QCryptographicHash::Sha256)
                 .toHex()
                 .first(32))
{
}

SocketSingleInstance::~SocketSingleInstance() = default;

SingleInstance::Role SocketSingleInstance::claim()
{
    const QDeadlineTimer deadline(kPatience);
    int error = 0;
    do {
        error = takeName();
        if (error == 0)
            return Role::First;
        if (error != EADDRINUSE)
            break;
        m_first = std::make_unique<Socket>();
        error = m_first->connectTo(m_name);
        if (error == 0 && !m_first->isOfSameUser()) {
            error = EACCES;
            break;
        }
        // So many are waiting for it that it takes no more.
        if (error == 0 || error == EAGAIN)
            return Role::Second;
        // It has ended at this moment, or has its name and does not listen yet.
    } while (error == ECONNREFUSED && !deadline.hasExpired());

    printLine("A second start of the program will not be noticed: "_L1 + qt_error_string(error));
    return Role::Unknown;
}

/// Returns 0, or what is in the way.
int SocketSingleInstance::takeName()
{
    auto server = std::make_unique<Socket>();
    const int error = server->listenAt(m_name);
    if (error == 0)
        m_server = std::move(server);
    return error;
}

SingleInstance::Answer SocketSingleInstance::activateFirst(const QString &activationToken)
{
    // Never empty, since an empty message is like the end.
    const QByteArray message = activationToken.toUtf8().left(kMaxTokenBytes - 1) + '\n';
    if (!m_first->send(message))
        return errno == EPIPE || errno == ECONNRESET ? Answer::Ended : Answer::None;
    if (!m_first->waitUntilReadable(kPatience))
        return Answer::None;
    return m_first->receive().isEmpty() ? Answer::Ended : Answer::Shown;
}

void SocketSingleInstance::listen()
{
    if (!m_server)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(m_server->descriptor(), QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, &m_visitors,
                     [this] { receiveVisitor(); });
}

void SocketSingleInstance::letVisitorsIn()
{
    m_notifier->setEnabled(true);
}

void SocketSingleInstance::receiveVisitor()
{
    if (m_visitors.children().size() >= kMaxVisitors) {
        m_notifier->setEnabled(false);
        return;
    }
    const int descriptor =
        ::accept4(m_server->descriptor(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (descriptor < 0) {
        // The visitor stays at the door, and would be announced again and again.
        if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM) {
            m_notifier->setEnabled(false);
            QTimer::singleShot(kRestFromVisitors, &m_visitors, [this] { letVisitorsIn(); });
        }
        return;
    }
    auto socket = std::make_unique<Socket>(descriptor);
    if (socket->isOfSameUser())
        new Visitor(std::move(socket), *this);
}
