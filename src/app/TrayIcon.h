#pragma once

#include <QObject>
#include <QRect>

#include <memory>

class QMenu;
class QSystemTrayIcon;

/// The program's icon in the desktop's tray, with its menu. Main thread only.
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    TrayIcon();
    ~TrayIcon() override;

    /// Puts the icon into the tray. False if this desktop has no tray now; the icon still appears
    /// should a tray come later.
    [[nodiscard]] bool create();

    /// The menu that the icon opens; it belongs to the item.
    QMenu &menu() { return *m_menu; }

signals:
    /// The icon was clicked with the left button.
    void clicked();

private:
    std::unique_ptr<QMenu> m_menu;
    std::unique_ptr<QSystemTrayIcon> m_icon;
};
