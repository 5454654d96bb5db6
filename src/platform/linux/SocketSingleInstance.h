#pragma once

#include "platform/SingleInstance.h"

#include <QObject>

#include <memory>

class QSocketNotifier;

/// Finds the running program by a socket whose name only one process can hold.
///
/// The name has no file: the kernel gives it to one of several that ask at the same moment, and
/// takes it back however its owner ends. It asks no other program, so that a session bus that is
/// missing, or hangs, changes nothing.
class SocketSingleInstance : public SingleInstance
{
public:
    /// There is one process for each \a directory, which need not exist, and user.
    explicit SocketSingleInstance(const QString &directory);
    ~SocketSingleInstance() override;

    Role claim() override;
    [[nodiscard]] Answer activateFirst(const QString &activationToken) override;
    void listen() override;

private:
    class Socket;
    class Visitor;

    [[nodiscard]] int takeName();
    void letVisitorsIn();
    void receiveVisitor();

    QByteArray m_name;
    std::unique_ptr<Socket> m_server; ///< Set in the first process.
    std::unique_ptr<Socket> m_first;  ///< To the first process; set in a second one.
    std::unique_ptr<QSocketNotifier> m_notifier;
    /// Parent of the second processes that are being served; it ends before what they use.
    QObject m_visitors;
};
