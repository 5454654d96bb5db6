#include "window/FilterButtonAccessible.h"

#include "window/FilterButton.h"

using namespace Qt::StringLiterals;

namespace {

QAccessibleInterface *makeAccessible(const QString &className, QObject *object)
{
    auto *button = qobject_cast<FilterButton *>(object);
    const bool isWanted = button && className == QLatin1StringView("FilterButton");
    return isWanted ? new FilterButtonAccessible(*button) : nullptr;
}

} // namespace

void FilterButtonAccessible::install()
{
    QAccessible::installFactory(makeAccessible); // Knows a factory that it has already.
}

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
        state.hasPopup = true;
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
