#include "widgets/DrawnControlAccessible.h"

#include "widgets/DrawnControl.h"

DrawnControlAccessible::DrawnControlAccessible(DrawnControl &control)
    : QAccessibleWidget(&control)
{
}

QAccessible::Role DrawnControlAccessible::role() const
{
    if (!control().isCheckable())
        return QAccessible::Button;
    return control().autoExclusive() ? QAccessible::RadioButton : QAccessible::CheckBox;
}

QAccessible::State DrawnControlAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = control().isCheckable();
    state.checked = control().isChecked();
    state.pressed = control().isDown();
    return state;
}

QString DrawnControlAccessible::text(QAccessible::Text kind) const
{
    const QString title = control().text();
    const QString name = control().accessibleName();
    if (kind == QAccessible::Name)
        return name.isEmpty() ? title : name;
    if (kind == QAccessible::Description && !name.isEmpty() && !title.isEmpty())
        return title;
    return QAccessibleWidget::text(kind);
}

QStringList DrawnControlAccessible::actionNames() const
{
    return QStringList{ownAction()} + QAccessibleWidget::actionNames();
}

void DrawnControlAccessible::doAction(const QString &name)
{
    if (name == ownAction())
        QMetaObject::invokeMethod(&control(), &DrawnControl::click, Qt::QueuedConnection);
    else
        QAccessibleWidget::doAction(name);
}

DrawnControl &DrawnControlAccessible::control() const
{
    return *static_cast<DrawnControl *>(widget());
}

QString DrawnControlAccessible::ownAction() const
{
    return control().isCheckable() ? toggleAction() : pressAction();
}
