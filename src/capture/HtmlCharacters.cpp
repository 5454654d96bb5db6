#include "capture/HtmlCharacters.h"

#include "capture/AsciiBytes.h"

#include <QChar>

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_map>

using namespace AsciiBytes;

namespace {

constexpr qsizetype kMaxNameLength = 8;

/// The names of U+00A0 to U+00FF, in this order. Their semicolon may be left out.
constexpr std::array kLatinNames{
    "nbsp",   "iexcl",  "cent",   "pound",  "curren", "yen",    "brvbar", "sect",   "uml",
    "copy",   "ordf",   "laquo",  "not",    "shy",    "reg",    "macr",   "deg",    "plusmn",
    "sup2",   "sup3",   "acute",  "micro",  "para",   "middot", "cedil",  "sup1",   "ordm",
    "raquo",  "frac14", "frac12", "frac34", "iquest", "Agrave", "Aacute", "Acirc",  "Atilde",
    "Auml",   "Aring",  "AElig",  "Ccedil", "Egrave", "Eacute", "Ecirc",  "Euml",   "Igrave",
    "Iacute", "Icirc",  "Iuml",   "ETH",    "Ntilde", "Ograve", "Oacute", "Ocirc",  "Otilde",
    "Ouml",   "times",  "Oslash", "Ugrave", "Uacute", "Ucirc",  "Uuml",   "Yacute", "THORN",
    "szlig",  "agrave", "aacute", "acirc",  "atilde", "auml",   "aring",  "aelig",  "ccedil",
    "egrave", "eacute", "ecirc",  "euml",   "igrave", "iacute", "icirc",  "iuml",   "eth",
    "ntilde", "ograve", "oacute", "ocirc",  "otilde", "ouml",   "divide", "oslash", "ugrave",
    "uacute", "ucirc",  "uuml",   "yacute", "thorn",  "yuml",
};
constexpr char32_t kFirstLatin = 0xA0;

struct Name
{
    const char *name;
    char32_t codePoint;
};

constexpr std::array kOldNames{
    Name{"amp", '&'}, Name{"lt", '<'}, Name{"gt", '>'},   Name{"quot", '"'},  Name{"AMP", '&'},
    Name{"LT", '<'},  Name{"GT", '>'}, Name{"QUOT", '"'}, Name{"COPY", 0xA9}, Name{"REG", 0xAE},
};

/// Names that are only understood with their semicolon.
constexpr Name kNames[]{
    {"apos", 0x27},      {"OElig", 0x152},   {"oelig", 0x153},    {"Scaron", 0x160},
    {"scaron", 0x161},   {"Yuml", 0x178},    {"fnof", 0x192},     {"circ", 0x2C6},
    {"tilde", 0x2DC},    {"Alpha", 0x391},   {"Beta", 0x392},     {"Gamma", 0x393},
    {"Delta", 0x394},    {"Epsilon", 0x395}, {"Zeta", 0x396},     {"Eta", 0x397},
    {"Theta", 0x398},    {"Iota", 0x399},    {"Kappa", 0x39A},    {"Lambda", 0x39B},
    {"Mu", 0x39C},       {"Nu", 0x39D},      {"Xi", 0x39E},       {"Omicron", 0x39F},
    {"Pi", 0x3A0},       {"Rho", 0x3A1},     {"Sigma", 0x3A3},    {"Tau", 0x3A4},
    {"Upsilon", 0x3A5},  {"Phi", 0x3A6},     {"Chi", 0x3A7},      {"Psi", 0x3A8},
    {"Omega", 0x3A9},    {"alpha", 0x3B1},   {"beta", 0x3B2},     {"gamma", 0x3B3},
    {"delta", 0x3B4},    {"epsilon", 0x3B5}, {"zeta", 0x3B6},     {"eta", 0x3B7},
    {"theta", 0x3B8},    {"iota", 0x3B9},    {"kappa", 0x3BA},    {"lambda", 0x3BB},
    {"mu", 0x3BC},       {"nu", 0x3BD},      {"xi", 0x3BE},       {"omicron", 0x3BF},
    {"pi", 0x3C0},       {"rho", 0x3C1},     {"sigmaf", 0x3C2},   {"sigma", 0x3C3},
    {"tau", 0x3C4},      {"upsilon", 0x3C5}, {"phi", 0x3C6},      {"chi", 0x3C7},
    {"psi", 0x3C8},      {"omega", 0x3C9},   {"thetasym", 0x3D1}, {"upsih", 0x3D2},
    {"piv", 0x3D6},      {"ensp", 0x2002},   {"emsp", 0x2003},    {"thinsp", 0x2009},
    {"zwnj", 0x200C},    {"zwj", 0x200D},    {"lrm", 0x200E},     {"rlm", 0x200F},
    {"ndash", 0x2013},   {"mdash", 0x2014},  {"lsquo", 0x2018},   {"rsquo", 0x2019},
    {"sbquo", 0x201A},   {"ldquo", 0x201C},  {"rdquo", 0x201D},   {"bdquo", 0x201E},
    {"dagger", 0x2020},  {"Dagger", 0x2021}, {"bull", 0x2022},    {"hellip", 0x2026},
    {"permil", 0x2030},  {"prime", 0x2032},  {"Prime", 0x2033},   {"lsaquo", 0x2039},
    {"rsaquo", 0x203A},  {"oline", 0x203E},  {"frasl", 0x2044},   {"euro", 0x20AC},
    {"image", 0x2111},   {"weierp", 0x2118}, {"real", 0x211C},    {"trade", 0x2122},
    {"alefsym", 0x2135}, {"larr", 0x2190},   {"uarr", 0x2191},    {"rarr", 0x2192},
    {"darr", 0x2193},    {"harr", 0x2194},   {"crarr", 0x21B5},   {"lArr", 0x21D0},
    {"uArr", 0x21D1},    {"rArr", 0x21D2},   {"dArr", 0x21D3},    {"hArr", 0x21D4},
    {"forall", 0x2200},  {"part", 0x2202},   {"exist", 0x2203},   {"empty", 0x2205},
    {"nabla", 0x2207},   {"isin", 0x2208},   {"notin", 0x2209},   {"ni", 0x220B},
    {"prod", 0x220F},    {"sum", 0x2211},    {"minus", 0x2212},   {"lowast", 0x2217},
    {"radic", 0x221A},   {"prop", 0x221D},   {"infin", 0x221E},   {"ang", 0x2220},
    {"and", 0x2227},     {"or", 0x2228},     {"cap", 0x2229},     {"cup", 0x222A},
    {"int", 0x222B},     {"there4", 0x2234}, {"sim", 0x223C},     {"cong", 0x2245},
    {"asymp", 0x2248},   {"ne", 0x2260},     {"equiv", 0x2261},   {"le", 0x2264},
    {"ge", 0x2265},      {"sub", 0x2282},    {"sup", 0x2283},     {"nsub", 0x2284},
    {"sube", 0x2286},    {"supe", 0x2287},   {"oplus", 0x2295},   {"otimes", 0x2297},
    {"perp", 0x22A5},    {"sdot", 0x22C5},   {"lceil", 0x2308},   {"rceil", 0x2309},
    {"lfloor", 0x230A},  {"rfloor", 0x230B}, {"lang", 0x2329},    {"rang", 0x232A},
    {"loz", 0x25CA},     {"spades", 0x2660}, {"clubs", 0x2663},   {"hearts", 0x2665},
    {"diams", 0x2666},
};

/// What the numbers 128 to 159 stand for, which mean the western code page.
constexpr std::array<char16_t, 32> kWesternCharacters{
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178,
};

using NameTable = std::unordered_map<std::string_view, char32_t>;

const NameTable &oldNames()
{
    static const NameTable names = [] {
        NameTable table;
        char32_t codePoint = kFirstLatin;
        for (const char *name : kLatinNames)
            table.emplace(name, codePoint++);
        for (const Name &row : kOldNames)
            table.emplace(row.name, row.codePoint);
        return table;
    }();
    return names;
}

const NameTable &allNames()
{
    static const NameTable names = [] {
        NameTable table = oldNames();
        for (const Name &row : kNames)
            table.emplace(row.name, row.codePoint);
        return table;
    }();
    return names;
}

bool isDigitOf(int base, char byte)
{
    return base == 16 ? isHexadecimalDigit(byte) : isDigit(byte);
}

bool hasSemicolonAt(QByteArrayView html, qsizetype position)
{
    return position < html.size() && html[position] == ';';
}

/// The character that a number means to a browser.
char32_t characterOfNumber(char32_t number)
{
    if (number >= 0x80 && number < 0xA0)
        return kWesternCharacters[number - 0x80];
    if (number == 0 || number > QChar::LastValidCodePoint || QChar::isSurrogate(number))
        return QChar::ReplacementCharacter;
    return number;
}

std::optional<HtmlCharacter> readNumber(QByteArrayView html)
{
    qsizetype position = 2;
    const bool isHexadecimal = position < html.size() && (html[position] | 0x20) == 'x';
    const int base = isHexadecimal ? 16 : 10;
    position += isHexadecimal ? 1 : 0;
    const qsizetype firstDigit = position;
    char32_t number = 0;
    for (; position < html.size() && isDigitOf(base, html[position]); ++position) {
        number = number * char32_t(base) + char32_t(valueOfDigit(html[position]));
        number = std::min<char32_t>(number, QChar::LastValidCodePoint + 1);
    }
    if (position == firstDigit)
        return std::nullopt;
    return HtmlCharacter{characterOfNumber(number), position + hasSemicolonAt(html, position)};
}

std::optional<HtmlCharacter> readName(QByteArrayView html)
{
    const QByteArrayView rest = html.sliced(1, std::min(html.size() - 1, kMaxNameLength + 1));
    qsizetype length = 0;
    while (length < rest.size() && (isLetter(rest[length]) || isDigit(rest[length])))
        ++length;
    const std::string_view name(rest.data(), std::size_t(length));
    if (hasSemicolonAt(rest, length)) {
        const auto found = allNames().find(name);
        if (found != allNames().end())
            return HtmlCharacter{found->second, length + 2};
    }
    for (std::size_t size = name.size(); size > 1; --size) {
        const auto found = oldNames().find(name.substr(0, size));
        if (found != oldNames().end())
            return HtmlCharacter{found->second, qsizetype(size) + 1};
    }
    return std::nullopt;
}

} // namespace

std::optional<HtmlCharacter> readHtmlCharacter(QByteArrayView html)
{
    if (html.size() < 2)
        return std::nullopt;
    return html[1] == '#' ? readNumber(html) : readName(html);
}
