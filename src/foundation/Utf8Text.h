#pragma once

#include <QByteArray>
#include <QString>

/// An immutable text, held as valid UTF-8 and decoded where it is shown.
///
/// A history is mostly text that nobody looks at; UTF-8 is half the size of a QString and can be
/// hashed, searched and stored without conversion. Copies share one buffer.
class Utf8Text
{
public:
    Utf8Text() = default;
    explicit Utf8Text(const QString &text);

    /// Takes \a bytes as they are if they are valid UTF-8. Otherwise each malformed sequence
    /// becomes U+FFFD, so that every Utf8Text can be decoded and stored.
    static Utf8Text fromUtf8(QByteArray bytes);

    /// Without white space and line separators at both ends; shares the buffer if there is none.
    Utf8Text trimmed() const;

    QString toString() const;
    const QByteArray &utf8() const { return m_utf8; }
    qsizetype byteCount() const { return m_utf8.size(); }
    bool isEmpty() const { return m_utf8.isEmpty(); }

    friend bool operator==(const Utf8Text &, const Utf8Text &) = default;

private:
    QByteArray m_utf8;
};
