#pragma once

#include <QByteArray>

#include <array>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

/// Tells of a text that is not at hand whether something short can be in it: which bytes, pairs and
/// triples of bytes its lower case has. Much smaller than the text. Any thread.
class TextSignature
{
public:
    /// What is looked for in many texts. Valid UTF-8 in lower case, and not empty.
    class Pattern
    {
    public:
        explicit Pattern(QByteArrayView loweredUtf8);

    private:
        friend class TextSignature;

        std::vector<quint16> m_pairs;    ///< Of one byte the pair with nothing.
        std::vector<quint32> m_triples;
        bool m_isDecidedByPair = false;
    };

    /// Of valid UTF-8 in any case. Null if \a stop is requested meanwhile.
    static std::unique_ptr<const TextSignature> of(const QByteArray &utf8,
                                                   const std::stop_token &stop = {});

    /// Whether the lower case of the text holds the pattern; absent if only the text can tell.
    std::optional<bool> contains(const Pattern &pattern) const;

    qsizetype byteCount() const;

private:
    class Builder;

    /// Letters, digits and the blank have a class of their own, all other bytes are in class 0. A
    /// byte alone counts as a pair with the class after the last.
    static constexpr int kClassCount = 38;
    static constexpr int kPairCount = kClassCount * (kClassCount + 1);

    static int classOf(char byte);
    static quint16 pairOf(int first, int second) { return quint16(first * (kClassCount + 1) + second); }
    static quint32 tripleOf(char first, char second, char third);

    TextSignature() = default;

    std::array<quint64, (kPairCount + 63) / 64> m_pairs{};
    std::vector<quint64> m_triples; ///< A power of two of them; triples share bits.
};
