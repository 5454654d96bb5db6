#pragma once

#include <QString>

class LanguageManager;

/// The text for people under \a key in the interface language; \a fallback where no table has it.
/// Main thread only.
QString localized(const QString &key, const QString &fallback);

/// Who answers localized(): the one that began last, until it ends. Without any, there are the
/// fallbacks alone.
namespace Localizing {
void begin(LanguageManager *manager);
void end(const LanguageManager *manager);
} // namespace Localizing
