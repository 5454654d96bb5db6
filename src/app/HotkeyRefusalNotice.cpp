#include "app/HotkeyRefusalNotice.h"

#include "foundation/UserDefaults.h"
#include "language/Localized.h"
#include "platform/Notifications.h"
#include "settings/HotkeyText.h"
#include "settings/SettingsPane.h"

using namespace Qt::StringLiterals;

namespace {

const QString kShownKey = u"hotkey.refusal_shown"_s;

} // namespace

void HotkeyRefusalNotice::show(const HotkeySettings &settings)
{
    if (m_defaults.boolean(kShownKey))
        return;
    const QString title =
        filledIn(localized(u"hotkey.refused.title"_s, u"%@ does not open the clipboard history"_s),
                 {HotkeyText::readable(settings)});
    const QString text = filledIn(
        localized(u"hotkey.refused.text"_s,
                  u"Another program has this key combination. Choose another one under %@ > %@."_s),
        {localized(u"settings.window.title"_s, u"Settings"_s),
         ::title(SettingsPane::Shortcuts)});
    // Where nothing could show it, as early in a session, the next start tries again.
    m_notifications.show(title, text, [&defaults = m_defaults] { defaults.set(kShownKey, true); });
}
