#include "window/RelativeTime.h"

#include "language/Localized.h"

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct Wording
{
    QString key;
    QString fallback;
};

struct Unit
{
    std::chrono::seconds length;
    Wording many; ///< With a placeholder for their number.
    QList<Wording> few; ///< For one unit, and for two; what is missing is told as a number.
};

const QList<Unit> &shortUnits()
{
    static const QList<Unit> all{
        {365 * 24h, {u"time.years_ago"_s, u"%d yr. ago"_s}, {{u"time.last_year"_s, u"last yr."_s}}},
        {30 * 24h, {u"time.months_ago"_s, u"%d mo. ago"_s}, {{u"time.last_month"_s, u"last mo."_s}}},
        {7 * 24h, {u"time.weeks_ago"_s, u"%d wk. ago"_s}, {{u"time.last_week"_s, u"last wk."_s}}},
        {24h,
         {u"time.days_ago"_s, u"%d days ago"_s},
         {{u"time.yesterday"_s, u"yesterday"_s}, {u"time.two_days_ago"_s, u"2 days ago"_s}}},
        {1h, {u"time.hours_ago"_s, u"%d hr. ago"_s}, {}},
        {1min, {u"time.minutes_ago"_s, u"%d min. ago"_s}, {}},
        {1s, {u"time.seconds_ago"_s, u"%d sec. ago"_s}, {}},
    };
    return all;
}

const QList<Unit> &spokenUnits()
{
    static const QList<Unit> all{
        {365 * 24h,
         {u"speech.time.years"_s, u"%d years ago"_s},
         {{u"speech.time.last_year"_s, u"last year"_s}}},
        {30 * 24h,
         {u"speech.time.months"_s, u"%d months ago"_s},
         {{u"speech.time.last_month"_s, u"last month"_s}}},
        {7 * 24h,
         {u"speech.time.weeks"_s, u"%d weeks ago"_s},
         {{u"speech.time.last_week"_s, u"last week"_s}}},
        {24h,
         {u"speech.time.days"_s, u"%d days ago"_s},
         {{u"speech.time.yesterday"_s, u"yesterday"_s},
          {u"speech.time.two_days"_s, u"2 days ago"_s}}},
        {1h,
         {u"speech.time.hours"_s, u"%d hours ago"_s},
         {{u"speech.time.hour"_s, u"1 hour ago"_s}}},
        {1min,
         {u"speech.time.minutes"_s, u"%d minutes ago"_s},
         {{u"speech.time.minute"_s, u"1 minute ago"_s}}},
        {1s,
         {u"speech.time.seconds"_s, u"%d seconds ago"_s},
         {{u"speech.time.second"_s, u"1 second ago"_s}}},
    };
    return all;
}

/// In the largest of \a units of which at least one has passed; absent if none has.
std::optional<QString> timeIn(const QList<Unit> &units, std::chrono::nanoseconds passed)
{
    for (const Unit &unit : units) {
        const qint64 count = passed / unit.length;
        if (count < 1)
            continue;
        const bool hasWord = count <= unit.few.size();
        const Wording &wording = hasWord ? unit.few.at(count - 1) : unit.many;
        return filledIn(localized(wording.key, wording.fallback), {count});
    }
    return std::nullopt;
}

} // namespace

QString relativeTime(Timestamp time, Timestamp now)
{
    const auto passed = timeIn(shortUnits(), now - time);
    return passed ? *passed : localized(u"time.now"_s, u"now"_s);
}

QString spokenRelativeTime(Timestamp time, Timestamp now)
{
    const auto passed = timeIn(spokenUnits(), now - time);
    return passed ? *passed : localized(u"speech.time.now"_s, u"just now"_s);
}
