#pragma once

#include "foundation/LazyBytes.h"

#include <QList>
#include <QUrl>

#include <memory>
#include <optional>

/// What the program may do with the person's files. Any thread.
///
/// No call waits for long, not even for a volume that does not answer any more, so that the main
/// thread may ask.
class FileAccess
{
public:
    virtual ~FileAccess() = default;

    /// An access that was granted; it lasts as long as the object.
    class Scope
    {
    public:
        virtual ~Scope() = default;
    };

    /// Takes hold of the file or directory at \a url, without changing it or waking who waits at
    /// its other end. Null if there is none, or none that may be read.
    virtual std::unique_ptr<Scope> start(const QUrl &url) const = 0;

    /// Whether a file is at every one of \a urls. Absent if the file system does not tell in time.
    virtual std::optional<bool> exist(const QList<QUrl> &urls) const = 0;

    /// The bytes of the file at \a path, which is held open, so that it can be read even when it is
    /// deleted; nothing of it is read yet. Absent if there is none that may be read, or something
    /// other than a file.
    virtual std::optional<LazyBytes> open(const QString &path) const = 0;
};
