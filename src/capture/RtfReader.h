#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// The plain text of an RTF document in UTF-8: what a reader would see of its body. Paragraphs, lines
/// and table rows end in a line feed, cells in a tab; headers, notes, pictures and hidden text are
/// left out; no-break spaces become blanks.
///
/// Malformed input gives what could be read of it, and no RTF at all gives nothing. Nothing recurses,
/// and the time is linear in the size of the document, whatever is in it. Any thread.
QByteArray plainTextFromRtf(QByteArrayView rtf);
