#pragma once

#include "platform/FileAccess.h"
#include "platform/FileBookmarks.h"

#include <QUuid>

class UserDefaults;
struct ClipboardItem;

/// Makes the bookmarks of copied files, and leads entries back to their files. Any thread.
class FileReferences
{
public:
    /// Everything handed over must outlive the object.
    FileReferences(const FileBookmarks &bookmarks, const FileAccess &access,
                   const UserDefaults &defaults);

    /// Whether a file is at every one of \a urls. True as well where the file system does not tell
    /// in time.
    bool mayExist(const QList<QUrl> &urls) const;

    /// For a file that is just copied; absent if it fails, which a printed line tells.
    std::optional<QByteArray> createBookmark(const QUrl &url) const;

    /// By the bookmark of \a item, without a look whether a file is there, else by its path if one
    /// is.
    std::optional<FileBookmarks::Resolved> resolve(const ClipboardItem &item) const;

    /// By the bookmark of \a item alone.
    std::optional<FileBookmarks::Resolved> resolveBookmark(const ClipboardItem &item) const;

    std::unique_ptr<FileAccess::Scope> startAccess(const QUrl &url) const;

    /// See FileAccess::open().
    std::optional<LazyBytes> open(const QString &path) const;

    /// A new bookmark for the entry \a id, whose file is at \a url; absent if it fails, which a
    /// printed line tells.
    std::optional<QByteArray> renewBookmark(const QUuid &id, const QUrl &url) const;

private:
    const FileBookmarks &m_bookmarks;
    const FileAccess &m_access;
    const UserDefaults &m_defaults;
};
