#pragma once

#include <QList>

#include <optional>

/// Remembers which changes of the pasteboard were noticed in a pause. A change is read some time
/// after it was noticed, and a pause may begin or end in between.
class PausedNotices
{
public:
    /// From the notice after \a noticedCount on, until end().
    void begin(quint64 noticedCount);
    void end(quint64 noticedCount);

    bool contains(quint64 notice) const;

    /// No notice before \a notice is going to be asked about.
    void forgetBefore(quint64 notice);

private:
    struct Stretch
    {
        quint64 before = 0; ///< The last notice before the pause.
        quint64 last = 0;   ///< The last one in it.
    };

    QList<Stretch> m_ended;
    std::optional<quint64> m_beforeCurrent; ///< The last notice before the pause that lasts.
};
