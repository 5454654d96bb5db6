#include "capture/PrivacySettingsManager.h"

#include "foundation/UserDefaults.h"
#include "language/LanguageManager.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString kKey = u"privacy.ignored_apps"_s;

/// The names of the default list in another language.
LanguageTables otherNames()
{
    return LanguageTables([](const QString &) {
        return R"({"settings.privacy.default.passwords": "Armoire",
                   "settings.privacy.default.keychain_access": "Trousseau"})"_ba;
    });
}

QStringList identifiersOf(const QList<IgnoredApp> &apps)
{
    QStringList identifiers;
    for (const IgnoredApp &app : apps)
        identifiers.append(app.bundleIdentifier);
    return identifiers;
}

} // namespace

class PrivacySettingsManagerTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_defaults.reset(); // It is written at its end, and so has to end before its directory.
        m_directory = std::make_unique<QTemporaryDir>();
        m_defaults = std::make_unique<UserDefaults>(m_directory->filePath(u"test.conf"_s));
        m_privacy = std::make_unique<PrivacySettingsManager>(*m_defaults);
    }

    void withoutAStoredListTheTwoDefaultsApplyAndNothingIsWritten()
    {
        const QList<IgnoredApp> expected{
            {u"Keychain Access"_s, u"com.apple.keychainaccess"_s, std::nullopt},
            {u"Passwords"_s, u"com.apple.Passwords"_s, std::nullopt},
        };
        QCOMPARE(m_privacy->ignoredApps(), expected);
        QVERIFY(!m_defaults->contains(kKey));
    }

    void namesOfTheDefaultsFollowTheLanguageAndTheSortingFollowsThem()
    {
        auto language = std::make_unique<LanguageManager>(*m_defaults, otherNames(),
                                                          [] { return QStringList(); });
        language->install();
        const QStringList fresh = identifiersOf(m_privacy->ignoredApps());
        m_defaults->set(kKey, R"([{"name":"Old name","bundleIdentifier":"COM.apple.passwords"}])"_ba);
        const QList<IgnoredApp> stored = m_privacy->ignoredApps();
        language.reset();

        QCOMPARE(fresh, QStringList({u"com.apple.Passwords"_s, u"com.apple.keychainaccess"_s}));
        QCOMPARE(stored.size(), 1);
        QCOMPARE(stored.first().name, u"Armoire"_s);
        QCOMPARE(stored.first().bundleIdentifier, u"COM.apple.passwords"_s);
    }

    void aStoredEmptyListIgnoresNothing()
    {
        m_defaults->set(kKey, "[]"_ba);
        QVERIFY(m_privacy->ignoredApps().isEmpty());
        QVERIFY(m_privacy->ignoredBundleIdentifiers().isEmpty());
    }

    void unreadableDataGiveTheDefaultsAndStayStored_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::newRow("no json") << "garbage"_ba;
        QTest::newRow("nothing") << ""_ba;
        QTest::newRow("an object") << R"({"name":"A","bundleIdentifier":"a"})"_ba;
        QTest::newRow("a bare string in the list") << R"(["a"])"_ba;
        QTest::newRow("an entry without identifier") << R"([{"name":"A"}])"_ba;
        QTest::newRow("an entry without name") << R"([{"bundleIdentifier":"a"}])"_ba;
        QTest::newRow("a path that is a number")
            << R"([{"name":"A","bundleIdentifier":"a","path":1}])"_ba;
        QTest::newRow("bytes that are no text") << "[{\"name\":\"\xff\",\"bundleIdentifier\":\"a\"}]"_ba;
    }

    void unreadableDataGiveTheDefaultsAndStayStored()
    {
        QFETCH(QByteArray, stored);
        m_defaults->set(kKey, stored);
        QCOMPARE(identifiersOf(m_privacy->ignoredApps()),
                 QStringList({u"com.apple.keychainaccess"_s, u"com.apple.Passwords"_s}));
        QCOMPARE(m_defaults->data(kKey), stored);
    }

    void listedPasswordsCoverTheirAliasInAnyCase()
    {
        const QSet<QString> identifiers = m_privacy->ignoredBundleIdentifiers();
        for (const QString &reported : {u"com.apple.Passwords"_s, u"com.apple.passwords"_s,
                                        u"com.apple.systempreferences"_s})
            QVERIFY2(identifiers.contains(reported.toLower()), qPrintable(reported));
    }

    void removedPasswordsTakeTheirAliasWithThem()
    {
        m_privacy->saveIgnoredApps(
            {{u"Keychain Access"_s, u"com.apple.keychainaccess"_s, std::nullopt}});
        QCOMPARE(m_privacy->ignoredBundleIdentifiers(),
                 QSet<QString>{u"com.apple.keychainaccess"_s});
    }

    void anIdentifierOfBlanksDisappears()
    {
        m_defaults->set(kKey, R"([{"name":"A","bundleIdentifier":" \n\t"},
                                  {"name":"B","bundleIdentifier":"b"}])"_ba);
        QCOMPARE(identifiersOf(m_privacy->ignoredApps()), QStringList{u"b"_s});
    }

    void theFirstOfTwoEqualIdentifiersSurvives()
    {
        m_defaults->set(kKey, R"([{"name":"Zebra","bundleIdentifier":"org.app"},
                                  {"name":"Ant","bundleIdentifier":"org.app"}])"_ba);
        const QList<IgnoredApp> apps = m_privacy->ignoredApps();
        QCOMPARE(apps.size(), 1);
        QCOMPARE(apps.first().name, u"Zebra"_s);
    }

    void identifiersThatDifferInCaseStandSideBySide()
    {
        m_defaults->set(kKey, R"([{"name":"A","bundleIdentifier":"org.App"},
                                  {"name":"B","bundleIdentifier":"org.app"}])"_ba);
        QCOMPARE(m_privacy->ignoredApps().size(), 2);
        QCOMPARE(m_privacy->ignoredBundleIdentifiers(), QSet<QString>{u"org.app"_s});
    }

    void blanksAroundAnIdentifierDoNotCount()
    {
        m_defaults->set(kKey, R"([{"name":" A ","bundleIdentifier":"  org.App\n"}])"_ba);
        QCOMPARE(m_privacy->ignoredBundleIdentifiers(), QSet<QString>{u"org.app"_s});
        QCOMPARE(m_privacy->ignoredApps().first().name, u"A"_s);
    }

    void namesAreSortedWithoutCaseAndEqualOnesKeepTheirOrder()
    {
        m_privacy->saveIgnoredApps({{u"beta"_s, u"1"_s, std::nullopt},
                                    {u"Alpha"_s, u"2"_s, std::nullopt},
                                    {u"BETA"_s, u"3"_s, std::nullopt},
                                    {u"alpha"_s, u"4"_s, std::nullopt}});
        QCOMPARE(identifiersOf(m_privacy->ignoredApps()),
                 QStringList({u"2"_s, u"4"_s, u"1"_s, u"3"_s}));
    }

    void theStoredFormIsAnArrayOfObjectsWithOrderedKeys()
    {
        m_privacy->saveIgnoredApps({{u"Café"_s, u"org.cafe"_s, u"/usr/bin/cafe"_s},
                                    {u"Dove"_s, u"org.dove"_s, std::nullopt}});
        QCOMPARE(m_defaults->data(kKey),
                 R"([{"name":"Café","bundleIdentifier":"org.cafe","path":"/usr/bin/cafe"},)"
                 R"({"name":"Dove","bundleIdentifier":"org.dove"}])"_ba);
        QCOMPARE(m_privacy->ignoredApps().first().path, u"/usr/bin/cafe"_s);
    }

private:
    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<UserDefaults> m_defaults;
    std::unique_ptr<PrivacySettingsManager> m_privacy;
};

QTEST_GUILESS_MAIN(PrivacySettingsManagerTest)
#include "PrivacySettingsManagerTest.moc"
