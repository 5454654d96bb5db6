#pragma once

#include <QAccessibleWidget>

/// Has assistive programs told of each \a Widget by an \a Accessible, which is made of a reference to
/// it. Calling it again does nothing.
template <typename Widget, typename Accessible>
void installAccessible()
{
    const QAccessible::InterfaceFactory factory
        = [](const QString &className, QObject *object) -> QAccessibleInterface * {
        const bool isWanted = className == QLatin1StringView(Widget::staticMetaObject.className());
        return isWanted ? new Accessible(static_cast<Widget &>(*object)) : nullptr;
    };
    QAccessible::installFactory(factory); // Knows a factory that it has already.
}

/// Tells assistive programs of a widget about which the toolkit knows all but its role.
template <QAccessible::Role Role>
class RoleAccessible : public QAccessibleWidget
{
public:
    explicit RoleAccessible(QWidget &widget) : QAccessibleWidget(&widget, Role) {}
};
