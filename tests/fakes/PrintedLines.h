#pragma once

#include "foundation/Log.h"

#include <QStringList>

#include <memory>
#include <mutex>

/// Collects what the program prints while the object lives.
class PrintedLines
{
public:
    PrintedLines()
    {
        setPrintSink([state = m_state](const QString &line) {
            const std::lock_guard lock(state->mutex);
            state->lines.append(line);
        });
    }
    ~PrintedLines() { setPrintSink({}); }

    QStringList lines() const
    {
        const std::lock_guard lock(m_state->mutex);
        return m_state->lines;
    }
    bool contains(const QString &line) const { return lines().contains(line); }

private:
    struct State
    {
        std::mutex mutex;
        QStringList lines;
    };

    std::shared_ptr<State> m_state = std::make_shared<State>();
};
