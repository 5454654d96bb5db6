#include "foundation/UserDefaults.h"

#include "foundation/Log.h"
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

UserDefaults::~UserDefaults()
{
    write();
}

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
    writeSoon();
}

void UserDefaults::remove(const QString &key)
{
    const std::lock_guard lock(m_mutex);
    ensurePrivateTarget();
    m_settings->remove(key);
    writeSoon();
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

/// The settings object would write by itself, but it tells nobody when it cannot.
void UserDefaults::writeSoon()
{
    if (!std::exchange(m_isWriteDue, true))
        QMetaObject::invokeMethod(m_settings.get(), [this] { write(); }, Qt::QueuedConnection);
}

void UserDefaults::write()
{
    std::unique_lock lock(m_mutex);
    if (!std::exchange(m_isWriteDue, false))
        return;
    m_settings->sync();
    if (m_settings->status() == QSettings::NoError || std::exchange(m_isFailureTold, true))
        return;
    const QString path = m_settings->fileName();
    lock.unlock();
    printLine("Failed to write the settings; they last until the program ends: "_L1 + path);
}

QVariant UserDefaults::value(const QString &key) const
{
    const std::lock_guard lock(m_mutex);
    return m_settings->value(key);
}
