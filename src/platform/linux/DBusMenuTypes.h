#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QStringList>
#include <QVariantMap>

/// What com.canonical.dbusmenu sends over the bus.
namespace dbusmenu {

/// The number of the menu itself, among those of its entries.
constexpr int kRootId = 0;

/// An entry with those below it, as they go over the bus.
struct Layout
{
    int id = kRootId;
    QVariantMap properties;
    QList<Layout> children;
};

struct Properties
{
    int id = kRootId;
    QVariantMap values;
};

struct PropertyNames
{
    int id = kRootId;
    QStringList names;
};

struct Event
{
    int id = kRootId;
    QString name;
    QDBusVariant data;
    uint time = 0;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Layout &layout);
const QDBusArgument &operator>>(const QDBusArgument &argument, Layout &layout);
QDBusArgument &operator<<(QDBusArgument &argument, const Properties &properties);
const QDBusArgument &operator>>(const QDBusArgument &argument, Properties &properties);
QDBusArgument &operator<<(QDBusArgument &argument, const PropertyNames &names);
const QDBusArgument &operator>>(const QDBusArgument &argument, PropertyNames &names);
QDBusArgument &operator<<(QDBusArgument &argument, const Event &event);
const QDBusArgument &operator>>(const QDBusArgument &argument, Event &event);

/// To be called before any of them is sent or received.
void registerTypes();

} // namespace dbusmenu
