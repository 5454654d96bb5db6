#include "capture/HtmlTextFlow.h"

#include "capture/HtmlCharacters.h"

#include <QChar>

#include <algorithm>
#include <array>

namespace {

constexpr QByteArrayView kNoBreakSpace("\xc2\xa0");
constexpr QByteArrayView kObjectReplacement("\xef\xbf\xbc");

bool isBlank(char32_t character)
{
    return character == ' ' || character == '\n' || character == '\t' || character == '\r' ||
           character == '\f';
}

/// The bytes at which text cannot be taken over as it is, or might not be.
constexpr std::array<bool, 256> kIsSpecial = [] {
    std::array<bool, 256> table{};
    for (const uchar byte : {' ', '\n', '\t', '\r', '\f', '&', '\0'})
        table[byte] = true;
    table[uchar(kNoBreakSpace.front())] = true;
    table[uchar(kObjectReplacement.front())] = true;
    return table;
}();

bool isSpecial(char byte)
{
    return kIsSpecial[uchar(byte)];
}

QByteArray utf8Of(char32_t codePoint)
{
    return QString::fromUcs4(&codePoint, 1).toUtf8();
}

} // namespace

void HtmlTextFlow::appendText(QByteArrayView html, HtmlWhiteSpace whiteSpace)
{
    while (!html.isEmpty()) {
        const auto end = std::find_if(html.begin(), html.end(), isSpecial) - html.begin();
        appendVisible(html.first(end));
        html = html.sliced(end);
        if (!html.isEmpty())
            appendSpecial(html, whiteSpace);
    }
}

void HtmlTextFlow::breakLine()
{
    if (m_endsLine)
        m_text += '\n';
    m_text += '\n';
    m_endsLine = false;
    m_hasBlank = false;
}

void HtmlTextFlow::endBlock()
{
    m_hasBlank = false;
    m_endsLine = !isAtLineStart();
}

/// Takes the first character of \a html.
void HtmlTextFlow::appendSpecial(QByteArrayView &html, HtmlWhiteSpace whiteSpace)
{
    qsizetype length = 1;
    const char first = html.front();
    if (first == '&') {
        if (const auto character = readHtmlCharacter(html)) {
            appendCodePoint(character->codePoint, whiteSpace);
            length = character->length;
        } else {
            appendVisible(html.first(1));
        }
    } else if (html.startsWith(kNoBreakSpace)) {
        appendCodePoint(QChar::Nbsp, whiteSpace);
        length = kNoBreakSpace.size();
    } else if (html.startsWith(kObjectReplacement)) {
        length = kObjectReplacement.size();
    } else if (html.startsWith("\r\n")) {
        appendBlank('\n', whiteSpace);
        length = 2;
    } else if (isBlank(uchar(first))) {
        appendBlank(first, whiteSpace);
    } else if (first != '\0') {
        appendVisible(html.first(1));
    }
    html = html.sliced(length);
}

void HtmlTextFlow::appendCodePoint(char32_t codePoint, HtmlWhiteSpace whiteSpace)
{
    if (isBlank(codePoint))
        appendBlank(char(codePoint), whiteSpace);
    else if (codePoint == QChar::Nbsp)
        appendVisible(" ");
    // Stands where a picture or another object was.
    else if (codePoint != QChar::ObjectReplacementCharacter)
        appendVisible(utf8Of(codePoint));
}

void HtmlTextFlow::appendBlank(char blank, HtmlWhiteSpace whiteSpace)
{
    const bool isLineEnd = blank == '\n' || blank == '\r';
    if (isLineEnd && whiteSpace != HtmlWhiteSpace::Collapse)
        breakLine();
    else if (whiteSpace == HtmlWhiteSpace::Keep)
        appendVisible(QByteArrayView(&blank, 1));
    else
        m_hasBlank = !m_endsLine && !isAtLineStart();
}

void HtmlTextFlow::appendVisible(QByteArrayView utf8)
{
    if (utf8.isEmpty())
        return;
    if (m_endsLine)
        m_text += '\n';
    else if (m_hasBlank)
        m_text += ' ';
    m_endsLine = false;
    m_hasBlank = false;
    m_text += utf8;
}

bool HtmlTextFlow::isAtLineStart() const
{
    return m_text.isEmpty() || m_text.endsWith('\n');
}
