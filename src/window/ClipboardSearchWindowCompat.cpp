#include "window/ClipboardSearchWindowCompat.h"

namespace {

constexpr HistoryWindowStyle kStyle{.cornerRadius = 20,
                                    .selectionRadius = 10,
                                    .isTranslucent = false};

} // namespace

ClipboardSearchWindowCompat::ClipboardSearchWindowCompat(
    const HistoryWindowCollaborators &collaborators, const ClipboardItemList &items)
    : HistoryWindow(kStyle, collaborators, items)
{
}
