#include "window/RelativeTime.h"

#include "foundation/UserDefaults.h"
#include "language/LanguageManager.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QString textFor(std::chrono::microseconds age)
{
    const Timestamp now = timestampFromMicroseconds(1'776'000'000'000'000);
    return relativeTime(now - age, now);
}

void addColumns()
{
    QTest::addColumn<std::chrono::microseconds>("age");
    QTest::addColumn<QString>("text");
}

void row(const char *name, std::chrono::microseconds age, const QString &text)
{
    QTest::newRow(name) << age << text;
}

} // namespace

class RelativeTimeTest : public QObject
{
    Q_OBJECT

private slots:
    void agesAreToldInTheLargestUnit_data();
    void agesAreToldInTheLargestUnit();
    void agesAreToldInChinese_data();
    void agesAreToldInChinese();
    void agesAreSpokenInWholeWords_data();
    void agesAreSpokenInWholeWords();
};

void RelativeTimeTest::agesAreToldInTheLargestUnit_data()
{
    addColumns();
    row("just now", 0s, u"now"_s);
    row("under a second", 999ms, u"now"_s);
    row("still to come", -5min, u"now"_s);
    row("seconds", 59s, u"59 sec. ago"_s);
    row("a minute", 60s, u"1 min. ago"_s);
    row("minutes", 59min + 59s, u"59 min. ago"_s);
    row("an hour", 1h, u"1 hr. ago"_s);
    row("hours", 23h + 59min, u"23 hr. ago"_s);
    row("a day", 24h, u"yesterday"_s);
    row("two days", 2 * 24h, u"2 days ago"_s);
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
    QFETCH(const std::chrono::microseconds, age);
    QTEST(textFor(age), "text");
}

void RelativeTimeTest::agesAreToldInChinese_data()
{
    addColumns();
    row("just now", 0s, u"现在"_s);
    row("seconds", 59s, u"59秒前"_s);
    row("minutes", 5min, u"5分钟前"_s);
    row("an hour", 1h, u"1小时前"_s);
    row("a day", 24h, u"昨天"_s);
    row("two days", 2 * 24h, u"前天"_s);
    row("days", 3 * 24h, u"3天前"_s);
    row("a week", 7 * 24h, u"上周"_s);
    row("weeks", 14 * 24h, u"2周前"_s);
    row("a month", 30 * 24h, u"上个月"_s);
    row("months", 60 * 24h, u"2个月前"_s);
    row("a year", 365 * 24h, u"去年"_s);
    row("years", 2 * 365 * 24h, u"2年前"_s);
}

void RelativeTimeTest::agesAreToldInChinese()
{
    QFETCH(const std::chrono::microseconds, age);
    const QTemporaryDir directory;
    UserDefaults defaults(directory.filePath(u"test.conf"_s));
    LanguageManager language(defaults);
    language.setLanguage(AppLanguage::Chinese);
    language.install();
    QTEST(textFor(age), "text");
}

void RelativeTimeTest::agesAreSpokenInWholeWords_data()
{
    addColumns();
    row("just now", 0s, u"just now"_s);
    row("still to come", -5min, u"just now"_s);
    row("a second", 1s, u"1 second ago"_s);
    row("seconds", 59s, u"59 seconds ago"_s);
    row("a minute", 60s, u"1 minute ago"_s);
    row("minutes", 2min, u"2 minutes ago"_s);
    row("an hour", 1h, u"1 hour ago"_s);
    row("hours", 23h, u"23 hours ago"_s);
    row("a day", 24h, u"yesterday"_s);
    row("two days", 2 * 24h, u"2 days ago"_s);
    row("days", 6 * 24h, u"6 days ago"_s);
    row("a week", 7 * 24h, u"last week"_s);
    row("weeks", 29 * 24h, u"4 weeks ago"_s);
    row("a month", 30 * 24h, u"last month"_s);
    row("months", 60 * 24h, u"2 months ago"_s);
    row("a year", 365 * 24h, u"last year"_s);
    row("years", 730 * 24h, u"2 years ago"_s);
}

void RelativeTimeTest::agesAreSpokenInWholeWords()
{
    QFETCH(std::chrono::microseconds, age);
    const Timestamp now = timestampFromMicroseconds(1'776'000'000'000'000);
    QTEST(spokenRelativeTime(now - age, now), "text");
}

QTEST_GUILESS_MAIN(RelativeTimeTest)
#include "RelativeTimeTest.moc"
