#include "platform/linux/DBusSingleInstance.h"

#include "tests/platform/PrivateDesktop.h"

#include <QCoreApplication>
#include <QTest>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

/// What a process of its own finds, as it prints it: its role, and whether the first answered.
int runAsAnotherProcess()
{
    DBusSingleInstance instance;
    const SingleInstance::Role role = instance.claim();
    std::printf("role %d\n", int(role));
    if (role == SingleInstance::Role::Second)
        std::printf("answered %d\n", int(instance.activateFirst({})));
    return EXIT_SUCCESS;
}

} // namespace

class DBusSingleInstanceTest : public QObject
{
    Q_OBJECT

public:
    explicit DBusSingleInstanceTest(PrivateDesktop &desktop)
        : m_desktop(desktop)
    {
    }

private slots:
    void secondStartActivatesTheFirst();
    void firstThatHangsIsNotWaitedForLong();
    void withoutABusTheProgramRunsAndSaysSo();
    void deadBusIsLikeNone();

private:
    QProcess &startAnother();

    PrivateDesktop &m_desktop;
    std::unique_ptr<QProcess> m_another;
};

QProcess &DBusSingleInstanceTest::startAnother()
{
    m_another = std::make_unique<QProcess>();
    m_another->start(QCoreApplication::applicationFilePath(), {u"--another"_s});
    return *m_another;
}

void DBusSingleInstanceTest::secondStartActivatesTheFirst()
{
    DBusSingleInstance first;
    int activationCount = 0;
    first.onActivated = [&activationCount](const QString &) { ++activationCount; };
    QCOMPARE(first.claim(), SingleInstance::Role::First);

    for (int start = 1; start <= 2; ++start) {
        QProcess &another = startAnother();
        QTRY_COMPARE(another.state(), QProcess::NotRunning);
        QCOMPARE(another.readAllStandardOutput(), "role 1\nanswered 1\n");
        QCOMPARE(activationCount, start);
    }
}

void DBusSingleInstanceTest::firstThatHangsIsNotWaitedForLong()
{
    DBusSingleInstance first;
    QCOMPARE(first.claim(), SingleInstance::Role::First);

    QProcess &another = startAnother();
    // The loop of this process does not turn meanwhile. The bus itself would wait for 25 seconds.
    QVERIFY(another.waitForFinished(15000));
    QCOMPARE(another.readAllStandardOutput(), "role 1\nanswered 0\n");
}

void DBusSingleInstanceTest::withoutABusTheProgramRunsAndSaysSo()
{
    m_another = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(u"DBUS_SESSION_BUS_ADDRESS"_s);
    environment.insert(u"XDG_RUNTIME_DIR"_s, m_desktop.folder());
    m_another->setProcessEnvironment(environment);
    QProcess &another = *m_another;
    another.start(QCoreApplication::applicationFilePath(), {u"--another"_s});
    QVERIFY(another.waitForFinished(10000));
    QCOMPARE(another.readAllStandardOutput(),
             "No session bus: a second start of the program will not be noticed\nrole 2\n");
}

void DBusSingleInstanceTest::deadBusIsLikeNone()
{
    m_another = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent/bus"_s);
    m_another->setProcessEnvironment(environment);
    QProcess &another = *m_another;
    another.start(QCoreApplication::applicationFilePath(), {u"--another"_s});
    QVERIFY(another.waitForFinished(10000));
    QVERIFY(another.readAllStandardOutput().endsWith("role 2\n"));
}

int main(int argc, char *argv[])
{
    if (argc > 1 && qstrcmp(argv[1], "--another") == 0) {
        QCoreApplication application(argc, argv);
        return runAsAnotherProcess();
    }
    PrivateDesktop desktop;
    const QString address = desktop.startBus();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
    QCoreApplication application(argc, argv);
    DBusSingleInstanceTest test(desktop);
    return address.isEmpty() ? EXIT_FAILURE : QTest::qExec(&test, argc, argv);
}

#include "DBusSingleInstanceTest.moc"
