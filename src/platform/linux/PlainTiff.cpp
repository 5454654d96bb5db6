#include "platform/linux/PlainTiff.h"

#include <QtEndian>

#include <cstring>

namespace {

constexpr qsizetype kDirectoryOffset = 8;
constexpr qsizetype kEntrySize = 12;
constexpr qsizetype kMaxEntries = 14;
/// Behind the directory and its values, and where lines of pixels like to begin.
constexpr qsizetype kPixelOffset = 208;
constexpr quint32 kDotsPerInch = 72;

int channelCountOf(bool hasAlpha)
{
    return hasAlpha ? 4 : 3;
}

/// Builds what stands before the pixels.
class Header
{
public:
    Header(QSize size, bool hasAlpha)
    {
        const auto channelCount = quint32(channelCountOf(hasAlpha));
        const auto width = quint32(size.width());
        const auto height = quint32(size.height());

        std::memcpy(m_bytes.data(), "II*\0", 4);
        put(4, quint32(kDirectoryOffset));
        put(kDirectoryOffset, quint16(hasAlpha ? kMaxEntries : kMaxEntries - 1));
        addNumber(kLong, 256, width);
        addNumber(kLong, 257, height);
        addDepths(channelCount);
        addNumber(kShort, 259, 1); // Not compressed.
        addNumber(kShort, 262, 2); // Red, green and blue.
        addNumber(kLong, 273, quint32(kPixelOffset));
        addNumber(kShort, 277, channelCount);
        addNumber(kLong, 278, height); // All in one strip.
        addNumber(kLong, 279, width * height * channelCount);
        addRatio(282, kDotsPerInch);
        addRatio(283, kDotsPerInch);
        addNumber(kShort, 284, 1); // The channels of a pixel stand together.
        addNumber(kShort, 296, 2); // Dots are counted by the inch.
        if (hasAlpha)
            addNumber(kShort, 338, 2); // Alpha, which is not multiplied into the others.
    }

    const QByteArray &bytes() const { return m_bytes; }

private:
    static constexpr quint16 kShort = 3;
    static constexpr quint16 kLong = 4;
    static constexpr quint16 kRational = 5;

    template <typename Number>
    void put(qsizetype position, Number number)
    {
        qToLittleEndian(number, m_bytes.data() + position);
    }

    void addEntry(quint16 type, quint16 tag, quint32 count, quint32 value)
    {
        put(m_entry, tag);
        put(m_entry + 2, type);
        put(m_entry + 4, count);
        put(m_entry + 8, value);
        m_entry += kEntrySize;
    }

    void addNumber(quint16 type, quint16 tag, quint32 value) { addEntry(type, tag, 1, value); }

    /// How many bits each channel has.
    void addDepths(quint32 channelCount)
    {
        addEntry(kShort, 258, channelCount, quint32(m_value));
        for (quint32 channel = 0; channel < channelCount; ++channel) {
            put(m_value, quint16(8));
            m_value += 2;
        }
    }

    void addRatio(quint16 tag, quint32 numerator)
    {
        addEntry(kRational, tag, 1, quint32(m_value));
        put(m_value, numerator);
        put(m_value + 4, quint32(1));
        m_value += 8;
    }

    QByteArray m_bytes = QByteArray(kPixelOffset, '\0');
    qsizetype m_entry = kDirectoryOffset + 2;
    /// Behind the longest directory and the zero that ends it.
    qsizetype m_value = kDirectoryOffset + 2 + kMaxEntries * kEntrySize + 4;
};

/// What \a file says its extent is, if it is one of ours.
QSize sizeIn(const QByteArray &file)
{
    const auto value = [&file](int entry) {
        const qsizetype position = kDirectoryOffset + 2 + entry * kEntrySize + 8;
        return qFromLittleEndian<qint32>(file.constData() + position);
    };
    return {value(0), value(1)};
}

void releaseFile(void *file)
{
    delete static_cast<QByteArray *>(file);
}

} // namespace

QByteArray PlainTiff::fromImage(const QImage &image)
{
    const bool hasAlpha = image.hasAlphaChannel();
    const qsizetype lineSize = qsizetype(image.width()) * channelCountOf(hasAlpha);
    QByteArray file(kPixelOffset + lineSize * image.height(), Qt::Uninitialized);
    char *end = file.data();
    std::memcpy(end, Header(image.size(), hasAlpha).bytes().constData(), kPixelOffset);
    end += kPixelOffset;
    for (int y = 0; y < image.height(); ++y) {
        std::memcpy(end, image.constScanLine(y), std::size_t(lineSize));
        end += lineSize;
    }
    return file;
}

QImage PlainTiff::imageIn(const QByteArray &file)
{
    if (file.size() <= kPixelOffset)
        return {};
    const QSize size = sizeIn(file);
    const qsizetype byteCount = file.size() - kPixelOffset;
    for (const bool hasAlpha : {false, true}) {
        const qsizetype lineSize = qsizetype(size.width()) * channelCountOf(hasAlpha);
        if (size.isEmpty() || byteCount % lineSize != 0 || byteCount / lineSize != size.height()
            || !file.startsWith(Header(size, hasAlpha).bytes()))
            continue;
        auto *held = new QByteArray(file);
        return {reinterpret_cast<const uchar *>(held->constData() + kPixelOffset), size.width(),
                size.height(), lineSize, hasAlpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888,
                releaseFile, held};
    }
    return {};
}
