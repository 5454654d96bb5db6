#include "settings/HotkeySettingsManager.h"

#include "foundation/UserDefaults.h"
#include "tests/fakes/PrintedLines.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString kKey = u"HotkeySettings"_s;
const HotkeySettings kDefault{49, 2048};

} // namespace

class HotkeySettingsManagerTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_printed = std::make_unique<PrintedLines>();
        m_defaults.reset(); // It is written at its end, and so has to end before its directory.
        m_directory = std::make_unique<QTemporaryDir>();
        m_defaults = std::make_unique<UserDefaults>(m_directory->filePath(u"test.conf"_s));
        m_manager = std::make_unique<HotkeySettingsManager>(*m_defaults);
    }

    void cleanup() { m_printed.reset(); }

    void withoutStoredSettingsTheDefaultApplies()
    {
        QCOMPARE(m_manager->loadSettings(), kDefault);
        QCOMPARE(m_printed->lines(),
                 QStringList{u"No saved settings found, using defaults"_s});
        QVERIFY(!m_defaults->contains(kKey));
    }

    void savedSettingsAreLoaded()
    {
        const HotkeySettings settings{9, 0x1100};
        m_manager->saveSettings(settings);
        QCOMPARE(HotkeySettingsManager(*m_defaults).loadSettings(), settings);
        QCOMPARE(m_printed->lines(),
                 QStringList(
                     {u"Saved hotkey settings to UserDefaults: keyCode=9, modifiers=4352"_s,
                      u"Loaded hotkey settings from UserDefaults: keyCode=9, modifiers=4352"_s}));
    }

    void theStoredFormIsAnObjectOfTwoNumbers()
    {
        m_manager->saveSettings(kDefault);
        QCOMPARE(m_defaults->data(kKey), R"({"keyCode":49,"modifiers":2048})"_ba);
    }

    void unreadableSettingsGiveTheDefaultAndStayUntilTheNextSave_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::newRow("no json") << "garbage"_ba;
        QTest::newRow("nothing") << ""_ba;
        QTest::newRow("a list") << "[49,2048]"_ba;
        QTest::newRow("a missing number") << R"({"keyCode":9})"_ba;
        QTest::newRow("a negative number") << R"({"keyCode":-1,"modifiers":2048})"_ba;
        QTest::newRow("a number that is too large") << R"({"keyCode":4294967296,"modifiers":1})"_ba;
        QTest::newRow("a fraction") << R"({"keyCode":9.5,"modifiers":2048})"_ba;
        QTest::newRow("a text") << R"({"keyCode":"9","modifiers":2048})"_ba;
    }

    void unreadableSettingsGiveTheDefaultAndStayUntilTheNextSave()
    {
        QFETCH(QByteArray, stored);
        m_defaults->set(kKey, stored);
        QCOMPARE(m_manager->loadSettings(), kDefault);
        QCOMPARE(m_printed->lines().last(), u"No saved settings found, using defaults"_s);
        QCOMPARE(m_defaults->data(kKey), stored);

        m_manager->saveSettings({9, 2048});
        QCOMPARE(m_manager->loadSettings(), (HotkeySettings{9, 2048}));
    }

    void aCombinationReadsAsText_data()
    {
        QTest::addColumn<quint32>("keyCode");
        QTest::addColumn<quint32>("modifiers");
        QTest::addColumn<QString>("text");
        QTest::newRow("the default") << 49u << 0x800u << u"⌥Space"_s;
        QTest::newRow("command before control") << 9u << 0x1100u << u"⌘⌃V"_s;
        QTest::newRow("all modifiers") << 0u << 0x1B00u << u"⌘⌥⌃⇧A"_s;
        QTest::newRow("no modifier") << 36u << 0u << u"Enter"_s;
        QTest::newRow("a code without name") << 10u << 0x200u << u"⇧Unknown"_s;
        QTest::newRow("the last name") << 61u << 0u << u"Fn"_s;
        QTest::newRow("behind the last name") << 62u << 0u << u"Unknown"_s;
    }

    void aCombinationReadsAsText()
    {
        QFETCH(quint32, keyCode);
        QFETCH(quint32, modifiers);
        QTEST(HotkeySettingsManager::displayString({keyCode, modifiers}), "text");
    }

    void everyKeyThatCanBePickedCanBeStored()
    {
        const QStringList &keys = HotkeySettingsManager::availableKeys();
        QCOMPARE(keys.size(), 50);
        QCOMPARE(QSet<QString>(keys.begin(), keys.end()).size(), 50);
        QCOMPARE(keys.first(), u"A"_s);
        QCOMPARE(keys.last(), u"Space"_s);
        for (const QString &name : keys) {
            const auto code = HotkeySettingsManager::keyCode(name);
            QVERIFY2(code, qPrintable(name));
            QCOMPARE(HotkeySettingsManager::keyName(*code), name);
        }
    }

    void theNamesOfAllKeysGoOnWithTheTwoLast()
    {
        const QStringList &names = HotkeySettingsManager::keyNames();
        QCOMPARE(names.size(), 52);
        QCOMPARE(names.first(50), HotkeySettingsManager::availableKeys());
        QCOMPARE(names.last(2), (QStringList{u"Backspace"_s, u"Esc"_s}));
    }

    void keysBesideTheTableAreRefused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("sharp s in capitals") << u"SS"_s;
        QTest::newRow("a shifted symbol") << u"!"_s;
        QTest::newRow("a function key") << u"F5"_s;
        QTest::newRow("the euro sign") << u"€"_s;
        QTest::newRow("lower case") << u"a"_s;
        QTest::newRow("a modifier") << u"Shift"_s;
        QTest::newRow("nothing") << u""_s;
    }

    void keysBesideTheTableAreRefused()
    {
        QFETCH(QString, name);
        QVERIFY(!HotkeySettingsManager::keyCode(name));
    }

    void theLastNamesThatCanBeStored()
    {
        QCOMPARE(HotkeySettingsManager::keyCode(u"Backspace"_s), 51u);
        QCOMPARE(HotkeySettingsManager::keyCode(u"Esc"_s), 52u);
        QVERIFY(!HotkeySettingsManager::keyCode(u"⌘"_s));
    }

    void aChangeIsAnnouncedWithItsValue()
    {
        QList<HotkeySettings> announced;
        connect(m_manager.get(), &HotkeySettingsManager::hotkeySettingsChanged, this,
                [&announced](const HotkeySettings &settings) { announced.append(settings); });
        m_manager->saveSettings({9, 256});
        QVERIFY(announced.isEmpty());
        m_manager->announce({9, 256});
        QCOMPARE(announced, (QList<HotkeySettings>{{9, 256}}));
    }

private:
    std::unique_ptr<PrintedLines> m_printed;
    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<UserDefaults> m_defaults;
    std::unique_ptr<HotkeySettingsManager> m_manager;
};

QTEST_GUILESS_MAIN(HotkeySettingsManagerTest)
#include "HotkeySettingsManagerTest.moc"
