#include "window/HistoryWindowFactory.h"

#include "platform/DesktopAppearance.h"
#include "window/ClipboardSearchWindow.h"
#include "window/ClipboardSearchWindowCompat.h"

std::unique_ptr<ClipboardSearchWindowProtocol> makeHistoryWindow(
    const HistoryWindowCollaborators &collaborators, const ClipboardItemList &items)
{
    if (collaborators.appearance.isComposited())
        return std::make_unique<ClipboardSearchWindow>(collaborators, items);
    return std::make_unique<ClipboardSearchWindowCompat>(collaborators, items);
}
