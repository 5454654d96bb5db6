#include "platform/linux/DBusMenu.h"

#include "platform/linux/DBusMenuTypes.h"
#include "platform/linux/SessionBus.h"

#include <QDBusContext>
#include <QMap>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using dbusmenu::kRootId;

/// Deeper than any menu of ours; it keeps a request for "all" within bounds.
constexpr int kMaxDepth = 16;

/// An underscore marks the letter that chooses an entry; two of them are an underscore.
QString label(const QString &title)
{
    QString text = title;
    return text.replace(u'_', u"__"_s);
}

QString keyName(Qt::Key key)
{
    // The two that stand for something else where a combination is one string.
    if (key == Qt::Key_Plus)
        return u"plus"_s;
    if (key == Qt::Key_Minus)
        return u"minus"_s;
    return QKeySequence(key).toString(QKeySequence::PortableText);
}

QStringList chord(QKeyCombination combination)
{
    QStringList keys;
    const Qt::KeyboardModifiers modifiers = combination.keyboardModifiers();
    if (modifiers & Qt::ControlModifier)
        keys += u"Control"_s;
    if (modifiers & Qt::AltModifier)
        keys += u"Alt"_s;
    if (modifiers & Qt::ShiftModifier)
        keys += u"Shift"_s;
    if (modifiers & Qt::MetaModifier)
        keys += u"Super"_s;
    keys += keyName(combination.key());
    return keys;
}

QVariantMap propertiesOf(const StatusMenuEntry &entry)
{
    if (entry.isSeparator)
        return {{u"type"_s, u"separator"_s}};
    QVariantMap properties{{u"label"_s, label(entry.title)}};
    if (!entry.shortcut.isEmpty())
        properties[u"shortcut"_s] =
            QVariant::fromValue(QList<QStringList>{chord(entry.shortcut[0])});
    if (!entry.children.isEmpty())
        properties[u"children-display"_s] = u"submenu"_s;
    return properties;
}

QVariantMap chosen(const QVariantMap &properties, const QStringList &names)
{
    if (names.isEmpty())
        return properties;
    QVariantMap some;
    for (const QString &name : names) {
        const auto property = properties.find(name);
        if (property != properties.end())
            some.insert(name, *property);
    }
    return some;
}

/// Whether the same lines stand in the same places, whatever is written on them.
bool hasSameShape(const QList<StatusMenuEntry> &some, const QList<StatusMenuEntry> &others)
{
    return std::ranges::equal(
        some, others, [](const StatusMenuEntry &one, const StatusMenuEntry &other) {
            return one.id == other.id && one.isSeparator == other.isSeparator &&
                   hasSameShape(one.children, other.children);
        });
}

void collectProperties(const QList<StatusMenuEntry> &entries, QMap<int, QVariantMap> &found)
{
    for (const StatusMenuEntry &entry : entries) {
        found.insert(entry.id, propertiesOf(entry));
        collectProperties(entry.children, found);
    }
}

const StatusMenuEntry *findEntry(const QList<StatusMenuEntry> &entries, int id)
{
    for (const StatusMenuEntry &entry : entries) {
        if (entry.id == id)
            return &entry;
        if (const StatusMenuEntry *below = findEntry(entry.children, id))
            return below;
    }
    return nullptr;
}

QList<dbusmenu::Layout> layoutsOf(const QList<StatusMenuEntry> &entries, int depth,
                                  const QStringList &names)
{
    QList<dbusmenu::Layout> layouts;
    if (depth == 0)
        return layouts;
    for (const StatusMenuEntry &entry : entries) {
        layouts.append({entry.id, chosen(propertiesOf(entry), names),
                        layoutsOf(entry.children, depth - 1, names)});
    }
    return layouts;
}

} // namespace

/// The names are the bus's.
class DBusMenu::Object : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection CONSTANT)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT)

public:
    explicit Object(DBusMenu &owner)
        : m_owner(owner)
    {
        dbusmenu::registerTypes();
    }

    uint version() const { return 3; }
    QString status() const { return u"normal"_s; }
    QString textDirection() const { return u"ltr"_s; }
    QStringList iconThemePath() const { return {}; }

    void setEntries(const QList<StatusMenuEntry> &entries);

public slots:
    uint GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                   dbusmenu::Layout &layout);
    QList<dbusmenu::Properties> GetGroupProperties(const QList<int> &ids,
                                                   const QStringList &propertyNames);
    QDBusVariant GetProperty(int id, const QString &name);
    void Event(int id, const QString &eventId, const QDBusVariant &data, uint timestamp);
    QList<int> EventGroup(const QList<dbusmenu::Event> &events);
    bool AboutToShow(int id);
    QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors);

signals:
    void ItemsPropertiesUpdated(const QList<dbusmenu::Properties> &updatedProps,
                                const QList<dbusmenu::PropertyNames> &removedProps);
    void LayoutUpdated(uint revision, int parent);
    void ItemActivationRequested(int id, uint timestamp);

private:
    bool isKnown(int id) const { return id == kRootId || findEntry(m_entries, id); }
    bool handleEvent(int id, const QString &eventId);
    void refuse(int id);
    void announceTexts(const QList<StatusMenuEntry> &former);

    DBusMenu &m_owner;
    QList<StatusMenuEntry> m_entries;
    uint m_revision = 1;    ///< Moves when the lines change.
    uint m_changeCount = 0; ///< Moves with every change.
};

void DBusMenu::Object::setEntries(const QList<StatusMenuEntry> &entries)
{
    if (entries == m_entries)
        return;
    const QList<StatusMenuEntry> former = std::exchange(m_entries, entries);
    ++m_changeCount;
    if (hasSameShape(former, m_entries)) {
        announceTexts(former);
        return;
    }
    ++m_revision;
    emit LayoutUpdated(m_revision, kRootId);
}

void DBusMenu::Object::announceTexts(const QList<StatusMenuEntry> &former)
{
    QMap<int, QVariantMap> before;
    QMap<int, QVariantMap> now;
    collectProperties(former, before);
    collectProperties(m_entries, now);
    QList<dbusmenu::Properties> updated;
    QList<dbusmenu::PropertyNames> removed;
    for (auto entry = now.cbegin(); entry != now.cend(); ++entry) {
        const QVariantMap &old = before[entry.key()];
        if (*entry == old)
            continue;
        updated.append({entry.key(), *entry});
        QStringList gone;
        for (const QString &name : old.keys()) {
            if (!entry->contains(name))
                gone.append(name);
        }
        if (!gone.isEmpty())
            removed.append({entry.key(), gone});
    }
    emit ItemsPropertiesUpdated(updated, removed);
}

uint DBusMenu::Object::GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                                 dbusmenu::Layout &layout)
{
    const int depth = recursionDepth < 0 ? kMaxDepth : std::min(recursionDepth, kMaxDepth);
    if (parentId == kRootId) {
        const QVariantMap root{{u"children-display"_s, u"submenu"_s}};
        layout = {kRootId, chosen(root, propertyNames), layoutsOf(m_entries, depth, propertyNames)};
    } else if (const StatusMenuEntry *entry = findEntry(m_entries, parentId)) {
        layout = {parentId, chosen(propertiesOf(*entry), propertyNames),
                  layoutsOf(entry->children, depth, propertyNames)};
    } else {
        refuse(parentId);
    }
    return m_revision;
}

QList<dbusmenu::Properties> DBusMenu::Object::GetGroupProperties(const QList<int> &ids,
                                                                 const QStringList &propertyNames)
{
    QMap<int, QVariantMap> all;
    collectProperties(m_entries, all);
    QList<dbusmenu::Properties> found;
    // Without numbers all are meant.
    for (auto entry = all.cbegin(); entry != all.cend(); ++entry) {
        if (ids.isEmpty() || ids.contains(entry.key()))
            found.append({entry.key(), chosen(*entry, propertyNames)});
    }
    return found;
}

QDBusVariant DBusMenu::Object::GetProperty(int id, const QString &name)
{
    const StatusMenuEntry *entry = findEntry(m_entries, id);
    const QVariant value = entry ? propertiesOf(*entry).value(name) : QVariant();
    if (!value.isValid())
        refuse(id);
    return QDBusVariant(value.isValid() ? value : QVariant(QString()));
}

void DBusMenu::Object::Event(int id, const QString &eventId, const QDBusVariant &, uint)
{
    if (!handleEvent(id, eventId))
        refuse(id);
}

QList<int> DBusMenu::Object::EventGroup(const QList<dbusmenu::Event> &events)
{
    QList<int> unknown;
    for (const dbusmenu::Event &event : events) {
        if (!handleEvent(event.id, event.name))
            unknown.append(event.id);
    }
    if (!events.isEmpty() && unknown.size() == events.size())
        refuse(unknown.first());
    return unknown;
}

bool DBusMenu::Object::handleEvent(int id, const QString &eventId)
{
    if (!isKnown(id))
        return false;
    // Some panels do not announce an opening, and tell of it when the menu is there.
    if (id == kRootId && eventId == "opened"_L1)
        AboutToShow(kRootId);
    else if (id != kRootId && eventId == "clicked"_L1 && m_owner.onEntryChosen)
        m_owner.onEntryChosen(id);
    return true;
}

bool DBusMenu::Object::AboutToShow(int id)
{
    const uint before = m_changeCount;
    if (id == kRootId && m_owner.onWillOpen)
        m_owner.onWillOpen();
    return m_changeCount != before;
}

QList<int> DBusMenu::Object::AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors)
{
    QList<int> needUpdate;
    for (const int id : ids) {
        if (!isKnown(id))
            idErrors.append(id);
        else if (AboutToShow(id))
            needUpdate.append(id);
    }
    return needUpdate;
}

void DBusMenu::Object::refuse(int id)
{
    if (calledFromDBus())
        sendErrorReply(QDBusError::InvalidArgs, u"There is no such thing in entry %1"_s.arg(id));
}

DBusMenu::DBusMenu()
    : m_object(std::make_unique<Object>(*this))
{
}

DBusMenu::~DBusMenu() = default;

bool DBusMenu::offer(const QString &path)
{
    return offerOnSessionBus(path, *m_object);
}

void DBusMenu::setEntries(const QList<StatusMenuEntry> &entries)
{
    m_object->setEntries(entries);
}

#include "DBusMenu.moc"
