#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// What becomes of the white space of a text.
enum class HtmlWhiteSpace : quint8
{
    Collapse,
    KeepLines, ///< Line ends stay, blanks are collapsed.
    Keep,
};

/// Puts the pieces of an HTML document together as lines of text.
class HtmlTextFlow
{
public:
    /// Appends UTF-8 in which characters may be written by name or number.
    void appendText(QByteArrayView html, HtmlWhiteSpace whiteSpace);

    /// Ends a line, even an empty one.
    void breakLine();

    /// What follows begins on a line of its own, if anything does.
    void endBlock();

    const QByteArray &text() const { return m_text; }

private:
    void appendSpecial(QByteArrayView &html, HtmlWhiteSpace whiteSpace);
    void appendCodePoint(char32_t codePoint, HtmlWhiteSpace whiteSpace);
    void appendBlank(char blank, HtmlWhiteSpace whiteSpace);
    void appendVisible(QByteArrayView utf8);
    bool isAtLineStart() const;

    QByteArray m_text;
    bool m_endsLine = false; ///< The last line has ended, though nothing has followed yet.
    bool m_hasBlank = false; ///< Collapsed white space, which disappears at the end of a line.
};
