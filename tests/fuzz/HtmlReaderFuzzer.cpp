#include "capture/HtmlReader.h"
#include "capture/HtmlSkeleton.h"

#include <QGuiApplication>

#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    const QByteArray html(reinterpret_cast<const char *>(bytes), qsizetype(size));
    plainTextFromHtml(html);
    // Small budgets, so that the cut is met as well.
    htmlSkeleton(QString::fromUtf8(html), 1 + qsizetype(size) / 2);
    return 0;
}
