#include "platform/x11/X11Settings.h"

#include "tests/platform/MadeX11Settings.h"
#include "tests/platform/PrivateDisplay.h"

#include <QTest>

#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace {

MadeX11Settings desktopSettings(bool isBigEndian)
{
    MadeX11Settings settings(isBigEndian);
    settings.number("Xft/DPI", 98304).text("Net/ThemeName", "Clear").color("Some/Color");
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
    void textsAndNumbersAreFoundByTheirNames();
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
    QVERIFY(!iconThemeNameIn(MadeX11Settings().text("Net/ThemeName", "Clear").bytes()));
    QVERIFY(!iconThemeNameIn(MadeX11Settings().text("Net/IconThemeName", "").bytes()));
    QVERIFY(!iconThemeNameIn(MadeX11Settings().number("Net/IconThemeName", 7).bytes()));
}

void X11SettingsTest::textsAndNumbersAreFoundByTheirNames()
{
    for (const bool isBigEndian : {false, true}) {
        const QByteArray settings =
            MadeX11Settings(isBigEndian).number("One", -1).color("Two").text("Three", "3").bytes();
        QCOMPARE(x11SettingIn(settings, "One")->number, -1);
        QVERIFY(!x11SettingIn(settings, "One")->text);
        QVERIFY(!x11SettingIn(settings, "Two")->number);
        QCOMPARE(x11SettingIn(settings, "Three")->text, QByteArray("3"));
        QVERIFY(!x11SettingIn(settings, "Four"));
    }
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
    QByteArray many = MadeX11Settings().bytes();
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
