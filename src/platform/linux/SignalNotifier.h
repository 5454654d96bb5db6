#pragma once

#include <QObject>

#include <functional>
#include <vector>

class QSocketNotifier;

/// Turns signals of the process into calls on the main thread; several that come together may be one
/// call. For each signal there is one object at most.
class SignalNotifier : public QObject
{
public:
    /// What a signal does when the object has ended.
    enum class Afterwards { Nothing, AsUsual };

    SignalNotifier(std::vector<int> numbers, Afterwards afterwards, std::function<void()> onSignal);
    ~SignalNotifier() override;

    /// Has the signals do what they do to a program that knows nothing of them, or calls again.
    void setIgnorant(bool isIgnorant);

private:
    void setHandler(void (*handler)(int));
    void handle();

    std::vector<int> m_signals;
    Afterwards m_afterwards;
    std::function<void()> m_onSignal;
    int m_descriptor;
    QSocketNotifier *m_notifier = nullptr; ///< Belongs to this object.
};
