#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <functional>
#include <optional>

/// The texts for people, a table for each language: JSON files "NAME.lproj/Localizable.json" that
/// hold texts by their keys. Main thread only.
class LanguageTables
{
public:
    using Table = QHash<QString, QString>;
    /// The file of the table with that name; absent if there is no such table.
    using Source = std::function<std::optional<QByteArray>(const QString &name)>;

    /// The tables that are built into the program.
    LanguageTables();
    explicit LanguageTables(Source source)
        : m_source(std::move(source))
    {
    }

    /// Null if there is no such table, or it cannot be read. A table is read once. What is returned
    /// is valid until the next call.
    const Table *find(const QString &name);

private:
    Source m_source;
    QHash<QString, std::optional<Table>> m_tables;
};
