#include "platform/linux/DescriptorFileAccess.h"

#include "foundation/FilePath.h"
#include "foundation/RegularFile.h"

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class DescriptorScope : public FileAccess::Scope
{
public:
    explicit DescriptorScope(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    ~DescriptorScope() override { ::close(m_descriptor); }
    DescriptorScope(const DescriptorScope &) = delete;
    DescriptorScope &operator=(const DescriptorScope &) = delete;

private:
    int m_descriptor;
};

std::unique_ptr<FileAccess::Scope> scopeOf(const QByteArray &path)
{
    // Opening a pipe or a device for reading is felt at its other end, and may wait for it.
    const int descriptor = ::open(path.constData(), O_PATH | O_CLOEXEC);
    if (descriptor < 0)
        return nullptr;
    auto scope = std::make_unique<DescriptorScope>(descriptor);
    // Such a descriptor is given for what may not be read too.
    if (::access(path.constData(), R_OK) != 0)
        return nullptr;
    return scope;
}

bool exists(const QByteArray &path)
{
    struct stat status = {};
    return ::stat(path.constData(), &status) == 0;
}

} // namespace

std::unique_ptr<FileAccess::Scope> DescriptorFileAccess::start(const QUrl &url) const
{
    if (!FilePath::isLocal(url))
        return nullptr;
    auto scope = m_calls.run<std::unique_ptr<Scope>>(
        [path = FilePath::bytesOf(url)] { return scopeOf(path); });
    return std::move(scope).value_or(nullptr);
}

std::optional<bool> DescriptorFileAccess::exist(const QList<QUrl> &urls) const
{
    if (!std::ranges::all_of(urls, FilePath::isLocal))
        return false;
    return m_calls.run<bool>([urls] {
        return std::ranges::all_of(urls,
                                   [](const QUrl &url) { return exists(FilePath::bytesOf(url)); });
    });
}

std::optional<LazyBytes> DescriptorFileAccess::open(const QString &path) const
{
    const auto bytes = m_calls.run<std::optional<LazyBytes>>([path]() -> std::optional<LazyBytes> {
        const auto file = RegularFile::open(path);
        if (!file)
            return std::nullopt;
        return LazyBytes::elsewhere(file->size(), file);
    });
    return bytes.value_or(std::nullopt);
}
