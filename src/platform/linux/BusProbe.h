#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

/// In place of the address of a bus. No transport has this name, so that connecting fails at once.
inline constexpr auto kNoBusAddress = "disabled:";

/// A connection of its own to a bus, to find out whether that is well before somebody relies on it.
///
/// All functions wait as long as the library does, which may be half a minute; the caller bounds
/// them. One thread at a time.
class BusProbe
{
public:
    struct Method
    {
        const char *service = nullptr;
        const char *path = nullptr;
        const char *interface = nullptr;
        const char *name = nullptr;
    };

    /// Connects and greets.
    explicit BusProbe(const QByteArray &address);
    ~BusProbe();
    BusProbe(const BusProbe &) = delete;
    BusProbe &operator=(const BusProbe &) = delete;

    /// Whether the greeting was answered. Everything below needs that.
    bool isWell() const { return m_isWell; }

    /// What is wrong with the bus; null if it is well.
    QString problem() const;

    /// Whether some program provides \a service by now.
    bool hasService(const char *service);

    /// False if the method does not answer, or with an error.
    bool answers(const Method &method);

    /// The text with which the method answers; empty if it does not.
    QByteArray text(const Method &method);

private:
    struct Impl;

    std::unique_ptr<Impl> m_impl;
    bool m_isWell = false;
};
