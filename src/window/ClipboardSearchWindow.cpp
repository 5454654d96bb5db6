#include "window/ClipboardSearchWindow.h"

namespace {

constexpr HistoryWindowStyle kStyle{.cornerRadius = 28,
                                    .selectionRadius = 18,
                                    .isTranslucent = true};

} // namespace

ClipboardSearchWindow::ClipboardSearchWindow(const HistoryWindowCollaborators &collaborators,
                                             const ClipboardItemList &items)
    : HistoryWindow(kStyle, collaborators, items)
{
}
