#pragma once

#include "core/ClipboardItem.h"

#include <QByteArray>
#include <QRandomGenerator>

/// The texts that all figures are measured with: random words that look like English, 95 % of them
/// 50 to 500 bytes long, 5 % 20 to 100 kB. The same seed gives the same texts.
class Corpus
{
public:
    explicit Corpus(quint32 seed = 1) : m_random(seed) {}

    QByteArray nextText()
    {
        const bool isLong = m_random.bounded(100) < 5;
        return textOf(isLong ? m_random.bounded(20'000, 100'001) : m_random.bounded(50, 501));
    }

    /// A text of exactly \a byteCount bytes.
    QByteArray textOf(int byteCount)
    {
        QByteArray text;
        text.reserve(byteCount + 16);
        while (text.size() < byteCount) {
            appendWord(text);
            text += ' ';
        }
        text.truncate(byteCount);
        text.back() = '.';
        return text;
    }

    /// \a count entries, a second apart, the newest first.
    ClipboardItemList entries(int count)
    {
        ClipboardItemList items;
        const Timestamp newest = timestampFromMicroseconds(1'776'000'000'000'000);
        for (int age = 0; age < count; ++age) {
            ClipboardItem item
                = makeItem(ClipboardContentType::Text, newest - std::chrono::seconds(age));
            item.stringValue = Utf8Text::fromUtf8(nextText());
            item.sourceAppBundleID = QStringLiteral("org.example.Editor");
            item.contentHash = computeContentHash(item);
            items.append(std::make_shared<const ClipboardItem>(std::move(item)));
        }
        return items;
    }

private:
    void appendWord(QByteArray &text)
    {
        static constexpr const char *kSyllables[]
            = {"the", "an", "re", "on", "ti", "er", "co", "pro", "ing", "ment", "al", "de", "st",
               "ou", "ar", "le", "ne", "is", "ca", "ma", "to", "ble", "ex", "per", "so", "wi"};
        for (int count = m_random.bounded(1, 4); count > 0; --count)
            text += kSyllables[m_random.bounded(int(std::size(kSyllables)))];
    }

    QRandomGenerator m_random;
};
