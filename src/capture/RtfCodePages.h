#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>

#include <optional>
#include <unordered_map>

/// Decodes the 8-bit text of RTF documents by code page.
class RtfCodePages
{
public:
    static constexpr int kWestern = 1252;
    static constexpr int kSymbol = 42; ///< Fonts of pictures; only the bullet has a meaning.

    /// The code page of an RTF font character set; absent if the document's own applies.
    static std::optional<int> ofCharset(int charset);

    /// Unknown code pages are read as the western one. Malformed bytes become U+FFFD; half a
    /// character at the end is dropped.
    QString decode(QByteArrayView bytes, int codePage);

private:
    QStringDecoder &decoderFor(int codePage);

    std::unordered_map<int, QStringDecoder> m_decoders;
};
