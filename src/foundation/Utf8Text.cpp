#include "foundation/Utf8Text.h"

Utf8Text Utf8Text::fromUtf8(QByteArray bytes)
{
    Utf8Text text;
    text.m_utf8 = bytes.isValidUtf8() ? std::move(bytes) : QString::fromUtf8(bytes).toUtf8();
    return text;
}
