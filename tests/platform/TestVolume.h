#pragma once

#include <QByteArray>
#include <QFile>

#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>

/// A mount of the test's own, taken away at the end. Where the test may not mount anything,
/// isMounted() is false.
class TestVolume
{
public:
    explicit TestVolume(const QString &directory)
        : m_directory(QFile::encodeName(directory))
    {
    }
    ~TestVolume() { unmount(); }
    TestVolume(const TestVolume &) = delete;
    TestVolume &operator=(const TestVolume &) = delete;

    bool isMounted() const { return m_isMounted; }

    /// An empty volume in memory.
    bool mountMemory()
    {
        return m_isMounted = ::mount("tmpfs", m_directory.constData(), "tmpfs", 0, "size=1m") == 0;
    }

    /// What \a source holds, here as well.
    bool mountFolder(const QString &source)
    {
        return m_isMounted = ::mount(QFile::encodeName(source).constData(), m_directory.constData(),
                                     nullptr, MS_BIND, nullptr)
                             == 0;
    }

    /// A volume like that of a server that has gone: whoever asks it for anything waits until it is
    /// taken away.
    bool mountSilent()
    {
        m_server = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
        if (m_server < 0)
            return false;
        const QByteArray options
            = "fd=" + QByteArray::number(m_server) + ",rootmode=40000,user_id=0,group_id=0";
        return m_isMounted
               = ::mount("silent", m_directory.constData(), "fuse", 0, options.constData()) == 0;
    }

    /// False if something of the volume is in use.
    bool unmount()
    {
        if (m_server >= 0) {
            // The end of the server wakes who waits.
            ::umount2(m_directory.constData(), MNT_FORCE);
            ::close(m_server);
            m_server = -1;
            ::umount2(m_directory.constData(), MNT_DETACH);
            m_isMounted = false;
        }
        if (m_isMounted)
            m_isMounted = ::umount(m_directory.constData()) != 0;
        return !m_isMounted;
    }

private:
    QByteArray m_directory;
    int m_server = -1;
    bool m_isMounted = false;
};

#define REQUIRE_MOUNT(mounted)                                                                     \
    if (!(mounted))                                                                                \
    QSKIP("This test mounts a volume, which it is not allowed here.")
