#include "language/Localized.h"

#include "language/LanguageManager.h"

namespace {

/// Texts are looked up in every room of the program, and a person reads one language at a time.
LanguageManager *installedManager = nullptr;

} // namespace

QString localized(const QString &key, const QString &fallback)
{
    return installedManager != nullptr ? installedManager->text(key, fallback) : fallback;
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
