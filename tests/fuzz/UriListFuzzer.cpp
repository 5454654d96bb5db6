#include "platform/linux/UriList.h"

#include <cstdint>

namespace {

QList<QByteArray> encoded(const std::optional<QList<QUrl>> &urls)
{
    QList<QByteArray> list;
    for (const QUrl &url : urls.value_or(QList<QUrl>()))
        list.append(url.toEncoded());
    return list;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    const auto urls =
        UriList::parse(QByteArray(reinterpret_cast<const char *>(bytes), qsizetype(size)));
    if (!urls)
        return 0;
    const QList<QByteArray> read = encoded(urls);
    // What was read can be offered again, and is then read in the same way.
    if (read.isEmpty() || encoded(UriList::parse(UriList::fromUrls(read))) != read ||
        encoded(UriList::parse(UriList::gnomeCopiedFiles(read))) != read)
        __builtin_trap();
    return 0;
}
