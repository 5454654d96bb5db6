#include "language/Localized.h"

#include <QCoreApplication>

QString localized(const QString &key, const QString &fallback)
{
    // Tables are installed as translators whose source texts are the keys.
    const QByteArray source = key.toUtf8();
    const QString text = QCoreApplication::translate("tessarine", source.constData());
    return text == key ? fallback : text;
}
