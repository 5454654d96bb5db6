#include "platform/x11/X11Applications.h"

std::optional<X11Applications::Front> X11Applications::front()
{
    const quint32 window = m_windows.activeWindow();
    if (window == 0)
        return std::nullopt;
    const auto identity = m_windows.identity(window);
    return identity ? std::optional(Front{window, *identity}) : std::nullopt;
}

RunningApplication X11Applications::describe(const Front &front)
{
    const X11Windows::Identity &identity = front.identity;
    const QString key =
        identity.gtkApplicationId + u'\n' + identity.instanceName + u'\n' + identity.className;
    RunningApplication application = m_known.value(key);
    if (application.bundleIdentifier.isEmpty()) {
        const auto entry = m_entries.findByWindow(identity.gtkApplicationId, identity.instanceName,
                                                  identity.className);
        application.bundleIdentifier = entry ? entry->id : identity.className;
        application.localizedName = entry ? entry->name : identity.className;
        // One without an entry may yet get one.
        if (entry)
            m_known.insert(key, application);
    }
    application.window = front.window;
    application.processId = identity.processId;
    return application;
}
