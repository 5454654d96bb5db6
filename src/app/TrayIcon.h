#pragma once

#include "platform/StatusItem.h"

#include <memory>

class QSystemTrayIcon;

/// The program's icon in whichever tray Qt finds.
class TrayIcon : public StatusItem
{
public:
    TrayIcon();
    ~TrayIcon() override;

    bool create() override;
    void setIcon(IconPainter painter, const QString &description) override;
    void setMenu(const QList<StatusMenuEntry> &entries) override;

private:
    std::unique_ptr<QSystemTrayIcon> m_icon;
};
