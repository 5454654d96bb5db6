#include "platform/linux/UriList.h"

#include <QStringEncoder>

namespace {

/// \a line with its bytes outside ASCII encoded, which some programs leave as they are in the name
/// of a file. They need be no UTF-8, and would be lost.
QByteArray asciiOf(const QByteArray &line)
{
    QByteArray ascii;
    for (const char byte : line) {
        if (uchar(byte) < 0x80)
            ascii += byte;
        else
            ascii += '%' + QByteArray::number(uchar(byte), 16).toUpper();
    }
    return ascii;
}

} // namespace

std::optional<QList<QUrl>> UriList::parse(const QByteArray &list)
{
    QList<QUrl> urls;
    bool isFirstLine = true;
    for (const QByteArray &rawLine : list.split('\n')) {
        // Some programs count the zero that ends their string.
        const QByteArray line = rawLine.trimmed().replace('\0', QByteArrayView());
        const bool isVerb = isFirstLine && (line == "copy" || line == "cut");
        isFirstLine = false;
        if (isVerb || line.isEmpty() || line.startsWith('#'))
            continue;
        const QUrl url = QUrl::fromEncoded(asciiOf(line));
        if (!url.isValid() || url.isRelative())
            return std::nullopt;
        urls.append(url);
    }
    if (urls.isEmpty())
        return std::nullopt;
    return urls;
}

QByteArray UriList::fromUrls(const QList<QByteArray> &encodedUrls)
{
    QByteArray list;
    for (const QByteArray &url : encodedUrls)
        list += url + "\r\n";
    return list;
}

QByteArray UriList::gnomeCopiedFiles(const QList<QByteArray> &encodedUrls)
{
    // The file managers read a line feed at the end as one more file without a name.
    return "copy\n" + encodedUrls.join('\n');
}

QByteArray UriList::mozillaUrl(const QByteArray &encodedUrl)
{
    QStringEncoder encode(QStringConverter::Utf16LE);
    return encode(QString::fromUtf8(encodedUrl + '\n' + encodedUrl));
}
