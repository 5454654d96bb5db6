#include "capture/RtfReader.h"

#include "capture/AsciiBytes.h"
#include "capture/RtfText.h"

#include <QHash>

#include <algorithm>
#include <limits>
#include <vector>

using namespace AsciiBytes;

namespace {

/// Groups nested deeper share the state of the deepest one that is kept.
constexpr std::size_t kMaxKeptDepth = 250'000;

/// No document has more fonts; what is beyond is read in the document's code page.
constexpr qsizetype kMaxFonts = 10'000;

/// Where the text of a group goes.
enum class Destination : quint8 { Body, FontTable, Nowhere };

struct GroupState
{
    Destination destination = Destination::Body;
    bool isHidden = false;
    bool isDeleted = false;
    int font = -1; ///< Number in the font table; -1 without one.
    int fallbackCount = 1; ///< How many characters follow a \u for readers that do not know it.
};

/// A control word with its parameter, as in \par or \u8212.
struct ControlWord
{
    QByteArrayView name;
    std::optional<int> parameter;

    bool isOn() const { return parameter.value_or(1) != 0; }
};

enum class Action : quint8 {
    Append, ///< Text in place of the word.
    EndRow,
    Skip, ///< The group is no text of the body.
    FontTable,
    Ansi, ///< A character set for the whole document.
    CodePage,
    Font,
    DefaultFont,
    FontCharset,
    FontCodePage,
    Plain,
    Hidden,
    Deleted,
    Unicode,
    FallbackCount,
    Binary,
};

struct Meaning
{
    Action action = Action::Skip;
    char16_t character = 0; ///< For Append.
    int codePage = 0; ///< For Ansi.
};

void addTextWords(QHash<QByteArrayView, Meaning> &words)
{
    struct Row
    {
        const char *word;
        char16_t character;
    };
    static constexpr Row rows[]{
        {"par", u'\n'},          {"line", u'\n'},         {"sect", u'\n'},
        {"page", u'\n'},         {"column", u'\n'},       {"tab", u'\t'},
        {"cell", u'\t'},         {"nestcell", u'\t'},     {"emdash", u'\u2014'},
        {"endash", u'\u2013'},   {"emspace", u'\u2003'},  {"enspace", u'\u2002'},
        {"qmspace", u'\u2005'},  {"bullet", u'\u2022'},   {"lquote", u'\u2018'},
        {"rquote", u'\u2019'},   {"ldblquote", u'\u201C'}, {"rdblquote", u'\u201D'},
        {"ltrmark", u'\u200E'},  {"rtlmark", u'\u200F'},  {"zwj", u'\u200D'},
        {"zwnj", u'\u200C'},     {"zwbo", u'\u200B'},     {"zwnbo", u'\u2060'},
    };
    for (const Row &row : rows)
        words.insert(row.word, {Action::Append, row.character, 0});
}

void addSkippedDestinations(QHash<QByteArrayView, Meaning> &words)
{
    // Groups marked by \* are skipped without being named here.
    static constexpr const char *names[]{
        "annotation", "atnauthor", "atnid",    "author",   "buptim",     "category", "colortbl",
        "comment",    "company",   "creatim",  "doccomm",  "filetbl",    "fldinst",  "footer",
        "footerf",    "footerl",   "footerr",  "footnote", "header",     "headerf",  "headerl",
        "headerr",    "hlinkbase", "info",     "keywords", "listtable",  "manager",  "nonshppict",
        "objalias",   "objclass",  "objdata",  "objname",  "objsect",    "operator", "pict",
        "pntxta",     "pntxtb",    "printim",  "revtbl",   "revtim",     "rsidtbl",  "rxe",
        "shpinst",    "stylesheet", "subject", "tc",       "title",      "txe",      "xe",
        "listoverridetable",       "listpicture",
    };
    for (const char *name : names)
        words.insert(name, {Action::Skip, 0, 0});
}

QHash<QByteArrayView, Meaning> knownWords()
{
    QHash<QByteArrayView, Meaning> words;
    addTextWords(words);
    addSkippedDestinations(words);
    words.insert("row", {Action::EndRow, 0, 0});
    words.insert("nestrow", {Action::EndRow, 0, 0});
    words.insert("fonttbl", {Action::FontTable, 0, 0});
    words.insert("ansi", {Action::Ansi, 0, 1252});
    words.insert("mac", {Action::Ansi, 0, 10000});
    words.insert("pc", {Action::Ansi, 0, 437});
    words.insert("pca", {Action::Ansi, 0, 850});
    words.insert("ansicpg", {Action::CodePage, 0, 0});
    words.insert("f", {Action::Font, 0, 0});
    words.insert("deff", {Action::DefaultFont, 0, 0});
    words.insert("fcharset", {Action::FontCharset, 0, 0});
    words.insert("cpg", {Action::FontCodePage, 0, 0});
    words.insert("plain", {Action::Plain, 0, 0});
    words.insert("v", {Action::Hidden, 0, 0});
    words.insert("deleted", {Action::Deleted, 0, 0});
    words.insert("u", {Action::Unicode, 0, 0});
    words.insert("uc", {Action::FallbackCount, 0, 0});
    words.insert("bin", {Action::Binary, 0, 0});
    return words;
}

/// Walks over the document once, byte by byte, with the groups on a stack of its own.
class RtfReader
{
public:
    explicit RtfReader(QByteArrayView rtf) : m_rtf(rtf) {}

    QByteArray read();

private:
    bool isAtEnd() const { return m_position >= m_rtf.size(); }
    char peek() const { return m_rtf[m_position]; }
    GroupState &state() { return m_groups.back(); }

    void skipSignature();
    void readNext();
    void openGroup();
    void closeGroup();
    void readControl();
    void readControlSymbol(char symbol);
    void readHexByte();
    ControlWord readControlWord();
    std::optional<int> readParameter();
    void readPlainBytes();

    void obey(const ControlWord &word);
    void obeyMeaning(const Meaning &meaning, const ControlWord &word);
    void enter(Destination destination);
    void setCodePageOfFont(std::optional<int> codePage);
    void skipBinary(int byteCount);
    void appendUnicode(int value);
    void endRow();

    bool isVisible() { return isBody() && !state().isHidden && !state().isDeleted; }
    bool isBody() { return state().destination == Destination::Body; }
    bool takesFallback();
    void appendByte(char byte);
    void appendCharacter(char16_t character);
    int codePage() { return m_codePageOfFont.value(state().font, m_documentCodePage); }

    QByteArrayView m_rtf;
    qsizetype m_position = 0;
    std::vector<GroupState> m_groups;
    qsizetype m_unkeptDepth = 0; ///< Groups that are open beyond the kept ones.
    bool m_isOptionalDestination = false; ///< \* stands before the next control word.
    int m_fallbackLeft = 0; ///< Characters still to be passed over after a \u.

    int m_documentCodePage = RtfCodePages::kWestern;
    int m_defaultFont = -1;
    QHash<int, int> m_codePageOfFont;
    RtfText m_text;
};

QByteArray RtfReader::read()
{
    skipSignature();
    while (!isAtEnd() && !m_groups.empty())
        readNext();
    return m_text.finish();
}

void RtfReader::skipSignature()
{
    constexpr QByteArrayView kByteOrderMark("\xef\xbb\xbf");
    constexpr QByteArrayView kSignature("{\\rtf");
    if (m_rtf.startsWith(kByteOrderMark))
        m_rtf = m_rtf.sliced(kByteOrderMark.size());
    while (!m_rtf.isEmpty() && uchar(m_rtf.front()) <= ' ')
        m_rtf = m_rtf.sliced(1);
    if (!m_rtf.startsWith(kSignature))
        return;
    m_groups.emplace_back();
    m_position = 1;
}

void RtfReader::readNext()
{
    switch (peek()) {
    case '{':
        ++m_position;
        openGroup();
        break;
    case '}':
        ++m_position;
        closeGroup();
        break;
    case '\\':
        ++m_position;
        readControl();
        break;
    default: readPlainBytes(); break;
    }
}

void RtfReader::openGroup()
{
    m_fallbackLeft = 0;
    m_isOptionalDestination = false;
    if (m_groups.size() < kMaxKeptDepth)
        m_groups.push_back(m_groups.back());
    else
        ++m_unkeptDepth;
}

void RtfReader::closeGroup()
{
    m_fallbackLeft = 0;
    m_isOptionalDestination = false;
    if (m_unkeptDepth > 0)
        --m_unkeptDepth;
    else
        m_groups.pop_back();
}

void RtfReader::readControl()
{
    if (isAtEnd())
        return;
    if (isLetter(peek())) {
        const ControlWord word = readControlWord();
        obey(word);
        m_isOptionalDestination = false;
        return;
    }
    const char symbol = peek();
    ++m_position;
    readControlSymbol(symbol);
}

void RtfReader::readControlSymbol(char symbol)
{
    if (symbol == '*') {
        m_isOptionalDestination = true;
        return;
    }
    if (symbol == '\'') {
        readHexByte();
        return;
    }
    if (takesFallback())
        return;
    switch (symbol) {
    case '\\':
    case '{':
    case '}': appendByte(symbol); break;
    case '~': appendCharacter(QChar::Nbsp); break;
    case '_': appendCharacter(u'\u2011'); break; // A hyphen that does not break.
    case '\r':
    case '\n': appendCharacter(u'\n'); break;
    case '\t': appendCharacter(u'\t'); break;
    default: break; // Among them \-, where a word may be divided.
    }
}

void RtfReader::readHexByte()
{
    int value = 0;
    for (int digits = 0; digits < 2; ++digits) {
        if (isAtEnd() || !isHexadecimalDigit(peek()))
            return;
        value = value * 16 + valueOfDigit(peek());
        ++m_position;
    }
    if (!takesFallback())
        appendByte(char(value));
}

ControlWord RtfReader::readControlWord()
{
    ControlWord word;
    const qsizetype begin = m_position;
    while (!isAtEnd() && isLetter(peek()))
        ++m_position;
    word.name = m_rtf.sliced(begin, m_position - begin);
    word.parameter = readParameter();
    // One blank belongs to the word that it ends.
    if (!isAtEnd() && peek() == ' ')
        ++m_position;
    return word;
}

std::optional<int> RtfReader::readParameter()
{
    const bool isNegative = !isAtEnd() && peek() == '-';
    const qsizetype firstDigit = m_position + (isNegative ? 1 : 0);
    if (firstDigit >= m_rtf.size() || !isDigit(m_rtf[firstDigit]))
        return std::nullopt;
    qint64 value = 0;
    for (m_position = firstDigit; !isAtEnd() && isDigit(peek()); ++m_position)
        value = std::min<qint64>(value * 10 + (peek() - '0'), std::numeric_limits<int>::max());
    return int(isNegative ? -value : value);
}

void RtfReader::readPlainBytes()
{
    const qsizetype begin = m_position;
    const auto isSpecial = [](char byte) { return byte == '{' || byte == '}' || byte == '\\'; };
    const auto end = std::find_if(m_rtf.begin() + begin, m_rtf.end(), isSpecial);
    m_position = end - m_rtf.begin();
    if (!isVisible())
        return;
    const int codePageOfAll = codePage();
    for (const char byte : m_rtf.sliced(begin, m_position - begin)) {
        // Line ends of the file are no text, and neither is padding.
        if (byte != '\r' && byte != '\n' && byte != '\0' && !takesFallback())
            m_text.append(byte, codePageOfAll);
    }
}

void RtfReader::obey(const ControlWord &word)
{
    static const QHash<QByteArrayView, Meaning> words = knownWords();
    const auto known = words.constFind(word.name);
    const Action action = known == words.cend() ? Action::Plain : known->action;
    // A control word after \u may be what other readers are to show instead, but never another \u:
    // there are writers that leave the instead out.
    if (m_fallbackLeft > 0 && action != Action::Unicode && action != Action::Binary
        && takesFallback())
        return;
    if (m_isOptionalDestination && action != Action::Binary)
        enter(Destination::Nowhere);
    else if (known != words.cend())
        obeyMeaning(*known, word);
}

void RtfReader::obeyMeaning(const Meaning &meaning, const ControlWord &word)
{
    const int parameter = word.parameter.value_or(0);
    switch (meaning.action) {
    case Action::Append: appendCharacter(meaning.character); break;
    case Action::EndRow: endRow(); break;
    case Action::Skip: enter(Destination::Nowhere); break;
    case Action::FontTable: enter(Destination::FontTable); break;
    case Action::Ansi: m_documentCodePage = meaning.codePage; break;
    case Action::CodePage: m_documentCodePage = parameter; break;
    case Action::Font: state().font = parameter; break;
    case Action::DefaultFont:
        m_defaultFont = parameter;
        state().font = parameter;
        break;
    case Action::FontCharset: setCodePageOfFont(RtfCodePages::ofCharset(parameter)); break;
    case Action::FontCodePage: setCodePageOfFont(parameter); break;
    case Action::Plain:
        state().font = m_defaultFont;
        state().isHidden = false;
        break;
    case Action::Hidden: state().isHidden = word.isOn(); break;
    case Action::Deleted: state().isDeleted = word.isOn(); break;
    case Action::Unicode: appendUnicode(parameter); break;
    case Action::FallbackCount: state().fallbackCount = std::max(parameter, 0); break;
    case Action::Binary: skipBinary(parameter); break;
    }
}

void RtfReader::enter(Destination destination)
{
    // What is skipped stays skipped whatever is inside.
    if (isBody())
        state().destination = destination;
}

void RtfReader::setCodePageOfFont(std::optional<int> codePage)
{
    if (state().destination != Destination::FontTable || !codePage)
        return;
    if (m_codePageOfFont.size() < kMaxFonts)
        m_codePageOfFont.insert(state().font, *codePage);
}

void RtfReader::skipBinary(int byteCount)
{
    takesFallback();
    m_position += std::clamp<qsizetype>(byteCount, 0, m_rtf.size() - m_position);
}

void RtfReader::appendUnicode(int value)
{
    if (!isVisible())
        return;
    // The format knows signed 16-bit numbers only; some writers give whole code points.
    if (value < 0)
        value += 0x10000;
    m_fallbackLeft = state().fallbackCount;
    if (value <= 0 || value > int(QChar::LastValidCodePoint))
        return;
    for (const char16_t unit : QChar::fromUcs4(char32_t(value)))
        appendCharacter(unit);
}

void RtfReader::endRow()
{
    if (isVisible())
        m_text.endRow();
}

/// True if the character at hand only stands in for the \u before it.
bool RtfReader::takesFallback()
{
    if (m_fallbackLeft == 0)
        return false;
    --m_fallbackLeft;
    return true;
}

void RtfReader::appendByte(char byte)
{
    if (isVisible())
        m_text.append(byte, codePage());
}

void RtfReader::appendCharacter(char16_t character)
{
    if (isVisible())
        m_text.append(character);
}

} // namespace

QByteArray plainTextFromRtf(QByteArrayView rtf)
{
    return RtfReader(rtf).read();
}
