#pragma once

#include "foundation/TextSignature.h"
#include "foundation/Utf8Text.h"

/// A search text that is looked for in many texts, both taken in lower case.
///
/// The answer is that of `text.toLower().contains(query.toLower())`: no trimming, no folding of
/// accents. It is found without decoding or lowering the texts wherever that is possible, which
/// makes a pass over a whole history a matter of milliseconds.
class LoweredQuery
{
public:
    explicit LoweredQuery(const QString &query);

    bool isEmpty() const { return m_lowered.isEmpty(); }

    /// True for every text if the query is empty.
    bool isContainedIn(const QString &text) const;
    bool isContainedInUtf8(const QByteArray &text) const; ///< Valid UTF-8.

    /// Whether \a text contains it, if that can be told without reading the text back.
    std::optional<bool> answerWithoutReading(const Utf8Text &text) const;

private:
    bool isFoundBytewise(QByteArrayView text) const;

    QString m_lowered;
    QByteArray m_loweredUtf8;
    std::optional<TextSignature::Pattern> m_pattern; ///< Absent where a signature cannot help.
    /// Half a surrogate pair has no UTF-8, and yet it is found in each character that holds it.
    bool m_hasUtf8 = true;
    /// No character of the query has another case but ASCII letters.
    bool m_isBytewiseExact = true;
    /// The query holds a letter that a character outside ASCII is lowered to.
    bool m_hasForeignCapitals = false;
};
