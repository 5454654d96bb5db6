#include "core/FileReferences.h"

#include "core/ClipboardItem.h"
#include "foundation/FilePath.h"
#include "foundation/TaggedLog.h"

using namespace Qt::StringLiterals;

namespace {

QString textOf(const BookmarkError &error)
{
    return QString::fromLocal8Bit(error.what());
}

} // namespace

FileReferences::FileReferences(const FileBookmarks &bookmarks, const FileAccess &access,
                               const UserDefaults &defaults)
    : m_bookmarks(bookmarks)
    , m_access(access)
    , m_defaults(defaults)
{
}

bool FileReferences::mayExist(const QList<QUrl> &urls) const
{
    return m_access.exist(urls).value_or(true);
}

std::optional<QByteArray> FileReferences::createBookmark(const QUrl &url) const
{
    const auto scope = startAccess(url);
    const auto log = [&](auto outcome) {
        logDragPaste(m_defaults, [&] {
            return u"createFileItem bookmark "_s + outcome() + u" startedAccessing="_s
                   + (scope ? u"true"_s : u"false"_s);
        });
    };
    try {
        const QByteArray bookmark = m_bookmarks.create(url);
        log([&] {
            return u"created path="_s + FilePath::of(url) + u" bytes="_s
                   + QString::number(bookmark.size());
        });
        return bookmark;
    } catch (const BookmarkError &error) {
        printLine(u"Failed to create bookmark for file: "_s + textOf(error));
        log([&] { return u"failed path="_s + FilePath::of(url) + u" error="_s + textOf(error); });
        return std::nullopt;
    }
}

std::optional<FileBookmarks::Resolved> FileReferences::resolve(const ClipboardItem &item) const
{
    if (auto resolved = resolveBookmark(item))
        return resolved;
    if (!item.filePath)
        return std::nullopt;
    const QUrl url = FilePath::toUrl(*item.filePath);
    if (!m_access.exist({url}).value_or(false))
        return std::nullopt;
    return FileBookmarks::Resolved{url, false};
}

std::optional<FileBookmarks::Resolved>
FileReferences::resolveBookmark(const ClipboardItem &item) const
{
    if (!item.fileBookmarkData)
        return std::nullopt;
    try {
        FileBookmarks::Resolved resolved = m_bookmarks.resolve(*item.fileBookmarkData);
        if (resolved.isStale)
            printLine(u"Bookmark data is stale for item: "_s
                      + (item.stringValue ? item.stringValue->toString() : u"unknown"_s));
        return resolved;
    } catch (const BookmarkError &error) {
        printLine(u"Failed to resolve bookmark data: "_s + textOf(error));
        return std::nullopt;
    }
}

std::unique_ptr<FileAccess::Scope> FileReferences::startAccess(const QUrl &url) const
{
    return m_access.start(url);
}

std::optional<LazyBytes> FileReferences::open(const QString &path) const
{
    return m_access.open(path);
}

std::optional<QByteArray> FileReferences::renewBookmark(const QUuid &id, const QUrl &url) const
{
    try {
        return m_bookmarks.create(url);
    } catch (const BookmarkError &error) {
        printLine(u"Failed to refresh stale bookmark for item: "_s + uuidString(id) + u", error: "_s
                  + textOf(error));
        logDragPaste(m_defaults, [&] {
            return u"refreshStaleBookmark failed id="_s + uuidString(id) + u" path="_s
                   + FilePath::of(url) + u" error="_s + textOf(error);
        });
        return std::nullopt;
    }
}
