#pragma once

#include <QHash>
#include <QVariant>

#include <memory>
#include <mutex>

class SerialQueue;

/// The user's settings, one file in the user's configuration directory, for the user alone. Any
/// thread.
///
/// The file is read once, and written on a thread of its own, since its disk, or a program that
/// holds its lock, may keep the writer waiting. The values in memory are the truth.
///
/// Nothing is cached by its readers: each use asks here. Keys are the dotted names as they are
/// documented; a dot is no group separator.
class UserDefaults
{
public:
    /// The file "tessarine/tessarine.conf" of the user.
    UserDefaults();
    /// Another file; for tests.
    explicit UserDefaults(const QString &filePath);
    ~UserDefaults();

    bool contains(const QString &key) const;
    /// Zero if the key is missing or its value is no number.
    qint64 integer(const QString &key) const;
    /// False if the key is missing.
    bool boolean(const QString &key) const;
    std::optional<QString> string(const QString &key) const;
    std::optional<QByteArray> data(const QString &key) const;
    std::optional<QStringList> stringList(const QString &key) const;

    /// The value reaches the file soon after, at the latest when the object ends, which waits for
    /// that a short while. If it cannot be written, that is printed once, and the value lasts as
    /// long as the object.
    void set(const QString &key, const QVariant &value);
    void remove(const QString &key);

private:
    class File;

    QVariant value(const QString &key) const;
    void writeSoon(const QString &key, const QVariant &value);

    mutable std::mutex m_mutex; ///< Guards the values and the making of the queue.
    QHash<QString, QVariant> m_values;
    std::shared_ptr<File> m_file; ///< Shared with the work on the queue, which may outlast us.
    std::unique_ptr<SerialQueue> m_writer; ///< Made for the first change.
};
