#include "platform/linux/DBusMenuTypes.h"

#include <QDBusMetaType>

namespace dbusmenu {

QDBusArgument &operator<<(QDBusArgument &argument, const Layout &layout)
{
    argument.beginStructure();
    argument << layout.id << layout.properties;
    argument.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const Layout &child : layout.children)
        argument << QDBusVariant(QVariant::fromValue(child));
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Layout &layout)
{
    argument.beginStructure();
    argument >> layout.id >> layout.properties;
    layout.children.clear();
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        layout.children.append(qdbus_cast<Layout>(child.variant()));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const Properties &properties)
{
    argument.beginStructure();
    argument << properties.id << properties.values;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Properties &properties)
{
    argument.beginStructure();
    argument >> properties.id >> properties.values;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const PropertyNames &names)
{
    argument.beginStructure();
    argument << names.id << names.names;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PropertyNames &names)
{
    argument.beginStructure();
    argument >> names.id >> names.names;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const Event &event)
{
    argument.beginStructure();
    argument << event.id << event.name << event.data << event.time;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Event &event)
{
    argument.beginStructure();
    argument >> event.id >> event.name >> event.data >> event.time;
    argument.endStructure();
    return argument;
}

void registerTypes()
{
    qDBusRegisterMetaType<Layout>();
    qDBusRegisterMetaType<Properties>();
    qDBusRegisterMetaType<QList<Properties>>();
    qDBusRegisterMetaType<PropertyNames>();
    qDBusRegisterMetaType<QList<PropertyNames>>();
    qDBusRegisterMetaType<Event>();
    qDBusRegisterMetaType<QList<Event>>();
    qDBusRegisterMetaType<QList<QStringList>>();
}

} // namespace dbusmenu
