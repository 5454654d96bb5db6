#pragma once

#include <QString>
#include <QVariant>

class LanguageManager;

/// The text for people under \a key in the interface language; \a fallback where no table has it.
/// Main thread only.
QString localized(const QString &key, const QString &fallback);

/// \a format with its placeholders, which are %d and %lld for whole numbers and %@ for texts,
/// replaced by \a values in their order. Numbers are written as in the current locale.
QString filledIn(const QString &format, const QVariantList &values);

/// Who answers localized(): the one that began last, until it ends. Without any, there are the
/// fallbacks alone.
namespace Localizing {
void begin(LanguageManager *manager);
void end(const LanguageManager *manager);
} // namespace Localizing
