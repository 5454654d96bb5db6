#include "tags/TagColors.h"

#include <array>

namespace {

struct TagShades
{
    QRgb light;
    QRgb dark;
};

/// In the order of the palette. On dark ground the same colour has to be lighter to be seen.
constexpr std::array<TagShades, kTagColorCount> kShades{{
    {0xD93B3B, 0xFF6B63}, {0xD86A12, 0xFF9F43}, {0xB8860B, 0xF5CC4A}, {0x2F9A48, 0x57CC6B},
    {0x129B86, 0x5FD9C4}, {0x1E8A9A, 0x5CC7D6}, {0x1485B5, 0x58BDF0}, {0x2B66D9, 0x6E9BF5},
    {0x5450C8, 0x908DFA}, {0x9145C4, 0xC486F0}, {0xD13A78, 0xFF7AA8}, {0x936B45, 0xC49A70},
    {0x7A7D85, 0x9DA0A8}, {0xB0DB53, 0xB0DB53}, {0x84C9F0, 0x84C9F0},
}};

} // namespace

QColor systemColor(TagColor color, ColorScheme scheme)
{
    const TagShades &shades = kShades.at(size_t(color));
    return QColor(scheme == ColorScheme::Dark ? shades.dark : shades.light);
}
