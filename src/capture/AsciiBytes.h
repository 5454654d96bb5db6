#pragma once

/// What bytes of markup are, whatever the locale.
namespace AsciiBytes {

constexpr bool isLetter(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

constexpr bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

/// Of a hexadecimal digit.
constexpr int valueOfDigit(char byte)
{
    return isDigit(byte) ? byte - '0' : (byte | 0x20) - 'a' + 10;
}

constexpr bool isHexadecimalDigit(char byte)
{
    return isDigit(byte) || (isLetter(byte) && valueOfDigit(byte) < 16);
}

/// Whether a "<" before it begins markup, and is not just a sign in the text.
constexpr bool startsMarkup(char byte)
{
    return isLetter(byte) || byte == '/' || byte == '!' || byte == '?';
}

} // namespace AsciiBytes
