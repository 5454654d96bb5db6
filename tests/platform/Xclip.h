#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

/// Copies and pastes by a program that nobody here wrote.
namespace Xclip {

/// False if it did not work. A process stays behind in the background as the owner.
[[nodiscard]] inline bool copy(const QByteArray &data, const QString &target = {})
{
    QStringList arguments = {QStringLiteral("-selection"), QStringLiteral("clipboard")};
    if (!target.isEmpty())
        arguments << QStringLiteral("-t") << target;
    QProcess xclip;
    // The copy stays behind in the background, and would keep our pipes open.
    xclip.setStandardOutputFile(QProcess::nullDevice());
    xclip.setStandardErrorFile(QProcess::nullDevice());
    xclip.start(QStringLiteral("xclip"), arguments);
    xclip.write(data);
    xclip.closeWriteChannel();
    return xclip.waitForFinished();
}

/// Empty if there is no such target.
inline QByteArray paste(const QString &target,
                        const QString &selection = QStringLiteral("clipboard"))
{
    QProcess xclip;
    xclip.start(QStringLiteral("xclip"), {QStringLiteral("-o"), QStringLiteral("-selection"),
                                          selection, QStringLiteral("-t"), target});
    xclip.waitForFinished(20000);
    return xclip.exitCode() == 0 ? xclip.readAllStandardOutput() : QByteArray();
}

inline QStringList offeredTargets()
{
    return QString::fromUtf8(paste(QStringLiteral("TARGETS"))).split(u'\n', Qt::SkipEmptyParts);
}

} // namespace Xclip
