#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

/// Paths of files as texts that lose nothing.
///
/// The system knows a file by bytes, which need not be UTF-8. A path is a QString all the same, so
/// that it can be compared, stored and sent like any text: bytes that are no UTF-8 are held as the
/// characters U+EF80 to U+EFFF, one for each byte from 0x80 on. A name with one of these private
/// characters in it is spelled in the same way, so that each sequence of bytes has one text of its
/// own.
namespace FilePath {

QString fromBytes(const QByteArray &path);
QByteArray toBytes(const QString &path);

/// \a path for people, with U+FFFD for what cannot be read.
QString readable(QString path);

/// Whether \a url names a file of this machine.
bool isLocal(const QUrl &url);

/// The path in \a url, which isLocal().
QByteArray bytesOf(const QUrl &url);
QString of(const QUrl &url);

QUrl toUrl(const QByteArray &path);
QUrl toUrl(const QString &path);

} // namespace FilePath
