#include "app/HotkeyManager.h"

#include "tests/fakes/FakeGlobalHotkey.h"
#include "tests/fakes/PrintedLines.h"

#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class HotkeyManagerTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_printed.emplace();
        m_hotkey = std::make_unique<FakeGlobalHotkey>();
        m_pressCount = 0;
        m_manager = std::make_unique<HotkeyManager>(*m_hotkey, [this] { ++m_pressCount; });
    }

    void cleanup()
    {
        m_manager.reset();
        m_printed.reset();
    }

    void aPressCallsBack()
    {
        m_manager->installEventHandler();
        m_hotkey->onPressed();
        m_hotkey->onPressed();
        QCOMPARE(m_pressCount, 2);
        QCOMPARE(m_printed->lines(), QStringList{u"Event handler installed successfully"_s});
    }

    void aPressWithoutCallbackIsHarmless()
    {
        m_manager = std::make_unique<HotkeyManager>(*m_hotkey, std::function<void()>());
        m_manager->installEventHandler();
        m_hotkey->onPressed();
        QCOMPARE(m_pressCount, 0);
    }

    void aCombinationIsRegistered()
    {
        m_manager->registerHotkey({49, 2048});
        QCOMPARE(m_hotkey->assigned, std::pair(49u, 2048u));
        QCOMPARE(m_printed->lines(),
                 QStringList{u"Hotkey registered successfully: keyCode=49, modifiers=2048"_s});
    }

    void aNewCombinationReplacesTheOldOne()
    {
        m_manager->registerHotkey({49, 2048});
        m_manager->registerHotkey({9, 0x1100});
        QCOMPARE(m_hotkey->assigned, std::pair(9u, 0x1100u));
        QCOMPARE(m_printed->lines().sliced(1),
                 QStringList({u"Hotkey unregistered"_s,
                              u"Hotkey registered successfully: keyCode=9, modifiers=4352"_s}));
    }

    void afterARefusalNoCombinationIsInForce()
    {
        m_manager->registerHotkey({49, 2048});
        m_hotkey->refusal = 10;
        m_manager->registerHotkey({9, 2048});
        QVERIFY(!m_hotkey->assigned);
        QCOMPARE(m_printed->lines().last(2),
                 QStringList({u"Hotkey unregistered"_s, u"Failed to register hotkey: 10"_s}));
    }

    void theAnswerOfTheDesktopIsPassedOn()
    {
        QCOMPARE(m_manager->registerHotkey({49, 2048}), 0);
        m_hotkey->refusal = HotkeyError::kNoSuchKey;
        QCOMPARE(m_manager->registerHotkey({9, 2048}), HotkeyError::kNoSuchKey);
    }

    void afterARefusalThereIsNothingToGiveUp()
    {
        m_hotkey->refusal = 10;
        m_manager->registerHotkey({49, 2048});
        m_hotkey->refusal = 0;
        m_manager->registerHotkey({9, 2048});
        QCOMPARE(m_printed->lines(),
                 QStringList({u"Failed to register hotkey: 10"_s,
                              u"Hotkey registered successfully: keyCode=9, modifiers=2048"_s}));
    }

    void aRefusedCombinationMayComeIntoForceLater()
    {
        m_hotkey->refusal = 10;
        m_manager->registerHotkey({49, 2048});
        m_hotkey->onAssignedLater();
        QCOMPARE(m_printed->lines().last(),
                 u"Hotkey registered successfully: keyCode=49, modifiers=2048"_s);
        m_manager.reset();
        QCOMPARE(m_printed->lines().last(), u"Hotkey unregistered"_s);
    }

    void aRefusedCombinationIsWantedNoLongerAfterAChange()
    {
        m_hotkey->refusal = 10;
        m_manager->registerHotkey({49, 2048});
        QCOMPARE(m_hotkey->releaseCount, 1);
        m_hotkey->refusal = 0;
        m_manager->registerHotkey({9, 2048});
        QCOMPARE(m_hotkey->releaseCount, 2);
        QCOMPARE(m_hotkey->assigned, std::pair(9u, 2048u));
    }

    void theEndGivesEverythingBack()
    {
        m_manager->installEventHandler();
        m_manager->registerHotkey({49, 2048});
        m_manager.reset();
        QVERIFY(!m_hotkey->assigned);
        QVERIFY(!m_hotkey->onPressed);
        QCOMPARE(m_printed->lines().last(2),
                 QStringList({u"Hotkey unregistered"_s, u"Event handler removed"_s}));
    }

    void theEndOfAnUnusedManagerIsSilent()
    {
        m_manager.reset();
        QVERIFY(m_printed->lines().isEmpty());
    }

private:
    std::optional<PrintedLines> m_printed;
    std::unique_ptr<FakeGlobalHotkey> m_hotkey;
    std::unique_ptr<HotkeyManager> m_manager;
    int m_pressCount = 0;
};

QTEST_GUILESS_MAIN(HotkeyManagerTest)
#include "HotkeyManagerTest.moc"
