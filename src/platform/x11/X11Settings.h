#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

/// The icon theme that the settings of this X session name; absent if nobody publishes settings.
/// Any thread; opens a connection of its own for the time of the call.
std::optional<QString> x11IconThemeName();

/// The same from the \a settings as they are published.
std::optional<QString> iconThemeNameIn(QByteArrayView settings);
