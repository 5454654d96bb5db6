#include "platform/linux/InodeBookmarks.h"

#include "foundation/FilePath.h"

#include <QList>

#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace {

constexpr QByteArrayView kMagic = "tessarine-bookmark-1";
constexpr qsizetype kFieldCount = 6;
constexpr int kMaxVisitedEntries = 20'000;

/// What a file system knows a file by. Paths are bytes: they need not be valid UTF-8.
struct FileIdentity
{
    QByteArray path;
    quint64 device = 0;
    quint64 inode = 0;
    qint64 birthNanoseconds = 0; ///< Zero where the file system keeps no birth time.
    quint64 size = 0;

    bool isSameFile(const FileIdentity &other) const
    {
        // An inode number is given to another file once the first is gone; the birth time tells.
        return device == other.device && inode == other.inode
            && birthNanoseconds == other.birthNanoseconds;
    }
};

std::optional<FileIdentity> identityAt(const QByteArray &path)
{
    struct statx status = {};
    // Who copies a symbolic link means the link, which goes on where its target does not answer.
    if (statx(AT_FDCWD, path.constData(), AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS | STATX_BTIME,
              &status)
        != 0)
        return std::nullopt;
    FileIdentity identity;
    identity.path = path;
    identity.device = makedev(status.stx_dev_major, status.stx_dev_minor);
    identity.inode = status.stx_ino;
    if (status.stx_mask & STATX_BTIME)
        identity.birthNanoseconds
            = status.stx_btime.tv_sec * 1'000'000'000LL + status.stx_btime.tv_nsec;
    identity.size = S_ISDIR(status.stx_mode) ? 0 : status.stx_size;
    return identity;
}

QByteArray encoded(const FileIdentity &identity)
{
    // No path holds a zero byte, so it parts the fields.
    return kMagic.toByteArray() + '\0' + identity.path + '\0' + QByteArray::number(identity.device)
        + '\0' + QByteArray::number(identity.inode) + '\0'
        + QByteArray::number(identity.birthNanoseconds) + '\0' + QByteArray::number(identity.size);
}

FileIdentity decoded(const QByteArray &bookmark)
{
    const QList<QByteArray> fields = bookmark.split('\0');
    if (fields.size() != kFieldCount || fields[0] != kMagic || !fields[1].startsWith('/'))
        throw BookmarkError("The bookmark data is not in the correct format");
    bool isNumber[4] = {};
    FileIdentity identity{fields[1], fields[2].toULongLong(&isNumber[0]),
                          fields[3].toULongLong(&isNumber[1]), fields[4].toLongLong(&isNumber[2]),
                          fields[5].toULongLong(&isNumber[3])};
    if (!isNumber[0] || !isNumber[1] || !isNumber[2] || !isNumber[3])
        throw BookmarkError("The bookmark data is not in the correct format");
    return identity;
}

QByteArray parentOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash <= 0 ? QByteArray("/") : path.first(slash);
}

QByteArray joined(const QByteArray &directory, const char *name)
{
    return directory.endsWith('/') ? directory + name : directory + '/' + name;
}

/// Looks for one file in directory after directory.
class InodeSearch
{
public:
    explicit InodeSearch(const FileIdentity &wanted) : m_wanted(wanted) {}

    std::optional<QByteArray> run()
    {
        const QByteArray folder = parentOf(m_wanted.path);
        const QByteArray above = parentOf(folder);
        QList<QByteArray> below;
        QList<QByteArray> beside;
        if (const auto path = searchIn(folder, &below))
            return path;
        if (const auto path = searchIn(above, &beside))
            return path;
        for (const QByteArray &directory : below + beside) {
            if (const auto path = searchIn(directory, nullptr))
                return path;
        }
        return std::nullopt;
    }

private:
    /// Also notes the folders that \a directory holds.
    std::optional<QByteArray> searchIn(const QByteArray &directory, QList<QByteArray> *folders)
    {
        const std::unique_ptr<DIR, int (*)(DIR *)> stream(opendir(directory.constData()),
                                                          &closedir);
        if (!stream)
            return std::nullopt;
        while (const dirent *entry = readdir(stream.get())) {
            if (++m_visitedCount > kMaxVisitedEntries)
                return std::nullopt;
            if (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0)
                continue;
            const QByteArray path = joined(directory, entry->d_name);
            if (entry->d_ino == m_wanted.inode) {
                const auto found = identityAt(path);
                if (found && found->isSameFile(m_wanted))
                    return path;
            }
            if (folders && entry->d_type == DT_DIR)
                folders->append(path);
        }
        return std::nullopt;
    }

    const FileIdentity &m_wanted;
    int m_visitedCount = 0;
};

QByteArray bookmarkOf(const QByteArray &path)
{
    const auto identity = identityAt(path);
    if (!identity)
        throw BookmarkError(std::strerror(errno));
    return encoded(*identity);
}

FileBookmarks::Resolved located(const FileIdentity &wanted)
{
    if (const auto found = identityAt(wanted.path))
        return {FilePath::toUrl(wanted.path), !found->isSameFile(wanted)};
    if (const auto path = InodeSearch(wanted).run())
        return {FilePath::toUrl(*path), true};
    throw BookmarkError("The file couldn't be found");
}

template <typename Answer>
Answer inTime(std::optional<Answer> answer)
{
    if (!answer)
        throw BookmarkError("The file system does not answer");
    return *std::move(answer);
}

} // namespace

QByteArray InodeBookmarks::create(const QUrl &url) const
{
    return inTime(
        m_calls.run<QByteArray>([path = FilePath::bytesOf(url)] { return bookmarkOf(path); }));
}

FileBookmarks::Resolved InodeBookmarks::resolve(const QByteArray &bookmark) const
{
    return inTime(m_calls.run<Resolved>([wanted = decoded(bookmark)] { return located(wanted); }));
}
