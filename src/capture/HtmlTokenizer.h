#pragma once

#include <QByteArrayView>

#include <string>

/// A start or an end tag, with those of its attributes that decide how a text reads. The views are
/// into the document.
struct HtmlTag
{
    /// No name that matters is longer; of longer ones this is the beginning.
    static constexpr qsizetype kMaxNameLength = 15;

    std::string name; ///< In lower case.
    bool isEnd = false;
    bool isEmpty = false;  ///< Start and end in one.
    bool isHidden = false; ///< It has the attribute of that name.
    QByteArrayView style;
    QByteArrayView charset; ///< Of a meta element.
    QByteArrayView content; ///< Of a meta element.
};

/// Cuts an HTML document into text and tags, as leniently as a browser. Comments and declarations
/// are passed over.
///
/// The document is bytes in which ASCII characters are themselves. It is read once, from the start
/// to the end, whatever is in it, and must outlive the tokenizer.
class HtmlTokenizer
{
public:
    enum class Token
    {
        Text,
        Tag,
        End
    };

    explicit HtmlTokenizer(QByteArrayView html)
        : m_html(html)
    {
    }

    Token next();

    /// The piece of text just read, in which characters may be written by name or number.
    QByteArrayView text() const { return m_text; }

    /// The tag just read.
    const HtmlTag &tag() const { return m_tag; }

    /// Goes on where the element ends that the tag just read has started, whatever is inside.
    void skipContent();

private:
    bool isAtEnd() const { return m_position >= m_html.size(); }
    char peek() const { return m_html[m_position]; }
    void skipBehind(QByteArrayView text);
    void skipBlanks();

    void readText();
    bool readMarkup();
    bool readTag();
    void readName();
    void readAttribute();
    QByteArrayView readAttributeValue();
    void keepAttribute(QByteArrayView name, QByteArrayView value);

    QByteArrayView m_html;
    qsizetype m_position = 0;
    QByteArrayView m_text;
    HtmlTag m_tag;
};
