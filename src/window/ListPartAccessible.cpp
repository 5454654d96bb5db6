#include "window/ListPartAccessible.h"

#include "window/ClipboardTableView.h"

ListPartAccessible::ListPartAccessible(ClipboardTableView &view)
    : m_view(&view)
{
}

QWindow *ListPartAccessible::window() const
{
    return m_view ? m_view->window()->windowHandle() : nullptr;
}

QAccessibleInterface *ListPartAccessible::parent() const
{
    return QAccessible::queryAccessibleInterface(m_view);
}
