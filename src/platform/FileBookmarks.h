#pragma once

#include <QByteArray>
#include <QUrl>

#include <stdexcept>

/// A file could not be marked or found again; the text says why.
class BookmarkError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Remembers files so that they are found again after they were moved. Any thread.
class FileBookmarks
{
public:
    virtual ~FileBookmarks() = default;

    struct Resolved
    {
        QUrl url;
        bool isStale = false; ///< Found elsewhere, or replaced: make a new bookmark.

        friend bool operator==(const Resolved &, const Resolved &) = default;
    };

    /// A token for the file or directory at \a url. Two tokens for a file that nobody touched are
    /// equal byte for byte.
    /// \throws BookmarkError if there is no such file.
    virtual QByteArray create(const QUrl &url) const = 0;

    /// Where the file of \a bookmark is now.
    /// \throws BookmarkError if the token is not one of ours, or the file is nowhere near.
    virtual Resolved resolve(const QByteArray &bookmark) const = 0;
};
