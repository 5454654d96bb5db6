#include "capture/PausedNotices.h"

#include <algorithm>

void PausedNotices::begin(quint64 noticedCount)
{
    if (!m_beforeCurrent)
        m_beforeCurrent = noticedCount;
}

void PausedNotices::end(quint64 noticedCount)
{
    if (m_beforeCurrent && noticedCount > *m_beforeCurrent)
        m_ended.append({*m_beforeCurrent, noticedCount});
    m_beforeCurrent.reset();
}

bool PausedNotices::contains(quint64 notice) const
{
    const auto isInside = [notice](const Stretch &stretch) {
        return notice > stretch.before && notice <= stretch.last;
    };
    return (m_beforeCurrent && notice > *m_beforeCurrent) || std::ranges::any_of(m_ended, isInside);
}

void PausedNotices::forgetBefore(quint64 notice)
{
    m_ended.removeIf([notice](const Stretch &stretch) { return stretch.last < notice; });
}
