#pragma once

#include "platform/Scheduler.h"
#include "platform/StatusItem.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11PanelGround.h"
#include "platform/x11/X11Tray.h"

#include <optional>

/// A window of ours that lies in the tray of a panel, as the system tray protocol has it (XEmbed).
class X11TrayIcon : private X11EventListener
{
public:
    X11TrayIcon(X11Connection &connection, Scheduler &scheduler);
    ~X11TrayIcon() override;

    /// Whether there is a tray now.
    bool hasTray() const { return m_tray.window() != 0; }

    /// Puts the icon into the tray, and into each one that comes, until it is hidden.
    void show();
    void hide();

    void setIcon(StatusItem::IconPainter painter, const QString &description);

    /// Looks once more which colour suits the panel.
    void refreshColor();

    /// Whether a place on the screen, in its own pixels, is within the icon.
    bool contains(const QPoint &place);

    /// Called with the left button, and with the right one and the place on the screen. The time of
    /// the click has been noted on the connection.
    std::function<void()> onClicked;
    std::function<void(const QPoint &position)> onMenuRequested;

    /// Called when the look of the panel may be another than before: after the icon was put there,
    /// and when the pointer comes.
    std::function<void()> onGroundMayHaveChanged;

private:
    /// The kind of window that the tray wants.
    struct Look
    {
        quint32 visual = 0;
        quint8 depth = 0;
        bool isTranslucent = false;
    };

    void handleX11Event(int type, const void *event) override;
    void handleDestruction(const void *event);
    void handleNewParent(const void *event);
    void handleSize(const void *event);
    void handleExposure(const void *event);
    void handleButton(const void *event);
    void announceGround();
    bool isOwn(quint32 window) const { return m_window != 0 && window == m_window; }
    void dock();
    void dockAgainSoon();
    void undock();
    void forgetWindow();
    Look findLook() const;
    void createWindow();
    void setProperties();
    void askForRoom();
    void draw();
    QImage onGround(const QImage &icon, const QPoint &place);

    X11Connection &m_connection;
    Scheduler &m_scheduler;
    X11Tray m_tray;
    X11PanelGround m_panelGround;
    bool m_isShown = false;
    quint32 m_window = 0; ///< Ours; 0 if it is in no tray.
    quint32 m_colormap = 0;
    Look m_look;
    bool m_isEmbedded = false;
    std::unique_ptr<ScheduledWork> m_return; ///< To a tray that has lost the icon.
    QSize m_size;
    StatusItem::IconPainter m_painter;
    QByteArray m_description;
    QColor m_color;
};
