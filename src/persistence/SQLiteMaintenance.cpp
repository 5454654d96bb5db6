#include "persistence/SQLiteMaintenance.h"

#include <QFile>

#include <memory>

#include <sqlite3.h>

namespace {

struct Close
{
    void operator()(sqlite3 *handle) const { sqlite3_close(handle); }
};

void execute(sqlite3 *handle, const char *sql)
{
    char *message = nullptr;
    const int result = sqlite3_exec(handle, sql, nullptr, nullptr, &message);
    const std::unique_ptr<char, void (*)(void *)> messageOwner(message, sqlite3_free);
    if (result != SQLITE_OK)
        throw SQLiteMaintenanceError::executeFailed(sql, message ? message : sqlite3_errmsg(handle));
}

} // namespace

SQLiteMaintenanceError SQLiteMaintenanceError::openFailed(const QString &path)
{
    return SQLiteMaintenanceError("Failed to open SQLite database at " + path.toStdString());
}

SQLiteMaintenanceError SQLiteMaintenanceError::executeFailed(const char *sql, const char *message)
{
    return SQLiteMaintenanceError("Failed to execute SQL '" + std::string(sql) + "': " + message);
}

void compactDatabase(const QString &path)
{
    sqlite3 *opened = nullptr;
    const int result = sqlite3_open_v2(QFile::encodeName(path).constData(), &opened,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_FULLMUTEX, nullptr);
    const std::unique_ptr<sqlite3, Close> handle(opened);
    if (result != SQLITE_OK || !handle)
        throw SQLiteMaintenanceError::openFailed(path);
    execute(handle.get(), "PRAGMA wal_checkpoint(TRUNCATE);");
    execute(handle.get(), "VACUUM;");
}
