#include "foundation/UserDefaults.h"

#include "foundation/Log.h"
#include "foundation/PrivateFiles.h"
#include "foundation/SerialQueue.h"

#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

#include <thread>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Longer than a disk takes; a session that ends waits no longer for the whole program.
constexpr auto kEndPatience = 2s;

QString filePathOfUser()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + u"/tessarine/tessarine.conf"_s;
}

} // namespace

/// The file, and what has yet to reach it. Any thread.
class UserDefaults::File
{
public:
    explicit File(const QString &path)
        : m_path(path)
    {
    }

    QHash<QString, QVariant> read() const;

    /// An invalid value stands for a key that is to be removed. Returns whether a write is due that
    /// was not due before.
    [[nodiscard]] bool add(const QString &key, const QVariant &value);

    /// Waits for the file's lock, its disk, and all who have to do with them.
    void write();

    void tellOfFailure();

private:
    QHash<QString, QVariant> takeChanges();
    void giveBack(const QHash<QString, QVariant> &changes);
    bool isWritten(const QHash<QString, QVariant> &changes) const;
    bool isPrivateTarget() const;

    const QString m_path;
    std::mutex m_mutex; ///< Guards the fields below.
    QHash<QString, QVariant> m_changes;
    bool m_isWriteDue = false;
    bool m_isFailureTold = false;
};

QHash<QString, QVariant> UserDefaults::File::read() const
{
    // Opening a pipe would wait for its other end.
    if (!QFileInfo(m_path).isFile())
        return {};
    const QSettings settings(m_path, QSettings::IniFormat);
    QHash<QString, QVariant> values;
    const QStringList keys = settings.allKeys();
    for (const QString &key : keys)
        values.insert(key, settings.value(key));
    return values;
}

bool UserDefaults::File::add(const QString &key, const QVariant &value)
{
    const std::lock_guard lock(m_mutex);
    m_changes.insert(key, value);
    return !std::exchange(m_isWriteDue, true);
}

void UserDefaults::File::write()
{
    const QHash<QString, QVariant> changes = takeChanges();
    if (isWritten(changes))
        return;
    giveBack(changes);
    tellOfFailure();
}

QHash<QString, QVariant> UserDefaults::File::takeChanges()
{
    const std::lock_guard lock(m_mutex);
    m_isWriteDue = false;
    return std::exchange(m_changes, {});
}

/// They are written along with the next change; what has changed meanwhile is newer.
void UserDefaults::File::giveBack(const QHash<QString, QVariant> &changes)
{
    const std::lock_guard lock(m_mutex);
    for (auto change = changes.cbegin(); change != changes.cend(); ++change) {
        if (!m_changes.contains(change.key()))
            m_changes.insert(change.key(), *change);
    }
}

bool UserDefaults::File::isWritten(const QHash<QString, QVariant> &changes) const
{
    if (!isPrivateTarget())
        return false;
    // Made here each time: an object that stays would write by itself, on the thread it belongs to.
    QSettings settings(m_path, QSettings::IniFormat);
    for (auto change = changes.cbegin(); change != changes.cend(); ++change) {
        if (change->isValid())
            settings.setValue(change.key(), *change);
        else
            settings.remove(change.key());
    }
    settings.sync();
    return settings.status() == QSettings::NoError;
}

/// A file that is there keeps its rights when it is written.
bool UserDefaults::File::isPrivateTarget() const
{
    const QString directory = QFileInfo(m_path).absolutePath();
    return (QFileInfo(directory).isDir() || ensurePrivateDirectory(directory))
        && ensurePrivateFile(m_path);
}

void UserDefaults::File::tellOfFailure()
{
    {
        const std::lock_guard lock(m_mutex);
        if (std::exchange(m_isFailureTold, true))
            return;
    }
    printLine("Failed to write the settings; they last until the program ends: "_L1 + m_path);
}

UserDefaults::UserDefaults()
    : UserDefaults(filePathOfUser())
{
    // Another program, or an earlier version, may have made them for everybody.
    closeToOthers(QFileInfo(filePathOfUser()).absolutePath());
    closeToOthers(filePathOfUser());
}

UserDefaults::UserDefaults(const QString &filePath)
    : m_file(std::make_shared<File>(filePath))
{
    m_values = m_file->read();
}

UserDefaults::~UserDefaults()
{
    if (!m_writer || m_writer->drainFor(kEndPatience))
        return;
    m_file->tellOfFailure();
    // It ends with the process, if what it waits for does not come before.
    std::thread([writer = std::move(m_writer)]() mutable { writer.reset(); }).detach();
}

bool UserDefaults::contains(const QString &key) const
{
    const std::lock_guard lock(m_mutex);
    return m_values.contains(key);
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

std::optional<QStringList> UserDefaults::stringList(const QString &key) const
{
    const QVariant stored = value(key);
    if (!stored.isValid())
        return std::nullopt;
    return stored.toStringList();
}

void UserDefaults::set(const QString &key, const QVariant &value)
{
    const std::lock_guard lock(m_mutex);
    m_values.insert(key, value);
    writeSoon(key, value);
}

void UserDefaults::remove(const QString &key)
{
    const std::lock_guard lock(m_mutex);
    m_values.remove(key);
    writeSoon(key, QVariant());
}

void UserDefaults::writeSoon(const QString &key, const QVariant &value)
{
    if (!m_file->add(key, value))
        return;
    if (!m_writer)
        m_writer = std::make_unique<SerialQueue>("tessarine.settings");
    m_writer->enqueue([file = m_file] { file->write(); });
}

QVariant UserDefaults::value(const QString &key) const
{
    const std::lock_guard lock(m_mutex);
    return m_values.value(key);
}
