#include "foundation/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool isRegular(int descriptor)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

std::shared_ptr<const RegularFile> RegularFile::open(const QString &path)
{
    const int descriptor
        = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return nullptr;
    const std::shared_ptr<RegularFile> file(new RegularFile);
    if (isRegular(descriptor)
        && file->m_file.open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle))
        return file;
    ::close(descriptor);
    return nullptr;
}

qint64 RegularFile::size() const
{
    const std::lock_guard lock(m_mutex);
    return m_file.size();
}

std::optional<QByteArray> RegularFile::read() const
{
    const std::lock_guard lock(m_mutex);
    if (!m_file.seek(0))
        return std::nullopt;
    return m_file.read(m_file.size());
}

std::optional<QByteArray> RegularFile::readUpTo(qint64 limit) const
{
    const std::lock_guard lock(m_mutex);
    if (m_file.size() > limit || !m_file.seek(0))
        return std::nullopt;
    // Files of the kernel have no size, and go on and on.
    QByteArray bytes(limit + 1, Qt::Uninitialized);
    const qint64 count = m_file.read(bytes.data(), bytes.size());
    if (count < 0 || count > limit)
        return std::nullopt;
    bytes.truncate(count);
    bytes.squeeze();
    return bytes;
}
