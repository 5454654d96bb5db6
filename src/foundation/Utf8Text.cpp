#include "foundation/Utf8Text.h"

#include "foundation/TextTools.h"

#include <QStringDecoder>

namespace {

/// A byte order mark in front is a character of the text like any other; QString::fromUtf8() would
/// drop it.
QString decoded(const QByteArray &utf8)
{
    if (!utf8.startsWith("\xEF\xBB\xBF"))
        return QString::fromUtf8(utf8);
    using Flag = QStringDecoder::Flag;
    QStringDecoder decode(QStringDecoder::Utf8, Flag::ConvertInitialBom | Flag::Stateless);
    return decode(utf8);
}

/// Conversions reserve for the worst case, three bytes for each unit of UTF-16, and texts stay in
/// memory for as long as the history does.
QByteArray withoutReserve(QByteArray bytes)
{
    bytes.squeeze();
    return bytes;
}

} // namespace

Utf8Text::Utf8Text(const QString &text) : m_utf8(withoutReserve(text.toUtf8())) {}

Utf8Text Utf8Text::fromUtf8(QByteArray bytes)
{
    Utf8Text text;
    text.m_utf8 = withoutReserve(bytes.isValidUtf8() ? std::move(bytes)
                                                     : decoded(bytes).toUtf8());
    return text;
}

Utf8Text Utf8Text::trimmed() const
{
    const QByteArrayView view = trimmedUtf8(m_utf8);
    if (view.size() == m_utf8.size())
        return *this;
    // Nothing but whole characters was taken away: what is left need not be checked again.
    Utf8Text text;
    text.m_utf8 = view.toByteArray();
    return text;
}

QString Utf8Text::toString() const
{
    return decoded(m_utf8);
}
