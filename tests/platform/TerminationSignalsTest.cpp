#include "platform/linux/TerminationSignals.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

#include <csignal>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

/// Ends by its first signal, and gets another one when its event loop has ended.
int endUnderSignals(int signal)
{
    int signalCount = 0;
    {
        const TerminationSignals termination([&signalCount] {
            ++signalCount;
            QCoreApplication::quit();
        });
        std::raise(signal);
        QCoreApplication::exec();
    }
    std::raise(signal);
    return signalCount == 1 ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

class TerminationSignalsTest : public QObject
{
    Q_OBJECT

private slots:
    void secondSignalDoesNotCutOffTheEnd_data();
    void secondSignalDoesNotCutOffTheEnd();
};

void TerminationSignalsTest::secondSignalDoesNotCutOffTheEnd_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("of a session that ends") << SIGTERM;
    QTest::newRow("of the keyboard") << SIGINT;
    QTest::newRow("of a terminal that closes") << SIGHUP;
}

void TerminationSignalsTest::secondSignalDoesNotCutOffTheEnd()
{
    QFETCH(int, signal);
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(),
                  {u"--end"_s, QString::number(signal)});
    QVERIFY(process.waitForFinished(8000));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), EXIT_SUCCESS);
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--end"_L1)
        return endUnderSignals(arguments.value(2).toInt());
    TerminationSignalsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "TerminationSignalsTest.moc"
