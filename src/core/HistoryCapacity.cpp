#include "core/HistoryCapacity.h"

#include "foundation/UserDefaults.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

qsizetype normalizedCapacity(qint64 value)
{
    const bool isAllowed = std::ranges::find(kAllowedCapacities, value)
        != std::end(kAllowedCapacities);
    return qsizetype(isAllowed ? value : kAllowedCapacities[0]);
}

qsizetype currentCapacity(const UserDefaults &defaults)
{
    return normalizedCapacity(defaults.integer(u"history.limit"_s));
}
