#include "platform/linux/TerminationDeadline.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

#include <cstdlib>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A process that hangs while it ends.
int hang()
{
    TerminationDeadline deadline(50ms);
    deadline.start();
    for (;;)
        ::pause();
}

/// One that ends in time, and then has other things to do.
int endInTime()
{
    {
        TerminationDeadline deadline(10s);
        deadline.start();
    }
    return EXIT_SUCCESS;
}

} // namespace

class TerminationDeadlineTest : public QObject
{
    Q_OBJECT

private slots:
    void processThatHangsIsEnded();
    void endInTimeIsLeftAlone();

private:
    void run(const QString &task);

    QProcess m_process;
};

void TerminationDeadlineTest::run(const QString &task)
{
    m_process.start(QCoreApplication::applicationFilePath(), {task});
    QVERIFY(m_process.waitForFinished(8000));
    QCOMPARE(m_process.exitStatus(), QProcess::NormalExit);
}

void TerminationDeadlineTest::processThatHangsIsEnded()
{
    run(u"--hang"_s);
    QCOMPARE(m_process.exitCode(), EXIT_FAILURE);
    QCOMPARE(m_process.readAllStandardOutput(),
             "The end takes too long; what is not on disk by now is lost\n");
}

void TerminationDeadlineTest::endInTimeIsLeftAlone()
{
    run(u"--end"_s);
    QCOMPARE(m_process.exitCode(), EXIT_SUCCESS);
    QCOMPARE(m_process.readAllStandardOutput(), "");
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QString task = QCoreApplication::arguments().value(1);
    if (task == "--hang"_L1)
        return hang();
    if (task == "--end"_L1)
        return endInTime();
    TerminationDeadlineTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "TerminationDeadlineTest.moc"
