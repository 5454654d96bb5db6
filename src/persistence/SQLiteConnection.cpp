#include "persistence/SQLiteConnection.h"

#include <QFile>
#include <QUrl>

#include <sqlite3.h>

namespace {

/// A null pointer would stand for the null value, which an empty text is not.
const char *dataOf(QByteArrayView bytes)
{
    return bytes.isEmpty() ? "" : bytes.data();
}

/// The name by which the library takes a file as it is.
QByteArray immutableName(const QString &path)
{
    return QUrl::fromLocalFile(path).toEncoded() + "?immutable=1";
}

} // namespace

SQLiteConnection::SQLiteConnection(const QString &path, SQLiteAccess access)
{
    sqlite3 *handle = nullptr;
    const bool isImmutable = access == SQLiteAccess::Immutable;
    const QByteArray name = isImmutable ? immutableName(path) : QFile::encodeName(path);
    // The file is created beforehand, with the rights it is to have. One thread at a time: the
    // library need not lock.
    const int flags = isImmutable ? SQLITE_OPEN_READONLY | SQLITE_OPEN_URI : SQLITE_OPEN_READWRITE;
    const int result
        = sqlite3_open_v2(name.constData(), &handle, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    m_handle.reset(handle); // Even a connection that failed wants to be closed.
    if (result != SQLITE_OK)
        throw StoreError(handle ? sqlite3_errmsg(handle) : sqlite3_errstr(result));
}

void SQLiteConnection::execute(const char *sql)
{
    if (sqlite3_exec(handle(), sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        throwError();
}

qint64 SQLiteConnection::integer(const char *sql)
{
    SQLiteStatement statement(*this, sql);
    if (!statement.step())
        throw StoreError("no answer to " + std::string(sql));
    return statement.integer(0);
}

bool SQLiteConnection::isReadOnly() const
{
    return sqlite3_db_readonly(handle(), "main") == 1;
}

void SQLiteConnection::releaseMemory()
{
    sqlite3_db_release_memory(handle());
}

int SQLiteConnection::changedRowCount() const
{
    return sqlite3_changes(handle());
}

void SQLiteConnection::throwError()
{
    const int result = sqlite3_errcode(handle());
    m_isDamaged = m_isDamaged || result == SQLITE_CORRUPT || result == SQLITE_NOTADB;
    if (result == SQLITE_BUSY || result == SQLITE_LOCKED)
        throw DatabaseBusyError(sqlite3_errmsg(handle()));
    throw StoreError(sqlite3_errmsg(handle()));
}

void SQLiteConnection::Close::operator()(sqlite3 *handle) const
{
    sqlite3_close_v2(handle);
}

SQLiteStatement::SQLiteStatement(SQLiteConnection &connection, const std::string &sql)
    : m_connection(connection)
{
    sqlite3_stmt *handle = nullptr;
    if (sqlite3_prepare_v3(connection.handle(), sql.c_str(), int(sql.size()) + 1,
                           SQLITE_PREPARE_PERSISTENT, &handle, nullptr)
        != SQLITE_OK)
        connection.throwError();
    m_handle.reset(handle);
}

void SQLiteStatement::bind(int parameter, qint64 value)
{
    require(sqlite3_bind_int64(m_handle.get(), parameter, value));
}

void SQLiteStatement::bindText(int parameter, QByteArray utf8)
{
    require(sqlite3_bind_text64(m_handle.get(), parameter, dataOf(utf8),
                                sqlite3_uint64(utf8.size()), SQLITE_STATIC, SQLITE_UTF8));
    m_boundBytes.append(std::move(utf8));
}

void SQLiteStatement::bindBytes(int parameter, QByteArray bytes)
{
    require(sqlite3_bind_blob64(m_handle.get(), parameter, dataOf(bytes),
                                sqlite3_uint64(bytes.size()), SQLITE_STATIC));
    m_boundBytes.append(std::move(bytes));
}

bool SQLiteStatement::step()
{
    switch (sqlite3_step(m_handle.get())) {
    case SQLITE_ROW: return true;
    case SQLITE_DONE: return false;
    default: m_connection.throwError();
    }
}

bool SQLiteStatement::isNull(int column) const
{
    return sqlite3_column_type(m_handle.get(), column) == SQLITE_NULL;
}

bool SQLiteStatement::isInteger(int column) const
{
    return sqlite3_column_type(m_handle.get(), column) == SQLITE_INTEGER;
}

qint64 SQLiteStatement::integer(int column) const
{
    return sqlite3_column_int64(m_handle.get(), column);
}

QByteArrayView SQLiteStatement::bytes(int column) const
{
    const void *data = sqlite3_column_blob(m_handle.get(), column);
    const int size = sqlite3_column_bytes(m_handle.get(), column);
    return QByteArrayView(static_cast<const char *>(data), data ? size : 0);
}

void SQLiteStatement::reset()
{
    sqlite3_reset(m_handle.get());
    sqlite3_clear_bindings(m_handle.get());
    m_boundBytes.clear();
}

void SQLiteStatement::require(int result) const
{
    if (result != SQLITE_OK)
        m_connection.throwError();
}

void SQLiteStatement::Finalize::operator()(sqlite3_stmt *handle) const
{
    sqlite3_finalize(handle);
}

SQLiteTransaction::SQLiteTransaction(SQLiteConnection &connection) : m_connection(connection)
{
    connection.execute("BEGIN IMMEDIATE");
}

SQLiteTransaction::~SQLiteTransaction()
{
    // Some errors, a full disk among them, have rolled back already.
    if (!sqlite3_get_autocommit(m_connection.handle()))
        sqlite3_exec(m_connection.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void SQLiteTransaction::commit()
{
    m_connection.execute("COMMIT");
}
