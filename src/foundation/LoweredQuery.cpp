#include "foundation/LoweredQuery.h"

#include "foundation/TextTools.h"

#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

char lowered(char byte)
{
    return byte >= 'A' && byte <= 'Z' ? char(byte | 0x20) : byte;
}

bool equalsLowered(const char *text, const char *query, qsizetype size)
{
    for (qsizetype i = 0; i < size; ++i) {
        if (lowered(text[i]) != query[i])
            return false;
    }
    return true;
}

bool isAscii(QByteArrayView text)
{
    const char *data = text.data();
    qsizetype i = 0;
    quint64 bits = 0;
    for (; i + 8 <= text.size(); i += 8) {
        quint64 word;
        std::memcpy(&word, data + i, sizeof word);
        bits |= word;
    }
    for (; i < text.size(); ++i)
        bits |= uchar(data[i]);
    return (bits & 0x8080808080808080ULL) == 0;
}

#if defined(__SSE2__)
/// ASCII capitals of all sixteen bytes made small.
__m128i loweredBlock(__m128i block)
{
    const __m128i isCapital = _mm_and_si128(_mm_cmpgt_epi8(block, _mm_set1_epi8('A' - 1)),
                                            _mm_cmplt_epi8(block, _mm_set1_epi8('Z' + 1)));
    return _mm_or_si128(block, _mm_and_si128(isCapital, _mm_set1_epi8(0x20)));
}

__m128i load(const char *data)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i *>(data));
}
#endif

/// Looks for the first and the last byte of the query at once, sixteen places at a time, and
/// compares whole only where both fit.
bool containsLowered(QByteArrayView text, QByteArrayView query)
{
    const qsizetype size = query.size();
    const qsizetype places = text.size() - size + 1;
    const char *data = text.data();
    qsizetype i = 0;
#if defined(__SSE2__)
    const __m128i first = _mm_set1_epi8(query.front());
    const __m128i last = _mm_set1_epi8(query.back());
    for (; i + 16 <= places; i += 16) {
        const __m128i isFirst = _mm_cmpeq_epi8(loweredBlock(load(data + i)), first);
        const __m128i isLast = _mm_cmpeq_epi8(loweredBlock(load(data + i + size - 1)), last);
        auto candidates = unsigned(_mm_movemask_epi8(_mm_and_si128(isFirst, isLast)));
        for (; candidates != 0; candidates &= candidates - 1) {
            const char *place = data + i + __builtin_ctz(candidates);
            if (equalsLowered(place, query.data(), size))
                return true;
        }
    }
#endif
    for (; i < places; ++i) {
        if (lowered(data[i]) == query.front() && equalsLowered(data + i, query.data(), size))
            return true;
    }
    return false;
}

/// Whether \a text holds one of the two characters outside ASCII that are lowered to an ASCII
/// letter: the Kelvin sign to k, the dotted capital I to i and a dot above.
bool hasForeignCapital(QByteArrayView text)
{
    const auto holds = [&text](std::string_view character) {
        return memmem(text.data(), size_t(text.size()), character.data(), character.size());
    };
    return holds("\xE2\x84\xAA") || holds("\xC4\xB0");
}

} // namespace

LoweredQuery::LoweredQuery(const QString &query)
    : m_lowered(query.toLower())
    , m_loweredUtf8(m_lowered.toUtf8())
    , m_hasUtf8(m_lowered.isValidUtf16())
{
    for (const char32_t character : m_lowered.toUcs4()) {
        if (character >= 0x80) {
            // A mark above may come from lowering the dotted capital I of Turkish.
            const bool isCased = QChar::toUpper(character) != character
                || QChar::toTitleCase(character) != character || character == 0x307;
            if (isCased)
                m_isBytewiseExact = false;
        } else if (character == U'k' || character == U'i') {
            // See hasForeignCapital().
            m_hasForeignCapitals = true;
        }
    }
    // Letters whose only capital is longer than one character tell nothing by toUpper().
    if (m_isBytewiseExact && m_lowered.toUpper().toLower() != m_lowered)
        m_isBytewiseExact = false;
    if (m_hasUtf8 && !m_lowered.isEmpty())
        m_pattern.emplace(m_loweredUtf8);
}

std::optional<bool> LoweredQuery::answerWithoutReading(const Utf8Text &text) const
{
    if (isContainedInUtf8(text.start()))
        return true;
    if (!text.isLong())
        return false;
    const TextSignature *signature = text.longBytes().signature();
    return signature && m_pattern ? signature->contains(*m_pattern) : std::nullopt;
}

bool LoweredQuery::isContainedInUtf8(const QByteArray &text) const
{
    if (isEmpty())
        return true;
    if (!m_hasUtf8)
        return isContainedIn(decodedUtf8(text));
    if (isFoundBytewise(text))
        return true;
    if (m_isBytewiseExact && !m_hasForeignCapitals)
        return false;
    // What is left to find are capitals outside ASCII.
    if (isAscii(text) || (m_isBytewiseExact && !hasForeignCapital(text)))
        return false;
    return isContainedIn(decodedUtf8(text));
}

bool LoweredQuery::isContainedIn(const QString &text) const
{
    return text.toLower().contains(m_lowered);
}

bool LoweredQuery::isFoundBytewise(QByteArrayView text) const
{
    return text.size() >= m_loweredUtf8.size() && containsLowered(text, m_loweredUtf8);
}
