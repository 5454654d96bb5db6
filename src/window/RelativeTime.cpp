#include "window/RelativeTime.h"

#include "language/Localized.h"

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

const QList<Unit> &units()
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

} // namespace

QString relativeTime(Timestamp time, Timestamp now)
{
    for (const Unit &unit : units()) {
        const qint64 count = (now - time) / unit.length;
        if (count < 1)
            continue;
        const bool hasWord = count <= unit.few.size();
        const Wording &wording = hasWord ? unit.few.at(count - 1) : unit.many;
        return filledIn(localized(wording.key, wording.fallback), {count});
    }
    return localized(u"time.now"_s, u"now"_s);
}
