#pragma once

#include "platform/FileBookmarks.h"
#include "platform/linux/BoundedCalls.h"

/// Bookmarks by path, device, inode, birth time and size.
///
/// A file is looked for at its path, then by its inode in its folder, in the folder above and in
/// the folders beside and below its own. The search ends after a bounded number of directory
/// entries, so that it is no matter of time on the main thread. A symbolic link is a file of its
/// own.
class InodeBookmarks : public FileBookmarks
{
public:
    explicit InodeBookmarks(BoundedCalls calls = BoundedCalls()) : m_calls(std::move(calls)) {}

    QByteArray create(const QUrl &url) const override;
    Resolved resolve(const QByteArray &bookmark) const override;

private:
    BoundedCalls m_calls;
};
