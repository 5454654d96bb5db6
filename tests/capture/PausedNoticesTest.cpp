#include "capture/PausedNotices.h"

#include <QTest>

class PausedNoticesTest : public QObject
{
    Q_OBJECT

private slots:
    void withoutAPauseNothingIsInside()
    {
        PausedNotices notices;
        QVERIFY(!notices.contains(0));
        notices.end(5);
        QVERIFY(!notices.contains(5));
    }

    void aPauseBeginsBehindTheLastNotice()
    {
        PausedNotices notices;
        notices.begin(3);
        QVERIFY(!notices.contains(3));
        QVERIFY(notices.contains(4));
        QVERIFY(notices.contains(1000));
    }

    void aPauseEndsWithTheLastNotice()
    {
        PausedNotices notices;
        notices.begin(3);
        notices.end(5);
        QVERIFY(!notices.contains(3));
        QVERIFY(notices.contains(4));
        QVERIFY(notices.contains(5));
        QVERIFY(!notices.contains(6));
    }

    void aPauseWithoutANoticeLeavesNothing()
    {
        PausedNotices notices;
        notices.begin(3);
        notices.end(3);
        QVERIFY(!notices.contains(3));
        QVERIFY(!notices.contains(4));
    }

    void aPauseIsNotBegunTwice()
    {
        PausedNotices notices;
        notices.begin(3);
        notices.begin(5);
        notices.end(7);
        QVERIFY(notices.contains(4));
    }

    void severalPausesAreRemembered()
    {
        PausedNotices notices;
        notices.begin(1);
        notices.end(2);
        notices.begin(4);
        notices.end(6);
        notices.begin(8);
        QVERIFY(notices.contains(2));
        QVERIFY(!notices.contains(3));
        QVERIFY(notices.contains(5));
        QVERIFY(!notices.contains(7));
        QVERIFY(notices.contains(9));
    }

    void whatIsNoLongerAskedAboutIsForgotten()
    {
        PausedNotices notices;
        notices.begin(1);
        notices.end(2);
        notices.begin(4);
        notices.end(6);
        notices.forgetBefore(5);
        QVERIFY(!notices.contains(2));
        QVERIFY(notices.contains(5));
        QVERIFY(notices.contains(6));
    }
};

QTEST_GUILESS_MAIN(PausedNoticesTest)
#include "PausedNoticesTest.moc"
