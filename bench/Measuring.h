#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <algorithm>
#include <chrono>
#include <vector>

#include <benchmark/benchmark.h>
#include <malloc.h>

/// A number from a "name: 123" file of /proc; 0 if it is not there.
inline qint64 procNumber(const QString &path, const QByteArray &name)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(name + ':'))
            return line.mid(name.size() + 1).simplified().split(' ').first().toLongLong();
    }
    return 0;
}

/// After what the allocator keeps for later has been given back.
inline double anonymousMebibytes()
{
    malloc_trim(0);
    return double(procNumber(QStringLiteral("/proc/self/smaps_rollup"), "Anonymous")) / 1024;
}

/// Times of single rounds, told as median and 95th percentile.
class Rounds
{
public:
    template <typename Work>
    void time(benchmark::State &state, Work &&work)
    {
        const auto begin = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
        state.SetIterationTime(taken.count());
        m_milliseconds.push_back(taken.count() * 1000);
    }

    void report(benchmark::State &state)
    {
        std::ranges::sort(m_milliseconds);
        state.counters["median_ms"] = m_milliseconds[m_milliseconds.size() / 2];
        state.counters["p95_ms"] = m_milliseconds[m_milliseconds.size() * 95 / 100];
    }

private:
    std::vector<double> m_milliseconds;
};
