#pragma once

#include "window/HistoryWindow.h"

#include <memory>

/// The history window that suits the desktop as it is now, not yet shown.
std::unique_ptr<ClipboardSearchWindowProtocol> makeHistoryWindow(
    const HistoryWindowCollaborators &collaborators, const ClipboardItemList &items);

/// Draws a window of every kind of entry that nobody sees, so that fonts and symbols are at hand
/// when the first one is opened, and has the desktop know it. For a quiet moment after the start.
void warmUpHistoryWindow(const HistoryWindowCollaborators &collaborators);
