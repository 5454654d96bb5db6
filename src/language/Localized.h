#pragma once

#include <QString>

/// The text for people under \a key in the interface language; \a fallback where the language's
/// table does not have it.
QString localized(const QString &key, const QString &fallback);
