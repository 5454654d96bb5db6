#pragma once

#include "core/StoreError.h"

#include <QString>

/// The upkeep of the database file failed; the text names the file or the statement.
class SQLiteMaintenanceError : public StoreError
{
public:
    static SQLiteMaintenanceError openFailed(const QString &path);
    static SQLiteMaintenanceError executeFailed(const char *sql, const char *message);

private:
    using StoreError::StoreError;
};

/// Gives the free space of the database at \a path back, on a connection of its own: first the log
/// is written into the file, then the file is rebuilt. The file is never created.
/// \throws SQLiteMaintenanceError; what has been done until then stands.
void compactDatabase(const QString &path);
