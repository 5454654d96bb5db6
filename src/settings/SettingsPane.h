#pragma once

#include <QList>
#include <QString>

/// The pages of the settings, in the order of the sidebar.
enum class SettingsPane
{
    General,
    Storage,
    Privacy,
    Shortcuts,
    About
};

/// The panes that the window lists, in that order.
const QList<SettingsPane> &availablePanes();

/// In the interface language.
QString title(SettingsPane pane);

QString symbolName(SettingsPane pane);
