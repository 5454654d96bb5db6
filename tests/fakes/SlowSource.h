#pragma once

#include "tests/fakes/CountingSource.h"

#include <semaphore>

/// Gives its bytes when it is let go, once. Any thread.
class SlowSource : public CountingSource
{
public:
    explicit SlowSource(const QByteArray &bytes) : CountingSource(bytes) {}

    std::optional<QByteArray> read() const override
    {
        auto bytes = CountingSource::read();
        m_release.acquire();
        return bytes;
    }

    void letGo() { m_release.release(); }

private:
    mutable std::binary_semaphore m_release{0};
};
