#pragma once

#include "core/ClipboardItem.h"

#include <QHash>

#include <string>

class SQLiteConnection;
class SQLiteStatement;

/// How entries lie in the database: one row each, its columns named like the record's attributes.
namespace ClipboardHistoryRecord {

/// The number of the schema, kept as the user version of the database.
inline constexpr qint64 kSchemaVersion = 1;

/// Creates the table in an empty database and notes the version. To be run in a transaction.
/// \throws StoreError
void createTable(SQLiteConnection &connection);

/// Every live row, newest first, in the columns that RowReader reads.
std::string selectLiveSql();

/// Inserts a row or replaces the row with its id, unless that was updated later.
/// The parameters are those that bindItem() sets.
std::string upsertSql();

/// Turns the row with the id of parameter 2 into a tombstone of the time in parameter 1.
std::string markDeletedSql();

/// Sets the parameters of upsertSql(). \a item must stay as it is until the run ends.
/// \throws StoreError
void bindItem(SQLiteStatement &statement, const ClipboardItem &item);

/// The form in which ids are stored: upper case, without braces.
QByteArray storedId(const QUuid &id);

/// Makes entries of the rows of selectLiveSql(). Texts that come back in many rows are held once.
class RowReader
{
public:
    /// Null if the row is of no known type or has no readable id.
    ClipboardItemPointer item(const SQLiteStatement &row);

private:
    std::optional<QString> sharedText(const SQLiteStatement &row, int column);
    QStringList sharedList(const SQLiteStatement &row, int column);

    QHash<QByteArray, QString> m_texts;
    QHash<QByteArray, QStringList> m_lists;
};

} // namespace ClipboardHistoryRecord
