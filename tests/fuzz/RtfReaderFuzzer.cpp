#include "capture/RtfReader.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    const QByteArray text =
        plainTextFromRtf(QByteArrayView(reinterpret_cast<const char *>(bytes), qsizetype(size)));
    // One byte of RTF never makes more than one character.
    if (!text.isValidUtf8() || text.size() > 3 * qsizetype(size))
        __builtin_trap();
    return 0;
}
