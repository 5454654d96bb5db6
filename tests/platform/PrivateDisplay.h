#pragma once

#include "tests/platform/EndWithParent.h"

#include <QByteArray>
#include <QProcess>
#include <QString>

/// An X server without a screen, for one test program alone; the environment names it while the
/// object lives. Tests that fight for the clipboard must not meet on one display.
class PrivateDisplay
{
public:
    PrivateDisplay()
    {
        m_server.setStandardErrorFile(QProcess::nullDevice());
        m_server.setChildProcessModifier(endWithParent);
        m_server.start(QStringLiteral("Xvfb"),
                       {QStringLiteral("-displayfd"), QStringLiteral("1"),
                        QStringLiteral("-screen"), QStringLiteral("0"),
                        QStringLiteral("640x480x24"), QStringLiteral("-nolisten"),
                        QStringLiteral("tcp"), QStringLiteral("-noreset")});
        QByteArray number;
        while (!number.endsWith('\n') && m_server.waitForReadyRead(10000))
            number += m_server.readAllStandardOutput();
        m_isRunning = number.endsWith('\n');
        qputenv("DISPLAY", ":" + number.trimmed());
    }
    ~PrivateDisplay()
    {
        m_server.terminate();
        m_server.waitForFinished();
    }

    bool isRunning() const { return m_isRunning; }

private:
    QProcess m_server;
    bool m_isRunning = false;
};
