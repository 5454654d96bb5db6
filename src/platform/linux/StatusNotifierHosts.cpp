#include "platform/linux/StatusNotifierHosts.h"

#include "platform/linux/SessionBus.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QObject>

using namespace Qt::StringLiterals;

namespace {

const auto kBusService = u"org.freedesktop.DBus"_s;
const auto kBusPath = u"/org/freedesktop/DBus"_s;
const auto kWatcherName = u"org.kde.StatusNotifierWatcher"_s; // Of the service and the interface.
const auto kWatcherPath = u"/StatusNotifierWatcher"_s;
const auto kPropertiesInterface = u"org.freedesktop.DBus.Properties"_s;

QDBusMessage watcherCall(const QString &interface, const QString &method)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(kWatcherName, kWatcherPath, interface, method);
    // Nobody is to be started who would then be asked for panels that do not exist.
    call.setAutoStartService(false);
    return call;
}

QDBusMessage busCall(const QString &method, const QString &name)
{
    QDBusMessage call = QDBusMessage::createMethodCall(kBusService, kBusPath, kBusService, method);
    call << name;
    return call;
}

} // namespace

class StatusNotifierHosts::Watch : public QObject
{
    Q_OBJECT

public:
    Watch(StatusNotifierHosts &owner, const QDBusConnection &bus)
        : m_owner(owner)
        , m_bus(bus)
    {
        m_bus.connect(kBusService, kBusPath, kBusService, u"NameOwnerChanged"_s, {kWatcherName}, {},
                      this, SLOT(handleOwnerChanged(QString, QString, QString)));
        m_bus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
                      u"Disconnected"_s, this, SLOT(handleLostBus()));
        // Without the service's name: with it the connection would first wait to learn its owner.
        for (const auto &signal :
             {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s})
            m_bus.connect({}, kWatcherPath, kWatcherName, signal, this, SLOT(askForHost()));

        m_ownerQuestion = ask(busCall(u"GetNameOwner"_s, kWatcherName));
        askForHost();
    }

    Presence presence()
    {
        readAnswers();
        if (!m_isWatcherKnown)
            return Presence::Pending;
        if (m_watcher.isEmpty() || m_hasRefused)
            return Presence::Absent;
        return m_presence;
    }

    bool hasWatcher()
    {
        readAnswers();
        return !m_watcher.isEmpty();
    }

    qint64 processId() const { return m_processId; }

    void registerItem()
    {
        QDBusMessage call = watcherCall(kWatcherName, u"RegisterStatusNotifierItem"_s);
        call << m_bus.baseService();
        m_hasRefused = false;
        m_registration = ask(call);
    }

private slots:
    void handleOwnerChanged(const QString &, const QString &, const QString &newOwner)
    {
        m_ownerQuestion.reset();
        m_presence = Presence::Pending;
        setWatcher(newOwner);
        if (!newOwner.isEmpty())
            askForHost();
        announceChange();
    }

    /// The bus cannot tell any more that the watcher has left it.
    void handleLostBus()
    {
        setWatcher({});
        announceChange();
    }

    void askForHost()
    {
        QDBusMessage question = watcherCall(kPropertiesInterface, u"Get"_s);
        question << kWatcherName << u"IsStatusNotifierHostRegistered"_s;
        m_hostQuestion = ask(question);
    }

private:
    using Question = std::unique_ptr<QDBusPendingCallWatcher>;

    Question ask(const QDBusMessage &question)
    {
        auto watcher = std::make_unique<QDBusPendingCallWatcher>(m_bus.asyncCall(question));
        connect(watcher.get(), &QDBusPendingCallWatcher::finished, this, [this] {
            readAnswers();
            announceChange();
        });
        return watcher;
    }

    void readAnswers()
    {
        if (m_ownerQuestion && m_ownerQuestion->isFinished()) {
            const QDBusPendingReply<QString> owner = *take(m_ownerQuestion);
            setWatcher(owner.isError() ? QString() : owner.value());
        }
        if (m_hostQuestion && m_hostQuestion->isFinished()) {
            const QDBusPendingReply<QDBusVariant> isRegistered = *take(m_hostQuestion);
            const bool isPresent =
                !isRegistered.isError() && isRegistered.value().variant().toBool();
            m_presence = isPresent ? Presence::Present : Presence::Absent;
        }
        if (m_registration && m_registration->isFinished()) {
            const QDBusError error = take(m_registration)->error();
            // One that is only slow may show the item yet.
            m_hasRefused = error.isValid() && error.type() != QDBusError::NoReply;
        }
        if (m_processQuestion && m_processQuestion->isFinished()) {
            const QDBusPendingReply<uint> process = *take(m_processQuestion);
            m_processId = process.isError() ? 0 : process.value();
        }
    }

    /// The question has been answered; it may be telling of it this very moment.
    static QDBusPendingCallWatcher *take(Question &question)
    {
        question->deleteLater();
        return question.release();
    }

    void setWatcher(const QString &watcher)
    {
        m_isWatcherKnown = true;
        if (watcher == m_watcher)
            return;
        m_watcher = watcher;
        m_processId = 0;
        m_processQuestion.reset();
        m_hasRefused = false;
        m_registration.reset();
        if (watcher.isEmpty())
            return;
        m_processQuestion = ask(busCall(u"GetConnectionUnixProcessID"_s, watcher));
        if (m_owner.onWatcherStarted)
            m_owner.onWatcherStarted();
    }

    void announceChange()
    {
        if (m_owner.onChanged)
            m_owner.onChanged();
    }

    StatusNotifierHosts &m_owner;
    QDBusConnection m_bus;
    bool m_isWatcherKnown = false;
    QString m_watcher; ///< Its own name on the bus; empty without one.
    Presence m_presence = Presence::Pending;
    bool m_hasRefused = false; ///< The watcher of now, our item.
    qint64 m_processId = 0;
    Question m_ownerQuestion;
    Question m_hostQuestion;
    Question m_processQuestion;
    Question m_registration;
};

StatusNotifierHosts::StatusNotifierHosts()
{
    if (const std::optional<QDBusConnection> bus = findSessionBus())
        m_watch = std::make_unique<Watch>(*this, *bus);
}

StatusNotifierHosts::~StatusNotifierHosts() = default;

StatusNotifierHosts::Presence StatusNotifierHosts::presence() const
{
    return m_watch ? m_watch->presence() : Presence::Absent;
}

bool StatusNotifierHosts::hasWatcher() const
{
    return m_watch && m_watch->hasWatcher();
}

qint64 StatusNotifierHosts::processId() const
{
    return m_watch ? m_watch->processId() : 0;
}

void StatusNotifierHosts::registerItem()
{
    if (m_watch)
        m_watch->registerItem();
}

#include "StatusNotifierHosts.moc"
