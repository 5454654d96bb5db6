#include "foundation/PrivateFiles.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t kDirectoryMode = 0700;
constexpr mode_t kFileMode = 0600;
constexpr mode_t kRightsOfOthers = 0077;

/// An open file or directory.
class Descriptor
{
public:
    Descriptor(const QByteArray &path, int flags)
        : m_descriptor(::open(path.constData(), flags | O_CLOEXEC, kFileMode))
    {
        require(m_descriptor);
    }
    ~Descriptor() { ::close(m_descriptor); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    void closeToOthers() const { require(::fchmod(m_descriptor, kFileMode)); }
    void bringToDisk() const { require(::fsync(m_descriptor)); }

    void write(QByteArrayView bytes) const
    {
        while (!bytes.isEmpty()) {
            const ssize_t count = ::write(m_descriptor, bytes.data(), size_t(bytes.size()));
            if (count < 0 && errno == EINTR)
                continue;
            require(count);
            bytes = bytes.sliced(count);
        }
    }

private:
    static void require(ssize_t result)
    {
        if (result < 0)
            throw std::system_error(errno, std::generic_category());
    }

    int m_descriptor;
};

/// Behind a closed directory that costs more than it is worth; an open one may have been copied with
/// all its files from a disk that knows no rights.
void closeFilesToOthers(const QString &directory)
{
    QDirIterator files(directory, QDir::Files | QDir::Hidden);
    while (files.hasNext())
        closeToOthers(files.next());
}

} // namespace

bool ensurePrivateDirectory(const QString &path)
{
    if (path.isEmpty())
        return false;
    if (QFileInfo(path).isDir()) {
        if (closeToOthers(path))
            closeFilesToOthers(path);
        return true;
    }
    const QString parent = QFileInfo(path).absolutePath();
    if (!QFileInfo(parent).isDir() && !ensurePrivateDirectory(parent))
        return false;
    const QByteArray name = QFile::encodeName(path);
    if (::mkdir(name.constData(), kDirectoryMode) != 0)
        return QFileInfo(path).isDir();
    // The umask may have taken rights from the user as well.
    return ::chmod(name.constData(), kDirectoryMode) == 0;
}

bool ensurePrivateFile(const QString &path)
{
    const int file = ::open(QFile::encodeName(path).constData(),
                            O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kFileMode);
    if (file < 0) {
        closeToOthers(path);
        return QFileInfo(path).isFile();
    }
    const bool isPrivate = ::fchmod(file, kFileMode) == 0;
    ::close(file);
    return isPrivate;
}

void writePrivateFile(const QString &path, QByteArrayView bytes)
{
    const QByteArray name = QFile::encodeName(path);
    const Descriptor file(name, O_WRONLY | O_CREAT | O_EXCL);
    try {
        file.closeToOthers();
        file.write(bytes);
        file.bringToDisk();
        const QByteArray directory = QFile::encodeName(QFileInfo(path).absolutePath());
        Descriptor(directory, O_RDONLY | O_DIRECTORY).bringToDisk();
    } catch (const std::system_error &) {
        ::unlink(name.constData());
        throw;
    }
}

bool closeToOthers(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat status = {};
    if (::stat(name.constData(), &status) != 0 || (status.st_mode & kRightsOfOthers) == 0)
        return false;
    // Best effort: a file of another owner stays as it is.
    [[maybe_unused]] const int result
        = ::chmod(name.constData(), status.st_mode & 07777 & ~kRightsOfOthers);
    return true;
}
