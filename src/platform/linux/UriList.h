#pragma once

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <optional>

/// The forms in which file managers put files on a clipboard, and browsers an address.
namespace UriList {

/// Reads text/uri-list, or x-special/gnome-copied-files with its leading "copy" or "cut". Absent if
/// there is no URL, or a line that is none.
std::optional<QList<QUrl>> parse(const QByteArray &list);

/// \a encodedUrls as text/uri-list.
QByteArray fromUrls(const QList<QByteArray> &encodedUrls);

/// \a encodedUrls as x-special/gnome-copied-files, to be copied and not moved.
QByteArray gnomeCopiedFiles(const QList<QByteArray> &encodedUrls);

/// \a encodedUrl as text/x-moz-url: the address and, in a second line, its title, which is the
/// address as well. UTF-16, the lower byte first.
QByteArray mozillaUrl(const QByteArray &encodedUrl);

} // namespace UriList
