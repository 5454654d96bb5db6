#include "foundation/Utf8Text.h"

#include "foundation/TextTools.h"

namespace {

/// As much of a long text stays in memory: more than a row shows, and enough to find most short
/// search texts.
constexpr qsizetype kStartSize = 1024;

/// The first bytes of a long text, cut between two characters.
QByteArray startOf(QByteArrayView utf8)
{
    qsizetype size = kStartSize;
    while (isUtf8Continuation(utf8[size]))
        --size;
    return utf8.first(size).toByteArray();
}

} // namespace

Utf8Text::Utf8Text(const QString &text) : Utf8Text(fromValid(text.toUtf8())) {}

Utf8Text Utf8Text::fromUtf8(QByteArray bytes)
{
    return fromValid(bytes.isValidUtf8() ? std::move(bytes) : decodedUtf8(bytes).toUtf8());
}

Utf8Text Utf8Text::elsewhere(QByteArrayView utf8, std::shared_ptr<const ByteSource> source)
{
    Q_ASSERT(utf8.size() > kLongText && utf8.isValidUtf8());
    Utf8Text text;
    text.m_start = startOf(utf8);
    text.m_long = LazyBytes::elsewhere(utf8.size(), std::move(source));
    return text;
}

Utf8Text Utf8Text::fromValid(QByteArray utf8)
{
    // Conversions reserve for the worst case, three bytes for each unit of UTF-16, and texts stay
    // in memory for as long as the history does.
    utf8.squeeze();
    Utf8Text text;
    if (utf8.size() > kLongText) {
        text.m_start = startOf(utf8);
        text.m_long = std::move(utf8);
    } else {
        text.m_start = std::move(utf8);
    }
    return text;
}

Utf8Text Utf8Text::trimmed() const
{
    const QByteArray whole = utf8();
    const QByteArrayView view = trimmedUtf8(whole);
    if (view.size() == whole.size())
        return *this;
    // Nothing but whole characters was taken away: what is left need not be checked again.
    return fromValid(view.toByteArray());
}

std::optional<QByteArray> Utf8Text::read() const
{
    return isLong() ? m_long.read() : m_start;
}

QString Utf8Text::toString() const
{
    return decodedUtf8(utf8());
}
