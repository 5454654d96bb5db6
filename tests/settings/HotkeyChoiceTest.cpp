#include "settings/HotkeyChoice.h"

#include "foundation/UserDefaults.h"
#include "settings/HotkeySettingsManager.h"
#include "tests/fakes/PrintedLines.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class HotkeyChoiceTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_printed.emplace();
        m_announced.clear();
        m_manager.reset();
        m_defaults.reset();
        m_directory = std::make_unique<QTemporaryDir>();
        m_defaults = std::make_unique<UserDefaults>(m_directory->filePath(u"test.conf"_s));
        m_manager = std::make_unique<HotkeySettingsManager>(*m_defaults);
        connect(m_manager.get(), &HotkeySettingsManager::hotkeySettingsChanged, this,
                [this](const HotkeySettings &settings) {
                    // Whoever is told finds it stored.
                    QCOMPARE(m_manager->loadSettings(), settings);
                    m_announced.append(settings);
                });
    }

    void cleanup() { m_printed.reset(); }

    void theTogglesAreFoldedIntoTheModifiers_data()
    {
        QTest::addColumn<HotkeyChoice>("choice");
        QTest::addColumn<quint32>("keyCode");
        QTest::addColumn<quint32>("modifiers");
        QTest::newRow("command") << HotkeyChoice{u"A"_s, true, false, false, false} << 0u << 0x100u;
        QTest::newRow("shift") << HotkeyChoice{u"9"_s, false, true, false, false} << 25u << 0x200u;
        QTest::newRow("option") << HotkeyChoice{u"\\"_s, false, false, true, false} << 42u
                                << 0x800u;
        QTest::newRow("control") << HotkeyChoice{u"Esc"_s, false, false, false, true} << 52u
                                 << 0x1000u;
        QTest::newRow("all of them")
            << HotkeyChoice{u"Backspace"_s, true, true, true, true} << 51u << 0x1b00u;
        QTest::newRow("none") << HotkeyChoice{u"Enter"_s, false, false, false, false} << 36u << 0u;
    }

    void theTogglesAreFoldedIntoTheModifiers()
    {
        QFETCH(HotkeyChoice, choice);
        QFETCH(quint32, keyCode);
        QFETCH(quint32, modifiers);
        QVERIFY(choice.apply(*m_manager));
        QCOMPARE(m_announced, (QList<HotkeySettings>{{keyCode, modifiers}}));
        QVERIFY(m_printed->contains(
            u"Saved hotkey settings to UserDefaults: keyCode=%1, modifiers=%2"_s.arg(keyCode).arg(
                modifiers)));
    }

    void aKeyThatCannotBeStoredChangesNothing_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("a function key") << u"F5"_s;
        QTest::newRow("the euro sign") << u"€"_s;
        QTest::newRow("sharp s in capitals") << u"SS"_s;
        QTest::newRow("a shifted symbol") << u"!"_s;
        QTest::newRow("a modifier") << u"Shift"_s;
    }

    void aKeyThatCannotBeStoredChangesNothing()
    {
        QFETCH(QString, name);
        m_manager->saveSettings({9, 0x1100});
        const HotkeyChoice choice{name, true, false, false, false};
        QVERIFY(!choice.apply(*m_manager));
        QCOMPARE(m_printed->lines().last(), u"Invalid key: "_s + name);
        QVERIFY(m_announced.isEmpty());
        QCOMPARE(m_manager->loadSettings(), (HotkeySettings{9, 0x1100}));
    }

    void storedSettingsAreTakenOver()
    {
        HotkeyChoice choice;
        choice.takeOver({9, 0x1200});
        QCOMPARE(choice, (HotkeyChoice{u"V"_s, false, true, false, true}));
        choice.takeOver({49, 0x900});
        QCOMPARE(choice, (HotkeyChoice{u"Space"_s, true, false, true, false}));
    }

    void aKeyThatIsNotShownLeavesThePickerAsItWas_data()
    {
        QTest::addColumn<quint32>("keyCode");
        QTest::newRow("a code without name") << 10u;
        QTest::newRow("a modifier") << 54u;
        QTest::newRow("Backspace") << 51u;
        QTest::newRow("Esc") << 52u;
    }

    void aKeyThatIsNotShownLeavesThePickerAsItWas()
    {
        QFETCH(quint32, keyCode);
        HotkeyChoice choice;
        choice.takeOver({9, 0x800});
        choice.takeOver({keyCode, 0x100});
        QCOMPARE(choice, (HotkeyChoice{u"V"_s, true, false, false, false}));
    }

    void whatIsTakenOverIsWhatWasStored()
    {
        for (const QString &name : HotkeySettingsManager::availableKeys()) {
            HotkeyChoice choice{name, true, false, false, true};
            QVERIFY(choice.apply(*m_manager));
            HotkeyChoice takenOver;
            takenOver.takeOver(m_announced.last());
            QCOMPARE(takenOver, choice);
        }
    }

private:
    std::optional<PrintedLines> m_printed;
    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<UserDefaults> m_defaults;
    std::unique_ptr<HotkeySettingsManager> m_manager;
    QList<HotkeySettings> m_announced;
};

QTEST_GUILESS_MAIN(HotkeyChoiceTest)
#include "HotkeyChoiceTest.moc"
