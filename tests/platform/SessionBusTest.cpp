#include "platform/linux/SessionBus.h"

#include "tests/fakes/PrintedLines.h"
#include "tests/platform/PrivateDesktop.h"
#include "tests/platform/SilentBus.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kAddressVariable = "DBUS_SESSION_BUS_ADDRESS";

} // namespace

class SessionBusTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void busThatAnswersIsLeftAlone();
    void busInTheRuntimeFolderIsFound();
    void withoutABusThatIsSaid();
    void deadBusIsLeft();
    void silentBusIsNotWaitedFor();
    void busThatIsTooBusyToConnectToIsNotWaitedFor();

private:
    std::optional<PrintedLines> m_lines;
    std::optional<QTemporaryDir> m_directory;
    PrivateDesktop m_desktop; ///< Without a display: for its bus.
};

void SessionBusTest::init()
{
    m_lines.emplace();
    m_directory.emplace();
    qputenv("XDG_RUNTIME_DIR", m_directory->path().toUtf8());
    qunsetenv(kAddressVariable);
}

void SessionBusTest::busThatAnswersIsLeftAlone()
{
    const QByteArray address = m_desktop.startBus().toUtf8();
    QVERIFY(!address.isEmpty());
    qputenv(kAddressVariable, address);
    leaveBrokenSessionBus();
    QCOMPARE(m_lines->lines(), QStringList());
    QCOMPARE(qgetenv(kAddressVariable), address);
    QVERIFY(findSessionBus());
}

void SessionBusTest::busInTheRuntimeFolderIsFound()
{
    const SilentBus bus(m_directory->filePath(u"bus"_s));
    QVERIFY(bus.isThere());
    leaveBrokenSessionBus();
    QCOMPARE(m_lines->lines(), QStringList{u"No session bus: it does not answer"_s});
}

void SessionBusTest::withoutABusThatIsSaid()
{
    leaveBrokenSessionBus();
    QCOMPARE(m_lines->lines(), QStringList{u"No session bus: there is none"_s});
    QCOMPARE(qgetenv(kAddressVariable), "disabled:");
}

void SessionBusTest::deadBusIsLeft()
{
    qputenv(kAddressVariable, "unix:path=/nonexistent/bus");
    leaveBrokenSessionBus();
    QCOMPARE(m_lines->lines().size(), 1);
    QVERIFY(m_lines->lines().constFirst().contains(u"/nonexistent/bus"_s));
    QCOMPARE(qgetenv(kAddressVariable), "disabled:");
}

void SessionBusTest::silentBusIsNotWaitedFor()
{
    const QString path = m_directory->filePath(u"silent"_s);
    const SilentBus bus(path);
    QVERIFY(bus.isThere());
    qputenv(kAddressVariable, "unix:path=" + path.toUtf8());
    leaveBrokenSessionBus();
    QCOMPARE(m_lines->lines(), QStringList{u"No session bus: it does not answer"_s});
    QCOMPARE(qgetenv(kAddressVariable), "disabled:");
}

void SessionBusTest::busThatIsTooBusyToConnectToIsNotWaitedFor()
{
    const QString path = m_directory->filePath(u"busy"_s);
    const SilentBus bus(path, 0);
    QVERIFY(bus.isThere());
    qputenv(kAddressVariable, "unix:path=" + path.toUtf8());
    // The first takes the one place that there is.
    leaveBrokenSessionBus();
    qputenv(kAddressVariable, "unix:path=" + path.toUtf8());
    leaveBrokenSessionBus();
    const QString line = u"No session bus: it does not answer"_s;
    QCOMPARE(m_lines->lines(), (QStringList{line, line}));
}

QTEST_GUILESS_MAIN(SessionBusTest)
#include "SessionBusTest.moc"
