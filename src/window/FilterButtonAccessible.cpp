#include "window/FilterButtonAccessible.h"

#include "window/FilterButton.h"

#include <QMenu>

void FilterButtonAccessible::tellSelection(FilterButton &button)
{
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(&button, changed);
    QAccessible::updateAccessibility(&event);
}

FilterButtonAccessible::FilterButtonAccessible(FilterButton &button)
    : QAccessibleWidget(&button)
{
}

QAccessible::Role FilterButtonAccessible::role() const
{
    return button().filterCategory() ? QAccessible::RadioButton : QAccessible::ButtonMenu;
}

QAccessible::State FilterButtonAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    if (button().filterCategory()) {
        state.checkable = true;
        state.checked = button().isSelected();
    } else {
        const auto *menu = button().findChild<QMenu *>();
        state.hasPopup = true;
        state.expandable = true;
        state.expanded = menu && menu->isVisible();
        state.collapsed = !state.expanded;
    }
    state.pressed = button().isDown();
    return state;
}

QStringList FilterButtonAccessible::actionNames() const
{
    return QStringList{pressAction()} + QAccessibleWidget::actionNames();
}

void FilterButtonAccessible::doAction(const QString &name)
{
    if (name == pressAction())
        button().click();
    else
        QAccessibleWidget::doAction(name);
}

FilterButton &FilterButtonAccessible::button() const
{
    return *static_cast<FilterButton *>(widget());
}
