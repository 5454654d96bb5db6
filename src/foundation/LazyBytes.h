#pragma once

#include <QByteArray>

#include <memory>
#include <optional>

class TextSignature;

/// Where bytes lie that are not in memory. Any thread.
class ByteSource
{
public:
    virtual ~ByteSource() = default;

    /// Absent if they are not there any more, or cannot be read.
    virtual std::optional<QByteArray> read() const = 0;
};

/// Immutable bytes that need not stay in memory once they lie elsewhere: they are read back where
/// they are asked for. Copies share one state. Any thread.
class LazyBytes
{
public:
    LazyBytes() = default;
    LazyBytes(QByteArray bytes);

    /// \a size bytes that were never in memory.
    static LazyBytes elsewhere(qsizetype size, std::shared_ptr<const ByteSource> source);

    qsizetype size() const;
    bool isEmpty() const { return size() == 0; }
    bool isInMemory() const;

    /// Waits for the source if they are not in memory. Absent if it does not give them.
    std::optional<QByteArray> read() const;

    /// Like read(), but empty instead of absent.
    QByteArray bytes() const { return read().value_or(QByteArray()); }

    /// Reads them and keeps them at hand, for every reader, as long as the result is held.
    std::shared_ptr<const QByteArray> hold() const;

    /// What is in memory or held by somebody; null if it would have to be read.
    std::shared_ptr<const QByteArray> atHand() const;

    /// From now on they are read from \a source, in all copies.
    void moveTo(std::shared_ptr<const ByteSource> source) const;

    /// What can be told of a text without reading it, for all copies. Null until it is set, and then
    /// the same for as long as the bytes last.
    const TextSignature *signature() const;
    /// Only the first counts.
    void setSignature(std::unique_ptr<const TextSignature> signature) const;

    /// Compares without reading where that is possible. What cannot be read equals nothing else.
    friend bool operator==(const LazyBytes &one, const LazyBytes &other);

private:
    struct State;
    class ReadTurn;

    std::shared_ptr<const QByteArray>
    bytesAtHand(std::shared_ptr<const ByteSource> &source) const;

    std::shared_ptr<State> m_state; ///< Null for no bytes at all.
};
