#pragma once

#include <QDBusVariant>
#include <QObject>

#include <functional>
#include <optional>

/// The person's choice of light or dark, as the desktop portal tells it. Main thread only.
///
/// The question is put once the event loop runs, and nothing waits for the answer: a portal may
/// take seconds to start.
class PortalAppearance : public QObject
{
    Q_OBJECT

public:
    PortalAppearance();

    /// Absent until the answer is there, without a portal, and without a preference.
    std::optional<bool> prefersDark() const { return m_prefersDark; }

    /// Called after the answer has changed.
    std::function<void()> onChanged;

private slots:
    void handleSettingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void ask();
    void apply(const QVariant &value);

    std::optional<bool> m_prefersDark;
};
