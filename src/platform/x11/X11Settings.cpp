#include "platform/x11/X11Settings.h"

#include "platform/x11/X11Requests.h"

#include <xcb/xcb.h>

namespace {

/// In units of four bytes; real ones have some kilobytes.
constexpr quint32 kMaxWords = 1 << 16;

enum SettingType : quint8 { Number = 0, Text = 1, Color = 2 };

/// Reads numbers and texts one after the other; fails for good when there is no more.
class SettingsReader
{
public:
    explicit SettingsReader(QByteArrayView bytes)
        : m_rest(bytes)
    {
        const auto order = take(1);
        m_isBigEndian = order && order->front() == 1;
        take(3);
    }

    std::optional<quint32> number(int byteCount)
    {
        const auto bytes = take(byteCount);
        if (!bytes)
            return std::nullopt;
        quint32 value = 0;
        for (int i = 0; i < byteCount; ++i) {
            const int place = m_isBigEndian ? i : byteCount - 1 - i;
            value = value << 8 | quint8((*bytes)[place]);
        }
        return value;
    }

    /// With what fills it up to a multiple of four.
    std::optional<QByteArrayView> text(quint32 byteCount)
    {
        const auto bytes = take(byteCount);
        take((4 - byteCount % 4) % 4);
        return bytes;
    }

    std::optional<QByteArrayView> take(qsizetype byteCount)
    {
        if (byteCount > m_rest.size()) {
            m_rest = {};
            return std::nullopt;
        }
        const QByteArrayView bytes = m_rest.first(byteCount);
        m_rest = m_rest.sliced(byteCount);
        return bytes;
    }

private:
    QByteArrayView m_rest;
    bool m_isBigEndian = false;
};

struct ConnectionCloser
{
    void operator()(xcb_connection_t *xcb) const { xcb_disconnect(xcb); }
};

X11Reply<xcb_intern_atom_reply_t> atom(xcb_connection_t *xcb, const QByteArray &name)
{
    return X11Reply<xcb_intern_atom_reply_t>(xcb_intern_atom_reply(
        xcb, xcb_intern_atom(xcb, false, quint16(name.size()), name.constData()), nullptr));
}

} // namespace

std::optional<X11Setting> x11SettingIn(QByteArrayView settings, QByteArrayView wanted)
{
    SettingsReader reader(settings);
    reader.number(4); // Counts the changes.
    const quint32 count = reader.number(4).value_or(0);
    for (quint32 i = 0; i < count; ++i) {
        const auto type = reader.number(1);
        reader.take(1);
        const auto name = reader.text(reader.number(2).value_or(0));
        reader.number(4); // When it was changed.
        if (!type || !name)
            return std::nullopt;
        X11Setting value;
        if (*type == Text) {
            const auto text = reader.text(reader.number(4).value_or(0));
            if (!text)
                return std::nullopt;
            value.text = text->toByteArray();
        } else if (*type == Number) {
            const auto number = reader.number(4);
            if (!number)
                return std::nullopt;
            value.number = qint32(*number);
        } else if (*type != Color || !reader.take(8)) {
            return std::nullopt;
        }
        if (*name == wanted)
            return value;
    }
    return std::nullopt;
}

std::optional<QString> iconThemeNameIn(QByteArrayView settings)
{
    const auto setting = x11SettingIn(settings, "Net/IconThemeName");
    if (!setting || !setting->text || setting->text->isEmpty())
        return std::nullopt;
    return QString::fromUtf8(*setting->text);
}

std::optional<QString> x11IconThemeName()
{
    int screen = 0;
    const std::unique_ptr<xcb_connection_t, ConnectionCloser> xcb(xcb_connect(nullptr, &screen));
    if (xcb_connection_has_error(xcb.get()) != 0)
        return std::nullopt;
    const auto selection = atom(xcb.get(), "_XSETTINGS_S" + QByteArray::number(screen));
    const auto property = atom(xcb.get(), "_XSETTINGS_SETTINGS");
    if (!selection || !property)
        return std::nullopt;
    const X11Reply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        xcb.get(), xcb_get_selection_owner(xcb.get(), selection->atom), nullptr));
    if (!owner || owner->owner == XCB_NONE)
        return std::nullopt;
    const X11Reply<xcb_get_property_reply_t> settings(xcb_get_property_reply(
        xcb.get(),
        xcb_get_property(xcb.get(), false, owner->owner, property->atom, XCB_GET_PROPERTY_TYPE_ANY,
                         0, kMaxWords),
        nullptr));
    if (!settings)
        return std::nullopt;
    const auto *bytes = static_cast<const char *>(xcb_get_property_value(settings.get()));
    return iconThemeNameIn({bytes, xcb_get_property_value_length(settings.get())});
}
