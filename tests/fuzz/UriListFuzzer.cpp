#include "platform/linux/UriList.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    const auto urls
        = UriList::parse(QByteArray(reinterpret_cast<const char *>(bytes), qsizetype(size)));
    if (!urls)
        return 0;
    QList<QByteArray> encoded;
    for (const QUrl &url : *urls)
        encoded.append(url.toEncoded());
    // What was read can be offered again, and is then read in the same way.
    if (urls->isEmpty() || UriList::parse(UriList::fromUrls(encoded)) != urls
        || UriList::parse(UriList::gnomeCopiedFiles(encoded)) != urls)
        __builtin_trap();
    return 0;
}
