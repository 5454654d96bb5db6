#pragma once

#include "platform/StatusItem.h"
#include "platform/linux/DBusMenu.h"
#include "platform/linux/StatusNotifierHosts.h"

/// A status item that registers over D-Bus, and that panels draw themselves, with its menu
/// (org.kde.StatusNotifierItem). It registers with each watcher that comes. It stands alone where a
/// desktop has only such items; where there may be another tray, it is one of two ways to be seen.
class StatusNotifierItem : public StatusItem
{
public:
    StatusNotifierItem();
    ~StatusNotifierItem() override;

    /// True too if there is a watcher that has not said yet whether it has a host.
    [[nodiscard]] bool create() override;
    void setIcon(IconPainter painter, const QString &description) override;
    void setMenu(const QList<StatusMenuEntry> &entries) override;

    /// In which colour the icon is drawn.
    void setColor(const QColor &color);

    StatusNotifierHosts::Presence hosts() const { return m_hosts.presence(); }

    /// Of the panel, or whoever else collects the items; 0 while it is not known.
    qint64 hostProcessId() const { return m_hosts.processId(); }

    /// Called after hosts() or hostProcessId() may have changed.
    std::function<void()> onHostsChanged;

private:
    class Object;

    void registerIfPossible();

    StatusNotifierHosts m_hosts;
    DBusMenu m_menu;
    bool m_isOffered = false; ///< Can be called.
    bool m_isRegistered = false; ///< With the watcher of now.
    std::unique_ptr<Object> m_object; ///< What a host calls.
};
