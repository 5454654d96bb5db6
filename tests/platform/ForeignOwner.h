#pragma once

#include <QProcess>
#include <QStringList>
#include <QTest>

/// Another program that owns the clipboard and tells what it is asked: hostile_owner.py.
class ForeignOwner
{
public:
    explicit ForeignOwner(const QString &mode, const QStringList &offers = {})
    {
        QStringList arguments = {QFINDTESTDATA("../desktop/hostile_owner.py"), mode,
                                 QStringLiteral("--retake")};
        for (const QString &offer : offers)
            arguments << QStringLiteral("--offer") << offer;
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral("/usr/bin/python3"), arguments);
    }
    ~ForeignOwner()
    {
        m_process.closeWriteChannel();
        if (!m_process.waitForFinished(1000)) {
            m_process.kill();
            m_process.waitForFinished();
        }
    }

    /// What it has told so far.
    QStringList lines()
    {
        m_output += m_process.readAllStandardOutput();
        return QString::fromUtf8(m_output).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    bool hasSaid(const QString &line) { return lines().contains(line); }
    QStringList askedTargets()
    {
        QStringList targets;
        for (const QString &line : lines()) {
            if (line.startsWith(QLatin1String("asked ")))
                targets << line.mid(6);
        }
        return targets;
    }
    void retake() { m_process.write("\n"); }

private:
    QProcess m_process;
    QByteArray m_output;
};
