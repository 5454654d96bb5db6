#pragma once

#include "window/HistoryWindow.h"

/// The history window on a desktop without a compositor: opaque, with a shape of its own.
class ClipboardSearchWindowCompat final : public HistoryWindow
{
public:
    ClipboardSearchWindowCompat(const HistoryWindowCollaborators &collaborators,
                                const ClipboardItemList &items);
};
