#pragma once

#include <QByteArray>

/// The plain text of an HTML document in UTF-8, as a browser would show it; empty if it holds
/// nothing but pictures. For the encoding of \a html see utf8FromHtml().
///
/// Nothing that the document refers to is loaded. Nothing recurses, and the time is linear in the
/// size of the document, whatever is in it. Any thread.
QByteArray plainTextFromHtml(const QByteArray &html);
