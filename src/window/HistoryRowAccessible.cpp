#include "window/HistoryRowAccessible.h"

#include "language/Localized.h"
#include "window/ClipboardTableView.h"

using namespace Qt::StringLiterals;

namespace {

/// As a person would by the mouse or the keys.
void perform(const QString &action, ClipboardTableView &view, int row)
{
    if (!view.acceptsInput())
        return;
    if (action == QAccessibleActionInterface::pressAction()) {
        emit view.rowActivated(row);
    } else if (action == HistoryRowAccessible::favoriteAction()) {
        view.clickStar(row);
    } else if (action == QAccessibleActionInterface::setFocusAction()) {
        view.selectRow(row);
        view.setFocus(Qt::OtherFocusReason);
    } else if (action == QAccessibleActionInterface::showMenuAction()) {
        view.selectRow(row);
        view.requestMenuAtSelectedRow();
    }
}

} // namespace

QString HistoryRowAccessible::favoriteAction()
{
    return u"favorite"_s;
}

HistoryRowAccessible::HistoryRowAccessible(ClipboardTableView &view, const QUuid &itemID, int row)
    : ListPartAccessible(view)
    , m_itemID(itemID)
    , m_row(row)
{
}

int HistoryRowAccessible::row() const
{
    if (!view())
        return -1;
    const ClipboardItemList &items = view()->items();
    const bool isInPlace
        = m_row >= 0 && m_row < items.size() && items.at(m_row)->id == m_itemID;
    if (!isInPlace)
        m_row = int(indexOfItem(items, m_itemID));
    return m_row;
}

QString HistoryRowAccessible::text(QAccessible::Text kind) const
{
    const int place = row();
    if (place < 0)
        return {};
    switch (kind) {
    case QAccessible::Name:
        return view()->model()->index(place, 0).data(Qt::AccessibleTextRole).toString();
    case QAccessible::Description: return m_description;
    default: return {};
    }
}

QRect HistoryRowAccessible::rect() const
{
    const int place = row();
    if (place < 0)
        return {};
    const QWidget &viewport = *view()->viewport();
    return view()->rowBox(place).translated(viewport.mapToGlobal(QPoint()));
}

QAccessible::State HistoryRowAccessible::state() const
{
    QAccessible::State state;
    const int place = row();
    if (place < 0) {
        state.invalid = true;
        state.invisible = true;
        return state;
    }
    state.selectable = true;
    state.focusable = true;
    state.selected = view()->selectedRow() == place;
    state.focused = state.selected && view()->isSpokenFocus();
    state.invisible = !view()->isVisible();
    state.offscreen = !view()->rowBox(place).intersects(view()->viewport()->rect());
    return state;
}

void *HistoryRowAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface *>(this);
    return nullptr;
}

QStringList HistoryRowAccessible::actionNames() const
{
    if (row() < 0)
        return {};
    return {pressAction(), setFocusAction(), showMenuAction(), favoriteAction()};
}

QString HistoryRowAccessible::localizedActionName(const QString &name) const
{
    if (name == pressAction())
        return localized(u"menu.paste"_s, u"Paste"_s);
    if (name != favoriteAction())
        return QAccessibleActionInterface::localizedActionName(name);
    const int place = row();
    return place >= 0 && view()->items().at(place)->isFavorite
        ? localized(u"menu.unfavorite"_s, u"Unfavorite"_s)
        : localized(u"menu.favorite"_s, u"Favorite"_s);
}

void HistoryRowAccessible::doAction(const QString &name)
{
    // Whoever asks is still in the middle of it when the window is gone, which pasting brings about.
    QMetaObject::invokeMethod(
        view(),
        [view = view(), id = m_itemID, name] {
            const int place = int(indexOfItem(view->items(), id));
            if (place >= 0)
                perform(name, *view, place);
        },
        Qt::QueuedConnection);
}
