#pragma once

#include "platform/StatusItem.h"

#include <memory>

/// Offers a menu on the session bus, in the form in which panels draw the menus of others
/// (com.canonical.dbusmenu). Main thread only.
class DBusMenu
{
public:
    DBusMenu();
    ~DBusMenu();

    /// Makes the menu one that can be found at \a path. False without a session bus.
    [[nodiscard]] bool offer(const QString &path);

    /// Panels are told of what is different: of texts alone if the lines are the same.
    void setEntries(const QList<StatusMenuEntry> &entries);

    /// Called before the menu opens; setEntries() still counts then.
    std::function<void()> onWillOpen;

    std::function<void(int id)> onEntryChosen;

private:
    class Object;
    std::unique_ptr<Object> m_object; ///< What a panel calls.
};
