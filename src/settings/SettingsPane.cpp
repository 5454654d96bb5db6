#include "settings/SettingsPane.h"

#include "language/Localized.h"

using namespace Qt::StringLiterals;

const QList<SettingsPane> &availablePanes()
{
    static const QList panes{SettingsPane::General, SettingsPane::Shortcuts, SettingsPane::About};
    return panes;
}

QString title(SettingsPane pane)
{
    switch (pane) {
    case SettingsPane::General: return localized(u"settings.general.title"_s, u"General"_s);
    case SettingsPane::Storage: return localized(u"settings.storage.title"_s, u"Storage"_s);
    case SettingsPane::Privacy: return localized(u"settings.privacy.title"_s, u"Privacy"_s);
    case SettingsPane::Shortcuts: return localized(u"settings.shortcuts.title"_s, u"Shortcuts"_s);
    case SettingsPane::About: return localized(u"settings.about.title"_s, u"About"_s);
    }
    return {};
}

QString symbolName(SettingsPane pane)
{
    switch (pane) {
    case SettingsPane::General: return u"gearshape"_s;
    case SettingsPane::Storage: return u"internaldrive"_s;
    case SettingsPane::Privacy: return u"hand.raised"_s;
    case SettingsPane::Shortcuts: return u"keyboard"_s;
    case SettingsPane::About: return u"info.circle"_s;
    }
    return {};
}
