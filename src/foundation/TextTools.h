#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

/// Whether \a byte of UTF-8 goes on with the character that began before it.
inline bool isUtf8Continuation(char byte)
{
    return (uchar(byte) & 0xC0) == 0x80;
}

/// \a utf8 as it is, with a byte order mark in front if there is one, which is a character of a text
/// like any other. Malformed sequences become U+FFFD.
QString decodedUtf8(const QByteArray &utf8);

/// \a utf8 without white space and line separators (Unicode White_Space) at both ends. The view
/// stays valid as long as the bytes of \a utf8.
QByteArrayView trimmedUtf8(QByteArrayView utf8);

/// \a utf8 with each CR LF replaced by LF; a lone CR stays. Shares the bytes if there is none.
QByteArray withLineFeeds(QByteArray utf8);

/// \a text without what is beyond \a limit UTF-16 units, and "..." instead of it, not counted. No
/// surrogate pair is split. For what is shown of texts that may be of any length.
QString shortened(const QString &text, qsizetype limit);

/// \a name as a part of a line of other words: it does not turn what stands beside it, whether it
/// runs from right to left or has signs in it that turn what follows, which are left out.
QString isolatedName(const QString &name);

/// \a text without what has no sound: control characters, marks of direction, characters of no
/// width. What joins letters and pictures into one stays.
QString speakable(const QString &text);

/// The first \a limit characters, as a reader counts them (grapheme clusters). A character may have
/// any number of marks: of those with dozens of them there are fewer.
QString firstCharacters(const QString &text, qsizetype limit);

/// One line that stands for \a utf8: line ends become " / ", tabs " | ", each run of white space one
/// blank; both ends are trimmed. Longer texts are cut to \a limit characters, as a reader counts
/// them, and "..." follows, not counted. A line of characters with heaps of marks, which take long
/// to draw, is cut at six UTF-16 units for each character. Empty if there is nothing but white
/// space.
///
/// Looks no further into the text than the result needs.
QString singleLine(QByteArrayView utf8, qsizetype limit);

/// The singleLine() of a text of which \a start is known; absent if the rest could change it.
std::optional<QString> singleLineOfStart(QByteArrayView start, qsizetype limit);
