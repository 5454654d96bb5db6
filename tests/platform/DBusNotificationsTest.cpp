#include "platform/linux/DBusNotifications.h"

#include "tests/platform/PrivateDesktop.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QTest>

using namespace Qt::StringLiterals;

/// A notification service that keeps what it is given, on a connection of its own.
class FakeService : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Notification
    {
        QString applicationName;
        uint replaced = 0;
        QString title;
        QString body;
        QStringList actions;
        QVariantMap hints;
    };

    explicit FakeService(const QString &busAddress)
        : m_bus(QDBusConnection::connectToBus(busAddress, u"notifications"_s))
    {
        m_bus.registerObject(u"/org/freedesktop/Notifications"_s, this,
                             QDBusConnection::ExportAllSlots);
        m_bus.registerService(u"org.freedesktop.Notifications"_s);
    }

    ~FakeService() override { QDBusConnection::disconnectFromBus(u"notifications"_s); }

    /// Answers what was not answered.
    void answer()
    {
        for (const QDBusMessage &call : std::exchange(m_unanswered, {}))
            m_bus.send(call.createReply(7u));
    }

    QList<Notification> shown;
    bool isSilent = false;

public slots:
    uint Notify(const QString &applicationName, uint replaced, const QString &,
                const QString &title, const QString &body, const QStringList &actions,
                const QVariantMap &hints, int) // The name is the bus's.
    {
        if (title == "refused"_L1) {
            sendErrorReply(QDBusError::LimitsExceeded, u"Too many"_s);
            return 0;
        }
        shown.append({applicationName, replaced, title, body, actions, hints});
        if (isSilent) {
            setDelayedReply(true);
            m_unanswered.append(message());
        }
        return 7;
    }

private:
    QDBusConnection m_bus;
    QList<QDBusMessage> m_unanswered;
};

class DBusNotificationsTest : public QObject
{
    Q_OBJECT

public:
    explicit DBusNotificationsTest(QString busAddress)
        : m_busAddress(std::move(busAddress))
    {
    }

private slots:
    void theServiceIsGivenTheTexts();
    void marksInTheTextAreShownAsTheyAre();
    void aRefusalIsNotTakenForShowing();
    void aServiceThatDoesNotAnswerHoldsNothingUp();
    void anEndingProgramIsNotCalledBack();
    void withoutABusNothingHappens();

private:
    QString m_busAddress;
};

void DBusNotificationsTest::theServiceIsGivenTheTexts()
{
    FakeService service(m_busAddress);
    DBusNotifications notifications;
    int shownCount = 0;
    notifications.show(u"title"_s, u"Settings > Shortcuts"_s, [&shownCount] { ++shownCount; });
    QCOMPARE(shownCount, 0);
    QTRY_COMPARE(shownCount, 1);
    QCOMPARE(service.shown.size(), 1);
    QCOMPARE(service.shown.first().applicationName, u"Tessarine"_s);
    QCOMPARE(service.shown.first().replaced, 0u);
    QCOMPARE(service.shown.first().title, u"title"_s);
    QCOMPARE(service.shown.first().body, u"Settings > Shortcuts"_s);
    QVERIFY(service.shown.first().actions.isEmpty());
    QCOMPARE(service.shown.first().hints.value(u"desktop-entry"_s), u"tessarine"_s);
}

void DBusNotificationsTest::marksInTheTextAreShownAsTheyAre()
{
    FakeService service(m_busAddress);
    DBusNotifications notifications;
    notifications.show(u"<b> & co"_s, u"<b> & co"_s, {});
    QTRY_COMPARE(service.shown.size(), 1);
    QCOMPARE(service.shown.first().title, u"<b> & co"_s);
    QCOMPARE(service.shown.first().body, u"&lt;b> &amp; co"_s);
}

void DBusNotificationsTest::aRefusalIsNotTakenForShowing()
{
    FakeService service(m_busAddress);
    DBusNotifications notifications;
    bool isRefusedShown = false;
    bool isLaterShown = false;
    notifications.show(u"refused"_s, {}, [&isRefusedShown] { isRefusedShown = true; });
    notifications.show(u"later"_s, {}, [&isLaterShown] { isLaterShown = true; });
    // The answers come in the order of the questions.
    QTRY_VERIFY(isLaterShown);
    QVERIFY(!isRefusedShown);
}

void DBusNotificationsTest::aServiceThatDoesNotAnswerHoldsNothingUp()
{
    FakeService service(m_busAddress);
    service.isSilent = true;
    DBusNotifications notifications;
    bool isShown = false;
    notifications.show(u"title"_s, {}, [&isShown] { isShown = true; });
    QTRY_COMPARE(service.shown.size(), 1);
    QVERIFY(!isShown);
    service.answer();
    QTRY_VERIFY(isShown);
}

void DBusNotificationsTest::anEndingProgramIsNotCalledBack()
{
    FakeService service(m_busAddress);
    service.isSilent = true;
    bool isShown = false;
    {
        DBusNotifications notifications;
        notifications.show(u"title"_s, {}, [&isShown] { isShown = true; });
        QTRY_COMPARE(service.shown.size(), 1);
    }
    service.answer();
    // A later one has come by when the earlier answer must have.
    service.isSilent = false;
    DBusNotifications notifications;
    bool isLaterShown = false;
    notifications.show(u"later"_s, {}, [&isLaterShown] { isLaterShown = true; });
    QTRY_VERIFY(isLaterShown);
    QVERIFY(!isShown);
}

void DBusNotificationsTest::withoutABusNothingHappens()
{
    FakeService service(m_busAddress);
    DBusNotifications notifications;
    bool isShown = false;
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    notifications.show(u"title"_s, {}, [&isShown] { isShown = true; });
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_busAddress.toUtf8());
    bool isLaterShown = false;
    notifications.show(u"later"_s, {}, [&isLaterShown] { isLaterShown = true; });
    QTRY_VERIFY(isLaterShown);
    QVERIFY(!isShown);
    QCOMPARE(service.shown.size(), 1);
}

int main(int argc, char *argv[])
{
    PrivateDesktop desktop;
    const QString busAddress = desktop.startBus();
    if (busAddress.isEmpty())
        return EXIT_FAILURE;
    qputenv("DBUS_SESSION_BUS_ADDRESS", busAddress.toUtf8());
    qputenv("XDG_RUNTIME_DIR", desktop.folder().toUtf8()); // Where the session's own bus may be.
    QCoreApplication application(argc, argv);
    DBusNotificationsTest test(busAddress);
    return QTest::qExec(&test, argc, argv);
}

#include "DBusNotificationsTest.moc"
