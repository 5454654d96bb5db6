#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The icon theme that the settings of this X session name; absent if nobody publishes settings.
/// Any thread; opens a connection of its own for the time of the call.
std::optional<QString> x11IconThemeName();

/// The same from the \a settings as they are published.
std::optional<QString> iconThemeNameIn(QByteArrayView settings);

/// What one setting is set to. A colour has neither.
struct X11Setting
{
    std::optional<QByteArray> text;
    std::optional<qint32> number;
};

/// The setting with the name \a wanted in the \a settings as they are published; absent if there is
/// none, or if what stands before it cannot be read.
std::optional<X11Setting> x11SettingIn(QByteArrayView settings, QByteArrayView wanted);
