#pragma once

#include "foundation/LazyBytes.h"

#include <QFile>

#include <mutex>

/// A file that is open for reading, and can be read even when it is deleted. Any thread.
class RegularFile : public ByteSource
{
public:
    /// Null if nothing is at \a path that may be read, or something other than a file: a pipe would
    /// be waited for, and a device may have no end.
    static std::shared_ptr<const RegularFile> open(const QString &path);

    qint64 size() const;

    /// No more than size(), so that a file without an end is no trouble.
    std::optional<QByteArray> read() const override;

    /// Absent if there are more bytes than \a limit, whatever the size says.
    std::optional<QByteArray> readUpTo(qint64 limit) const;

private:
    RegularFile() = default;

    mutable std::mutex m_mutex; ///< Guards the place in the file.
    mutable QFile m_file;
};
