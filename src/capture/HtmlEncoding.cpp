#include "capture/HtmlEncoding.h"

#include "capture/AsciiBytes.h"
#include "capture/HtmlTokenizer.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace {

/// A declaration stands at the beginning; there are office programs that put style sheets before
/// it.
constexpr qsizetype kDeclaringBytes = 16 * 1024;

/// So much is decoded at a time. A large document need not be in memory once more as UTF-16.
constexpr qsizetype kPieceSize = 64 * 1024;

struct Charset
{
    std::string_view label; ///< In lower case.
    const char *name;       ///< As the decoder knows it.
};

/// What the labels mean to browsers, which is not always what they say. The decoder is asked for
/// nothing else: it knows character sets that no document should be read in.
constexpr std::array kCharsets{
    Charset{"utf-8", "UTF-8"},
    Charset{"utf8", "UTF-8"},
    Charset{"us-ascii", "windows-1252"},
    Charset{"ascii", "windows-1252"},
    Charset{"latin1", "windows-1252"},
    Charset{"iso8859-1", "windows-1252"},
    Charset{"iso-8859-1", "windows-1252"},
    Charset{"cp1252", "windows-1252"},
    Charset{"windows-1252", "windows-1252"},
    Charset{"latin2", "ISO-8859-2"},
    Charset{"iso8859-2", "ISO-8859-2"},
    Charset{"iso-8859-2", "ISO-8859-2"},
    Charset{"iso-8859-3", "ISO-8859-3"},
    Charset{"iso-8859-4", "ISO-8859-4"},
    Charset{"iso-8859-5", "ISO-8859-5"},
    Charset{"iso-8859-6", "ISO-8859-6"},
    Charset{"iso-8859-7", "ISO-8859-7"},
    Charset{"iso-8859-8", "ISO-8859-8"},
    Charset{"iso-8859-9", "windows-1254"},
    Charset{"latin5", "windows-1254"},
    Charset{"iso-8859-10", "ISO-8859-10"},
    Charset{"iso-8859-11", "windows-874"},
    Charset{"tis-620", "windows-874"},
    Charset{"windows-874", "windows-874"},
    Charset{"iso-8859-13", "ISO-8859-13"},
    Charset{"iso-8859-14", "ISO-8859-14"},
    Charset{"iso-8859-15", "ISO-8859-15"},
    Charset{"latin9", "ISO-8859-15"},
    Charset{"iso-8859-16", "ISO-8859-16"},
    Charset{"windows-1250", "windows-1250"},
    Charset{"windows-1251", "windows-1251"},
    Charset{"cp1251", "windows-1251"},
    Charset{"windows-1253", "windows-1253"},
    Charset{"windows-1254", "windows-1254"},
    Charset{"windows-1255", "windows-1255"},
    Charset{"windows-1256", "windows-1256"},
    Charset{"windows-1257", "windows-1257"},
    Charset{"windows-1258", "windows-1258"},
    Charset{"ibm866", "IBM866"},
    Charset{"cp866", "IBM866"},
    Charset{"koi8-r", "KOI8-R"},
    Charset{"koi8", "KOI8-R"},
    Charset{"koi8-u", "KOI8-U"},
    Charset{"macintosh", "macintosh"},
    Charset{"x-mac-cyrillic", "x-mac-cyrillic"},
    Charset{"gb2312", "GB18030"},
    Charset{"gbk", "GB18030"},
    Charset{"gb18030", "GB18030"},
    Charset{"big5", "Big5-HKSCS"},
    Charset{"big5-hkscs", "Big5-HKSCS"},
    Charset{"shift_jis", "windows-932"},
    Charset{"shift-jis", "windows-932"},
    Charset{"sjis", "windows-932"},
    Charset{"x-sjis", "windows-932"},
    Charset{"windows-31j", "windows-932"},
    Charset{"euc-jp", "EUC-JP"},
    Charset{"x-euc-jp", "EUC-JP"},
    Charset{"iso-2022-jp", "ISO-2022-JP"},
    Charset{"euc-kr", "windows-949"},
    Charset{"ks_c_5601-1987", "windows-949"},
    Charset{"windows-949", "windows-949"},
};

const char *const kWestern = "windows-1252";

/// The decoder's name for \a label; null if it is no character set of documents.
const char *nameOf(QByteArrayView label)
{
    const QByteArray lower = label.trimmed().toByteArray().toLower();
    const auto row = std::ranges::find(kCharsets, std::string_view(lower), &Charset::label);
    return row == kCharsets.end() ? nullptr : row->name;
}

/// The label in "text/html; charset=label".
QByteArrayView labelInContent(QByteArrayView content)
{
    constexpr QByteArrayView kKey("charset");
    const qsizetype key = content.toByteArray().toLower().indexOf(kKey);
    if (key < 0)
        return {};
    QByteArrayView rest = content.sliced(key + kKey.size()).trimmed();
    if (!rest.startsWith('='))
        return {};
    rest = rest.sliced(1).trimmed();
    const auto isEnd = [](char byte) { return byte == ';' || byte == '"' || byte == '\''; };
    while (!rest.isEmpty() && isEnd(rest.front()))
        rest = rest.sliced(1);
    return rest.first(std::ranges::find_if(rest, isEnd) - rest.begin());
}

/// The character set that the document declares, by the decoder's name; null if it does not.
const char *declaredCharset(QByteArrayView html)
{
    HtmlTokenizer tokenizer(html.first(std::min(html.size(), kDeclaringBytes)));
    for (auto token = tokenizer.next(); token != HtmlTokenizer::Token::End;
         token = tokenizer.next()) {
        const HtmlTag &tag = tokenizer.tag();
        if (token != HtmlTokenizer::Token::Tag || tag.name != "meta")
            continue;
        const char *name = nameOf(tag.charset.isNull() ? labelInContent(tag.content) : tag.charset);
        if (name)
            return name;
    }
    return nullptr;
}

/// Whether a tag in UTF-16 begins at \a position, \a high being the index of a unit's high byte.
bool isUtf16Tag(QByteArrayView html, qsizetype position, qsizetype high)
{
    return position + 4 <= html.size() && html[position + high] == '\0' &&
           html[position + 1 - high] == '<' && html[position + 2 + high] == '\0' &&
           AsciiBytes::startsMarkup(html[position + 3 - high]);
}

/// Whether more than half of the bytes at \a parity are zero, as the high bytes of Western text in
/// UTF-16 are. For text without a tag.
bool isMostlyZeroAt(qsizetype parity, QByteArrayView html)
{
    constexpr qsizetype kProbedBytes = 4096;
    html = html.first(std::min(html.size(), kProbedBytes));
    qsizetype zeros = 0;
    for (qsizetype i = parity; i < html.size(); i += 2)
        zeros += html[i] == '\0' ? 1 : 0;
    return zeros > html.size() / 4;
}

/// Some programs count the zero that ends their string, or even the rest of their buffer.
QByteArrayView withoutPadding(QByteArrayView html)
{
    while (html.endsWith('\0'))
        html.chop(1);
    return html;
}

/// The order of UTF-16 bytes without a mark. Tags are ASCII: every other byte of them is zero.
std::optional<QStringConverter::Encoding> guessedUtf16(QByteArrayView html)
{
    if (!html.contains('\0'))
        return std::nullopt;
    for (qsizetype i = 0; i + 1 < html.size(); i += 2) {
        if (isUtf16Tag(html, i, 1))
            return QStringConverter::Utf16LE;
        if (isUtf16Tag(html, i, 0))
            return QStringConverter::Utf16BE;
    }
    if (isMostlyZeroAt(1, html))
        return QStringConverter::Utf16LE;
    if (isMostlyZeroAt(0, html))
        return QStringConverter::Utf16BE;
    return std::nullopt;
}

QByteArray decoded(QByteArrayView html, QStringDecoder decoder)
{
    if (!decoder.isValid())
        decoder = QStringDecoder(QStringConverter::Latin1);
    QByteArray utf8;
    // Half a surrogate pair may end one piece.
    QStringEncoder encoder(QStringConverter::Utf8);
    while (!html.isEmpty()) {
        const qsizetype size = std::min(html.size(), kPieceSize);
        const QString piece = decoder(html.first(size));
        utf8 += encoder(piece);
        html = html.sliced(size);
    }
    return utf8;
}

} // namespace

QByteArray utf8FromHtml(const QByteArray &html)
{
    const auto marked = QStringConverter::encodingForData(html);
    if (marked && *marked != QStringConverter::Utf8)
        return decoded(html, QStringDecoder(*marked));
    if (const auto guessed = guessedUtf16(withoutPadding(html)))
        return decoded(html, QStringDecoder(*guessed));
    const char *declared = declaredCharset(html);
    // Nothing else happens to be UTF-8, whatever is declared: programs convert what they copy, and
    // leave the declaration of the page in it. But there is a set that is written in ASCII bytes.
    if (html.isValidUtf8() && qstrcmp(declared, "ISO-2022-JP") != 0) {
        constexpr QByteArrayView kMark("\xef\xbb\xbf");
        return html.startsWith(kMark) ? html.sliced(kMark.size()) : html;
    }
    const bool isUseless = !declared || qstrcmp(declared, "UTF-8") == 0;
    // Some of the decoders give a control character for malformed bytes.
    return decoded(html, QStringDecoder(isUseless ? kWestern : declared))
        .replace('\x1a', "\xef\xbf\xbd");
}
