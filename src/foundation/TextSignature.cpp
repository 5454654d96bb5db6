#include "foundation/TextSignature.h"

#include "foundation/TextTools.h"

#include <algorithm>
#include <bit>

namespace {

constexpr quint64 kOne = 1;
constexpr size_t kFewestTripleWords = 8;
constexpr size_t kMostTripleWords = 2048;

/// A text is taken in pieces, so that lowering a huge one needs no room for all of it.
constexpr qsizetype kPieceSize = 64 * 1024;

bool isAscii(QByteArrayView bytes)
{
    return std::ranges::all_of(bytes, [](char byte) { return uchar(byte) < 0x80; });
}

QByteArray loweredUtf8(QByteArrayView piece)
{
    const QByteArray bytes = piece.toByteArray();
    return isAscii(piece) ? bytes.toLower() : decodedUtf8(bytes).toLower().toUtf8();
}

template <typename Words>
void setBit(Words &words, quint32 bit)
{
    words[bit / 64] |= kOne << (bit % 64);
}

template <typename Words>
bool hasBit(const Words &words, quint32 bit)
{
    return (words[bit / 64] >> (bit % 64) & kOne) != 0;
}

size_t setBitCount(const std::vector<quint64> &words)
{
    size_t count = 0;
    for (const quint64 word : words)
        count += size_t(std::popcount(word));
    return count;
}

/// Half as many bits, of which each stands for two. Who masks the number of a bit finds it there.
std::vector<quint64> folded(const std::vector<quint64> &words)
{
    const size_t half = words.size() / 2;
    std::vector<quint64> result(words.begin(), words.begin() + qsizetype(half));
    for (size_t i = 0; i < half; ++i)
        result[i] |= words[half + i];
    return result;
}

} // namespace

class TextSignature::Builder
{
public:
    Builder() { m_triples.resize(kMostTripleWords); }

    void append(QByteArrayView loweredUtf8)
    {
        for (const char byte : loweredUtf8) {
            const int byteClass = classOf(byte);
            setBit(m_signature->m_pairs, pairOf(byteClass, kClassCount));
            if (m_count > 0)
                setBit(m_signature->m_pairs, pairOf(m_lastClass, byteClass));
            if (m_count > 1)
                setBit(m_triples, tripleOf(m_secondLast, m_last, byte) % (kMostTripleWords * 64));
            m_secondLast = m_last;
            m_last = byte;
            m_lastClass = byteClass;
            ++m_count;
        }
    }

    std::unique_ptr<const TextSignature> finish()
    {
        // Half of the bits being set is enough: a word has several triples.
        while (m_triples.size() > kFewestTripleWords) {
            std::vector<quint64> smaller = folded(m_triples);
            if (setBitCount(smaller) * 2 > smaller.size() * 64)
                break;
            m_triples = std::move(smaller);
        }
        m_signature->m_triples.assign(m_triples.begin(), m_triples.end());
        return std::move(m_signature);
    }

private:
    std::unique_ptr<TextSignature> m_signature{new TextSignature};
    std::vector<quint64> m_triples;
    qsizetype m_count = 0;
    int m_lastClass = 0;
    char m_secondLast = 0;
    char m_last = 0;
};

TextSignature::Pattern::Pattern(QByteArrayView loweredUtf8)
{
    std::vector<int> classes;
    for (const char byte : loweredUtf8)
        classes.push_back(classOf(byte));
    for (size_t i = 0; i + 1 < classes.size(); ++i)
        m_pairs.push_back(pairOf(classes[i], classes[i + 1]));
    if (classes.size() == 1)
        m_pairs.push_back(pairOf(classes.front(), kClassCount));
    for (qsizetype i = 0; i + 2 < loweredUtf8.size(); ++i)
        m_triples.push_back(tripleOf(loweredUtf8[i], loweredUtf8[i + 1], loweredUtf8[i + 2]));
    m_isDecidedByPair = classes.size() <= 2
        && std::ranges::find(classes, 0) == classes.end();
}

std::unique_ptr<const TextSignature> TextSignature::of(const QByteArray &utf8,
                                                       const std::stop_token &stop)
{
    Builder builder;
    for (qsizetype begin = 0; begin < utf8.size();) {
        if (stop.stop_requested())
            return nullptr;
        qsizetype end = std::min(begin + kPieceSize, utf8.size());
        while (end < utf8.size() && isUtf8Continuation(utf8[end]))
            --end;
        builder.append(loweredUtf8(QByteArrayView(utf8).sliced(begin, end - begin)));
        begin = end;
    }
    return builder.finish();
}

std::optional<bool> TextSignature::contains(const Pattern &pattern) const
{
    const auto hasPair = [this](quint16 pair) { return hasBit(m_pairs, pair); };
    if (!std::ranges::all_of(pattern.m_pairs, hasPair))
        return false;
    const quint32 mask = quint32(m_triples.size() * 64 - 1);
    const auto hasTriple = [&](quint32 triple) { return hasBit(m_triples, triple & mask); };
    if (!std::ranges::all_of(pattern.m_triples, hasTriple))
        return false;
    return pattern.m_isDecidedByPair ? std::optional(true) : std::nullopt;
}

qsizetype TextSignature::byteCount() const
{
    return qsizetype(sizeof *this + m_triples.size() * sizeof(quint64));
}

int TextSignature::classOf(char byte)
{
    if (byte >= 'a' && byte <= 'z')
        return byte - 'a' + 1;
    if (byte >= '0' && byte <= '9')
        return byte - '0' + 27;
    return byte == ' ' ? 37 : 0;
}

quint32 TextSignature::tripleOf(char first, char second, char third)
{
    const quint32 bytes = quint32(uchar(first)) | quint32(uchar(second)) << 8
        | quint32(uchar(third)) << 16;
    const quint32 mixed = bytes * 0x9E3779B1U;
    return mixed ^ mixed >> 15;
}
