#include "capture/HtmlEncoding.h"

#include <QStringEncoder>

#include <cstdint>

using namespace Qt::StringLiterals;

namespace {

QByteArray encoded(const QString &text, QStringConverter::Encoding encoding)
{
    return QStringEncoder(encoding)(text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    const QByteArray html(reinterpret_cast<const char *>(bytes), qsizetype(size));
    const QByteArray utf8 = utf8FromHtml(html);
    if (!utf8.isValidUtf8())
        __builtin_trap();
    // Whatever it is, with a tag in front it is found again in both orders of bytes.
    const QString marked = u"<p>"_s + QString::fromUtf8(utf8);
    for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE}) {
        if (utf8FromHtml(encoded(marked, encoding)) != marked.toUtf8())
            __builtin_trap();
    }
    return 0;
}
