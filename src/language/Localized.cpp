#include "language/Localized.h"

#include "language/LanguageManager.h"

#include <QLocale>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

/// Global, because texts are looked up in every room, and a person reads one language at a time.
LanguageManager *installedManager = nullptr;

QString written(const QVariant &value)
{
    return value.typeId() == QMetaType::QString ? value.toString()
                                                : QLocale().toString(value.toLongLong());
}

} // namespace

QString localized(const QString &key, const QString &fallback)
{
    return installedManager != nullptr ? installedManager->text(key, fallback) : fallback;
}

QString filledIn(const QString &format, const QVariantList &values)
{
    static const QRegularExpression placeholder(u"%(?:d|lld|@)"_s);
    QString result;
    qsizetype end = 0;
    auto value = values.begin();
    for (const auto &match : placeholder.globalMatch(format)) {
        if (value == values.end())
            break;
        result += format.sliced(end, match.capturedStart() - end) + written(*value++);
        end = match.capturedEnd();
    }
    return result + format.sliced(end);
}

void Localizing::begin(LanguageManager *manager)
{
    installedManager = manager;
}

void Localizing::end(const LanguageManager *manager)
{
    if (installedManager == manager)
        installedManager = nullptr;
}
