#pragma once

#include <QByteArrayView>

#include <optional>

/// A character that HTML writes as &name; or by its number.
struct HtmlCharacter
{
    char32_t codePoint = 0; ///< Never a surrogate, and never zero.
    qsizetype length = 0;   ///< How many bytes stand for it, with the ampersand.
};

/// The character that \a html begins with, an ampersand being its first byte. Absent if that is
/// only an ampersand. The names are those of HTML 4, and &apos;.
std::optional<HtmlCharacter> readHtmlCharacter(QByteArrayView html);
