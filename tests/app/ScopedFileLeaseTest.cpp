#include "app/ScopedFileLease.h"

#include "foundation/UserDefaults.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeFiles.h"
#include "tests/fakes/FakeScheduler.h"
#include "tests/fakes/PrintedLines.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QUrl kFile(u"file:///home/a%20file"_s);
const QUrl kOtherFile(u"file:///home/other"_s);

} // namespace

class ScopedFileLeaseTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aLeaseHoldsItsFileUntilItIsReleased();
    void aNewLeaseEndsTheFormer();
    void refusedAccessIsNoError();
    void releasingNothingDoesNothing();
    void theEndOfTheObjectEndsItsLease();

    void aScheduledReleaseEndsTheLeaseToTheMillisecond();
    void aReleaseScheduledWithoutLeaseEndsNoLaterOne();
    void ofTwoLeasesOnlyTheSecondEndsByItsOwnSchedule();
    void aReleaseScheduledForAnEndedLeaseDoesNothing();
    void scheduledReleasesOutliveTheLeaseInPeace();

    void theWatchdogEndsALeaseThatNothingElseEnded();
    void aReleasedLeaseLeavesNoWatchdog();
    void theWatchdogOfAnEarlierLeaseSparesTheLater();
    void aRefusedLeaseHasNoWatchdog();

    void theTrailTellsOfBeginningAndRelease();
    void theTrailTellsOfRefusal();
    void theTrailTellsNoTimeForALeaseThatHeldNothing();
    void theTrailIsSilentUnlessItIsAskedFor();

private:
    int openCount() const { return m_files->access.openCount; }
    void advanceTo(std::chrono::milliseconds moment);
    void askForTheTrail() { m_defaults->set(u"debug.drag_paste_logging"_s, true); }
    QStringList trail() const { return m_printed->lines(); }

    std::optional<PrintedLines> m_printed;
    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<UserDefaults> m_defaults;
    std::unique_ptr<FakeFiles> m_files;
    std::unique_ptr<FakeScheduler> m_scheduler;
    std::unique_ptr<FakeClock> m_clock;
    std::unique_ptr<ScopedFileLease> m_lease;
};

void ScopedFileLeaseTest::init()
{
    m_printed.emplace();
    m_directory = std::make_unique<QTemporaryDir>();
    m_defaults = std::make_unique<UserDefaults>(m_directory->filePath(u"tessarine.conf"_s));
    m_files = std::make_unique<FakeFiles>(*m_defaults);
    m_scheduler = std::make_unique<FakeScheduler>();
    m_clock = std::make_unique<FakeClock>();
    m_lease = std::make_unique<ScopedFileLease>(m_files->references, *m_scheduler, *m_clock,
                                                *m_defaults);
}

void ScopedFileLeaseTest::cleanup()
{
    m_lease.reset();
    m_files.reset();
    m_defaults.reset();
    m_printed.reset();
}

void ScopedFileLeaseTest::advanceTo(std::chrono::milliseconds moment)
{
    const auto step = moment - m_scheduler->now();
    m_clock->advance(step);
    m_scheduler->advance(step);
}

void ScopedFileLeaseTest::aLeaseHoldsItsFileUntilItIsReleased()
{
    m_lease->beginScopedFileURLAccess(kFile);
    QCOMPARE(m_files->access.started, QList{kFile});
    QCOMPARE(openCount(), 1);
    QVERIFY(m_lease->isAccessing());

    m_lease->releaseActiveScopedFileURLIfNeeded(u"normal"_s);
    QCOMPARE(openCount(), 0);
    QVERIFY(!m_lease->isAccessing());
}

void ScopedFileLeaseTest::aNewLeaseEndsTheFormer()
{
    askForTheTrail();
    m_lease->beginScopedFileURLAccess(kFile);
    m_lease->beginScopedFileURLAccess(kOtherFile);
    QCOMPARE(m_files->access.started, QList({kFile, kOtherFile}));
    QCOMPARE(openCount(), 1);
    QCOMPARE(trail().at(1), u"[DragPaste] releaseActiveScopedFileURLIfNeeded reason=normal "
                            "path=/home/a file heldMs=0"_s);
}

void ScopedFileLeaseTest::refusedAccessIsNoError()
{
    m_files->access.isGranted = false;
    m_lease->beginScopedFileURLAccess(kFile);
    QCOMPARE(m_files->access.started, QList{kFile});
    QVERIFY(!m_lease->isAccessing());
    m_lease->releaseActiveScopedFileURLIfNeeded(u"paste event not posted"_s);
    QVERIFY(!m_lease->isAccessing());
}

void ScopedFileLeaseTest::releasingNothingDoesNothing()
{
    askForTheTrail();
    m_lease->releaseActiveScopedFileURLIfNeeded(u"normal"_s);
    m_lease->beginScopedFileURLAccess(kFile);
    m_lease->releaseActiveScopedFileURLIfNeeded(u"normal"_s);
    m_lease->releaseActiveScopedFileURLIfNeeded(u"app terminate"_s);
    QCOMPARE(trail().filter(u"releaseActiveScopedFileURLIfNeeded"_s).size(), 1);
}

void ScopedFileLeaseTest::theEndOfTheObjectEndsItsLease()
{
    m_lease->beginScopedFileURLAccess(kFile);
    m_lease.reset();
    QCOMPARE(openCount(), 0);
}

void ScopedFileLeaseTest::aScheduledReleaseEndsTheLeaseToTheMillisecond()
{
    askForTheTrail();
    m_lease->beginScopedFileURLAccess(kFile);
    advanceTo(400ms);
    m_lease->scheduleScopedFileURLRelease(u"paste event posted"_s, 350ms);
    advanceTo(749ms);
    QCOMPARE(openCount(), 1);
    advanceTo(750ms);
    QCOMPARE(openCount(), 0);
    QCOMPARE(trail().last(), u"[DragPaste] releaseActiveScopedFileURLIfNeeded reason=paste event "
                             "posted path=/home/a file heldMs=750"_s);
}

void ScopedFileLeaseTest::aReleaseScheduledWithoutLeaseEndsNoLaterOne()
{
    m_lease->scheduleScopedFileURLRelease(u"paste event posted"_s, 350ms);
    m_lease->beginScopedFileURLAccess(kFile);
    advanceTo(1s);
    QCOMPARE(openCount(), 1);
}

void ScopedFileLeaseTest::ofTwoLeasesOnlyTheSecondEndsByItsOwnSchedule()
{
    m_lease->beginScopedFileURLAccess(kFile);
    advanceTo(200ms);
    m_lease->scheduleScopedFileURLRelease(u"paste event posted"_s, 350ms);
    m_lease->beginScopedFileURLAccess(kOtherFile);
    advanceTo(400ms);
    m_lease->scheduleScopedFileURLRelease(u"paste event posted"_s, 350ms);
    advanceTo(749ms);
    QCOMPARE(openCount(), 1);
    advanceTo(750ms);
    QCOMPARE(openCount(), 0);
}

void ScopedFileLeaseTest::aReleaseScheduledForAnEndedLeaseDoesNothing()
{
    askForTheTrail();
    m_lease->beginScopedFileURLAccess(kFile);
    m_lease->scheduleScopedFileURLRelease(u"paste event posted"_s, 350ms);
    m_lease->releaseActiveScopedFileURLIfNeeded(u"normal"_s);
    const QStringList before = trail();
    advanceTo(1min);
    QCOMPARE(trail(), before);
}

void ScopedFileLeaseTest::scheduledReleasesOutliveTheLeaseInPeace()
{
    askForTheTrail();
    m_lease->beginScopedFileURLAccess(kFile);
    m_lease->scheduleScopedFileURLRelease(u"paste event posted"_s, 350ms);
    m_lease.reset();
    const QStringList before = trail();
    advanceTo(1min);
    QCOMPARE(trail(), before);
}

void ScopedFileLeaseTest::theWatchdogEndsALeaseThatNothingElseEnded()
{
    askForTheTrail();
    m_lease->beginScopedFileURLAccess(kFile);
    advanceTo(7999ms);
    QCOMPARE(openCount(), 1);
    advanceTo(8s);
    QCOMPARE(openCount(), 0);
    QCOMPARE(trail().last(), u"[DragPaste] releaseActiveScopedFileURLIfNeeded reason=watchdog "
                             "timeout path=/home/a file heldMs=8000"_s);
}

void ScopedFileLeaseTest::aReleasedLeaseLeavesNoWatchdog()
{
    m_lease->beginScopedFileURLAccess(kFile);
    QCOMPARE(m_scheduler->pendingCount(), 1);
    advanceTo(1s);
    m_lease->releaseActiveScopedFileURLIfNeeded(u"paste event not posted"_s);
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void ScopedFileLeaseTest::theWatchdogOfAnEarlierLeaseSparesTheLater()
{
    m_lease->beginScopedFileURLAccess(kFile);
    advanceTo(1s);
    m_lease->beginScopedFileURLAccess(kOtherFile);
    advanceTo(8999ms);
    QCOMPARE(openCount(), 1);
    advanceTo(9s);
    QCOMPARE(openCount(), 0);
}

void ScopedFileLeaseTest::aRefusedLeaseHasNoWatchdog()
{
    m_files->access.isGranted = false;
    m_lease->beginScopedFileURLAccess(kFile);
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void ScopedFileLeaseTest::theTrailTellsOfBeginningAndRelease()
{
    askForTheTrail();
    m_lease->beginScopedFileURLAccess(kFile);
    // What is less than a millisecond does not count.
    m_clock->advance(12'999us);
    m_lease->releaseActiveScopedFileURLIfNeeded(u"no previous app for paste"_s);
    QCOMPARE(trail().size(), 2);
    const QRegularExpression beginning(
        u"^\\[DragPaste\\] beginScopedFileURLAccess started path=/home/a file "
        "lease=[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"_s);
    QVERIFY2(beginning.match(trail().first()).hasMatch(), qPrintable(trail().first()));
    QCOMPARE(trail().last(), u"[DragPaste] releaseActiveScopedFileURLIfNeeded reason=no previous "
                             "app for paste path=/home/a file heldMs=12"_s);
}

void ScopedFileLeaseTest::theTrailTellsOfRefusal()
{
    askForTheTrail();
    m_files->access.isGranted = false;
    m_lease->beginScopedFileURLAccess(kFile);
    QCOMPARE(trail(),
             QStringList{u"[DragPaste] beginScopedFileURLAccess startAccessing returned false "
                         "path=/home/a file"_s});
}

void ScopedFileLeaseTest::theTrailTellsNoTimeForALeaseThatHeldNothing()
{
    askForTheTrail();
    m_files->access.isGranted = false;
    m_lease->beginScopedFileURLAccess(kFile);
    m_lease->scheduleScopedFileURLRelease(u"paste event posted"_s, 350ms);
    advanceTo(10s);
    m_lease->releaseActiveScopedFileURLIfNeeded(u"normal"_s);
    QCOMPARE(trail().filter(u"heldMs"_s), QStringList());
}

void ScopedFileLeaseTest::theTrailIsSilentUnlessItIsAskedFor()
{
    m_lease->beginScopedFileURLAccess(kFile);
    advanceTo(10s);
    m_files->access.isGranted = false;
    m_lease->beginScopedFileURLAccess(kFile);
    QCOMPARE(trail(), QStringList());
}

QTEST_GUILESS_MAIN(ScopedFileLeaseTest)
#include "ScopedFileLeaseTest.moc"
