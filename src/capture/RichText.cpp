#include "capture/RichText.h"

#include "capture/HtmlReader.h"
#include "capture/RtfReader.h"

std::optional<QString> richTextPlainString(const std::optional<QByteArray> &html,
                                           const std::optional<QByteArray> &rtf)
{
    if (html) {
        const QString text = plainTextFromHtml(*html).trimmed();
        if (!text.isEmpty())
            return text;
    }
    if (rtf) {
        const QString text = plainTextFromRtf(*rtf).trimmed();
        if (!text.isEmpty())
            return text;
    }
    return std::nullopt;
}
