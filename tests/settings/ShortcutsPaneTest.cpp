#include "settings/ShortcutsPane.h"

#include "settings/KeyCapsView.h"
#include "tests/fakes/PrintedLines.h"
#include "tests/settings/SettingsStage.h"

#include <QLineEdit>
#include <QMenu>
#include <QTest>

using namespace Qt::StringLiterals;

class ShortcutsPaneTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void itShowsTheStoredCombination();
    void aKeyThatCannotBePickedLeavesThePickerAsItWas();
    void aToggleChangesTheCombinationAtOnce();
    void allModifiersMayBeOff();
    void thePickerHasAllKeysThatCanBeStored();
    void aKeyIsPickedFromTheMenu();
    void aRecordedCombinationIsTakenOver();
    void aRecordedKeyWithoutModifiersIsTakenOver();
    void aRecordedKeyThatCannotBeStoredChangesNothing();
    void escapeEndsTheRecordingAndChangesNothing();
    void theButtonStartsAndEndsTheRecording();
    void leavingThePaneEndsTheRecording();
    void turningToAnotherWindowEndsTheRecording();
    void aRefusedCombinationIsShownAndSaidToBeRefused();
    void theRefusalIsForgottenWithTheNextCombination();
    void aCombinationThatWasRefusedBeforeIsSaidToBeRefused();
    void aCombinationThatHasBecomeFreeIsNoLongerRefused();
    void theTextsAreMadeAnew();

private:
    template <typename Widget = QAbstractButton>
    Widget *find(const char *objectName)
    {
        return m_window->view().findChild<Widget *>(QString::fromLatin1(objectName));
    }

    void click(const char *objectName) { QTest::mouseClick(find(objectName), Qt::LeftButton); }

    /// Opens the window with \a settings stored.
    void openWith(const HotkeySettings &settings);
    void open();

    QStringList currentKeys() { return find<KeyCapsView>("currentKeys")->keys(); }
    HotkeySettings stored() { return m_stage->hotkeySettings.loadSettings(); }
    bool isRefusalShown() { return find<QWidget>("refusalNote")->isVisible(); }
    void record(Qt::Key key, const QString &text, Qt::KeyboardModifiers modifiers = {})
    {
        click("recordButton");
        QTest::sendKeyEvent(QTest::Click, &m_window->view(), key, text, modifiers);
    }

    std::unique_ptr<SettingsStage> m_stage;
    std::unique_ptr<SettingsWindow> m_window;
};

void ShortcutsPaneTest::init()
{
    m_stage = std::make_unique<SettingsStage>();
    open();
}

void ShortcutsPaneTest::cleanup()
{
    m_window.reset();
    m_stage.reset();
}

void ShortcutsPaneTest::openWith(const HotkeySettings &settings)
{
    m_stage->hotkeySettings.saveSettings(settings);
    open();
}

void ShortcutsPaneTest::open()
{
    m_window = std::make_unique<SettingsWindow>(m_stage->collaborators());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(&m_window->view()));
    click("pane.keyboard");
}

void ShortcutsPaneTest::itShowsTheStoredCombination()
{
    QCOMPARE(currentKeys(), QStringList({u"Alt"_s, u"Space"_s}));
    openWith({9, HotkeySettings::kControl | HotkeySettings::kCommand});
    QCOMPARE(currentKeys(), QStringList({u"Super"_s, u"Ctrl"_s, u"V"_s}));
    QVERIFY(find("cmdToggle")->isChecked());
    QVERIFY(!find("shiftToggle")->isChecked());
    QVERIFY(!find("optionToggle")->isChecked());
    QVERIFY(find("controlToggle")->isChecked());
    QCOMPARE(find("keyPicker")->text(), u"V"_s);
}

void ShortcutsPaneTest::aKeyThatCannotBePickedLeavesThePickerAsItWas()
{
    openWith({10, HotkeySettings::kShift});
    QCOMPARE(find("keyPicker")->text(), u"Space"_s);
    QVERIFY(find("shiftToggle")->isChecked());
    QVERIFY(!find("optionToggle")->isChecked());
}

void ShortcutsPaneTest::aToggleChangesTheCombinationAtOnce()
{
    click("shiftToggle");
    const HotkeySettings wanted{49, HotkeySettings::kOption | HotkeySettings::kShift};
    QCOMPARE(stored(), wanted);
    QCOMPARE(m_stage->changes, QList{wanted});
    QCOMPARE(currentKeys(), QStringList({u"Alt"_s, u"Shift"_s, u"Space"_s}));
}

void ShortcutsPaneTest::allModifiersMayBeOff()
{
    click("optionToggle");
    QCOMPARE(stored(), (HotkeySettings{49, 0}));
    QCOMPARE(currentKeys(), QStringList{u"Space"_s});
}

void ShortcutsPaneTest::thePickerHasAllKeysThatCanBeStored()
{
    click("keyPicker");
    const auto *menu = find("keyPicker")->findChild<QMenu *>();
    QStringList texts;
    for (const QAction *action : menu->actions())
        texts += action->text();
    QCOMPARE(texts, HotkeySettingsManager::keyNames());
    QCOMPARE(texts.size(), 52);
}

void ShortcutsPaneTest::aKeyIsPickedFromTheMenu()
{
    click("keyPicker");
    auto *menu = find("keyPicker")->findChild<QMenu *>();
    QVERIFY(menu->isVisible());
    QTest::keyClick(menu, Qt::Key_Home);
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    QCOMPARE(stored(), (HotkeySettings{11, HotkeySettings::kOption}));
    QCOMPARE(find("keyPicker")->text(), u"B"_s);
    QCOMPARE(currentKeys(), QStringList({u"Alt"_s, u"B"_s}));
}

void ShortcutsPaneTest::aRecordedCombinationIsTakenOver()
{
    record(Qt::Key_H, u"h"_s, Qt::ControlModifier | Qt::MetaModifier);
    QCOMPARE(stored(), (HotkeySettings{4, HotkeySettings::kControl | HotkeySettings::kCommand}));
    QCOMPARE(find("recordButton")->text(), u"Record"_s);
    QVERIFY(find("cmdToggle")->isChecked());
    QVERIFY(!find("optionToggle")->isChecked());
    QCOMPARE(find("keyPicker")->text(), u"H"_s);
}

void ShortcutsPaneTest::aRecordedKeyWithoutModifiersIsTakenOver()
{
    record(Qt::Key_H, u"h"_s);
    QCOMPARE(stored(), (HotkeySettings{4, 0}));
    QVERIFY(!find("optionToggle")->isChecked());
}

void ShortcutsPaneTest::aRecordedKeyThatCannotBeStoredChangesNothing()
{
    PrintedLines printed;
    record(Qt::Key_F5, {}, Qt::ControlModifier);
    QVERIFY(printed.contains(u"Invalid key: F5"_s));
    QVERIFY(!m_stage->defaults.contains(u"HotkeySettings"_s));
    QVERIFY(m_stage->changes.isEmpty());
    QVERIFY(find("optionToggle")->isChecked());
    QVERIFY(!find("controlToggle")->isChecked());
    QCOMPARE(find("keyPicker")->text(), u"Space"_s);
}

void ShortcutsPaneTest::escapeEndsTheRecordingAndChangesNothing()
{
    record(Qt::Key_Escape, {});
    QCOMPARE(find("recordButton")->text(), u"Record"_s);
    QVERIFY(m_stage->changes.isEmpty());
    QVERIFY(m_window->isVisible());
}

void ShortcutsPaneTest::theButtonStartsAndEndsTheRecording()
{
    QVERIFY(!find<QWidget>("recordingHint")->isVisible());
    click("recordButton");
    QCOMPARE(find("recordButton")->text(), u"Recording..."_s);
    QVERIFY(find<QWidget>("recordingHint")->isVisible());
    click("recordButton");
    QCOMPARE(find("recordButton")->text(), u"Record"_s);
    QVERIFY(!find<QWidget>("recordingHint")->isVisible());
    QTest::keyClick(&m_window->view(), Qt::Key_H);
    QVERIFY(m_stage->changes.isEmpty());
}

void ShortcutsPaneTest::leavingThePaneEndsTheRecording()
{
    click("recordButton");
    click("pane.gearshape");
    QTest::keyClick(&m_window->view(), Qt::Key_H);
    QVERIFY(m_stage->changes.isEmpty());
    click("pane.keyboard");
    QCOMPARE(find("recordButton")->text(), u"Record"_s);
}

void ShortcutsPaneTest::turningToAnotherWindowEndsTheRecording()
{
    click("recordButton");
    QLineEdit other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QCOMPARE(find("recordButton")->text(), u"Record"_s);
    QTest::keyClicks(&other, u"h"_s);
    QCOMPARE(other.text(), u"h"_s);
    QVERIFY(m_stage->changes.isEmpty());
}

void ShortcutsPaneTest::aRefusedCombinationIsShownAndSaidToBeRefused()
{
    QVERIFY(!isRefusalShown());
    m_stage->hotkey.refusal = 10;
    click("shiftToggle");
    QVERIFY(isRefusalShown());
    QCOMPARE(currentKeys(), QStringList({u"Alt"_s, u"Shift"_s, u"Space"_s}));
    QCOMPARE(stored(), (HotkeySettings{49, HotkeySettings::kOption | HotkeySettings::kShift}));
    click("recordButton");
    QVERIFY(!isRefusalShown()); // The hint has its place.
    click("recordButton");
    QVERIFY(isRefusalShown());
}

void ShortcutsPaneTest::theRefusalIsForgottenWithTheNextCombination()
{
    m_stage->hotkey.refusal = 10;
    click("shiftToggle");
    m_stage->hotkey.refusal = 0;
    click("controlToggle");
    QVERIFY(!isRefusalShown());
}

void ShortcutsPaneTest::aCombinationThatWasRefusedBeforeIsSaidToBeRefused()
{
    m_stage->hotkey.release();
    open();
    QVERIFY(isRefusalShown());
}

void ShortcutsPaneTest::aCombinationThatHasBecomeFreeIsNoLongerRefused()
{
    m_stage->hotkey.refusal = 10;
    click("shiftToggle");
    // The person ends the program that has it, and comes back.
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    m_stage->hotkey.assigned = std::pair(49, 0);
    m_window->view().activateWindow();
    QTRY_VERIFY(!isRefusalShown());
}

void ShortcutsPaneTest::theTextsAreMadeAnew()
{
    m_stage->languages.setLanguage(AppLanguage::Chinese);
    m_window->refreshLanguage();
    QCOMPARE(find("recordButton")->text(), u"录制"_s);
    click("recordButton");
    QCOMPARE(find("recordButton")->text(), u"正在录制…"_s);
    m_stage->languages.setLanguage(AppLanguage::English);
    m_window->refreshLanguage();
    QCOMPARE(find("recordButton")->text(), u"Recording..."_s);
}

QTEST_MAIN(ShortcutsPaneTest)
#include "ShortcutsPaneTest.moc"
