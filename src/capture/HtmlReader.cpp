#include "capture/HtmlReader.h"

#include "capture/HtmlEncoding.h"
#include "capture/HtmlTextFlow.h"
#include "capture/HtmlTokenizer.h"

#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

/// Elements nested deeper count as nothing but their text. Browsers stop long before.
constexpr std::size_t kMaxDepth = 10'000;

enum class Kind : quint8
{
    Inline,
    Block, ///< On lines of its own.
    Void,  ///< Without content.
    VoidBlock,
    LineBreak,
    Raw, ///< Its content is no text to be read, and no markup.
    Hidden,
    Preformatted,
};

struct Group
{
    Kind kind;
    std::vector<std::string_view> names;
};

using KindTable = std::unordered_map<std::string_view, Kind>;

KindTable elementKinds()
{
    const Group groups[]{
        {Kind::Block,
         {"address",  "article", "aside",  "blockquote", "body",    "caption", "center",
          "dd",       "details", "dialog", "dir",        "div",     "dl",      "dt",
          "fieldset", "figure",  "footer", "figcaption", "form",    "h1",      "h2",
          "h3",       "h4",      "h5",     "h6",         "head",    "header",  "hgroup",
          "html",     "legend",  "li",     "main",       "menu",    "nav",     "ol",
          "optgroup", "option",  "p",      "section",    "summary", "table",   "tbody",
          "td",       "tfoot",   "th",     "thead",      "tr",      "ul"}},
        {Kind::Void,
         {"area", "base", "basefont", "bgsound", "col", "embed", "frame", "img", "input", "keygen",
          "link", "meta", "param", "source", "track", "wbr"}},
        {Kind::VoidBlock, {"hr"}},
        {Kind::LineBreak, {"br"}},
        {Kind::Raw, {"iframe", "noembed", "noframes", "script", "style", "template", "title"}},
        {Kind::Hidden, {"audio", "canvas", "datalist", "rp", "video"}},
        {Kind::Preformatted, {"listing", "pre", "textarea", "xmp"}},
    };
    KindTable kinds;
    for (const Group &group : groups) {
        for (const std::string_view name : group.names)
            kinds.emplace(name, group.kind);
    }
    return kinds;
}

Kind kindOf(const std::string &name)
{
    static const KindTable kinds = elementKinds();
    const auto found = kinds.find(name);
    return found == kinds.end() ? Kind::Inline : found->second;
}

bool isCell(std::string_view name)
{
    return name == "td" || name == "th" || name == "caption";
}

bool isRowGroup(std::string_view name)
{
    return name == "tbody" || name == "thead" || name == "tfoot";
}

/// Whether the end of \a open, the innermost block, may be left out where \a next begins.
bool isEndedBy(std::string_view next, std::string_view open)
{
    if (open == "p")
        return true;
    if (open == "li")
        return next == "li";
    if (open == "dt" || open == "dd")
        return next == "dt" || next == "dd";
    if (isCell(open))
        return isCell(next) || next == "tr" || isRowGroup(next);
    if (open == "tr")
        return next == "tr" || isRowGroup(next);
    return isRowGroup(open) && isRowGroup(next);
}

struct Style
{
    std::optional<HtmlWhiteSpace> whiteSpace;
    bool isHidden = false;
};

bool isWord(QByteArrayView text, QByteArrayView word)
{
    return text.compare(word, Qt::CaseInsensitive) == 0;
}

void applyDeclaration(QByteArrayView name, QByteArrayView value, Style &style)
{
    if (isWord(name, "display")) {
        style.isHidden = isWord(value, "none");
    } else if (isWord(name, "white-space")) {
        if (isWord(value, "pre") || isWord(value, "pre-wrap") || isWord(value, "break-spaces"))
            style.whiteSpace = HtmlWhiteSpace::Keep;
        else if (isWord(value, "pre-line"))
            style.whiteSpace = HtmlWhiteSpace::KeepLines;
        else if (isWord(value, "normal") || isWord(value, "nowrap"))
            style.whiteSpace = HtmlWhiteSpace::Collapse;
    }
}

Style readStyle(QByteArrayView text)
{
    Style style;
    while (!text.isEmpty()) {
        const qsizetype semicolon = text.indexOf(';');
        const QByteArrayView declaration = semicolon < 0 ? text : text.first(semicolon);
        text = semicolon < 0 ? QByteArrayView() : text.sliced(semicolon + 1);
        const qsizetype colon = declaration.indexOf(':');
        if (colon < 0)
            continue;
        QByteArrayView value = declaration.sliced(colon + 1);
        if (const qsizetype mark = value.indexOf('!'); mark >= 0)
            value = value.first(mark);
        applyDeclaration(declaration.first(colon).trimmed(), value.trimmed(), style);
    }
    return style;
}

/// Follows the tags of a document and lets the text flow between them.
class HtmlReader
{
public:
    explicit HtmlReader(const QByteArray &utf8)
        : m_tokenizer(utf8)
    {
    }

    QByteArray read();

private:
    struct Element
    {
        std::string name;
        bool isBlock = false;
        bool isHidden = false;
        HtmlWhiteSpace whiteSpace = HtmlWhiteSpace::Collapse;
    };

    bool isHidden() const { return !m_open.empty() && m_open.back().isHidden; }
    HtmlWhiteSpace whiteSpace() const
    {
        return m_open.empty() ? HtmlWhiteSpace::Collapse : m_open.back().whiteSpace;
    }

    void appendText(QByteArrayView text);
    void obey(const HtmlTag &tag);
    void begin(const HtmlTag &tag, Kind kind);
    void end(const std::string &name);
    void endImplied(const std::string &name);
    void push(Element element);
    void pop();
    void separateLines();

    HtmlTokenizer m_tokenizer;
    HtmlTextFlow m_flow;
    std::vector<Element> m_open;           ///< The elements that are open, the outermost first.
    std::vector<std::size_t> m_openBlocks; ///< The places of the blocks among them.
    std::unordered_map<std::string, int> m_openCount; ///< By name.
    qsizetype m_unkeptDepth = 0; ///< Elements that are open beyond the kept ones.
    bool m_dropsLineEnd = false; ///< One at the beginning of preformatted text is no text.
};

QByteArray HtmlReader::read()
{
    for (auto token = m_tokenizer.next(); token != HtmlTokenizer::Token::End;
         token = m_tokenizer.next()) {
        if (token == HtmlTokenizer::Token::Text)
            appendText(m_tokenizer.text());
        else
            obey(m_tokenizer.tag());
    }
    return m_flow.text();
}

void HtmlReader::appendText(QByteArrayView text)
{
    if (m_dropsLineEnd && text.startsWith('\r'))
        text = text.sliced(1);
    if (m_dropsLineEnd && text.startsWith('\n'))
        text = text.sliced(1);
    m_dropsLineEnd = false;
    if (!isHidden())
        m_flow.appendText(text, whiteSpace());
}

void HtmlReader::obey(const HtmlTag &tag)
{
    m_dropsLineEnd = false;
    const Kind kind = kindOf(tag.name);
    switch (kind) {
    case Kind::Void: break;
    case Kind::VoidBlock: separateLines(); break;
    case Kind::LineBreak:
        if (!isHidden())
            m_flow.breakLine();
        break;
    case Kind::Raw:
        if (!tag.isEnd && !tag.isEmpty)
            m_tokenizer.skipContent();
        break;
    default:
        if (tag.isEnd)
            end(tag.name);
        else
            begin(tag, kind);
        break;
    }
}

void HtmlReader::begin(const HtmlTag &tag, Kind kind)
{
    const bool isBlock = kind == Kind::Block || kind == Kind::Preformatted;
    if (isBlock)
        endImplied(tag.name);
    const Style style = readStyle(tag.style);
    Element element{tag.name, isBlock, isHidden(), whiteSpace()};
    element.isHidden |= kind == Kind::Hidden || tag.isHidden || style.isHidden;
    if (kind == Kind::Preformatted)
        element.whiteSpace = HtmlWhiteSpace::Keep;
    element.whiteSpace = style.whiteSpace.value_or(element.whiteSpace);
    if (isBlock && !element.isHidden)
        separateLines();
    if (tag.isEmpty)
        return;
    push(std::move(element));
    m_dropsLineEnd = kind == Kind::Preformatted;
}

void HtmlReader::end(const std::string &name)
{
    if (m_unkeptDepth > 0) {
        --m_unkeptDepth;
        return;
    }
    if (!m_openCount.contains(name))
        return;
    // Elements inside that were left open end as well.
    while (m_open.back().name != name)
        pop();
    pop();
}

/// Ends what need not be ended by a tag of its own where a block begins.
void HtmlReader::endImplied(const std::string &name)
{
    while (!m_openBlocks.empty() && m_unkeptDepth == 0) {
        const std::string open = m_open[m_openBlocks.back()].name;
        if (!isEndedBy(name, open))
            return;
        end(open);
    }
}

void HtmlReader::push(Element element)
{
    if (m_open.size() >= kMaxDepth) {
        ++m_unkeptDepth;
        return;
    }
    ++m_openCount[element.name];
    if (element.isBlock)
        m_openBlocks.push_back(m_open.size());
    m_open.push_back(std::move(element));
}

void HtmlReader::pop()
{
    const Element &innermost = m_open.back();
    const auto count = m_openCount.find(innermost.name);
    if (--count->second == 0)
        m_openCount.erase(count);
    if (innermost.isBlock) {
        m_openBlocks.pop_back();
        separateLines();
    }
    m_open.pop_back();
}

void HtmlReader::separateLines()
{
    if (!isHidden())
        m_flow.endBlock();
}

} // namespace

QByteArray plainTextFromHtml(const QByteArray &html)
{
    return HtmlReader(utf8FromHtml(html)).read();
}
