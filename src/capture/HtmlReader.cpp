#include "capture/HtmlReader.h"

#include "capture/HtmlSkeleton.h"

#include <QStringDecoder>
#include <QTextDocument>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// How far to look for the zero bytes that tell UTF-16.
constexpr qsizetype kProbedBytes = 64;

/// In characters of running text.
constexpr qsizetype kRenderingBudget = 512 * 1024;

bool isZero(char byte)
{
    return byte == '\0';
}

/// The order of UTF-16 bytes without a mark: markup is ASCII, so that every other byte is zero.
std::optional<QStringConverter::Encoding> guessedUtf16(QByteArrayView html)
{
    int zerosAtEven = 0;
    int zerosAtOdd = 0;
    const qsizetype end = std::min(html.size(), kProbedBytes);
    for (qsizetype i = 0; i < end; ++i) {
        if (isZero(html[i]))
            ++(i % 2 == 0 ? zerosAtEven : zerosAtOdd);
    }
    if (zerosAtOdd > zerosAtEven)
        return QStringConverter::Utf16LE;
    if (zerosAtEven > zerosAtOdd)
        return QStringConverter::Utf16BE;
    return std::nullopt;
}

/// A piece that ends with a character, if \a html is UTF-8.
QByteArrayView beginningOf(QByteArrayView html)
{
    if (html.size() <= kMaxHtmlBytes)
        return html;
    qsizetype end = kMaxHtmlBytes;
    while (end > kMaxHtmlBytes - 4 && (uchar(html[end]) & 0xC0) == 0x80)
        --end;
    return html.first(end);
}

QString decoded(QByteArrayView html)
{
    if (const auto marked = QStringConverter::encodingForData(html))
        return QStringDecoder(*marked)(html);
    if (const auto guessed = guessedUtf16(html))
        return QStringDecoder(*guessed)(html);
    if (html.isValidUtf8())
        return QString::fromUtf8(html);
    // Such bytes come from old programs; a declared UTF-8 is wrong, as just seen.
    const auto declared = QStringConverter::encodingForHtml(html);
    if (declared && *declared != QStringConverter::Utf8)
        return QStringDecoder(*declared)(html);
    return QString::fromLatin1(html);
}

/// A document that loads nothing, neither files nor what the network holds.
class UnlinkedDocument : public QTextDocument
{
protected:
    QVariant loadResource(int, const QUrl &) override { return {}; }
};

} // namespace

QString plainTextFromHtml(const QByteArray &html)
{
    UnlinkedDocument document;
    document.setUndoRedoEnabled(false);
    document.setHtml(htmlSkeleton(decoded(beginningOf(html)), kRenderingBudget));
    QString text = document.toPlainText();
    // Stands where a picture or another object was.
    text.remove(QChar(QChar::ObjectReplacementCharacter));
    return text;
}
