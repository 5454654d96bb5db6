#pragma once

#include "platform/FileBookmarks.h"

/// Bookmarks by path, device, inode, birth time and size.
///
/// A file is looked for at its path, then by its inode in its folder, in the folder above and in
/// the folders beside and below its own. The search ends after a bounded number of directory
/// entries, so that it is no matter of time on the main thread.
class InodeBookmarks : public FileBookmarks
{
public:
    QByteArray create(const QUrl &url) const override;
    Resolved resolve(const QByteArray &bookmark) const override;
};
