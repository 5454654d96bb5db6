#include "platform/linux/AccessibilityBus.h"

#include "tests/fakes/PrintedLines.h"
#include "tests/platform/PrivateDesktop.h"
#include "tests/platform/SilentBus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDeadlineTimer>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <memory>
#include <optional>

#include <dbus/dbus.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kSessionVariable = "DBUS_SESSION_BUS_ADDRESS";
constexpr auto kAddressVariable = "AT_SPI_BUS_ADDRESS";
constexpr auto kLauncher = "org.a11y.Bus";
constexpr auto kRegistry = "org.a11y.atspi.Registry";

/// Less than the half minute after which the library gives up.
constexpr auto kFarTooLong = 20s;

/// A service on a bus that answers as a well one does, while the main thread is elsewhere.
class AnsweringService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.a11y.Bus")

public:
    AnsweringService(const QString &busAddress, const char *name, QString answer = {})
        : m_name(QString::fromLatin1(name))
        , m_answer(std::move(answer))
    {
        moveToThread(&m_thread);
        m_thread.start();
        QDBusConnection bus = QDBusConnection::connectToBus(busAddress, m_name);
        m_isThere = bus.registerObject(u"/org/a11y/bus"_s, this, QDBusConnection::ExportAllSlots)
            && bus.registerService(m_name);
    }
    ~AnsweringService() override
    {
        QDBusConnection::disconnectFromBus(m_name);
        m_thread.quit();
        m_thread.wait();
    }

    bool isThere() const { return m_isThere; }

public slots:
    QString GetAddress() const { return m_answer; }

private:
    QString m_name;
    QString m_answer;
    QThread m_thread;
    bool m_isThere = false;
};

/// A service on a bus that never says a word.
class SilentService
{
public:
    SilentService(const QString &busAddress, const char *name)
        : m_connection(dbus_connection_open_private(busAddress.toUtf8().constData(), nullptr))
    {
        dbus_connection_set_exit_on_disconnect(m_connection, FALSE);
        m_isThere = dbus_bus_register(m_connection, nullptr)
            && dbus_bus_request_name(m_connection, name, 0, nullptr)
                == DBUS_REQUEST_NAME_REPLY_PRIMARY_OWNER;
    }
    ~SilentService()
    {
        dbus_connection_close(m_connection);
        dbus_connection_unref(m_connection);
    }
    SilentService(const SilentService &) = delete;
    SilentService &operator=(const SilentService &) = delete;

    bool isThere() const { return m_isThere; }

private:
    DBusConnection *m_connection;
    bool m_isThere = false;
};

} // namespace

class AccessibilityBusTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void withoutASessionBusNobodyIsAsked();
    void withoutAssistiveProgramsThereIsNothingToWaitFor();
    void aBusThatAnswersIsLeftAlone();
    void aRegistryThatAnswersIsLeftAlone();
    void aDeadBusIsLeft();
    void aLauncherThatHangsIsNotWaitedFor();
    void aBusThatHangsIsNotWaitedFor();
    void aRegistryThatHangsIsNotWaitedFor();
    void anAddressThatIsGivenIsNotLookedInto();
    void programsThatWeStartGetNothingOfIt();
    void anAddressThatIsGivenStays();

private:
    bool isLeft() const
    {
        return m_lines->lines() == QStringList{kLine} && qgetenv(kAddressVariable) == "disabled:";
    }
    bool isLeftAlone() const
    {
        return m_lines->lines().isEmpty() && !qEnvironmentVariableIsSet(kAddressVariable);
    }
    /// Lets Qt be kept from the bus; false if that takes too long.
    static bool leaveInTime()
    {
        const QDeadlineTimer deadline(kFarTooLong);
        leaveBrokenAccessibilityBus();
        return !deadline.hasExpired();
    }

    static inline const QString kLine
        = u"The accessibility bus does not answer: screen readers are not served"_s;

    PrivateDesktop m_desktop; ///< Without a display: for its buses.
    QString m_session;
    QString m_bus; ///< That of assistive programs.
    std::optional<PrintedLines> m_lines;
    std::optional<QTemporaryDir> m_directory;
};

void AccessibilityBusTest::initTestCase()
{
    // Services that are installed on this machine are not to be started.
    m_desktop.setVariable("XDG_DATA_DIRS", m_desktop.folder());
    m_desktop.setVariable("XDG_DATA_HOME", m_desktop.folder());
    m_session = m_desktop.startBus();
    m_bus = m_desktop.startBus();
    QVERIFY(!m_session.isEmpty() && !m_bus.isEmpty());
}

void AccessibilityBusTest::init()
{
    m_lines.emplace();
    m_directory.emplace();
    qputenv("XDG_RUNTIME_DIR", m_directory->path().toUtf8());
    qputenv(kSessionVariable, m_session.toUtf8());
    qunsetenv(kAddressVariable);
}

void AccessibilityBusTest::cleanup()
{
    m_lines.reset();
}

void AccessibilityBusTest::withoutASessionBusNobodyIsAsked()
{
    qunsetenv(kSessionVariable);
    leaveBrokenAccessibilityBus();
    QVERIFY(isLeftAlone());
}

void AccessibilityBusTest::withoutAssistiveProgramsThereIsNothingToWaitFor()
{
    leaveBrokenAccessibilityBus();
    QVERIFY(isLeftAlone());
}

void AccessibilityBusTest::aBusThatAnswersIsLeftAlone()
{
    const AnsweringService launcher(m_session, kLauncher, m_bus);
    QVERIFY(launcher.isThere());
    leaveBrokenAccessibilityBus();
    QVERIFY(isLeftAlone());
}

void AccessibilityBusTest::aRegistryThatAnswersIsLeftAlone()
{
    const AnsweringService launcher(m_session, kLauncher, m_bus);
    const AnsweringService registry(m_bus, kRegistry);
    QVERIFY(launcher.isThere() && registry.isThere());
    leaveBrokenAccessibilityBus();
    QVERIFY(isLeftAlone());
}

void AccessibilityBusTest::aDeadBusIsLeft()
{
    const AnsweringService launcher(m_session, kLauncher, u"unix:path=/nonexistent/bus"_s);
    QVERIFY(launcher.isThere());
    leaveBrokenAccessibilityBus();
    QVERIFY(isLeft());
}

void AccessibilityBusTest::aLauncherThatHangsIsNotWaitedFor()
{
    const SilentService launcher(m_session, kLauncher);
    QVERIFY(launcher.isThere());
    QVERIFY(leaveInTime());
    QVERIFY(isLeft());
}

void AccessibilityBusTest::aBusThatHangsIsNotWaitedFor()
{
    const QString path = m_directory->filePath(u"silent"_s);
    const SilentBus bus(path);
    const AnsweringService launcher(m_session, kLauncher, u"unix:path="_s + path);
    QVERIFY(bus.isThere() && launcher.isThere());
    QVERIFY(leaveInTime());
    QVERIFY(isLeft());
}

void AccessibilityBusTest::aRegistryThatHangsIsNotWaitedFor()
{
    const AnsweringService launcher(m_session, kLauncher, m_bus);
    const SilentService registry(m_bus, kRegistry);
    QVERIFY(launcher.isThere() && registry.isThere());
    QVERIFY(leaveInTime());
    QVERIFY(isLeft());
}

void AccessibilityBusTest::anAddressThatIsGivenIsNotLookedInto()
{
    const AnsweringService launcher(m_session, kLauncher, u"unix:path=/nonexistent/bus"_s);
    QVERIFY(launcher.isThere());
    const QByteArray given = "unix:path=/nonexistent/given";
    qputenv(kAddressVariable, given);
    leaveBrokenAccessibilityBus();
    QCOMPARE(m_lines->lines(), QStringList());
    QCOMPARE(qgetenv(kAddressVariable), given);
}

void AccessibilityBusTest::programsThatWeStartGetNothingOfIt()
{
    const AnsweringService launcher(m_session, kLauncher, u"unix:path=/nonexistent/bus"_s);
    QVERIFY(launcher.isThere());
    leaveBrokenAccessibilityBus();
    QVERIFY(isLeft());
    restoreAccessibilityBusVariable();
    QVERIFY(!qEnvironmentVariableIsSet(kAddressVariable));
}

void AccessibilityBusTest::anAddressThatIsGivenStays()
{
    restoreAccessibilityBusVariable();
    QVERIFY(!qEnvironmentVariableIsSet(kAddressVariable));
    const QByteArray given = "unix:path=/nonexistent/given";
    qputenv(kAddressVariable, given);
    restoreAccessibilityBusVariable();
    QCOMPARE(qgetenv(kAddressVariable), given);
}

QTEST_GUILESS_MAIN(AccessibilityBusTest)
#include "AccessibilityBusTest.moc"
