#pragma once

#include "window/HistoryWindow.h"

/// The history window on a desktop that blends windows.
class ClipboardSearchWindow final : public HistoryWindow
{
public:
    ClipboardSearchWindow(const HistoryWindowCollaborators &collaborators,
                          const ClipboardItemList &items);
};
