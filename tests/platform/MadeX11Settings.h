#pragma once

#include <QByteArray>

/// Settings as they are published, of either order of bytes.
class MadeX11Settings
{
public:
    explicit MadeX11Settings(bool isBigEndian = false)
        : m_isBigEndian(isBigEndian)
    {
    }

    MadeX11Settings &text(const QByteArray &name, const QByteArray &value)
    {
        begin(1, name);
        m_entries += word(quint32(value.size()), 4) + padded(value);
        return *this;
    }

    MadeX11Settings &number(const QByteArray &name, qint32 value)
    {
        begin(0, name);
        m_entries += word(quint32(value), 4);
        return *this;
    }

    MadeX11Settings &color(const QByteArray &name)
    {
        begin(2, name);
        m_entries += QByteArray(8, 'c');
        return *this;
    }

    QByteArray bytes() const
    {
        const char order = m_isBigEndian ? 1 : 0;
        return QByteArray(1, order) + QByteArray(3, '\0') + word(42, 4) + word(m_count, 4)
            + m_entries;
    }

private:
    void begin(char type, const QByteArray &name)
    {
        ++m_count;
        m_entries += QByteArray(1, type) + QByteArray(1, '\0') + word(quint32(name.size()), 2)
            + padded(name) + word(3, 4);
    }

    QByteArray word(quint32 value, int byteCount) const
    {
        QByteArray bytes;
        for (int i = 0; i < byteCount; ++i) {
            const char byte = char(value >> (8 * i));
            m_isBigEndian ? bytes.prepend(byte) : bytes.append(byte);
        }
        return bytes;
    }

    static QByteArray padded(QByteArray bytes)
    {
        return bytes.append((4 - bytes.size() % 4) % 4, '\0');
    }

    bool m_isBigEndian;
    quint32 m_count = 0;
    QByteArray m_entries;
};
