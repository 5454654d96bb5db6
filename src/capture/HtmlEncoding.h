#pragma once

#include <QByteArray>

/// \a html in UTF-8, without a byte order mark. The bytes are UTF-8, or UTF-16 with or without a
/// mark, or in the character set that the document declares, or in the western code page. What is
/// malformed becomes U+FFFD. Takes no more memory than the result.
QByteArray utf8FromHtml(const QByteArray &html);
