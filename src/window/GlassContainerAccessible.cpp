#include "window/GlassContainerAccessible.h"

#include "widgets/AccessibleFactory.h"
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

void GlassContainerAccessible::install()
{
    installAccessible<GlassContainerView, GlassContainerAccessible>();
}

GlassContainerAccessible::GlassContainerAccessible(GlassContainerView &view)
    : QAccessibleWidget(&view)
{
}

int GlassContainerAccessible::childCount() const
{
    return int(parts().size());
}

QAccessibleInterface *GlassContainerAccessible::child(int index) const
{
    return QAccessible::queryAccessibleInterface(parts().value(index));
}

int GlassContainerAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    return child ? int(parts().indexOf(qobject_cast<QWidget *>(child->object()))) : -1;
}

QWidgetList GlassContainerAccessible::parts() const
{
    QWidgetList parts;
    for (QWidget *part : widget()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
        if (saysSomething(*part))
            parts.append(part);
    }
    return parts;
}
