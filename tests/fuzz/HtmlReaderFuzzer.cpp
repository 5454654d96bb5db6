#include "capture/HtmlEncoding.h"
#include "capture/HtmlReader.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    const QByteArray html(reinterpret_cast<const char *>(bytes), qsizetype(size));
    const QByteArray text = plainTextFromHtml(html);
    // Markup never makes more of what is there.
    if (!text.isValidUtf8() || text.size() > utf8FromHtml(html).size())
        __builtin_trap();
    return 0;
}
