#include "capture/RichText.h"

#include "capture/HtmlReader.h"
#include "capture/RtfReader.h"

std::optional<Utf8Text> richTextPlainString(const std::optional<QByteArray> &html,
                                            const std::optional<QByteArray> &rtf)
{
    if (html) {
        const Utf8Text text = Utf8Text::fromUtf8(plainTextFromHtml(*html)).trimmed();
        if (!text.isEmpty())
            return text;
    }
    if (rtf) {
        const Utf8Text text = Utf8Text::fromUtf8(plainTextFromRtf(*rtf)).trimmed();
        if (!text.isEmpty())
            return text;
    }
    return std::nullopt;
}
