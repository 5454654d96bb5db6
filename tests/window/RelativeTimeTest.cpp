#include "window/RelativeTime.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class RelativeTimeTest : public QObject
{
    Q_OBJECT

private slots:
    void agesAreToldInTheLargestUnit_data();
    void agesAreToldInTheLargestUnit();
};

void RelativeTimeTest::agesAreToldInTheLargestUnit_data()
{
    QTest::addColumn<std::chrono::microseconds>("age");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, std::chrono::microseconds age, const QString &text) {
        QTest::newRow(name) << age << text;
    };
    row("just now", 0s, u"now"_s);
    row("under a second", 999ms, u"now"_s);
    row("still to come", -5min, u"now"_s);
    row("seconds", 59s, u"59 sec. ago"_s);
    row("a minute", 60s, u"1 min. ago"_s);
    row("minutes", 59min + 59s, u"59 min. ago"_s);
    row("an hour", 1h, u"1 hr. ago"_s);
    row("hours", 23h + 59min, u"23 hr. ago"_s);
    row("a day", 24h, u"yesterday"_s);
    row("days", 6 * 24h, u"6 days ago"_s);
    row("a week", 7 * 24h, u"last wk."_s);
    row("weeks", 29 * 24h, u"4 wk. ago"_s);
    row("a month", 30 * 24h, u"last mo."_s);
    row("months", 364 * 24h, u"12 mo. ago"_s);
    row("a year", 365 * 24h, u"last yr."_s);
    row("years", 3 * 365 * 24h, u"3 yr. ago"_s);
}

void RelativeTimeTest::agesAreToldInTheLargestUnit()
{
    QFETCH(std::chrono::microseconds, age);
    const Timestamp now = timestampFromMicroseconds(1'776'000'000'000'000);
    QTEST(relativeTime(now - age, now), "text");
}

QTEST_GUILESS_MAIN(RelativeTimeTest)
#include "RelativeTimeTest.moc"
