#include "platform/linux/SocketSingleInstance.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cstdio>

#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// What a process of its own finds, as it prints it: its role, and what the first answered.
int runAsAnotherProcess(const QString &directory, const QString &token)
{
    SocketSingleInstance instance(directory);
    SingleInstance::Role role = instance.claim();
    std::printf("role %d\n", int(role));
    std::fflush(stdout);
    while (role == SingleInstance::Role::Second) {
        const SingleInstance::Answer answer = instance.activateFirst(token);
        std::printf("answer %d\n", int(answer));
        if (answer != SingleInstance::Answer::Ended)
            return EXIT_SUCCESS;
        role = instance.claim();
        std::printf("role %d\n", int(role));
    }
    return EXIT_SUCCESS;
}

/// One that has the role for as long as nothing comes on its standard input, and never answers.
int runAsSilentFirst(const QString &directory)
{
    SocketSingleInstance instance(directory);
    std::printf("role %d\n", int(instance.claim()));
    std::fflush(stdout);
    std::getchar();
    return EXIT_SUCCESS;
}

qsizetype openDescriptorCount()
{
    const auto all = QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System;
    return QDir(u"/proc/self/fd"_s).entryList(all).size();
}

/// While the object lives this process can open nothing more.
class NoDescriptors
{
public:
    NoDescriptors()
    {
        ::getrlimit(RLIMIT_NOFILE, &m_before);
        const int lowestFree = ::dup(STDIN_FILENO);
        ::close(lowestFree);
        rlimit limit = m_before;
        limit.rlim_cur = rlim_t(lowestFree);
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
    ~NoDescriptors() { ::setrlimit(RLIMIT_NOFILE, &m_before); }
    NoDescriptors(const NoDescriptors &) = delete;
    NoDescriptors &operator=(const NoDescriptors &) = delete;

private:
    rlimit m_before = {};
};

const QByteArray kFirst = "role 0\n";
const QByteArray kSecondShown = "role 1\nanswer 0\n";
const QByteArray kSecondNotAnswered = "role 1\nanswer 2\n";

} // namespace

class SocketSingleInstanceTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_directory.emplace(); }

    void secondStartActivatesTheFirst();
    void tokenIsHandedOver_data();
    void tokenIsHandedOver();
    void otherDirectoriesHaveFirstOnesOfTheirOwn();
    void severalAtTheSameMomentAreAllAnswered();
    void oneThatComesDuringTheStartIsAnsweredLater();
    void firstThatHangsIsNotWaitedForLong();
    void roleIsFreeAfterASuddenEnd();
    void oneThatComesDuringTheEndTakesTheRole();
    void ofManyAtTheSameMomentOneIsTheFirst();
    void silentVisitorsAreFewAndSentAway();
    void visitorsWaitQuietlyForDescriptors();

private:
    std::unique_ptr<QProcess> start(const QStringList &arguments) const;
    std::unique_ptr<QProcess> startAnother(const QString &token = {}) const;
    static QByteArray outputOf(QProcess &process);

    std::optional<QTemporaryDir> m_directory;
};

std::unique_ptr<QProcess> SocketSingleInstanceTest::start(const QStringList &arguments) const
{
    auto process = std::make_unique<QProcess>();
    process->start(QCoreApplication::applicationFilePath(), arguments);
    return process;
}

std::unique_ptr<QProcess> SocketSingleInstanceTest::startAnother(const QString &token) const
{
    return start({u"--another"_s, m_directory->path(), token});
}

/// Waits without turning the event loop of this process.
QByteArray SocketSingleInstanceTest::outputOf(QProcess &process)
{
    process.waitForFinished(15000);
    return process.readAllStandardOutput();
}

void SocketSingleInstanceTest::secondStartActivatesTheFirst()
{
    SocketSingleInstance first(m_directory->path());
    int activationCount = 0;
    first.onActivated = [&activationCount](const QString &) { ++activationCount; };
    QCOMPARE(first.claim(), SingleInstance::Role::First);
    first.listen();

    for (int number = 1; number <= 2; ++number) {
        const auto another = startAnother();
        QTRY_COMPARE(another->state(), QProcess::NotRunning);
        QCOMPARE(another->readAllStandardOutput(), kSecondShown);
        QCOMPARE(activationCount, number);
    }
}

void SocketSingleInstanceTest::tokenIsHandedOver_data()
{
    QTest::addColumn<QString>("token");
    QTest::addColumn<QString>("received");
    QTest::newRow("none") << QString() << QString();
    QTest::newRow("a launcher's") << u"panel-7-host-tessarine-1_TIME12345"_s
                                  << u"panel-7-host-tessarine-1_TIME12345"_s;
    QTest::newRow("of several lines") << u"Ärger\n\n"_s << u"Ärger\n\n"_s;
    QTest::newRow("without an end") << QString(100'000, u'a') << QString(4095, u'a');
}

void SocketSingleInstanceTest::tokenIsHandedOver()
{
    QFETCH(QString, token);
    QFETCH(QString, received);
    SocketSingleInstance first(m_directory->path());
    QStringList tokens;
    first.onActivated = [&tokens](const QString &handedOver) { tokens.append(handedOver); };
    QCOMPARE(first.claim(), SingleInstance::Role::First);
    first.listen();

    const auto another = startAnother(token);
    QTRY_COMPARE(another->state(), QProcess::NotRunning);
    QCOMPARE(tokens, QStringList{received});
}

void SocketSingleInstanceTest::otherDirectoriesHaveFirstOnesOfTheirOwn()
{
    SocketSingleInstance first(m_directory->path());
    QCOMPARE(first.claim(), SingleInstance::Role::First);
    SocketSingleInstance other(m_directory->filePath(u"other"_s));
    QCOMPARE(other.claim(), SingleInstance::Role::First);
}

void SocketSingleInstanceTest::severalAtTheSameMomentAreAllAnswered()
{
    SocketSingleInstance first(m_directory->path());
    int activationCount = 0;
    first.onActivated = [&activationCount](const QString &) { ++activationCount; };
    QCOMPARE(first.claim(), SingleInstance::Role::First);
    first.listen();

    std::vector<std::unique_ptr<QProcess>> others;
    for (int number = 0; number < 5; ++number)
        others.push_back(startAnother());
    for (const auto &another : others) {
        QTRY_COMPARE(another->state(), QProcess::NotRunning);
        QCOMPARE(another->readAllStandardOutput(), kSecondShown);
    }
    QCOMPARE(activationCount, 5);
}

void SocketSingleInstanceTest::oneThatComesDuringTheStartIsAnsweredLater()
{
    SocketSingleInstance first(m_directory->path());
    QCOMPARE(first.claim(), SingleInstance::Role::First);
    const auto another = startAnother();
    QVERIFY(another->waitForReadyRead(10000));
    QCOMPARE(another->readAllStandardOutput(), "role 1\n");

    int activationCount = 0;
    first.onActivated = [&activationCount](const QString &) { ++activationCount; };
    first.listen();
    QTRY_COMPARE(another->state(), QProcess::NotRunning);
    QCOMPARE(another->readAllStandardOutput(), "answer 0\n");
    QCOMPARE(activationCount, 1);
}

void SocketSingleInstanceTest::firstThatHangsIsNotWaitedForLong()
{
    SocketSingleInstance first(m_directory->path());
    QCOMPARE(first.claim(), SingleInstance::Role::First);
    first.listen();
    QCOMPARE(outputOf(*startAnother()), kSecondNotAnswered);
}

void SocketSingleInstanceTest::roleIsFreeAfterASuddenEnd()
{
    const auto first = start({u"--silent"_s, m_directory->path()});
    QVERIFY(first->waitForReadyRead(10000));
    QCOMPARE(first->readAllStandardOutput(), kFirst);
    first->kill();
    QVERIFY(first->waitForFinished());
    QCOMPARE(outputOf(*startAnother()), kFirst);
}

void SocketSingleInstanceTest::oneThatComesDuringTheEndTakesTheRole()
{
    const auto first = start({u"--silent"_s, m_directory->path()});
    QVERIFY(first->waitForReadyRead(10000));
    const auto another = startAnother();
    QVERIFY(another->waitForReadyRead(10000));
    QCOMPARE(another->readAllStandardOutput(), "role 1\n");
    first->closeWriteChannel();
    QVERIFY(first->waitForFinished());
    QCOMPARE(outputOf(*another), "answer 1\nrole 0\n");
}

void SocketSingleInstanceTest::ofManyAtTheSameMomentOneIsTheFirst()
{
    std::vector<std::unique_ptr<QProcess>> all;
    for (int number = 0; number < 8; ++number)
        all.push_back(start({u"--silent"_s, m_directory->path()}));
    QByteArray roles;
    for (const auto &process : all) {
        QVERIFY(process->waitForReadyRead(10000));
        roles += process->readAllStandardOutput();
    }
    QCOMPARE(roles.count("role 0\n"), 1);
    QCOMPARE(roles.count("role 1\n"), 7);
    for (const auto &process : all) {
        process->closeWriteChannel();
        QVERIFY(process->waitForFinished());
    }
}

void SocketSingleInstanceTest::silentVisitorsAreFewAndSentAway()
{
    SocketSingleInstance first(m_directory->path());
    int activationCount = 0;
    first.onActivated = [&activationCount](const QString &) { ++activationCount; };
    QCOMPARE(first.claim(), SingleInstance::Role::First);
    first.listen();

    std::vector<std::unique_ptr<SocketSingleInstance>> silent;
    for (int number = 0; number < 40; ++number) {
        silent.push_back(std::make_unique<SocketSingleInstance>(m_directory->path()));
        QCOMPARE(silent.back()->claim(), SingleInstance::Role::Second);
    }
    const qsizetype before = openDescriptorCount();
    qsizetype most = 0;
    const auto atWork = [&] {
        const qsizetype now = openDescriptorCount() - before;
        most = std::max(most, now);
        return now;
    };
    QTRY_VERIFY(atWork() >= 32);
    QTRY_COMPARE_WITH_TIMEOUT(atWork(), 0, 10000);
    QCOMPARE(most, 32);

    const auto another = startAnother();
    QTRY_COMPARE(another->state(), QProcess::NotRunning);
    QCOMPARE(another->readAllStandardOutput(), kSecondShown);
    QCOMPARE(activationCount, 1);
}

void SocketSingleInstanceTest::visitorsWaitQuietlyForDescriptors()
{
    int turnCount = 0;
    QEventLoop loop;
    connect(QCoreApplication::eventDispatcher(), &QAbstractEventDispatcher::awake, &loop,
            [&turnCount] { ++turnCount; });
    // The sanitizers need a descriptor for the first look at an object.
    QTimer::singleShot(0, &loop, &QEventLoop::quit);
    loop.exec();

    SocketSingleInstance first(m_directory->path());
    int activationCount = 0;
    first.onActivated = [&activationCount](const QString &) { ++activationCount; };
    QCOMPARE(first.claim(), SingleInstance::Role::First);
    first.listen();
    const auto another = startAnother();
    QVERIFY(another->waitForReadyRead(10000));
    {
        const NoDescriptors none;
        turnCount = 0;
        QTimer::singleShot(200ms, &loop, &QEventLoop::quit);
        loop.exec();
        QCOMPARE_LT(turnCount, 50);
        QCOMPARE(activationCount, 0);
    }
    QTRY_COMPARE(activationCount, 1);
    QTRY_COMPARE(another->state(), QProcess::NotRunning);
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--another")
        return runAsAnotherProcess(arguments.value(2), arguments.value(3));
    if (arguments.value(1) == u"--silent")
        return runAsSilentFirst(arguments.value(2));
    SocketSingleInstanceTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "SocketSingleInstanceTest.moc"
