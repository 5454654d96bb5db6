#include "foundation/UserDefaults.h"

#include <QSettings>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

UserDefaults::UserDefaults()
    : UserDefaults(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                   + u"/tessarine/tessarine.conf"_s)
{
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
    m_settings->setValue(key, value);
}

void UserDefaults::remove(const QString &key)
{
    const std::lock_guard lock(m_mutex);
    m_settings->remove(key);
}

QVariant UserDefaults::value(const QString &key) const
{
    const std::lock_guard lock(m_mutex);
    return m_settings->value(key);
}
