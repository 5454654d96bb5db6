#pragma once

#include "foundation/LazyBytes.h"

#include <atomic>

/// Gives the same bytes each time, or none, and counts how often it was asked. Any thread.
class CountingSource : public ByteSource
{
public:
    explicit CountingSource(std::optional<QByteArray> bytes) : m_bytes(std::move(bytes)) {}

    std::optional<QByteArray> read() const override
    {
        ++readCount;
        return m_bytes;
    }

    mutable std::atomic<int> readCount = 0;

private:
    std::optional<QByteArray> m_bytes;
};
