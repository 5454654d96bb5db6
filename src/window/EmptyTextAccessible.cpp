#include "window/EmptyTextAccessible.h"

#include "foundation/TextTools.h"
#include "window/ClipboardTableView.h"

EmptyTextAccessible::EmptyTextAccessible(ClipboardTableView &view)
    : ListPartAccessible(view)
{
}

QString EmptyTextAccessible::text(QAccessible::Text kind) const
{
    if (!view())
        return {};
    switch (kind) {
    case QAccessible::Name: return speakable(view()->emptyTitle());
    case QAccessible::Description: return speakable(view()->emptyNote());
    default: return {};
    }
}

QRect EmptyTextAccessible::rect() const
{
    if (!view())
        return {};
    const QWidget &viewport = *view()->viewport();
    return viewport.rect().translated(viewport.mapToGlobal(QPoint()));
}

QAccessible::State EmptyTextAccessible::state() const
{
    QAccessible::State state;
    state.readOnly = true;
    state.invisible = !view() || !view()->isVisible() || !view()->items().isEmpty();
    return state;
}
