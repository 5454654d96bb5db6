#include "platform/linux/VirtualKeyCodes.h"

#include <algorithm>
#include <array>

namespace {

constexpr quint32 kBackSpaceKeysym = 0xff08;
constexpr quint32 kTabKeysym = 0xff09;
constexpr quint32 kReturnKeysym = 0xff0d;
constexpr quint32 kEscapeKeysym = 0xff1b;

/// In the order of the codes. 52 is the Escape key by its name, 53 by its place on the keyboard.
constexpr auto kVirtualKeys = std::to_array<VirtualKey>({
    {0, 'a', 30},           {1, 's', 31},           {2, 'd', 32},
    {3, 'f', 33},           {4, 'h', 35},           {5, 'g', 34},
    {6, 'z', 44},           {7, 'x', 45},           {8, 'c', 46},
    {9, 'v', 47},           {11, 'b', 48},          {12, 'q', 16},
    {13, 'w', 17},          {14, 'e', 18},          {15, 'r', 19},
    {16, 'y', 21},          {17, 't', 20},          {18, '1', 2},
    {19, '2', 3},           {20, '3', 4},           {21, '4', 5},
    {22, '6', 7},           {23, '5', 6},           {24, '=', 13},
    {25, '9', 10},          {26, '7', 8},           {27, '-', 12},
    {28, '8', 9},           {29, '0', 11},          {30, ']', 27},
    {31, 'o', 24},          {32, 'u', 22},          {33, '[', 26},
    {34, 'i', 23},          {35, 'p', 25},          {36, kReturnKeysym, 28},
    {37, 'l', 38},          {38, 'j', 36},          {39, '\'', 40},
    {40, 'k', 37},          {41, ';', 39},          {42, '\\', 43},
    {43, ',', 51},          {44, '/', 53},          {45, 'n', 49},
    {46, 'm', 50},          {47, '.', 52},          {48, kTabKeysym, 15},
    {49, ' ', 57},          {50, '`', 41},          {51, kBackSpaceKeysym, 14},
    {52, kEscapeKeysym, 1}, {53, kEscapeKeysym, 1},
});

static_assert(std::ranges::is_sorted(kVirtualKeys, {}, &VirtualKey::code));

} // namespace

std::optional<VirtualKey> findVirtualKey(quint32 code)
{
    const auto key = std::ranges::lower_bound(kVirtualKeys, code, {}, &VirtualKey::code);
    if (key == kVirtualKeys.end() || key->code != code)
        return std::nullopt;
    return *key;
}

std::span<const VirtualKey> virtualKeys()
{
    return kVirtualKeys;
}
