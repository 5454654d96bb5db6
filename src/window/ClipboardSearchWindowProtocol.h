#pragma once

#include "core/ClipboardItem.h"

#include <functional>

/// What the application knows of the history window. Main thread only.
class ClipboardSearchWindowProtocol
{
public:
    virtual ~ClipboardSearchWindowProtocol() = default;

    virtual bool isVisible() const = 0;

    /// Whether a window that is visible is on the screen, too: not if another program has taken it
    /// off, or none has put it there. show() sees to that.
    virtual bool isSeen() const = 0;

    /// The window is on its way out; show() turns it round.
    virtual bool isHideAnimationInFlight() const = 0;

    virtual void show() = 0;

    /// Ends in onWindowHidden. Does nothing to a window that is on its way out, or not shown.
    virtual void hide() = 0;

    virtual void updateItems(const ClipboardItemList &items) = 0;
    virtual void refreshLanguage() = 0;

    /// Reads again whether the pin button is wanted. Without it the window cannot stay pinned.
    virtual void refreshPinButtonVisibility() = 0;

    std::function<void(const ClipboardItemPointer &item)> onPasteSelected;
    /// The window is about to hide because the person pressed the mouse elsewhere, or another
    /// window has got the focus.
    std::function<void()> onTurnedAway;
    /// The window is gone from the screen and its owner may drop it, though not inside the call.
    std::function<void()> onWindowHidden;
    std::function<void(const QUuid &id)> onFavoriteToggled;
};
