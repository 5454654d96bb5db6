#pragma once

#include "foundation/LazyBytes.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

/// An immutable text, held as valid UTF-8 and decoded where it is shown.
///
/// A history is mostly text that nobody looks at; UTF-8 is half the size of a QString and can be
/// hashed, searched and stored without conversion. Of a long text only the start has to stay in
/// memory. Copies share their bytes.
class Utf8Text
{
public:
    /// Texts of more bytes are long.
    static constexpr qsizetype kLongText = 2048;

    Utf8Text() = default;
    explicit Utf8Text(const QString &text);

    /// Takes \a bytes as they are if they are valid UTF-8. Otherwise each malformed sequence
    /// becomes U+FFFD, so that every Utf8Text can be decoded and stored.
    static Utf8Text fromUtf8(QByteArray bytes);

    /// A long text that lies in \a source, where it reads as \a utf8; that must be valid and longer
    /// than kLongText.
    static Utf8Text elsewhere(QByteArrayView utf8, std::shared_ptr<const ByteSource> source);

    /// Without white space and line separators at both ends; shares the bytes if there is none.
    Utf8Text trimmed() const;

    qsizetype byteCount() const { return isLong() ? m_long.size() : m_start.size(); }
    bool isEmpty() const { return m_start.isEmpty(); }
    bool isLong() const { return !m_long.isEmpty(); }

    /// All of a short text; of a long one its first characters, some thousand bytes.
    const QByteArray &start() const { return m_start; }

    /// The bytes of a long text; none for a short one.
    const LazyBytes &longBytes() const { return m_long; }

    /// The whole text. A long one may have to be read back; absent if that fails.
    std::optional<QByteArray> read() const;

    /// Like read(), but empty instead of absent.
    QByteArray utf8() const { return read().value_or(QByteArray()); }
    QString toString() const;

    friend bool operator==(const Utf8Text &, const Utf8Text &) = default;

private:
    static Utf8Text fromValid(QByteArray utf8);

    QByteArray m_start;
    LazyBytes m_long; ///< Compared after the start, and only if that is equal.
};
