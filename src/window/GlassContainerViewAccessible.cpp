#include "window/GlassContainerViewAccessible.h"

#include "window/GlassContainerView.h"

namespace {

bool saysSomething(const QWidget &part)
{
    if (part.isHidden())
        return false;
    return !part.accessibleName().isEmpty() || part.focusPolicy() != Qt::NoFocus
        || part.findChild<QWidget *>();
}

} // namespace

GlassContainerViewAccessible::GlassContainerViewAccessible(GlassContainerView &view)
    : QAccessibleWidget(&view)
{
}

int GlassContainerViewAccessible::childCount() const
{
    return int(parts().size());
}

QAccessibleInterface *GlassContainerViewAccessible::child(int index) const
{
    return QAccessible::queryAccessibleInterface(parts().value(index));
}

int GlassContainerViewAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    return child ? int(parts().indexOf(qobject_cast<QWidget *>(child->object()))) : -1;
}

QWidgetList GlassContainerViewAccessible::parts() const
{
    QWidgetList parts;
    for (QWidget *part : widget()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
        if (saysSomething(*part))
            parts.append(part);
    }
    return parts;
}
