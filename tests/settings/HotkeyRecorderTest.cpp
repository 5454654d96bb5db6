#include "settings/HotkeyRecorder.h"

#include "settings/HotkeySettingsManager.h"
#include "tests/fakes/FakeGlobalHotkey.h"

#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct Recorded
{
    QString keyName;
    bool command = false;
    bool shift = false;
    bool option = false;
    bool control = false;

    friend bool operator==(const Recorded &, const Recorded &) = default;
};

constexpr quint32 kSpaceKey = 65;
constexpr quint32 kLetterVKey = 55;
constexpr quint32 kUnknownKey = 200;

} // namespace

Q_DECLARE_METATYPE(Recorded)

class HotkeyRecorderTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theNextCombinationIsRecorded_data();
    void theNextCombinationIsRecorded();
    void aKeyWithoutModifierIsRecorded();
    void pressesGoNowhereElseWhileItRecords();
    void aShortcutOfTheWindowIsRecordedToo();
    void escapeCancels_data();
    void escapeCancels();
    void modifiersAndRepeatsAreWaitedOut_data();
    void modifiersAndRepeatsAreWaitedOut();
    void theKeyThatPressedTheButtonIsNotRecorded();
    void stoppingLetsKeysThrough();
    void startingTwiceIsStartingOnce();
    void itTellsWhetherItRecords();
    void aRecorderThatEndsInTheCallTakesTheKeyAlong();
    void aRecorderThatHasEndedHoldsNothingUp();
    void withoutAListenerTheRecordingEnds();

private:
    void press(int key, Qt::KeyboardModifiers modifiers, const QString &text,
               quint32 nativeKey = kUnknownKey, bool isRepeat = false);

    FakeGlobalHotkey m_hotkey;
    std::unique_ptr<QLineEdit> m_field;
    std::unique_ptr<HotkeyRecorder> m_recorder;
    QList<Recorded> m_recorded;
};

void HotkeyRecorderTest::init()
{
    m_hotkey.keyCodes = {{kSpaceKey, 49}, {kLetterVKey, 9}, {36, 36}, {23, 48}, {22, 51}, {49, 50}};
    m_recorded.clear();
    m_field = std::make_unique<QLineEdit>();
    m_field->show();
    m_field->setFocus();
    m_recorder = std::make_unique<HotkeyRecorder>(m_hotkey);
    m_recorder->onKeyRecorded = [this](const QString &keyName, bool command, bool shift,
                                       bool option, bool control) {
        m_recorded.append({keyName, command, shift, option, control});
    };
}

void HotkeyRecorderTest::cleanup()
{
    m_recorder.reset();
    m_field.reset();
}

void HotkeyRecorderTest::press(int key, Qt::KeyboardModifiers modifiers, const QString &text,
                               quint32 nativeKey, bool isRepeat)
{
    QKeyEvent event(QEvent::KeyPress, key, modifiers, nativeKey, 0, 0, text, isRepeat);
    QCoreApplication::sendEvent(m_field.get(), &event);
}

void HotkeyRecorderTest::theNextCombinationIsRecorded_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QString>("text");
    QTest::addColumn<quint32>("nativeKey");
    QTest::addColumn<Recorded>("recorded");
    const Qt::KeyboardModifiers none;

    QTest::newRow("command") << int(Qt::Key_V) << Qt::KeyboardModifiers(Qt::MetaModifier) << u"v"_s
                             << kLetterVKey << Recorded{u"V"_s, true, false, false, false};
    QTest::newRow("shift") << int(Qt::Key_V) << Qt::KeyboardModifiers(Qt::ShiftModifier) << u"V"_s
                           << kLetterVKey << Recorded{u"V"_s, false, true, false, false};
    QTest::newRow("option") << int(Qt::Key_V) << Qt::KeyboardModifiers(Qt::AltModifier) << u"v"_s
                            << kLetterVKey << Recorded{u"V"_s, false, false, true, false};
    QTest::newRow("control, which makes control characters")
        << int(Qt::Key_V) << Qt::KeyboardModifiers(Qt::ControlModifier) << u"\x16"_s << kLetterVKey
        << Recorded{u"V"_s, false, false, false, true};
    QTest::newRow("all four") << int(Qt::Key_V)
                              << (Qt::MetaModifier | Qt::ShiftModifier | Qt::AltModifier |
                                  Qt::ControlModifier)
                              << u"\x16"_s << kLetterVKey
                              << Recorded{u"V"_s, true, true, true, true};
    QTest::newRow("a digit with control")
        << int(Qt::Key_2) << Qt::KeyboardModifiers(Qt::ControlModifier) << QString(QChar(0))
        << kUnknownKey << Recorded{u"2"_s, false, false, false, true};
    QTest::newRow("a bracket with control")
        << int(Qt::Key_BracketLeft) << Qt::KeyboardModifiers(Qt::ControlModifier) << u"\x1b"_s
        << kUnknownKey << Recorded{u"["_s, false, false, false, true};
    QTest::newRow("Space, which cannot be seen")
        << int(Qt::Key_Space) << Qt::KeyboardModifiers(Qt::AltModifier) << u" "_s << kSpaceKey
        << Recorded{u"Space"_s, false, false, true, false};
    QTest::newRow("Enter") << int(Qt::Key_Return) << none << u"\r"_s << 36u
                           << Recorded{u"Enter"_s, false, false, false, false};
    QTest::newRow("Tab with Shift")
        << int(Qt::Key_Backtab) << Qt::KeyboardModifiers(Qt::ShiftModifier) << u"\t"_s << 23u
        << Recorded{u"Tab"_s, false, true, false, false};
    QTest::newRow("Backspace") << int(Qt::Key_Backspace) << none << u"\b"_s << 22u
                               << Recorded{u"Backspace"_s, false, false, false, false};
    QTest::newRow("a key of the numeric keypad is taken for its twin")
        << int(Qt::Key_1) << (Qt::AltModifier | Qt::KeypadModifier) << u"1"_s << kUnknownKey
        << Recorded{u"1"_s, false, false, true, false};
    QTest::newRow("a dead key has the name of its key")
        << int(Qt::Key_Dead_Grave) << none << QString() << 49u
        << Recorded{u"`"_s, false, false, false, false};
    QTest::newRow("a Cyrillic letter has the name of its key")
        << 0x041c << Qt::KeyboardModifiers(Qt::AltModifier) << u"м"_s << kLetterVKey
        << Recorded{u"V"_s, false, false, true, false};
    QTest::newRow("a Cyrillic letter of a key without name")
        << 0x0411 << Qt::KeyboardModifiers(Qt::AltModifier) << u"б"_s << kUnknownKey
        << Recorded{u"Б"_s, false, false, true, false};
    QTest::newRow("a sharp s becomes two capitals")
        << int(Qt::Key_ssharp) << Qt::KeyboardModifiers(Qt::AltModifier) << u"ß"_s << kUnknownKey
        << Recorded{u"SS"_s, false, false, true, false};
    QTest::newRow("a shifted symbol stays one")
        << int(Qt::Key_Exclam) << (Qt::AltModifier | Qt::ShiftModifier) << u"!"_s << kUnknownKey
        << Recorded{u"!"_s, false, true, true, false};
    QTest::newRow("an umlaut is no key of the table")
        << int(Qt::Key_Udiaeresis) << none << u"ü"_s << kUnknownKey
        << Recorded{u"Ü"_s, false, false, false, false};
    QTest::newRow("the euro sign")
        << 0x20ac << none << u"€"_s << kUnknownKey << Recorded{u"€"_s, false, false, false, false};
    QTest::newRow("a function key") << int(Qt::Key_F5) << none << QString() << kUnknownKey
                                    << Recorded{u"F5"_s, false, false, false, false};
}

void HotkeyRecorderTest::theNextCombinationIsRecorded()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QString, text);
    QFETCH(quint32, nativeKey);
    QFETCH(Recorded, recorded);

    m_recorder->startRecording();
    press(key, modifiers, text, nativeKey);
    QCOMPARE(m_recorded, QList<Recorded>{recorded});
    QVERIFY(!m_recorder->isRecording());
}

void HotkeyRecorderTest::aKeyWithoutModifierIsRecorded()
{
    m_recorder->startRecording();
    QTest::keyClick(m_field.get(), Qt::Key_G);
    QCOMPARE(m_recorded, (QList<Recorded>{{u"G"_s, false, false, false, false}}));
    QVERIFY(HotkeySettingsManager::keyCode(m_recorded.first().keyName));
}

void HotkeyRecorderTest::pressesGoNowhereElseWhileItRecords()
{
    m_recorder->startRecording();
    press(Qt::Key_A, Qt::NoModifier, u"a"_s);
    QCOMPARE(m_field->text(), QString());
    press(Qt::Key_B, Qt::NoModifier, u"b"_s);
    QCOMPARE(m_field->text(), u"b"_s);
    QCOMPARE(m_recorded.size(), 1);
}

void HotkeyRecorderTest::aShortcutOfTheWindowIsRecordedToo()
{
    QShortcut shortcut(QKeySequence(u"Ctrl+W"_s), m_field.get());
    QSignalSpy activated(&shortcut, &QShortcut::activated);
    m_field->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_field.get()));

    m_recorder->startRecording();
    QTest::keyClick(m_field->windowHandle(), Qt::Key_W, Qt::ControlModifier);
    QCOMPARE(activated.count(), 0);
    QCOMPARE(m_recorded, (QList<Recorded>{{u"W"_s, false, false, false, true}}));
    QTest::keyClick(m_field->windowHandle(), Qt::Key_W, Qt::ControlModifier);
    QCOMPARE(activated.count(), 1);
}

void HotkeyRecorderTest::escapeCancels_data()
{
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("alone") << Qt::KeyboardModifiers();
    QTest::newRow("with a modifier") << Qt::KeyboardModifiers(Qt::AltModifier);
}

void HotkeyRecorderTest::escapeCancels()
{
    QFETCH(Qt::KeyboardModifiers, modifiers);
    m_recorder->startRecording();
    press(Qt::Key_Escape, modifiers, u"\x1b"_s, 9);
    QVERIFY(!m_recorder->isRecording());
    QVERIFY(m_recorded.isEmpty());
    press(Qt::Key_A, Qt::NoModifier, u"a"_s);
    QCOMPARE(m_field->text(), u"a"_s);
}

void HotkeyRecorderTest::modifiersAndRepeatsAreWaitedOut_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isRepeat");
    QTest::newRow("Shift") << int(Qt::Key_Shift) << QString() << false;
    QTest::newRow("Ctrl") << int(Qt::Key_Control) << QString() << false;
    QTest::newRow("Alt") << int(Qt::Key_Alt) << QString() << false;
    QTest::newRow("AltGr") << int(Qt::Key_AltGr) << QString() << false;
    QTest::newRow("Super") << int(Qt::Key_Super_L) << QString() << false;
    QTest::newRow("Caps Lock") << int(Qt::Key_CapsLock) << QString() << false;
    QTest::newRow("the key that changes the layout") << int(Qt::Key_unknown) << QString() << false;
    QTest::newRow("a repeated letter") << int(Qt::Key_A) << u"a"_s << true;
    QTest::newRow("a repeated Escape") << int(Qt::Key_Escape) << u"\x1b"_s << true;
}

void HotkeyRecorderTest::modifiersAndRepeatsAreWaitedOut()
{
    QFETCH(int, key);
    QFETCH(QString, text);
    QFETCH(bool, isRepeat);
    m_recorder->startRecording();
    press(key, Qt::NoModifier, text, kUnknownKey, isRepeat);
    QVERIFY(m_recorder->isRecording());
    QVERIFY(m_recorded.isEmpty());
    QCOMPARE(m_field->text(), QString());
    press(Qt::Key_V, Qt::AltModifier, u"v"_s);
    QCOMPARE(m_recorded, (QList<Recorded>{{u"V"_s, false, false, true, false}}));
}

void HotkeyRecorderTest::theKeyThatPressedTheButtonIsNotRecorded()
{
    QPushButton button;
    connect(&button, &QPushButton::clicked, m_recorder.get(), &HotkeyRecorder::startRecording);
    QTest::keyClick(&button, Qt::Key_Space);
    QVERIFY(m_recorder->isRecording());
    QVERIFY(m_recorded.isEmpty());
    QTest::keyClick(&button, Qt::Key_G, Qt::AltModifier);
    QCOMPARE(m_recorded, (QList<Recorded>{{u"G"_s, false, false, true, false}}));
}

void HotkeyRecorderTest::stoppingLetsKeysThrough()
{
    m_recorder->startRecording();
    m_recorder->stopRecording();
    press(Qt::Key_A, Qt::NoModifier, u"a"_s);
    QVERIFY(m_recorded.isEmpty());
    QCOMPARE(m_field->text(), u"a"_s);
}

void HotkeyRecorderTest::startingTwiceIsStartingOnce()
{
    m_recorder->startRecording();
    m_recorder->startRecording();
    press(Qt::Key_A, Qt::NoModifier, u"a"_s);
    press(Qt::Key_B, Qt::NoModifier, u"b"_s);
    QCOMPARE(m_recorded.size(), 1);
    QCOMPARE(m_field->text(), u"b"_s);
}

void HotkeyRecorderTest::itTellsWhetherItRecords()
{
    QSignalSpy changed(m_recorder.get(), &HotkeyRecorder::isRecordingChanged);
    QVERIFY(!m_recorder->isRecording());
    m_recorder->stopRecording();
    QCOMPARE(changed.count(), 0);
    m_recorder->startRecording();
    QCOMPARE(changed.takeFirst(), QVariantList{true});
    press(Qt::Key_A, Qt::NoModifier, u"a"_s);
    QCOMPARE(changed.takeFirst(), QVariantList{false});
}

void HotkeyRecorderTest::aRecorderThatEndsInTheCallTakesTheKeyAlong()
{
    int count = 0;
    m_recorder->onKeyRecorded = [this, &count](const QString &, bool, bool, bool, bool) {
        ++count;
        m_recorder.reset();
    };
    m_recorder->startRecording();
    press(Qt::Key_A, Qt::NoModifier, u"a"_s);
    QCOMPARE(count, 1);
    QCOMPARE(m_field->text(), QString());
}

void HotkeyRecorderTest::aRecorderThatHasEndedHoldsNothingUp()
{
    m_recorder->startRecording();
    m_recorder.reset();
    press(Qt::Key_A, Qt::NoModifier, u"a"_s);
    QCOMPARE(m_field->text(), u"a"_s);
}

void HotkeyRecorderTest::withoutAListenerTheRecordingEnds()
{
    m_recorder->onKeyRecorded = nullptr;
    m_recorder->startRecording();
    press(Qt::Key_A, Qt::NoModifier, u"a"_s);
    QVERIFY(!m_recorder->isRecording());
    QCOMPARE(m_field->text(), QString());
}

QTEST_MAIN(HotkeyRecorderTest)
#include "HotkeyRecorderTest.moc"
