#pragma once

#include "core/StoreError.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

#include <memory>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

enum class SQLiteAccess {
    ReadWrite, ///< Reading alone where the file cannot be written.
    Immutable, ///< Reading a file that nobody changes meanwhile. Nothing beside it is needed or read.
};

/// Another program has locked the database, and did not let go in time.
class DatabaseBusyError : public StoreError
{
public:
    using StoreError::StoreError;
};

/// An open SQLite database. Used by one thread at a time.
class SQLiteConnection
{
public:
    /// Opens a file that exists.
    /// \throws StoreError if it cannot be opened.
    explicit SQLiteConnection(const QString &path, SQLiteAccess access = SQLiteAccess::ReadWrite);
    SQLiteConnection(const SQLiteConnection &) = delete;
    SQLiteConnection &operator=(const SQLiteConnection &) = delete;

    /// Runs statements that return nothing worth reading.
    /// \throws StoreError
    void execute(const char *sql);

    /// The first column of the first row that \a sql gives.
    /// \throws StoreError, also if there is no row.
    qint64 integer(const char *sql);

    bool isReadOnly() const;

    /// Gives cached pages back.
    void releaseMemory();

    /// The number of rows that the last statement changed.
    int changedRowCount() const;

    /// \throws StoreError with the text of the last failure.
    [[noreturn]] void throwError();

    /// Whether a failure so far has shown that the file is not whole.
    bool isDamaged() const { return m_isDamaged; }

    sqlite3 *handle() const { return m_handle.get(); }

private:
    struct Close
    {
        void operator()(sqlite3 *handle) const;
    };

    std::unique_ptr<sqlite3, Close> m_handle;
    bool m_isDamaged = false;
};

/// A statement that is prepared once and run often. Parameters count from 1, columns from 0.
class SQLiteStatement
{
public:
    /// \throws StoreError if \a sql does not fit the database.
    SQLiteStatement(SQLiteConnection &connection, const std::string &sql);

    void bind(int parameter, qint64 value);
    void bindText(int parameter, QByteArray utf8);
    void bindBytes(int parameter, QByteArray bytes);

    /// True if there is a row to read. Statements that give no rows have done their work then.
    /// \throws StoreError
    bool step();

    bool isNull(int column) const;
    bool isInteger(int column) const;
    qint64 integer(int column) const;
    /// What a text or blob column holds; valid until the next step.
    QByteArrayView bytes(int column) const;

    /// Ends a run and forgets the parameters, which count as null until they are bound again.
    void reset();

private:
    struct Finalize
    {
        void operator()(sqlite3_stmt *handle) const;
    };

    void require(int result) const;

    SQLiteConnection &m_connection;
    QList<QByteArray> m_boundBytes; ///< The library reads them where they lie.
    std::unique_ptr<sqlite3_stmt, Finalize> m_handle;
};

/// Ends the run of a statement where the block ends, on every road out.
class SQLiteRun
{
public:
    explicit SQLiteRun(SQLiteStatement &statement) : m_statement(statement) {}
    ~SQLiteRun() { m_statement.reset(); }
    SQLiteRun(const SQLiteRun &) = delete;
    SQLiteRun &operator=(const SQLiteRun &) = delete;

private:
    SQLiteStatement &m_statement;
};

/// All or nothing: what was not committed when the object ends has never happened.
class SQLiteTransaction
{
public:
    /// \throws StoreError
    explicit SQLiteTransaction(SQLiteConnection &connection);
    ~SQLiteTransaction();
    SQLiteTransaction(const SQLiteTransaction &) = delete;
    SQLiteTransaction &operator=(const SQLiteTransaction &) = delete;

    /// \throws StoreError
    void commit();

private:
    SQLiteConnection &m_connection;
};
