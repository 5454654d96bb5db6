#include "foundation/Utf8Text.h"

namespace {

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
                                                     : QString::fromUtf8(bytes).toUtf8());
    return text;
}
