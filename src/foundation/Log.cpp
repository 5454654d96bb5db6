#include "foundation/Log.h"

#include <cstdio>
#include <mutex>

namespace {

struct Output
{
    std::mutex mutex; ///< Guards the sink, and keeps lines whole.
    std::function<void(const QString &)> sink;
};

Output &output()
{
    static Output instance;
    return instance;
}

} // namespace

void printLine(const QString &line)
{
    const std::lock_guard lock(output().mutex);
    if (output().sink) {
        output().sink(line);
        return;
    }
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fflush(stdout);
}

void setPrintSink(std::function<void(const QString &)> sink)
{
    const std::lock_guard lock(output().mutex);
    output().sink = std::move(sink);
}
