#include "platform/linux/UnexpectedExit.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

#include <cstdio>
#include <cstdlib>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

constexpr int kStatus = 7;

void tell()
{
    std::puts("told");
}

[[noreturn]] void exitOnMainThread()
{
    const UnexpectedExit exit(tell);
    std::exit(kStatus);
}

[[noreturn]] void exitOnAnotherThread()
{
    const UnexpectedExit exit(tell);
    std::thread([] { std::exit(kStatus); }).join();
    std::abort();
}

[[noreturn]] void exitAfterwards()
{
    {
        const UnexpectedExit exit(tell);
    }
    std::exit(kStatus);
}

} // namespace

class UnexpectedExitTest : public QObject
{
    Q_OBJECT

private slots:
    void isTold_data();
    void isTold();
};

void UnexpectedExitTest::isTold_data()
{
    QTest::addColumn<QString>("task");
    QTest::addColumn<QByteArray>("output");
    QTest::newRow("on the main thread") << u"--main"_s << QByteArray("told\n");
    QTest::newRow("not on another thread") << u"--other"_s << QByteArray();
    QTest::newRow("not after its time") << u"--afterwards"_s << QByteArray();
}

void UnexpectedExitTest::isTold()
{
    QFETCH(QString, task);
    QFETCH(QByteArray, output);
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {task});
    QVERIFY(process.waitForFinished(10000));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), kStatus);
    QCOMPARE(process.readAllStandardOutput(), output);
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QString task = QCoreApplication::arguments().value(1);
    if (task == "--main"_L1)
        exitOnMainThread();
    if (task == "--other"_L1)
        exitOnAnotherThread();
    if (task == "--afterwards"_L1)
        exitAfterwards();
    UnexpectedExitTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "UnexpectedExitTest.moc"
