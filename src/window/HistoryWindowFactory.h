#pragma once

#include "window/HistoryWindow.h"

/// The history window that suits the desktop as it is now, not yet shown.
std::unique_ptr<ClipboardSearchWindowProtocol> makeHistoryWindow(
    const HistoryWindowCollaborators &collaborators, const ClipboardItemList &items);
