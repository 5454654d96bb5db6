#include "capture/RtfCodePages.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Charset
{
    int charset;
    int codePage;
};

constexpr std::array kCharsets{
    Charset{0, 1252},    Charset{2, RtfCodePages::kSymbol},
    Charset{77, 10000},  Charset{78, 932},
    Charset{79, 949},    Charset{80, 936},
    Charset{81, 950},    Charset{128, 932},
    Charset{129, 949},   Charset{130, 1361},
    Charset{134, 936},   Charset{136, 950},
    Charset{161, 1253},  Charset{162, 1254},
    Charset{163, 1258},  Charset{177, 1255},
    Charset{178, 1256},  Charset{186, 1257},
    Charset{204, 1251},  Charset{222, 874},
    Charset{238, 1250},  Charset{254, 437},
    Charset{255, 850},
};

struct CodePage
{
    int number;
    const char *name; ///< As the decoder knows it.
};

/// Only what stands here is ever asked of the decoder, so that a document cannot make it look for
/// thousands of names.
constexpr std::array kCodePages{
    CodePage{437, "IBM437"},          CodePage{850, "IBM850"},
    CodePage{852, "IBM852"},          CodePage{866, "IBM866"},
    CodePage{874, "windows-874"},     CodePage{932, "windows-932"},
    CodePage{936, "windows-936"},     CodePage{949, "windows-949"},
    CodePage{950, "windows-950"},     CodePage{1250, "windows-1250"},
    CodePage{1251, "windows-1251"},   CodePage{1252, "windows-1252"},
    CodePage{1253, "windows-1253"},   CodePage{1254, "windows-1254"},
    CodePage{1255, "windows-1255"},   CodePage{1256, "windows-1256"},
    CodePage{1257, "windows-1257"},   CodePage{1258, "windows-1258"},
    CodePage{10000, "macintosh"},     CodePage{65001, "UTF-8"},
};

const char *nameOf(int codePage)
{
    const auto row = std::ranges::find(kCodePages, codePage, &CodePage::number);
    return row == kCodePages.end() ? nullptr : row->name;
}

bool isAscii(QByteArrayView bytes)
{
    return std::ranges::all_of(bytes, [](char byte) { return uchar(byte) < 0x80; });
}

} // namespace

std::optional<int> RtfCodePages::ofCharset(int charset)
{
    const auto row = std::ranges::find(kCharsets, charset, &Charset::charset);
    if (row == kCharsets.end())
        return std::nullopt;
    return row->codePage;
}

QString RtfCodePages::decode(QByteArrayView bytes, int codePage)
{
    // All of them agree about ASCII, which is nearly everything.
    if (isAscii(bytes))
        return QString::fromLatin1(bytes);
    if (codePage == kSymbol) {
        QByteArray text = bytes.toByteArray();
        text.replace('\xb7', '\x95');
        return decode(text, kWestern);
    }
    QStringDecoder &decoder = decoderFor(codePage);
    // Without this, half a character at the end of one run would join the next run.
    decoder.resetState();
    if (!decoder.isValid())
        return QString::fromLatin1(bytes);
    QString text = decoder.decode(bytes);
    // What some of the decoders give for malformed bytes.
    return text.replace(QChar(QChar::SpecialCharacter(0x1A)), QChar(QChar::ReplacementCharacter));
}

QStringDecoder &RtfCodePages::decoderFor(int codePage)
{
    if (!nameOf(codePage))
        codePage = kWestern;
    const auto found = m_decoders.find(codePage);
    if (found != m_decoders.end())
        return found->second;
    return m_decoders.emplace(codePage, QStringDecoder(nameOf(codePage))).first->second;
}
