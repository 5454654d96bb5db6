#include "capture/HtmlSkeleton.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isNameStart(QChar character)
{
    return (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z');
}

/// Elements whose content is no text.
const QSet<QString> &rawElements()
{
    static const QSet<QString> names{u"script"_s, u"style"_s};
    return names;
}

/// Elements that show something that is no text.
const QSet<QString> &droppedElements()
{
    static const QSet<QString> names{u"img"_s,    u"link"_s,  u"meta"_s,  u"base"_s,
                                     u"object"_s, u"embed"_s, u"input"_s, u"svg"_s,
                                     u"option"_s, u"thead"_s, u"tbody"_s, u"tfoot"_s, u"col"_s,
                                     u"colgroup"_s};
    return names;
}

/// Elements whose text stands on lines of its own, but whose rendering costs far more than that, or
/// whose end tag may be left out. They become paragraphs, which end each other.
const QSet<QString> &lineElements()
{
    static const QSet<QString> names{u"p"_s,  u"ul"_s, u"ol"_s,    u"dl"_s, u"li"_s, u"dt"_s,
                                     u"dd"_s, u"tr"_s, u"table"_s, u"td"_s, u"th"_s, u"caption"_s};
    return names;
}

/// Elements that have no content.
const QSet<QString> &voidElements()
{
    static const QSet<QString> names{u"br"_s, u"hr"_s, u"wbr"_s};
    return names;
}

/// No element that matters has a longer name.
constexpr qsizetype kMaxNameLength = 20;

// What rendering takes, measured in characters of running text.
constexpr qsizetype kCostOfTag = 16;
constexpr qsizetype kCostOfStyle = 32;
constexpr qsizetype kCostOfLineFeed = 24; ///< Where white space is kept it makes a line.

/// How \a style has white space treated; empty if it does not say.
QStringView whiteSpaceOf(QStringView style)
{
    QStringView found;
    for (const QStringView declaration : style.tokenize(u';')) {
        const qsizetype colon = declaration.indexOf(u':');
        if (colon < 0
            || declaration.first(colon).trimmed().compare("white-space"_L1, Qt::CaseInsensitive) != 0)
            continue;
        const QStringView value = declaration.sliced(colon + 1).trimmed();
        const bool isWord = std::ranges::all_of(
            value, [](QChar character) { return isNameStart(character) || character == u'-'; });
        if (isWord)
            found = value;
    }
    return found;
}

/// A start or an end tag.
struct Tag
{
    QString name; ///< Lower case.
    bool isEnd = false;
    bool isWhole = false; ///< It has its closing bracket.
    bool isEmpty = false; ///< Start and end in one.
    QStringView style;
};

class SkeletonBuilder
{
public:
    SkeletonBuilder(QStringView html, qsizetype budget) : m_html(html), m_budget(budget) {}

    QString build();

private:
    bool isAtEnd() const { return m_position >= m_html.size(); }
    bool isAt(QStringView text) const { return m_html.sliced(m_position).startsWith(text); }
    void skipBehind(QStringView text);
    void skipBlanks();

    void readText();
    void readMarkup();
    Tag readTag();
    void readAttribute(Tag &tag);
    QStringView readAttributeValue();
    void skipContentOf(const QString &name);

    void add(const Tag &tag);
    void addStart(const Tag &tag);
    void addEnd(const Tag &tag);
    void addElement(const QString &name, const Tag &tag);

    QStringView m_html;
    qsizetype m_budget; ///< What may still be spent; it may be overdrawn by one piece.
    qsizetype m_position = 0;
    QString m_skeleton;
    QStringList m_open; ///< The elements that are open, the outermost first.
    QHash<QString, int> m_openCount; ///< How often each of them is.
    qsizetype m_flattened = 0; ///< Elements that are open but were too deep to be kept.
};

QString SkeletonBuilder::build()
{
    while (!isAtEnd() && m_budget > 0) {
        if (m_html[m_position] == u'<')
            readMarkup();
        else
            readText();
    }
    return m_skeleton;
}

void SkeletonBuilder::skipBehind(QStringView text)
{
    const qsizetype found = m_html.indexOf(text, m_position);
    m_position = found < 0 ? m_html.size() : found + text.size();
}

void SkeletonBuilder::skipBlanks()
{
    while (!isAtEnd() && m_html[m_position].isSpace())
        ++m_position;
}

void SkeletonBuilder::readText()
{
    const qsizetype found = m_html.indexOf(u'<', m_position);
    const qsizetype end = found < 0 ? m_html.size() : found;
    const QStringView text = m_html.sliced(m_position, std::min(end - m_position, m_budget));
    m_skeleton += text;
    m_budget -= text.size() + kCostOfLineFeed * text.count(u'\n');
    m_position = end;
}

void SkeletonBuilder::readMarkup()
{
    if (isAt(u"<!--")) {
        m_position += 4;
        skipBehind(u"-->");
        return;
    }
    const QChar next = m_position + 1 < m_html.size() ? m_html[m_position + 1] : QChar();
    if (next == u'!' || next == u'?') {
        skipBehind(u">");
    } else if (isNameStart(next) || next == u'/') {
        const Tag tag = readTag();
        add(tag);
        if (!tag.isEnd && rawElements().contains(tag.name))
            skipContentOf(tag.name);
    } else {
        m_skeleton += u"&lt;"_s;
        --m_budget;
        ++m_position;
    }
}

Tag SkeletonBuilder::readTag()
{
    Tag tag;
    ++m_position;
    tag.isEnd = m_html[m_position] == u'/';
    if (tag.isEnd)
        ++m_position;
    const qsizetype begin = m_position;
    while (!isAtEnd() && m_html[m_position].isLetterOrNumber())
        ++m_position;
    tag.name = m_html.sliced(begin, m_position - begin).toString().toLower();
    while (!isAtEnd() && m_html[m_position] != u'>')
        readAttribute(tag);
    tag.isWhole = !isAtEnd();
    tag.isEmpty = m_html[m_position - 1] == u'/';
    ++m_position;
    return tag;
}

void SkeletonBuilder::readAttribute(Tag &tag)
{
    const qsizetype begin = m_position;
    while (!isAtEnd() && m_html[m_position] != u'>' && m_html[m_position] != u'='
           && !m_html[m_position].isSpace())
        ++m_position;
    const QStringView name = m_html.sliced(begin, m_position - begin);
    skipBlanks();
    if (isAtEnd() || m_html[m_position] != u'=')
        return;
    ++m_position;
    skipBlanks();
    const QStringView value = readAttributeValue();
    if (name.compare("style"_L1, Qt::CaseInsensitive) == 0)
        tag.style = value;
}

QStringView SkeletonBuilder::readAttributeValue()
{
    if (isAtEnd())
        return {};
    const QChar quote = m_html[m_position];
    if (quote == u'"' || quote == u'\'') {
        const qsizetype begin = ++m_position;
        skipBehind(QStringView(&quote, 1));
        return m_html.sliced(begin, std::max<qsizetype>(m_position - 1 - begin, 0));
    }
    const qsizetype begin = m_position;
    while (!isAtEnd() && m_html[m_position] != u'>' && !m_html[m_position].isSpace())
        ++m_position;
    return m_html.sliced(begin, m_position - begin);
}

void SkeletonBuilder::skipContentOf(const QString &name)
{
    const QString end = u"</"_s + name;
    const qsizetype found = m_html.indexOf(end, m_position, Qt::CaseInsensitive);
    m_position = found < 0 ? m_html.size() : found;
}

void SkeletonBuilder::add(const Tag &tag)
{
    if (rawElements().contains(tag.name) || droppedElements().contains(tag.name))
        return;
    if (!tag.isWhole || tag.name.isEmpty() || tag.name.size() > kMaxNameLength)
        return;
    if (lineElements().contains(tag.name))
        addElement(u"p"_s, tag);
    else if (tag.isEmpty || voidElements().contains(tag.name))
        addElement(tag.name, tag);
    else if (tag.isEnd)
        addEnd(tag);
    else
        addStart(tag);
}

void SkeletonBuilder::addStart(const Tag &tag)
{
    if (m_open.size() >= kMaxHtmlDepth) {
        ++m_flattened;
        return;
    }
    m_open.append(tag.name);
    ++m_openCount[tag.name];
    addElement(tag.name, tag);
}

void SkeletonBuilder::addEnd(const Tag &tag)
{
    if (m_flattened > 0) {
        --m_flattened;
        return;
    }
    if (m_openCount.value(tag.name) == 0)
        return;
    // Elements inside that were left open end as well.
    QString last;
    do {
        last = m_open.takeLast();
        --m_openCount[last];
    } while (last != tag.name);
    addElement(tag.name, tag);
}

void SkeletonBuilder::addElement(const QString &name, const Tag &tag)
{
    m_budget -= kCostOfTag;
    m_skeleton += tag.isEnd ? u"</"_s : u"<"_s;
    m_skeleton += name;
    const QStringView whiteSpace = whiteSpaceOf(tag.style);
    if (!whiteSpace.isEmpty()) {
        m_skeleton += u" style=\"white-space:"_s + whiteSpace.toString() + u'"';
        m_budget -= kCostOfStyle;
    }
    m_skeleton += tag.isEmpty ? u"/>"_s : u">"_s;
}

} // namespace

QString htmlSkeleton(QStringView html, qsizetype budget)
{
    return SkeletonBuilder(html, budget).build();
}
