#pragma once

#include "platform/x11/X11Connection.h"

#include <QColor>

#include <optional>

/// The tray of a panel, which takes windows of other programs in: whoever owns the selection of
/// trays. Main thread only.
class X11Tray : private X11EventListener
{
public:
    explicit X11Tray(X11Connection &connection);
    ~X11Tray() override;

    /// Through which it takes requests; 0 while there is no tray.
    quint32 window() const { return m_window; }

    /// That icons should have; 0 if the tray names none.
    quint32 visual() const { return m_visual; }

    /// That the tray asks its icons to have.
    std::optional<QColor> iconColor() const { return m_iconColor; }

    /// Whether its icons stand one above the other.
    bool isVertical() const { return m_isVertical; }

    void askForDocking(quint32 icon);

    /// Looks whether there is still the same one.
    void follow();

    /// Called when there is another tray than before, or none any more.
    std::function<void()> onReplaced;

    /// Called when the tray that was known already turns out to be in charge still, or again.
    std::function<void()> onConfirmed;

    /// Called when the colour or the direction may be another one.
    std::function<void()> onWishesChanged;

private:
    void handleX11Event(int type, const void *event) override;
    void handleMessage(const void *event);
    void handleProperty(const void *event);
    void forget();
    bool readWishes();

    X11Connection &m_connection;
    quint32 m_window = 0;
    quint32 m_visual = 0;
    bool m_isVertical = false;
    std::optional<QColor> m_iconColor;
};
