#pragma once

#include <QColor>
#include <QDBusVariant>
#include <QObject>

#include <functional>
#include <optional>

/// How the person wants things to look, as the desktop portal tells it. Main thread only.
///
/// The question is put once the event loop runs, and nothing waits for the answer: a portal may
/// take seconds to start. Until it is there, without a portal, and where the portal tells something
/// that it cannot mean, nobody prefers anything.
class PortalAppearance : public QObject
{
    Q_OBJECT

public:
    struct Preferences
    {
        std::optional<bool> isDark;
        std::optional<QColor> accent;
        bool isContrastHigh = false;
        bool isMotionReduced = false;
        bool isAnimated = true; ///< In the words of older desktops, as is the next.
        bool isThemeContrastHigh = false;
        double textScale = 1;

        friend bool operator==(const Preferences &, const Preferences &) = default;
    };

    PortalAppearance();

    const Preferences &preferences() const { return m_preferences; }

    /// Called after one of the preferences has changed.
    std::function<void()> onChanged;

private slots:
    void handleSettingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void ask();
    void set(const Preferences &preferences);

    Preferences m_preferences;
};
