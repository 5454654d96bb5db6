#include "platform/x11/X11GlobalHotkey.h"

#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Keyboard.h"
#include "tests/platform/PrivateDesktop.h"

#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 kSpace = 49;
constexpr quint32 kLetterV = 9;
constexpr quint32 kCommand = 0x100;
constexpr quint32 kShift = 0x200;
constexpr quint32 kOption = 0x800;
constexpr quint32 kControl = 0x1000;
constexpr int kBadAccess = 10;

} // namespace

/// Keys are pressed by xdotool on a server without a window manager.
class X11GlobalHotkeyTest : public QObject
{
    Q_OBJECT

public:
    explicit X11GlobalHotkeyTest(PrivateDesktop &desktop)
        : m_desktop(desktop)
    {
    }

private slots:
    void init();
    void cleanup();
    void pressIsToldOnce_data();
    void pressIsToldOnce();
    void otherCombinationsAreNotOurs();
    void lockKeysDoNotMatter_data();
    void lockKeysDoNotMatter();
    void heldKeyDoesNotRepeat();
    void combinationHeldByAnotherIsRefused();
    void nothingIsLeftOfARefusedCombination();
    void releasedCombinationIsFree();
    void unknownKeyIsRefused();
    void keyIsFoundOnOtherLayouts_data();
    void keyIsFoundOnOtherLayouts();
    void changedLayoutMovesTheGrab();
    void pressTellsTheTimeOfTheUser();

private:
    void settle();

    PrivateDesktop &m_desktop;
    std::unique_ptr<X11Connection> m_connection;
    std::unique_ptr<X11Keyboard> m_keyboard;
    std::unique_ptr<X11GlobalHotkey> m_hotkey;
    int m_pressCount = 0;
};

void X11GlobalHotkeyTest::init()
{
    m_connection = std::make_unique<X11Connection>(m_desktop.displayName());
    m_keyboard = std::make_unique<X11Keyboard>(*m_connection);
    m_hotkey = std::make_unique<X11GlobalHotkey>(*m_connection, *m_keyboard);
    m_pressCount = 0;
    m_hotkey->onPressed = [this] { ++m_pressCount; };
}

void X11GlobalHotkeyTest::cleanup()
{
    m_hotkey.reset();
    m_keyboard.reset();
    m_connection.reset();
}

/// Returns when everything that was pressed so far has been told: a key that is surely ours,
/// pressed afterwards, has arrived.
void X11GlobalHotkeyTest::settle()
{
    X11Keyboard keyboard(*m_connection);
    X11GlobalHotkey marker(*m_connection, keyboard);
    int markerCount = 0;
    marker.onPressed = [&markerCount] { ++markerCount; };
    QCOMPARE(marker.assign(kSpace, kCommand | kControl | kShift), 0);
    m_desktop.xdotool(u"key super+ctrl+shift+space"_s);
    QTRY_COMPARE(markerCount, 1);
}

void X11GlobalHotkeyTest::pressIsToldOnce_data()
{
    QTest::addColumn<quint32>("keyCode");
    QTest::addColumn<quint32>("modifiers");
    QTest::addColumn<QString>("keys");

    QTest::newRow("Option and Space") << kSpace << kOption << u"alt+space"_s;
    QTest::newRow("Command and V") << kLetterV << kCommand << u"super+v"_s;
    QTest::newRow("Control, Shift and V") << kLetterV << (kControl | kShift) << u"ctrl+shift+v"_s;
    QTest::newRow("all four") << kLetterV << (kControl | kShift | kOption | kCommand)
                              << u"ctrl+shift+alt+super+v"_s;
    QTest::newRow("backquote alone") << 50u << 0u << u"grave"_s;
    QTest::newRow("Enter") << 36u << kControl << u"ctrl+Return"_s;
}

void X11GlobalHotkeyTest::pressIsToldOnce()
{
    QFETCH(quint32, keyCode);
    QFETCH(quint32, modifiers);
    QFETCH(QString, keys);

    QCOMPARE(m_hotkey->assign(keyCode, modifiers), 0);
    m_desktop.xdotool(u"key "_s + keys);
    QTRY_COMPARE(m_pressCount, 1);
    m_desktop.xdotool(u"key "_s + keys);
    settle();
    QCOMPARE(m_pressCount, 2);
}

void X11GlobalHotkeyTest::otherCombinationsAreNotOurs()
{
    QCOMPARE(m_hotkey->assign(kSpace, kOption), 0);
    m_desktop.xdotool(u"key space key ctrl+space key alt+shift+space key alt+v"_s);
    settle();
    QCOMPARE(m_pressCount, 0);
}

void X11GlobalHotkeyTest::lockKeysDoNotMatter_data()
{
    QTest::addColumn<QString>("locks");

    QTest::newRow("Caps Lock") << u"key Caps_Lock"_s;
    QTest::newRow("Num Lock") << u"key Num_Lock"_s;
    QTest::newRow("both") << u"key Caps_Lock key Num_Lock"_s;
}

void X11GlobalHotkeyTest::lockKeysDoNotMatter()
{
    QFETCH(QString, locks);

    QCOMPARE(m_hotkey->assign(kSpace, kOption), 0);
    m_desktop.xdotool(locks);
    QVERIFY(m_keyboard->state().lockedModifiers != 0);
    m_desktop.xdotool(u"key alt+space"_s);
    m_desktop.xdotool(locks);
    QCOMPARE(m_keyboard->state().lockedModifiers, quint8(0));
    QTRY_COMPARE(m_pressCount, 1);
}

void X11GlobalHotkeyTest::heldKeyDoesNotRepeat()
{
    QCOMPARE(m_hotkey->assign(kSpace, kOption), 0);
    // A repeat begins 20 ms after the press and comes every 10 ms.
    m_desktop.run(u"xset"_s, {u"r"_s, u"rate"_s, u"20"_s, u"100"_s});
    m_desktop.xdotool(u"keydown alt keydown space sleep 0.5 keyup space keyup alt"_s);
    m_desktop.xdotool(u"key alt+space"_s);
    settle();
    m_desktop.run(u"xset"_s, {u"r"_s, u"rate"_s, u"660"_s, u"25"_s});
    QCOMPARE(m_pressCount, 2);
}

void X11GlobalHotkeyTest::combinationHeldByAnotherIsRefused()
{
    X11Connection other(m_desktop.displayName());
    X11Keyboard otherKeyboard(other);
    X11GlobalHotkey holder(other, otherKeyboard);
    QCOMPARE(holder.assign(kSpace, kOption), 0);

    QCOMPARE(m_hotkey->assign(kSpace, kOption), kBadAccess);
    QCOMPARE(m_hotkey->assign(kSpace, kControl), 0);
    m_hotkey->release();

    holder.release();
    QTRY_COMPARE(m_hotkey->assign(kSpace, kOption), 0);
}

void X11GlobalHotkeyTest::nothingIsLeftOfARefusedCombination()
{
    // The other holds the combination with Caps Lock only.
    X11Connection other(m_desktop.displayName());
    X11Keyboard otherKeyboard(other);
    X11GlobalHotkey whole(other, otherKeyboard);
    QProcess &holder = m_desktop.launch(
        u"/usr/bin/python3"_s,
        {u"-c"_s, u"import time\nfrom Xlib import X, display\nd = display.Display()\n"
                  "d.screen().root.grab_key(65, X.Mod1Mask | X.LockMask, 0, X.GrabModeAsync,"
                  " X.GrabModeAsync)\nd.sync()\ntime.sleep(1000)\n"_s});

    QTRY_VERIFY([this] {
        const int error = m_hotkey->assign(kSpace, kOption);
        if (error == 0)
            m_hotkey->release(); // The other one is not ready yet.
        return error == kBadAccess;
    }());
    m_desktop.end(holder);
    // Had one variant stayed ours, the whole could not be taken.
    QTRY_COMPARE(whole.assign(kSpace, kOption), 0);
}

void X11GlobalHotkeyTest::releasedCombinationIsFree()
{
    QCOMPARE(m_hotkey->assign(kSpace, kOption), 0);
    m_hotkey->release();
    m_desktop.xdotool(u"key alt+space"_s);
    settle();
    QCOMPARE(m_pressCount, 0);

    m_hotkey->release(); // Once more does no harm.
    QCOMPARE(m_hotkey->assign(kLetterV, kOption), 0);
    m_desktop.xdotool(u"key alt+v"_s);
    QTRY_COMPARE(m_pressCount, 1);
}

void X11GlobalHotkeyTest::unknownKeyIsRefused()
{
    QCOMPARE(m_hotkey->assign(10, kOption), HotkeyError::kNoSuchKey);
    QCOMPARE(m_hotkey->assign(54, kOption), HotkeyError::kNoSuchKey);
}

void X11GlobalHotkeyTest::keyIsFoundOnOtherLayouts_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<quint8>("group");
    QTest::addColumn<quint32>("keyCode");
    QTest::addColumn<QString>("pressedKeyCode");

    QTest::newRow("the letter's place where no layout has it")
        << u"ru"_s << quint8(0) << kLetterV << u"55"_s;
    QTest::newRow("two layouts, the first active")
        << u"us,ru"_s << quint8(0) << kLetterV << u"55"_s;
    QTest::newRow("two layouts, the second active")
        << u"us,ru"_s << quint8(1) << kLetterV << u"55"_s;
    QTest::newRow("the key with the letter, not its place")
        << u"fr"_s << quint8(0) << 0u << u"24"_s;
    QTest::newRow("a digit that needs Shift") << u"fr"_s << quint8(0) << 18u << u"10"_s;
}

void X11GlobalHotkeyTest::keyIsFoundOnOtherLayouts()
{
    QFETCH(QString, layout);
    QFETCH(quint8, group);
    QFETCH(quint32, keyCode);
    QFETCH(QString, pressedKeyCode);

    m_desktop.setLayout(layout, group);
    const int error = m_hotkey->assign(keyCode, kOption);
    m_desktop.xdotool(u"keydown 64 key "_s + pressedKeyCode + u" keyup 64"_s);
    QCOMPARE(m_keyboard->state().lockedGroup, group);
    m_desktop.setLayout(u"us"_s);
    QCOMPARE(error, 0);
    QTRY_COMPARE(m_pressCount, 1);
}

void X11GlobalHotkeyTest::changedLayoutMovesTheGrab()
{
    QCOMPARE(m_hotkey->assign(0, kOption), 0); // The letter A.
    m_desktop.xdotool(u"keydown 64 key 38 keyup 64"_s);
    QTRY_COMPARE(m_pressCount, 1);

    bool isMoved = false;
    m_keyboard->onLayoutChanged = [this, &isMoved, regrab = m_keyboard->onLayoutChanged] {
        regrab();
        isMoved = m_keyboard->findKey('a') == quint8(24);
    };
    m_desktop.setLayout(u"fr"_s);
    QTRY_VERIFY(isMoved);
    m_desktop.xdotool(u"keydown 64 key 24 keyup 64"_s);
    QTRY_COMPARE(m_pressCount, 2);
    m_desktop.xdotool(u"keydown 64 key 38 keyup 64"_s);
    settle();
    m_desktop.setLayout(u"us"_s);
    QCOMPARE(m_pressCount, 2);
}

void X11GlobalHotkeyTest::pressTellsTheTimeOfTheUser()
{
    QCOMPARE(m_hotkey->assign(kSpace, kOption), 0);
    QCOMPARE(m_connection->userTime(), 0u);
    m_desktop.xdotool(u"key alt+space"_s);
    QTRY_COMPARE(m_pressCount, 1);
    QVERIFY(m_connection->userTime() != 0);
}

int main(int argc, char *argv[])
{
    PrivateDesktop desktop;
    if (!desktop.start())
        return EXIT_FAILURE;
    QGuiApplication application(argc, argv);
    X11GlobalHotkeyTest test(desktop);
    return QTest::qExec(&test, argc, argv);
}

#include "X11GlobalHotkeyTest.moc"
