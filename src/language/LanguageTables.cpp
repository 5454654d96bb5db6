#include "language/LanguageTables.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {

std::optional<QByteArray> builtInFile(const QString &name)
{
    QFile file(u":/languages/"_s + name + u".lproj/Localizable.json"_s);
    return file.open(QIODevice::ReadOnly) ? std::optional(file.readAll()) : std::nullopt;
}

std::optional<LanguageTables::Table> parse(const std::optional<QByteArray> &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json.value_or(QByteArray()));
    if (!document.isObject())
        return std::nullopt;
    LanguageTables::Table table;
    const QJsonObject object = document.object();
    for (auto text = object.begin(); text != object.end(); ++text)
        table.insert(text.key(), text.value().toString());
    return table;
}

} // namespace

LanguageTables::LanguageTables()
    : LanguageTables(builtInFile)
{
}

const LanguageTables::Table *LanguageTables::find(const QString &name)
{
    auto table = m_tables.find(name);
    if (table == m_tables.end())
        table = m_tables.insert(name, parse(m_source(name)));
    return *table ? &**table : nullptr;
}
