#include "foundation/FilePath.h"

#include "foundation/TextTools.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr char16_t kFirstByte = 0xEF80;
constexpr char16_t kLastByte = 0xEFFF;

bool isByte(QChar character)
{
    return character >= kFirstByte && character <= kLastByte;
}

qsizetype sequenceLength(uchar lead)
{
    if (lead < 0x80)
        return 1;
    if (lead < 0xE0)
        return 2;
    return lead < 0xF0 ? 3 : 4;
}

/// The characters that \a utf8 holds, if it is the bytes of just one that stands for itself.
QString ordinaryCharacter(const QByteArray &utf8)
{
    if (!utf8.isValidUtf8())
        return {};
    const QString character = decodedUtf8(utf8);
    return isByte(character.front()) ? QString() : character;
}

} // namespace

QString FilePath::fromBytes(const QByteArray &path)
{
    if (path.isValidUtf8()) {
        const QString text = decodedUtf8(path);
        if (std::ranges::none_of(text, isByte))
            return text;
    }
    QString text;
    text.reserve(path.size());
    for (qsizetype index = 0; index < path.size();) {
        const qsizetype length = sequenceLength(uchar(path[index]));
        const QString character = ordinaryCharacter(path.mid(index, length));
        if (character.isEmpty()) {
            text += QChar(char16_t(0xEF00 | uchar(path[index])));
            ++index;
        } else {
            text += character;
            index += length;
        }
    }
    return text;
}

QByteArray FilePath::toBytes(const QString &path)
{
    QByteArray bytes;
    for (auto start = path.begin(); start != path.end();) {
        const auto end = std::find_if(start, path.end(), isByte);
        bytes += QStringView(start, end).toUtf8();
        start = end;
        for (; start != path.end() && isByte(*start); ++start)
            bytes += char(start->unicode() & 0xFF);
    }
    return bytes;
}

QString FilePath::readable(QString path)
{
    std::ranges::replace_if(path, isByte, QChar(QChar::ReplacementCharacter));
    return path;
}

bool FilePath::isLocal(const QUrl &url)
{
    return url.isLocalFile() && (url.host().isEmpty() || url.host() == "localhost"_L1);
}

QByteArray FilePath::bytesOf(const QUrl &url)
{
    return QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
}

QString FilePath::of(const QUrl &url)
{
    return fromBytes(bytesOf(url));
}

QUrl FilePath::toUrl(const QByteArray &path)
{
    return QUrl::fromEncoded("file://" + path.toPercentEncoding("/"), QUrl::StrictMode);
}

QUrl FilePath::toUrl(const QString &path)
{
    return toUrl(toBytes(path));
}
