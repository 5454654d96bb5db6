#include "capture/RtfText.h"

namespace {

/// So much is decoded at a time.
constexpr qsizetype kPieceSize = 64 * 1024;

bool isAscii(char byte)
{
    return uchar(byte) < 0x80;
}

} // namespace

void RtfText::append(char byte, int codePage)
{
    const bool isLong = m_pendingBytes.size() > kPieceSize && isCharacterEnd();
    if (isLong || codePage != m_pendingCodePage)
        decodePending();
    m_pendingCodePage = codePage;
    m_pendingBytes.append(byte);
}

void RtfText::append(char16_t character)
{
    decodePending();
    m_text.append(QChar(character));
}

void RtfText::endRow()
{
    decodePending();
    if (m_text.endsWith(u'\t'))
        m_text.chop(1);
    append(u'\n');
}

QByteArray RtfText::finish()
{
    decodePending();
    settle(m_text.size());
    return m_settled;
}

void RtfText::decodePending()
{
    if (!m_pendingBytes.isEmpty()) {
        m_text += m_codePages.decode(m_pendingBytes, m_pendingCodePage);
        m_pendingBytes.truncate(0);
    }
    // The end may still change, or be half of a pair.
    if (m_text.size() > kPieceSize)
        settle(m_text.size() - 2);
}

/// Whether no character goes on after the pending bytes: of those that are made of several none
/// begins in ASCII.
bool RtfText::isCharacterEnd() const
{
    return isAscii(m_pendingBytes.back()) && isAscii(m_pendingBytes[m_pendingBytes.size() - 2]);
}

void RtfText::settle(qsizetype size)
{
    if (size > 0 && size < m_text.size() && m_text[size - 1].isHighSurrogate())
        --size;
    QString settled = m_text.first(size);
    m_settled += settled.replace(QChar(QChar::Nbsp), u' ').toUtf8();
    m_text.remove(0, size);
}
