#include "app/HotkeyRefusalNotice.h"

#include "foundation/UserDefaults.h"
#include "language/LanguageManager.h"
#include "settings/HotkeySettings.h"
#include "tests/fakes/FakeNotifications.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class HotkeyRefusalNoticeTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_notifications = std::make_unique<FakeNotifications>();
        m_defaults.reset();
        m_directory = std::make_unique<QTemporaryDir>();
        m_defaults = std::make_unique<UserDefaults>(m_directory->filePath(u"test.conf"_s));
    }

    void itNamesTheCombinationAndTheWayOut_data()
    {
        QTest::addColumn<AppLanguage>("language");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("wayOut");
        QTest::newRow("English") << AppLanguage::English
                                 << u"Alt+Space does not open the clipboard history"_s
                                 << u"Settings > Shortcuts"_s;
        QTest::newRow("Chinese") << AppLanguage::Chinese << u"Alt+Space 无法打开剪贴板历史"_s
                                 << u"设置 > 快捷键"_s;
    }

    void itNamesTheCombinationAndTheWayOut()
    {
        QFETCH(AppLanguage, language);
        QFETCH(QString, title);
        QFETCH(QString, wayOut);
        LanguageManager languages(*m_defaults);
        languages.install();
        languages.setLanguage(language);

        HotkeyRefusalNotice(*m_defaults, *m_notifications).show({});
        QCOMPARE(m_notifications->shown.size(), 1);
        QCOMPARE(m_notifications->shown.first().first, title);
        QVERIFY(m_notifications->shown.first().second.contains(wayOut));
    }

    void itIsShownOnceForAll()
    {
        HotkeyRefusalNotice(*m_defaults, *m_notifications).show({});
        HotkeyRefusalNotice(*m_defaults, *m_notifications).show({9, HotkeySettings::kControl});
        QCOMPARE(m_notifications->shown.size(), 1);
    }

    void whereNothingWasShownTheNextStartTriesAgain()
    {
        m_notifications->isDesktopShowing = false;
        HotkeyRefusalNotice(*m_defaults, *m_notifications).show({});
        m_notifications->isDesktopShowing = true;
        HotkeyRefusalNotice(*m_defaults, *m_notifications).show({});
        QCOMPARE(m_notifications->shown.size(), 2);
        HotkeyRefusalNotice(*m_defaults, *m_notifications).show({});
        QCOMPARE(m_notifications->shown.size(), 2);
    }

private:
    std::unique_ptr<FakeNotifications> m_notifications;
    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<UserDefaults> m_defaults;
};

QTEST_GUILESS_MAIN(HotkeyRefusalNoticeTest)
#include "HotkeyRefusalNoticeTest.moc"
