#include "window/HistoryWindowFactory.h"

#include "platform/Clock.h"
#include "platform/DesktopAppearance.h"
#include "window/ClipboardSearchWindow.h"
#include "window/ClipboardSearchWindowCompat.h"

#include <QPixmap>

namespace {

std::unique_ptr<HistoryWindow> makeWindow(const HistoryWindowCollaborators &collaborators,
                                          const ClipboardItemList &items)
{
    if (collaborators.appearance.isComposited())
        return std::make_unique<ClipboardSearchWindow>(collaborators, items);
    return std::make_unique<ClipboardSearchWindowCompat>(collaborators, items);
}

ClipboardItemList oneOfEachType(Timestamp now)
{
    using Type = ClipboardContentType;
    ClipboardItemList items;
    for (const Type type : {Type::Text, Type::Url, Type::Image, Type::File}) {
        ClipboardItem item = makeItem(type, now);
        item.isFavorite = type == Type::Text;
        items.append(std::make_shared<const ClipboardItem>(std::move(item)));
    }
    return items;
}

} // namespace

std::unique_ptr<ClipboardSearchWindowProtocol> makeHistoryWindow(
    const HistoryWindowCollaborators &collaborators, const ClipboardItemList &items)
{
    return makeWindow(collaborators, items);
}

void warmUpHistoryWindow(const HistoryWindowCollaborators &collaborators)
{
    const ClipboardItemList items = oneOfEachType(collaborators.list.clock.now());
    const std::unique_ptr<HistoryWindow> window = makeWindow(collaborators, items);
    window->shell().grab();
    window->introduceToInputMethod();
}
