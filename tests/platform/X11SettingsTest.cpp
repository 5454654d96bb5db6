#include "platform/x11/X11Settings.h"

#include "tests/platform/PrivateDisplay.h"

#include <QTest>

#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace {

/// Settings as they are published, of either order of bytes.
class Settings
{
public:
    explicit Settings(bool isBigEndian)
        : m_isBigEndian(isBigEndian)
    {
    }

    Settings &text(const QByteArray &name, const QByteArray &value)
    {
        begin(1, name);
        m_entries += word(quint32(value.size()), 4) + padded(value);
        return *this;
    }

    Settings &number(const QByteArray &name)
    {
        begin(0, name);
        m_entries += word(7, 4);
        return *this;
    }

    Settings &color(const QByteArray &name)
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

Settings desktopSettings(bool isBigEndian)
{
    Settings settings(isBigEndian);
    settings.number("Xft/DPI").text("Net/ThemeName", "Clear").color("Some/Color");
    settings.text("Net/IconThemeName", "Tango");
    return settings;
}

} // namespace

class X11SettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void theIconThemeIsFoundInEitherOrderOfBytes();
    void withoutAnIconThemeThereIsNone();
    void settingsThatAreCutShortDoNoHarm();
    void lyingLengthsDoNoHarm();
    void publishedSettingsAreRead();
};

void X11SettingsTest::theIconThemeIsFoundInEitherOrderOfBytes()
{
    for (const bool isBigEndian : {false, true})
        QCOMPARE(iconThemeNameIn(desktopSettings(isBigEndian).bytes()), u"Tango"_s);
}

void X11SettingsTest::withoutAnIconThemeThereIsNone()
{
    QVERIFY(!iconThemeNameIn({}));
    QVERIFY(!iconThemeNameIn(Settings(false).text("Net/ThemeName", "Clear").bytes()));
    QVERIFY(!iconThemeNameIn(Settings(false).text("Net/IconThemeName", "").bytes()));
    QVERIFY(!iconThemeNameIn(Settings(false).number("Net/IconThemeName").bytes()));
}

void X11SettingsTest::settingsThatAreCutShortDoNoHarm()
{
    const QByteArray whole = desktopSettings(false).bytes();
    const qsizetype lastByteOfTheName = whole.indexOf("Tango") + 5;
    for (qsizetype size = 0; size < lastByteOfTheName; ++size)
        QVERIFY(!iconThemeNameIn(whole.first(size)));
}

void X11SettingsTest::lyingLengthsDoNoHarm()
{
    QByteArray many = Settings(false).bytes();
    many.replace(8, 4, "\xff\xff\xff\xff");
    QVERIFY(!iconThemeNameIn(many));
    QByteArray longText = desktopSettings(false).bytes();
    longText.replace(longText.indexOf("Tango") - 4, 4, "\xff\xff\xff\xff");
    QVERIFY(!iconThemeNameIn(longText));
}

void X11SettingsTest::publishedSettingsAreRead()
{
    const PrivateDisplay display;
    QVERIFY(display.isRunning());
    QVERIFY(!x11IconThemeName());

    xcb_connection_t *xcb = xcb_connect(nullptr, nullptr);
    QVERIFY(xcb_connection_has_error(xcb) == 0);
    const auto atom = [xcb](const QByteArray &name) {
        xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(
            xcb, xcb_intern_atom(xcb, 0, quint16(name.size()), name.constData()), nullptr);
        const xcb_atom_t result = reply->atom;
        std::free(reply);
        return result;
    };
    const xcb_window_t window = xcb_generate_id(xcb);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root;
    xcb_create_window(xcb, 0, window, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, 0, 0,
                      nullptr);
    const QByteArray bytes = desktopSettings(true).bytes();
    const xcb_atom_t property = atom("_XSETTINGS_SETTINGS");
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window, property, property, 8,
                        quint32(bytes.size()), bytes.constData());
    xcb_set_selection_owner(xcb, window, atom("_XSETTINGS_S0"), XCB_CURRENT_TIME);
    static_cast<void>(atom("_SETTINGS_ARE_SET")); // Whose answer comes after all that.

    QCOMPARE(x11IconThemeName(), u"Tango"_s);
    xcb_disconnect(xcb);
}

QTEST_APPLESS_MAIN(X11SettingsTest)
#include "X11SettingsTest.moc"
