#include "foundation/UserDefaults.h"

#include "foundation/PrivateFiles.h"

#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

#include <utility>

using namespace Qt::StringLiterals;

UserDefaults::UserDefaults()
    : UserDefaults(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                   + u"/tessarine/tessarine.conf"_s)
{
    // Another program, or an earlier version, may have made them for everybody.
    closeToOthers(QFileInfo(m_settings->fileName()).absolutePath());
    closeToOthers(m_settings->fileName());
}

UserDefaults::UserDefaults(const QString &filePath)
    : m_settings(std::make_unique<QSettings>(filePath, QSettings::IniFormat))
{
}

UserDefaults::~UserDefaults() = default;

bool UserDefaults::contains(const QString &key) const
{
    const std::lock_guard lock(m_mutex);
    return m_settings->contains(key);
}

qint64 UserDefaults::integer(const QString &key) const
{
    return value(key).toLongLong();
}

bool UserDefaults::boolean(const QString &key) const
{
    return value(key).toBool();
}

std::optional<QString> UserDefaults::string(const QString &key) const
{
    const QVariant stored = value(key);
    if (!stored.isValid())
        return std::nullopt;
    return stored.toString();
}

std::optional<QByteArray> UserDefaults::data(const QString &key) const
{
    const QVariant stored = value(key);
    if (!stored.isValid())
        return std::nullopt;
    return stored.toByteArray();
}

void UserDefaults::set(const QString &key, const QVariant &value)
{
    const std::lock_guard lock(m_mutex);
    ensurePrivateTarget();
    m_settings->setValue(key, value);
}

void UserDefaults::remove(const QString &key)
{
    const std::lock_guard lock(m_mutex);
    ensurePrivateTarget();
    m_settings->remove(key);
}

/// A file that is there keeps its rights when it is written.
void UserDefaults::ensurePrivateTarget()
{
    if (std::exchange(m_isTargetPrivate, true))
        return;
    const QString path = m_settings->fileName();
    const QString directory = QFileInfo(path).absolutePath();
    // What cannot be created cannot be written either, and is not: the settings last for this run.
    [[maybe_unused]] const bool isThere
        = (QFileInfo(directory).isDir() || ensurePrivateDirectory(directory))
        && ensurePrivateFile(path);
}

QVariant UserDefaults::value(const QString &key) const
{
    const std::lock_guard lock(m_mutex);
    return m_settings->value(key);
}
