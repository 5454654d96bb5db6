#include "platform/linux/DBusSingleInstance.h"

#include "foundation/Log.h"
#include "platform/linux/SessionBus.h"

#include <QDBusMessage>
#include <QObject>

using namespace Qt::StringLiterals;

namespace {

const auto kServiceName = u"org.tessarine.Tessarine"_s;
const auto kObjectPath = u"/org/tessarine/Tessarine"_s;
const auto kInterfaceName = u"org.tessarine.Tessarine"_s;

constexpr int kAnswerTimeoutMilliseconds = 2000;

constexpr uint kDoNotQueue = 4;
constexpr uint kPrimaryOwner = 1;
constexpr uint kAlreadyOwner = 4;

} // namespace

class DBusSingleInstance::Object : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.tessarine.Tessarine")

public:
    explicit Object(DBusSingleInstance &owner)
        : m_owner(owner)
    {
    }

public slots:
    void Activate(const QString &activationToken) // The name is the bus's.
    {
        if (m_owner.onActivated)
            m_owner.onActivated(activationToken);
    }

private:
    DBusSingleInstance &m_owner;
};

DBusSingleInstance::DBusSingleInstance()
    : m_object(std::make_unique<Object>(*this))
{
}

DBusSingleInstance::~DBusSingleInstance() = default;

SingleInstance::Role DBusSingleInstance::claim()
{
    std::optional<QDBusConnection> bus = findSessionBus();
    if (!bus) {
        printLine(u"No session bus: a second start of the program will not be noticed"_s);
        return Role::Unknown;
    }

    // The object is there before the name is: who finds the name may call at once.
    bus->registerObject(kObjectPath, m_object.get(), QDBusConnection::ExportAllSlots);

    // Asked for directly, because the bus interface would wait 25 seconds for a bus that hangs.
    QDBusMessage request =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"RequestName"_s);
    request << kServiceName << kDoNotQueue;
    const QDBusMessage reply = bus->call(request, QDBus::Block, kAnswerTimeoutMilliseconds);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        printLine("The session bus gave no name to the program: "_L1 + reply.errorMessage());
        return Role::Unknown;
    }

    const uint answer = reply.arguments().constFirst().toUInt();
    return answer == kPrimaryOwner || answer == kAlreadyOwner ? Role::First : Role::Second;
}

bool DBusSingleInstance::activateFirst(const QString &activationToken)
{
    std::optional<QDBusConnection> bus = findSessionBus();
    if (!bus)
        return false;

    QDBusMessage call =
        QDBusMessage::createMethodCall(kServiceName, kObjectPath, kInterfaceName, u"Activate"_s);
    call << activationToken;
    const QDBusMessage reply = bus->call(call, QDBus::Block, kAnswerTimeoutMilliseconds);
    return reply.type() == QDBusMessage::ReplyMessage;
}

#include "DBusSingleInstance.moc"
