#include "foundation/TextTools.h"

#include <QChar>
#include <QStringDecoder>
#include <QTextBoundaryFinder>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Large families in one sign have eleven.
constexpr qsizetype kMaxCharacterUnits = 16;
/// In each script the characters of a whole line have fewer.
constexpr qsizetype kMaxMeanUnits = 6;

struct CodePoint
{
    char32_t value = 0;
    int byteCount = 0;
};

/// The code point at \a position of valid UTF-8.
CodePoint codePointAt(QByteArrayView utf8, qsizetype position)
{
    const auto lead = uchar(utf8[position]);
    if (lead < 0x80)
        return {lead, 1};
    const int byteCount = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    char32_t value = lead & (0xFF >> (byteCount + 1));
    for (int i = 1; i < byteCount && position + i < utf8.size(); ++i)
        value = (value << 6) | (uchar(utf8[position + i]) & 0x3F);
    return {value, byteCount};
}

/// The number of characters of \a text, but no more than \a most: counting on is of no use.
qsizetype characterCount(const QString &text, qsizetype most)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (count < most && finder.toNextBoundary() != -1)
        ++count;
    return count;
}

/// Writes a text as one line, white space folded.
class LineFolder
{
public:
    void add(char32_t character)
    {
        if (character == U'\r') {
            // CR and CR LF are line ends like LF.
            addLineEnd();
        } else if (character == U'\n') {
            if (!m_wasCarriageReturn)
                addLineEnd();
        } else if (character == U'\t') {
            addWord(u" | ");
        } else if (QChar::isSpace(character)) {
            m_needsBlank = true;
        } else {
            addCharacter(character);
        }
        m_wasCarriageReturn = character == U'\r';
    }

    const QString &line() const { return m_line; }

private:
    void addLineEnd() { addWord(u" / "); }

    void addWord(QStringView word)
    {
        for (const QChar character : word) {
            if (character.isSpace())
                m_needsBlank = true;
            else
                addCharacter(character.unicode());
        }
    }

    void addCharacter(char32_t character)
    {
        if (m_needsBlank && !m_line.isEmpty())
            m_line += u' ';
        m_needsBlank = false;
        m_line += QChar::fromUcs4(character);
    }

    QString m_line;
    bool m_needsBlank = false;
    bool m_wasCarriageReturn = false;
};

QString firstUnits(const QString &text, qsizetype limit)
{
    if (text.size() <= limit)
        return text;
    const bool isInsidePair = limit > 0 && text[limit - 1].isHighSurrogate();
    return text.first(isInsidePair ? limit - 1 : limit);
}

bool turnsWhatFollows(QChar character)
{
    switch (character.direction()) {
    case QChar::DirLRE:
    case QChar::DirLRO:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI: return true;
    default: return false;
    }
}

bool hasRightToLeft(const QString &text)
{
    return std::ranges::any_of(text.toUcs4(), [](uint character) {
        const QChar::Direction direction = QChar::direction(character);
        return direction == QChar::DirR || direction == QChar::DirAL || direction == QChar::DirAN;
    });
}

struct FoldedText
{
    QString line;
    bool isDecided = false; ///< Nothing that follows can change what is shown.
};

FoldedText folded(QByteArrayView utf8, qsizetype limit)
{
    LineFolder folder;
    qsizetype nextCheck = limit + 1;
    for (qsizetype position = 0; position < utf8.size();) {
        const CodePoint point = codePointAt(utf8, position);
        position += point.byteCount;
        folder.add(point.value);
        if (folder.line().size() > kMaxMeanUnits * limit)
            return {folder.line(), true};
        // A character may be many code points. Looking again only when the line has doubled keeps
        // the effort in proportion to the text, whatever it is made of.
        if (folder.line().size() >= nextCheck) {
            // Two more than the limit, since what follows may still join the last one.
            if (characterCount(folder.line(), limit + 2) == limit + 2)
                return {folder.line(), true};
            nextCheck = 2 * folder.line().size();
        }
    }
    return {folder.line(), false};
}

QString cut(const QString &line, qsizetype limit)
{
    const QString shown = firstUnits(firstCharacters(line, limit), kMaxMeanUnits * limit);
    return shown.size() < line.size() ? shown + u"..."_s : shown;
}

bool isSilent(char32_t character)
{
    constexpr char32_t kNonJoiner = 0x200C;
    constexpr char32_t kJoiner = 0x200D;
    if (character == kNonJoiner || character == kJoiner)
        return false;
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate: return true;
    default: return character == QChar::ObjectReplacementCharacter;
    }
}

} // namespace

QString decodedUtf8(const QByteArray &utf8)
{
    if (!utf8.startsWith("\xEF\xBB\xBF"))
        return QString::fromUtf8(utf8);
    // fromUtf8() would drop the mark.
    using Flag = QStringDecoder::Flag;
    QStringDecoder decode(QStringDecoder::Utf8, Flag::ConvertInitialBom | Flag::Stateless);
    return decode(utf8);
}

QByteArrayView trimmedUtf8(QByteArrayView utf8)
{
    qsizetype begin = 0;
    while (begin < utf8.size()) {
        const CodePoint point = codePointAt(utf8, begin);
        if (!QChar::isSpace(point.value))
            break;
        begin += point.byteCount;
    }
    qsizetype end = utf8.size();
    while (end > begin) {
        qsizetype start = end - 1;
        while (start > begin && isUtf8Continuation(utf8[start]))
            --start;
        if (!QChar::isSpace(codePointAt(utf8, start).value))
            break;
        end = start;
    }
    return utf8.sliced(begin, end - begin);
}

QByteArray withLineFeeds(QByteArray utf8)
{
    if (utf8.contains("\r\n"))
        utf8.replace("\r\n", "\n");
    return utf8;
}

QString shortened(const QString &text, qsizetype limit)
{
    return text.size() > limit ? firstUnits(text, limit) + u"..."_s : text;
}

QString isolatedName(const QString &name)
{
    QString isolated = name;
    isolated.removeIf(turnsWhatFollows);
    if (!hasRightToLeft(isolated))
        return isolated;
    constexpr char16_t kFirstStrongIsolate = 0x2068;
    constexpr char16_t kPopIsolate = 0x2069;
    return QChar(kFirstStrongIsolate) + isolated + QChar(kPopIsolate);
}

QString speakable(const QString &text)
{
    QString spoken;
    spoken.reserve(text.size());
    for (const char32_t character : text.toUcs4()) {
        if (!isSilent(character))
            spoken.append(QChar::fromUcs4(character));
    }
    return spoken;
}

QString firstCharacters(const QString &text, qsizetype limit)
{
    if (text.size() <= limit)
        return text;
    const QString start = firstUnits(text, kMaxCharacterUnits * limit);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, start);
    qsizetype end = 0;
    for (qsizetype count = 0; count < limit; ++count) {
        const qsizetype next = finder.toNextBoundary();
        if (next == -1)
            return start;
        end = next;
    }
    return start.first(end);
}

QString singleLine(QByteArrayView utf8, qsizetype limit)
{
    return cut(folded(utf8, limit).line, limit);
}

std::optional<QString> singleLineOfStart(QByteArrayView start, qsizetype limit)
{
    const FoldedText text = folded(start, limit);
    if (!text.isDecided)
        return std::nullopt;
    return cut(text.line, limit);
}
