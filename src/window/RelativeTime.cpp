#include "window/RelativeTime.h"

#include <array>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct Unit
{
    std::chrono::seconds length;
    QStringView one; ///< The whole text for one unit; empty if it is told as a figure.
    QStringView many; ///< What follows the figure.
};

constexpr std::array kUnits{
    Unit{365 * 24h, u"last yr.", u" yr. ago"},
    Unit{30 * 24h, u"last mo.", u" mo. ago"},
    Unit{7 * 24h, u"last wk.", u" wk. ago"},
    Unit{24h, u"yesterday", u" days ago"},
    Unit{1h, u"", u" hr. ago"},
    Unit{1min, u"", u" min. ago"},
    Unit{1s, u"", u" sec. ago"},
};

} // namespace

QString relativeTime(Timestamp time, Timestamp now)
{
    for (const Unit &unit : kUnits) {
        const auto count = (now - time) / unit.length;
        if (count < 1)
            continue;
        if (count == 1 && !unit.one.isEmpty())
            return unit.one.toString();
        return QString::number(count) + unit.many.toString();
    }
    return u"now"_s;
}
