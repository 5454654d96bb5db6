#include "capture/HtmlTokenizer.h"

#include "capture/AsciiBytes.h"

#include <algorithm>

using namespace AsciiBytes;

namespace {

bool isBlank(char byte)
{
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

char lowered(char byte)
{
    return byte >= 'A' && byte <= 'Z' ? char(byte | 0x20) : byte;
}

bool isSameWord(QByteArrayView word, QByteArrayView loweredWord)
{
    return std::ranges::equal(word, loweredWord, {}, lowered);
}

} // namespace

HtmlTokenizer::Token HtmlTokenizer::next()
{
    while (!isAtEnd()) {
        if (peek() != '<') {
            readText();
            return Token::Text;
        }
        const char following = m_position + 1 < m_html.size() ? m_html[m_position + 1] : '\0';
        if (!AsciiBytes::startsMarkup(following)) {
            m_text = m_html.sliced(m_position++, 1);
            return Token::Text;
        }
        if (readMarkup())
            return Token::Tag;
    }
    return Token::End;
}

void HtmlTokenizer::skipContent()
{
    while (!isAtEnd()) {
        skipBehind("</");
        const QByteArrayView rest = m_html.sliced(m_position);
        if (rest.size() >= qsizetype(m_tag.name.size()) &&
            isSameWord(rest.first(qsizetype(m_tag.name.size())), m_tag.name)) {
            m_position -= 2;
            return;
        }
    }
}

void HtmlTokenizer::skipBehind(QByteArrayView text)
{
    const qsizetype found = m_html.indexOf(text, m_position);
    m_position = found < 0 ? m_html.size() : found + text.size();
}

void HtmlTokenizer::skipBlanks()
{
    while (!isAtEnd() && isBlank(peek()))
        ++m_position;
}

void HtmlTokenizer::readText()
{
    const qsizetype found = m_html.indexOf('<', m_position);
    const qsizetype end = found < 0 ? m_html.size() : found;
    m_text = m_html.sliced(m_position, end - m_position);
    m_position = end;
}

/// False if it was none that anybody is to see.
bool HtmlTokenizer::readMarkup()
{
    if (m_html.sliced(m_position).startsWith("<!--")) {
        // The end of the comment may share its dashes with the start.
        m_position += 2;
        skipBehind("-->");
        return false;
    }
    ++m_position;
    m_tag = {};
    m_tag.isEnd = peek() == '/';
    if (m_tag.isEnd)
        ++m_position;
    if (!isAtEnd() && isLetter(peek()))
        return readTag();
    skipBehind(">");
    return false;
}

/// False if the document ends inside the tag.
bool HtmlTokenizer::readTag()
{
    readName();
    while (!isAtEnd() && peek() != '>')
        readAttribute();
    if (isAtEnd())
        return false;
    ++m_position;
    return true;
}

void HtmlTokenizer::readName()
{
    for (; !isAtEnd() && !isBlank(peek()) && peek() != '/' && peek() != '>'; ++m_position) {
        if (qsizetype(m_tag.name.size()) < HtmlTag::kMaxNameLength)
            m_tag.name += lowered(peek());
    }
}

void HtmlTokenizer::readAttribute()
{
    if (isBlank(peek())) {
        skipBlanks();
        return;
    }
    m_tag.isEmpty = peek() == '/';
    const qsizetype begin = m_position++;
    if (m_tag.isEmpty)
        return;
    while (!isAtEnd() && !isBlank(peek()) && peek() != '/' && peek() != '>' && peek() != '=')
        ++m_position;
    const QByteArrayView name = m_html.sliced(begin, m_position - begin);
    skipBlanks();
    QByteArrayView value;
    if (!isAtEnd() && peek() == '=') {
        ++m_position;
        skipBlanks();
        value = readAttributeValue();
    }
    keepAttribute(name, value);
}

QByteArrayView HtmlTokenizer::readAttributeValue()
{
    if (isAtEnd())
        return {};
    const char quote = peek();
    if (quote == '"' || quote == '\'') {
        const qsizetype begin = ++m_position;
        skipBehind(QByteArrayView(&quote, 1));
        return m_html.sliced(begin, std::max<qsizetype>(m_position - 1 - begin, 0));
    }
    const qsizetype begin = m_position;
    while (!isAtEnd() && peek() != '>' && !isBlank(peek()))
        ++m_position;
    return m_html.sliced(begin, m_position - begin);
}

void HtmlTokenizer::keepAttribute(QByteArrayView name, QByteArrayView value)
{
    // Of attributes with the same name the first counts.
    if (isSameWord(name, "hidden"))
        m_tag.isHidden = true;
    else if (isSameWord(name, "style") && m_tag.style.isNull())
        m_tag.style = value;
    else if (isSameWord(name, "charset") && m_tag.charset.isNull())
        m_tag.charset = value;
    else if (isSameWord(name, "content") && m_tag.content.isNull())
        m_tag.content = value;
}
