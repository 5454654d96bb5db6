#pragma once

#include <QObject>

#include <functional>

class QSocketNotifier;

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, so that a session that ends
/// does not cut the program off in the middle. Once the object has ended, they are ignored until
/// the process ends. One object in the process.
class TerminationSignals : public QObject
{
public:
    explicit TerminationSignals(std::function<void()> onTerminate);
    ~TerminationSignals() override;

private:
    void handle();

    std::function<void()> m_onTerminate;
    QSocketNotifier *m_notifier = nullptr; ///< Belongs to this object.
};
