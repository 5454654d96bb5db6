#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

/// A bus that lets everybody connect and never says a word.
class SilentBus
{
public:
    explicit SilentBus(const QString &path, int backlog = 5)
        : m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const QByteArray name = QFile::encodeName(path);
        std::memcpy(address.sun_path, name.constData(), size_t(name.size()));
        m_isThere =
            ::bind(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
            ::listen(m_socket, backlog) == 0;
    }
    ~SilentBus() { ::close(m_socket); }
    SilentBus(const SilentBus &) = delete;
    SilentBus &operator=(const SilentBus &) = delete;

    bool isThere() const { return m_isThere; }

private:
    int m_socket;
    bool m_isThere = false;
};
