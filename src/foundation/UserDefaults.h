#pragma once

#include <QVariant>

#include <memory>
#include <mutex>

class QSettings;

/// The user's settings, one file in the user's configuration directory, for the user alone. Any
/// thread.
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

    /// The value reaches the file soon after, at the latest when the object ends. If it cannot be
    /// written, that is printed once, and the value lasts as long as the object.
    void set(const QString &key, const QVariant &value);
    void remove(const QString &key);

private:
    QVariant value(const QString &key) const;
    void ensurePrivateTarget();
    void writeSoon();
    void write();

    mutable std::mutex m_mutex; ///< Guards the settings object, which is not safe to share.
    std::unique_ptr<QSettings> m_settings;
    bool m_isTargetPrivate = false;
    bool m_isWriteDue = false;
    bool m_isFailureTold = false;
};
