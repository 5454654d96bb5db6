#pragma once

#include "capture/IgnoredApp.h"

#include <QList>
#include <QSet>

class UserDefaults;

/// Keeps the list of programs whose copies are not recorded. Main thread only.
///
/// Nothing is cached: what the settings change counts from the next copy on.
class PrivacySettingsManager
{
public:
    /// \a defaults must outlive the manager.
    explicit PrivacySettingsManager(UserDefaults &defaults) : m_defaults(defaults) {}
    PrivacySettingsManager(const PrivacySettingsManager &) = delete;
    PrivacySettingsManager &operator=(const PrivacySettingsManager &) = delete;

    /// The list sorted by name, each identifier once; the default list if none was stored or it
    /// cannot be read. A stored empty list stays empty.
    QList<IgnoredApp> ignoredApps() const;

    void saveIgnoredApps(const QList<IgnoredApp> &apps);

    /// The lower-cased identifiers, and those of programs that count as the same.
    QSet<QString> ignoredBundleIdentifiers() const;

private:
    UserDefaults &m_defaults;
};
