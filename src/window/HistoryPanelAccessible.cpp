#include "window/HistoryPanelAccessible.h"

#include "widgets/AccessibleFactory.h"
#include "window/HistoryPanel.h"

void HistoryPanelAccessible::install()
{
    installAccessible<HistoryPanel, HistoryPanelAccessible>();
}

HistoryPanelAccessible::HistoryPanelAccessible(HistoryPanel &panel)
    : QAccessibleWidget(&panel, QAccessible::Window)
{
}

int HistoryPanelAccessible::childCount() const
{
    return int(parts().size());
}

QAccessibleInterface *HistoryPanelAccessible::child(int index) const
{
    return QAccessible::queryAccessibleInterface(parts().value(index));
}

int HistoryPanelAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    return child ? int(parts().indexOf(qobject_cast<QWidget *>(child->object()))) : -1;
}

QWidgetList HistoryPanelAccessible::parts() const
{
    return static_cast<HistoryPanel *>(widget())->spokenParts();
}
