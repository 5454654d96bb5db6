#pragma once

#include <QFile>
#include <QStringList>
#include <QTest>

#include <sqlite3.h>

/// A second look at a database file, past the store.
class RawDatabase
{
public:
    explicit RawDatabase(const QString &path)
    {
        sqlite3_open(QFile::encodeName(path).constData(), &m_handle);
        sqlite3_busy_timeout(m_handle, 1000);
    }
    ~RawDatabase() { sqlite3_close(m_handle); }
    RawDatabase(const RawDatabase &) = delete;
    RawDatabase &operator=(const RawDatabase &) = delete;

    /// Runs \a sql; its rows, the columns joined by "|", null as "null".
    QStringList rows(const QByteArray &sql)
    {
        QStringList rows;
        char *message = nullptr;
        sqlite3_exec(m_handle, sql.constData(), collect, &rows, &message);
        if (message)
            qWarning("%s: %s", sql.constData(), message);
        sqlite3_free(message);
        return rows;
    }

    QString value(const QByteArray &sql) { return rows(sql).value(0); }

private:
    static int collect(void *rows, int count, char **values, char **)
    {
        QStringList columns;
        for (int i = 0; i < count; ++i)
            columns.append(QString::fromUtf8(values[i] ? values[i] : "null"));
        static_cast<QStringList *>(rows)->append(columns.join(u'|'));
        return 0;
    }

    sqlite3 *m_handle = nullptr;
};
