#include "platform/x11/X11GlobalHotkey.h"

#include "platform/linux/VirtualKeyCodes.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Keyboard.h"
#include "tests/platform/PrivateDesktop.h"

#include <QTest>
#include <QTimer>

#include <array>
#include <cstdlib>
#include <memory>
#include <optional>

#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-x11.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr quint32 kSpace = 49;
constexpr quint32 kLetterV = 9;
constexpr quint32 kCommand = 0x100;
constexpr quint32 kShift = 0x200;
constexpr quint32 kOption = 0x800;
constexpr quint32 kControl = 0x1000;
constexpr int kBadAccess = 10;

constexpr quint8 kSuperKey = 133;
constexpr quint8 kShiftKey = 50;
constexpr quint8 kAltKey = 64;
constexpr quint8 kControlKey = 37;
constexpr quint8 kSpaceKey = 65;
constexpr quint8 kLetterAKey = 38;
constexpr quint8 kLetterVKey = 55;

/// The keyboard as another reader of its map sees it.
class KeyboardMap
{
public:
    explicit KeyboardMap(xcb_connection_t *xcb)
    {
        const int device = xkb_x11_get_core_keyboard_device_id(xcb);
        m_map.reset(xkb_x11_keymap_new_from_device(m_context.get(), xcb, device,
                                                   XKB_KEYMAP_COMPILE_NO_FLAGS));
    }

    /// The key that types the name of \a wanted, if possible without Shift; where none does, the
    /// one that has it on a US keyboard.
    quint8 keyFor(const VirtualKey &wanted) const
    {
        for (xkb_level_index_t level = 0; level < 2; ++level) {
            for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts(m_map.get());
                 ++layout) {
                if (const auto key = keyWith(wanted.keysym, layout, level))
                    return *key;
            }
        }
        return quint8(wanted.position + 8);
    }

private:
    std::optional<quint8> keyWith(quint32 keysym, xkb_layout_index_t layout,
                                  xkb_level_index_t level) const
    {
        for (quint32 key = 8; key < 256; ++key) {
            const xkb_layout_index_t layoutCount = xkb_keymap_num_layouts_for_key(m_map.get(), key);
            const xkb_keysym_t *keysyms = nullptr;
            if (layoutCount != 0 &&
                xkb_keymap_key_get_syms_by_level(m_map.get(), key, layout % layoutCount, level,
                                                 &keysyms) == 1 &&
                keysyms[0] == keysym)
                return quint8(key);
        }
        return std::nullopt;
    }

    template <auto End>
    struct Ended
    {
        template <typename T>
        void operator()(T *object) const
        {
            End(object);
        }
    };

    std::unique_ptr<xkb_context, Ended<xkb_context_unref>> m_context{
        xkb_context_new(XKB_CONTEXT_NO_FLAGS)};
    std::unique_ptr<xkb_keymap, Ended<xkb_keymap_unref>> m_map;
};

/// A window of another program, as far as the server knows, which notes the keys that it gets. It
/// needs no event loop.
class KeyReceiver
{
public:
    explicit KeyReceiver(const QByteArray &displayName)
        : m_xcb(xcb_connect(displayName.constData(), nullptr), xcb_disconnect)
        , m_window(xcb_generate_id(m_xcb.get()))
    {
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_xcb.get())).data;
        const std::array<quint32, 2> values{1, XCB_EVENT_MASK_KEY_PRESS};
        xcb_create_window(m_xcb.get(), XCB_COPY_FROM_PARENT, m_window, screen->root, 0, 0, 9, 9, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
        xcb_map_window(m_xcb.get(), m_window);
        synchronize();
    }

    quint32 window() const { return m_window; }

    void takeFocus()
    {
        xcb_set_input_focus(m_xcb.get(), XCB_INPUT_FOCUS_PARENT, m_window, XCB_CURRENT_TIME);
        synchronize();
    }

    /// All keys so far.
    const QList<quint8> &keys()
    {
        synchronize();
        while (xcb_generic_event_t *event = xcb_poll_for_event(m_xcb.get())) {
            if ((event->response_type & 0x7f) == XCB_KEY_PRESS)
                m_keys.append(reinterpret_cast<xcb_key_press_event_t *>(event)->detail);
            std::free(event);
        }
        return m_keys;
    }

    bool waitFor(const QList<quint8> &wanted)
    {
        const QDeadlineTimer deadline(5s);
        while (keys() != wanted && !deadline.hasExpired())
            QThread::yieldCurrentThread();
        return keys() == wanted;
    }

private:
    void synchronize()
    {
        std::free(xcb_get_input_focus_reply(m_xcb.get(), xcb_get_input_focus(m_xcb.get()),
                                            nullptr));
    }

    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t *)> m_xcb;
    quint32 m_window;
    QList<quint8> m_keys;
};

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
    void refusedCombinationIsTakenOnceItsHolderHasGone();
    void refusedCombinationIsWantedNoLongerAfterItsRelease();
    void combinationLostToAnotherLayoutComesBack();
    void releasedCombinationIsFree();
    void unknownKeyIsRefused();
    void keyIsFoundOnOtherLayouts_data();
    void keyIsFoundOnOtherLayouts();
    void everyKeyOfTheTableWorks_data();
    void everyKeyOfTheTableWorks();
    void lettersAreKnownByTheirPlace_data();
    void lettersAreKnownByTheirPlace();
    void keyThatIsRecordedIsTheKeyThatWorks_data();
    void keyThatIsRecordedIsTheKeyThatWorks();
    void keyWithoutNameHasNoCode();
    void changedLayoutMovesTheGrab();
    void pressTellsTheTimeOfTheUser();
    void keysGoOnWhenNobodyAnswersThePress();
    void keysGoOnAtOnceWhenNoWindowIsActivated();
    void keysWaitForTheWindowThatIsActivated();
    void keysWaitForNoWindowForEver();
    void keyPressedBeforeTheHotkeyIsUpArrives();

private:
    void settle();
    QProcess &launchHolder(const QString &modifiers);
    void changeRootProperty();
    void strike(const QList<quint8> &keys);
    void press(quint8 key, quint32 modifiers);
    void waitForEver();
    bool isTold();
    bool isPressToldOnce(quint8 key, quint32 modifiers);
    void addLayoutRows();

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
    m_desktop.setLayout(u"us"_s);
}

/// Starts another program that holds Space with \a modifiers, and waits until it does.
QProcess &X11GlobalHotkeyTest::launchHolder(const QString &modifiers)
{
    QProcess &holder = m_desktop.launch(
        u"/usr/bin/python3"_s,
        // Our own attempts below may be in its way.
        {u"-c"_s, u"import time\nfrom Xlib import X, display, error\nd = display.Display()\n"
                  "refused = True\n"
                  "while refused:\n"
                  "    errors = error.CatchError(error.BadAccess)\n"
                  "    d.screen().root.grab_key(65, %1, 0, X.GrabModeAsync, X.GrabModeAsync,\n"
                  "                             onerror=errors)\n"
                  "    d.sync()\n"
                  "    refused = errors.get_error()\n"
                  "time.sleep(1000)\n"_s.arg(modifiers)});
    [this] {
        QTRY_VERIFY([this] {
            const int error = m_hotkey->assign(kSpace, kOption);
            m_hotkey->release();
            return error == kBadAccess;
        }());
    }();
    return holder;
}

/// As a window manager does when windows come and go.
void X11GlobalHotkeyTest::changeRootProperty()
{
    m_desktop.run(u"xprop"_s,
                  {u"-root"_s, u"-format"_s, u"_TEST"_s, u"8s"_s, u"-set"_s, u"_TEST"_s, u"x"_s});
}

/// Presses keys, and then lets go of them in the same order.
void X11GlobalHotkeyTest::strike(const QList<quint8> &keys)
{
    for (const int type : {XCB_KEY_PRESS, XCB_KEY_RELEASE}) {
        for (const quint8 key : keys)
            xcb_test_fake_input(m_connection->xcb(), quint8(type), key, XCB_CURRENT_TIME, 0, 0, 0,
                                0);
    }
    m_connection->flush();
}

/// Presses and releases a key as a keyboard would; returns when everybody has been told.
void X11GlobalHotkeyTest::press(quint8 key, quint32 modifiers)
{
    std::vector<quint8> keys;
    for (const auto &[bit, modifierKey] :
         {std::pair(kCommand, kSuperKey), std::pair(kShift, kShiftKey), std::pair(kOption, kAltKey),
          std::pair(kControl, kControlKey)}) {
        if (modifiers & bit)
            keys.push_back(modifierKey);
    }
    keys.push_back(key);
    xcb_connection_t *xcb = m_connection->xcb();
    for (const quint8 code : keys)
        xcb_test_fake_input(xcb, XCB_KEY_PRESS, code, XCB_CURRENT_TIME, 0, 0, 0, 0);
    for (auto code = keys.rbegin(); code != keys.rend(); ++code)
        xcb_test_fake_input(xcb, XCB_KEY_RELEASE, *code, XCB_CURRENT_TIME, 0, 0, 0, 0);
    m_connection->reply(xcb_get_input_focus_reply, xcb_get_input_focus(xcb));
    QCoreApplication::processEvents();
}

/// From here on nothing goes on but by what is tested.
void X11GlobalHotkeyTest::waitForEver()
{
    const X11HotkeyThread::Patience forEver{.forAnswer = 1h, .forFocus = 1h};
    m_hotkey.reset();
    m_hotkey = std::make_unique<X11GlobalHotkey>(*m_connection, *m_keyboard, forEver);
    m_hotkey->onPressed = [this] { ++m_pressCount; };
}

/// Waits for us to be told of a press, without the pauses of QTRY_COMPARE.
bool X11GlobalHotkeyTest::isTold()
{
    QTimer deadline;
    deadline.setSingleShot(true);
    deadline.start(5s);
    while (m_pressCount == 0 && deadline.isActive())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return m_pressCount > 0;
}

bool X11GlobalHotkeyTest::isPressToldOnce(quint8 key, quint32 modifiers)
{
    m_pressCount = 0;
    press(key, modifiers);
    return isTold() && m_pressCount == 1;
}

void X11GlobalHotkeyTest::addLayoutRows()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<int>("group");

    QTest::newRow("American") << u"us"_s << 0;
    QTest::newRow("German") << u"de"_s << 0;
    QTest::newRow("French") << u"fr"_s << 0;
    QTest::newRow("Dvorak") << u"us(dvorak)"_s << 0;
    QTest::newRow("Chinese") << u"cn"_s << 0;
    QTest::newRow("Russian") << u"ru"_s << 0;
    QTest::newRow("American and Russian, the first active") << u"us,ru"_s << 0;
    QTest::newRow("American and Russian, the second active") << u"us,ru"_s << 1;
    QTest::newRow("French and Russian, the second active") << u"fr,ru"_s << 1;
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
    QTRY_COMPARE(m_pressCount, 1);
    m_desktop.xdotool(locks);
    QTRY_COMPARE(m_keyboard->state().lockedModifiers, quint8(0));
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
    QProcess &holder = launchHolder(u"X.Mod1Mask | X.LockMask"_s);

    QCOMPARE(m_hotkey->assign(kSpace, kOption), kBadAccess);
    m_hotkey->release();
    m_desktop.end(holder);
    // Had one variant stayed ours, the whole could not be taken.
    QTRY_COMPARE(whole.assign(kSpace, kOption), 0);
}

void X11GlobalHotkeyTest::refusedCombinationIsTakenOnceItsHolderHasGone()
{
    int laterCount = 0;
    m_hotkey->onAssignedLater = [&laterCount] { ++laterCount; };
    QProcess &holder = launchHolder(u"X.Mod1Mask"_s);
    QCOMPARE(m_hotkey->assign(kSpace, kOption), kBadAccess);
    changeRootProperty();
    settle();
    QCOMPARE(laterCount, 0);

    m_desktop.end(holder);
    QTRY_VERIFY([&] {
        changeRootProperty(); // The server may notice the end after us.
        return laterCount == 1;
    }());
    m_desktop.xdotool(u"key alt+space"_s);
    QTRY_COMPARE(m_pressCount, 1);
    changeRootProperty();
    settle();
    QCOMPARE(laterCount, 1);
}

void X11GlobalHotkeyTest::refusedCombinationIsWantedNoLongerAfterItsRelease()
{
    QProcess &holder = launchHolder(u"X.Mod1Mask"_s);
    QCOMPARE(m_hotkey->assign(kSpace, kOption), kBadAccess);
    m_hotkey->release();
    m_desktop.end(holder);
    changeRootProperty();
    settle();

    X11Connection other(m_desktop.displayName());
    X11Keyboard otherKeyboard(other);
    X11GlobalHotkey whole(other, otherKeyboard);
    QTRY_COMPARE(whole.assign(kSpace, kOption), 0);
}

void X11GlobalHotkeyTest::combinationLostToAnotherLayoutComesBack()
{
    // On a French keyboard the key of A is where Q is on an American one.
    X11Connection other(m_desktop.displayName());
    X11Keyboard otherKeyboard(other);
    std::optional<X11GlobalHotkey> holder(std::in_place, other, otherKeyboard);
    otherKeyboard.onLayoutChanged = nullptr;   // It stays at its place.
    QCOMPARE(holder->assign(12, kOption), 0);  // Q
    QCOMPARE(m_hotkey->assign(0, kOption), 0); // A
    int laterCount = 0;
    m_hotkey->onAssignedLater = [&laterCount] { ++laterCount; };

    m_desktop.setLayout(u"fr"_s);
    settle();
    press(24, kOption);
    QCOMPARE(m_pressCount, 0);
    holder.reset();
    QTRY_VERIFY([&] {
        changeRootProperty();
        return laterCount == 1;
    }());
    press(24, kOption);
    QTRY_COMPARE(m_pressCount, 1);
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
    QCOMPARE(m_hotkey->assign(keyCode, kOption), 0);
    m_desktop.xdotool(u"keydown 64 key "_s + pressedKeyCode + u" keyup 64"_s);
    QCOMPARE(m_keyboard->state().lockedGroup, group);
    QTRY_COMPARE(m_pressCount, 1);
}

void X11GlobalHotkeyTest::everyKeyOfTheTableWorks_data()
{
    addLayoutRows();
}

void X11GlobalHotkeyTest::everyKeyOfTheTableWorks()
{
    QFETCH(QString, layout);
    QFETCH(int, group);
    m_desktop.setLayout(layout, group);
    QCOMPARE(m_keyboard->state().lockedGroup, quint8(group));
    const KeyboardMap map(m_connection->xcb());

    for (const VirtualKey &key : virtualKeys()) {
        for (quint32 set = 0; set < 16; ++set) {
            const quint32 modifiers = (set & 1 ? kCommand : 0) | (set & 2 ? kShift : 0) |
                                      (set & 4 ? kOption : 0) | (set & 8 ? kControl : 0);
            const QByteArray what =
                u"code %1, modifiers %2"_s.arg(key.code).arg(modifiers, 0, 16).toUtf8();
            QVERIFY2(m_hotkey->assign(key.code, modifiers) == 0, what.constData());
            QVERIFY2(isPressToldOnce(map.keyFor(key), modifiers), what.constData());
            m_hotkey->release();
        }
    }
}

void X11GlobalHotkeyTest::lettersAreKnownByTheirPlace_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<quint8>("key");
    QTest::addColumn<quint32>("keyCode");

    QTest::newRow("a Cyrillic letter where no layout has another") << u"ru"_s << quint8(55) << 9u;
    QTest::newRow("a Cyrillic letter beside an American one") << u"us,ru"_s << quint8(55) << 9u;
    QTest::newRow("a Cyrillic letter beside a French one") << u"fr,ru"_s << quint8(24) << 0u;
    QTest::newRow("the space bar") << u"ru"_s << quint8(65) << 49u;
    QTest::newRow("Enter") << u"us"_s << quint8(36) << 36u;
    QTest::newRow("a dead key") << u"us(intl)"_s << quint8(49) << 50u;
}

void X11GlobalHotkeyTest::lettersAreKnownByTheirPlace()
{
    QFETCH(QString, layout);
    QFETCH(quint8, key);
    QFETCH(quint32, keyCode);
    m_desktop.setLayout(layout);
    QCOMPARE(m_hotkey->findKeyCode(key), std::optional(keyCode));
}

void X11GlobalHotkeyTest::keyThatIsRecordedIsTheKeyThatWorks_data()
{
    addLayoutRows();
}

void X11GlobalHotkeyTest::keyThatIsRecordedIsTheKeyThatWorks()
{
    QFETCH(QString, layout);
    QFETCH(int, group);
    m_desktop.setLayout(layout, group);
    int foundCount = 0;
    for (quint32 key = 8; key < 256; ++key) {
        const auto keyCode = m_hotkey->findKeyCode(key);
        if (!keyCode)
            continue;
        ++foundCount;
        QCOMPARE(m_hotkey->assign(*keyCode, kOption | kControl), 0);
        QVERIFY(isPressToldOnce(quint8(key), kOption | kControl));
        m_hotkey->release();
    }
    // A few signs share a key on some keyboards.
    QVERIFY2(foundCount > 40, qPrintable(QString::number(foundCount)));
}

void X11GlobalHotkeyTest::keyWithoutNameHasNoCode()
{
    QVERIFY(!m_hotkey->findKeyCode(71)); // F5
    QVERIFY(!m_hotkey->findKeyCode(kAltKey));
    QVERIFY(!m_hotkey->findKeyCode(0));
    QVERIFY(!m_hotkey->findKeyCode(4711));
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

void X11GlobalHotkeyTest::keysGoOnWhenNobodyAnswersThePress()
{
    KeyReceiver receiver(m_desktop.displayName());
    receiver.takeFocus();
    QCOMPARE(m_hotkey->assign(kSpace, kOption), 0);
    strike({kAltKey, kSpaceKey});
    strike({kLetterAKey});
    QVERIFY(receiver.waitFor({kAltKey, kLetterAKey})); // No event is processed meanwhile.
    QCOMPARE(m_pressCount, 0);
}

void X11GlobalHotkeyTest::keysGoOnAtOnceWhenNoWindowIsActivated()
{
    KeyReceiver receiver(m_desktop.displayName());
    KeyReceiver other(m_desktop.displayName());
    waitForEver();
    receiver.takeFocus();
    QCOMPARE(m_hotkey->assign(kSpace, kOption), 0);
    m_hotkey->noteActivation(other.window()); // For another reason than a press.
    strike({kAltKey, kSpaceKey});
    strike({kLetterAKey});
    QTRY_COMPARE(m_pressCount, 1);
    QVERIFY(receiver.waitFor({kAltKey, kLetterAKey}));
}

void X11GlobalHotkeyTest::keysWaitForTheWindowThatIsActivated()
{
    KeyReceiver before(m_desktop.displayName());
    KeyReceiver after(m_desktop.displayName());
    waitForEver();
    before.takeFocus();
    QCOMPARE(m_hotkey->assign(kSpace, kOption), 0);
    m_hotkey->onPressed = [this, &after] {
        ++m_pressCount;
        m_hotkey->noteActivation(after.window());
    };
    strike({kAltKey, kSpaceKey});
    for (const quint8 key : {kLetterAKey, kLetterVKey, kLetterAKey})
        strike({key});
    QVERIFY(isTold());
    after.takeFocus();
    QVERIFY(after.waitFor({kLetterAKey, kLetterVKey, kLetterAKey}));
    QCOMPARE(before.keys(), QList<quint8>{kAltKey});
}

void X11GlobalHotkeyTest::keysWaitForNoWindowForEver()
{
    KeyReceiver receiver(m_desktop.displayName());
    KeyReceiver late(m_desktop.displayName());
    receiver.takeFocus();
    QCOMPARE(m_hotkey->assign(kSpace, kOption), 0);
    m_hotkey->onPressed = [this, &late] { m_hotkey->noteActivation(late.window()); };
    strike({kAltKey, kSpaceKey});
    strike({kLetterAKey});
    QTRY_COMPARE(receiver.keys(), (QList<quint8>{kAltKey, kLetterAKey}));
}

void X11GlobalHotkeyTest::keyPressedBeforeTheHotkeyIsUpArrives()
{
    KeyReceiver receiver(m_desktop.displayName());
    receiver.takeFocus();
    QCOMPARE(m_hotkey->assign(kSpace, kOption), 0);
    strike({kAltKey, kSpaceKey, kLetterAKey});
    QTRY_COMPARE(m_pressCount, 1);
    QVERIFY(receiver.waitFor({kAltKey, kLetterAKey}));
    strike({kAltKey, kSpaceKey});
    QTRY_COMPARE(m_pressCount, 2);
}

int main(int argc, char *argv[])
{
    return runOnPrivateDesktop<X11GlobalHotkeyTest>(argc, argv);
}

#include "X11GlobalHotkeyTest.moc"
