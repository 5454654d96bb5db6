#pragma once

#include "capture/RtfCodePages.h"

#include <QByteArray>
#include <QString>

/// Puts the bytes and characters of an RTF document together as text. A large one is in memory only
/// once, as UTF-8.
class RtfText
{
public:
    /// A byte of text in the code page \a codePage; a character may be made of several.
    void append(char byte, int codePage);
    void append(char16_t character);

    /// Ends a row of a table with a line feed; there is none behind its last tab.
    void endRow();

    /// The text in UTF-8, with blanks for no-break spaces. Nothing may be appended afterwards.
    QByteArray finish();

private:
    void decodePending();
    bool isCharacterEnd() const;
    void settle(qsizetype size);

    RtfCodePages m_codePages;
    QByteArray m_settled;      ///< What will not change any more.
    QString m_text;            ///< What follows it.
    QByteArray m_pendingBytes; ///< What follows that, not yet decoded.
    int m_pendingCodePage = RtfCodePages::kWestern;
};
