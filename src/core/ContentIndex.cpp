#include "core/ContentIndex.h"

#include <QVarLengthArray>

#include <algorithm>

namespace {

/// What a key stands for; it enters the key, so that a digest is never taken for a file name.
enum class Aspect { Hash, Text, Path, Digest, Picture, FileName };

/// As many bytes of a long value enter its key, and its size. More would have the whole history read
/// from memory at each start; what begins alike by chance is told apart by a comparison.
constexpr qsizetype kSampleSize = 96;

size_t hashOf(QByteArrayView bytes)
{
    return qHashMulti(0, bytes.size(), bytes.first(std::min(bytes.size(), kSampleSize)));
}

size_t hashOf(const std::optional<QByteArray> &bytes)
{
    return bytes ? hashOf(QByteArrayView(*bytes)) : 0;
}

size_t hashOf(const std::optional<Utf8Text> &text)
{
    return text ? qHashMulti(0, text->byteCount(), hashOf(QByteArrayView(text->start()))) : 0;
}

size_t hashOf(const std::optional<QString> &string)
{
    return string ? qHash(*string) : 0;
}

size_t key(Aspect aspect, size_t hash)
{
    return qHashMulti(0, int(aspect), hash);
}

using Keys = QVarLengthArray<size_t, 4>;

/// Two entries have the same content only if they have a key in common.
Keys keysOf(const ClipboardItem &item)
{
    Keys keys{key(Aspect::Hash, hashOf(QByteArrayView(item.contentHash)))};
    switch (item.contentType) {
    case ClipboardContentType::Text:
    case ClipboardContentType::Url:
    case ClipboardContentType::Mixed:
        keys.append(key(Aspect::Text, hashOf(item.stringValue)));
        break;
    case ClipboardContentType::File:
        keys.append(key(Aspect::Path, hashOf(item.filePath)));
        break;
    case ClipboardContentType::Image:
        // Which of these decides depends on what both entries have.
        if (item.imageDigest)
            keys.append(key(Aspect::Digest, hashOf(item.imageDigest)));
        if (item.imageRepresentation)
            keys.append(key(Aspect::Picture, hashOf(item.imageRepresentation)));
        if (item.imageFileName)
            keys.append(key(Aspect::FileName, hashOf(item.imageFileName)));
        break;
    }
    return keys;
}

} // namespace

void ContentIndex::add(const ClipboardItem &item)
{
    for (const size_t key : keysOf(item))
        m_items.emplace(key, &item);
}

void ContentIndex::remove(const ClipboardItem &item)
{
    for (const size_t key : keysOf(item)) {
        const auto [begin, end] = m_items.equal_range(key);
        const auto entry
            = std::find_if(begin, end, [&item](const auto &pair) { return pair.second == &item; });
        Q_ASSERT(entry != end);
        if (entry != end)
            m_items.erase(entry);
    }
}

std::vector<const ClipboardItem *> ContentIndex::candidates(const ClipboardItem &item) const
{
    std::vector<const ClipboardItem *> candidates;
    for (const size_t key : keysOf(item)) {
        const auto [begin, end] = m_items.equal_range(key);
        for (auto entry = begin; entry != end; ++entry)
            candidates.push_back(entry->second);
    }
    return candidates;
}
