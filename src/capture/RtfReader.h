#pragma once

#include <QByteArrayView>
#include <QString>

/// The plain text of an RTF document: what a reader would see of its body. Paragraphs, lines and table rows end in a line feed, cells in
/// a tab; headers, notes, pictures and hidden text are left out; no-break spaces become blanks.
///
/// Malformed input gives what could be read of it, and no RTF at all gives nothing. The time is
/// linear in the input and nothing recurses, whatever the input is. The work is bounded to some tens
/// of milliseconds: of documents with millions of characters only the beginning is read.
QString plainTextFromRtf(QByteArrayView rtf);
