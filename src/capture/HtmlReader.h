#pragma once

#include <QByteArray>
#include <QString>

/// The plain text of an HTML document as a browser would show it; empty if it holds nothing but
/// pictures. The bytes are UTF-8, or UTF-16 with or without a mark, or what the document declares.
///
/// Nothing that the document refers to is loaded. The work is bounded to some tens of milliseconds,
/// so that it may be done on the main thread: of very large documents only the beginning is read.
QString plainTextFromHtml(const QByteArray &html);

/// How much of a document is looked at.
inline constexpr qsizetype kMaxHtmlBytes = 4 * 1024 * 1024;
