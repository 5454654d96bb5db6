#include "window/EmptyTextAccessible.h"

#include "window/ClipboardTableView.h"
#include "window/SpokenRow.h"

EmptyTextAccessible::EmptyTextAccessible(ClipboardTableView &view)
    : m_view(&view)
{
}

bool EmptyTextAccessible::isValid() const
{
    return m_view;
}

QWindow *EmptyTextAccessible::window() const
{
    return m_view ? m_view->window()->windowHandle() : nullptr;
}

QAccessibleInterface *EmptyTextAccessible::parent() const
{
    return QAccessible::queryAccessibleInterface(m_view);
}

QString EmptyTextAccessible::text(QAccessible::Text kind) const
{
    if (!m_view)
        return {};
    switch (kind) {
    case QAccessible::Name: return speakable(m_view->emptyTitle());
    case QAccessible::Description: return m_view->emptyNote();
    default: return {};
    }
}

QRect EmptyTextAccessible::rect() const
{
    if (!m_view)
        return {};
    return m_view->viewport()->rect().translated(m_view->viewport()->mapToGlobal(QPoint()));
}

QAccessible::State EmptyTextAccessible::state() const
{
    QAccessible::State state;
    state.readOnly = true;
    state.invisible = !m_view || !m_view->isVisible() || !m_view->items().isEmpty();
    return state;
}
