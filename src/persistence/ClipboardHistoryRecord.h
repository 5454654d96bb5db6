#pragma once

#include "core/ClipboardItem.h"

#include <QHash>

#include <string>

class SQLiteConnection;
class SQLiteStatement;
class StoredParts;
enum class StoredPart;

/// How entries lie in the database: one row each, its columns named like the record's attributes.
namespace ClipboardHistoryRecord {

/// The number of the schema, kept as the user version of the database.
inline constexpr qint64 kSchemaVersion = 1;

/// Whether \a connection leads to a database with the table, of whatever version.
/// \throws StoreError
bool hasTable(SQLiteConnection &connection);

/// Creates the table in an empty database and notes the version. To be run in a transaction.
/// \throws StoreError
void createTable(SQLiteConnection &connection);

/// Every live row, newest first, in the columns that RowReader reads.
std::string selectLiveSql();

/// One part of the row with the id of parameter 1, if its hash is that of parameter 2 or that is
/// null.
std::string selectPartSql(StoredPart part);

/// Inserts a row or replaces the row with its id, unless that was updated later.
/// The parameters are those that bindItem() sets.
std::string upsertSql();

/// Turns the row with the id of parameter 2 into a tombstone of the time in parameter 1.
std::string markDeletedSql();

/// Sets the parameters of upsertSql().
/// \throws StoreError
void bindItem(SQLiteStatement &statement, const ClipboardItem &item);

/// The form in which ids are stored: upper case, without braces.
QByteArray storedId(const QUuid &id);

/// Makes entries of the rows of selectLiveSql(). Texts that come back in many rows are held once, and
/// long ones are left where they are.
class RowReader
{
public:
    explicit RowReader(std::shared_ptr<StoredParts> parts) : m_parts(std::move(parts)) {}

    /// Null if the row is of no known type or has no readable id.
    ClipboardItemPointer item(const SQLiteStatement &row);

private:
    void readParts(const SQLiteStatement &row, ClipboardItem &item) const;
    std::optional<QString> sharedText(const SQLiteStatement &row, int column);
    QStringList sharedList(const SQLiteStatement &row, int column);

    std::shared_ptr<StoredParts> m_parts;
    QHash<QByteArray, QString> m_texts;
    QHash<QByteArray, QStringList> m_lists;
};

} // namespace ClipboardHistoryRecord
