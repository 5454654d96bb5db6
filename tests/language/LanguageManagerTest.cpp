#include "language/LanguageManager.h"

#include "foundation/UserDefaults.h"
#include "language/Localized.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString kKey = u"AppLanguage"_s;

/// Tables in memory, each with one text that is called like the table.
LanguageTables tablesNamed(const QStringList &names)
{
    return LanguageTables([names](const QString &name) {
        return names.contains(name)
                   ? std::optional<QByteArray>("{\"table\": \"" + name.toUtf8() + "\"}")
                   : std::nullopt;
    });
}

} // namespace

class LanguageManagerTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void firstStartIsInEnglishWhateverTheSystemSpeaks();
    void unknownStoredLanguageIsEnglish_data();
    void unknownStoredLanguageIsEnglish();
    void storedLanguageIsTakenUp();
    void systemTakesTheFirstLanguageThatItKnows_data();
    void systemTakesTheFirstLanguageThatItKnows();
    void chosenLanguageIsStoredAndAnnounced();
    void chosenLanguageCountsFromTheNextText();
    void changedLocaleCountsOnlyWhereTheSystemDecides();

    void missingKeyShowsTheFallback();
    void keyThatStandsForItsOwnTextShowsTheFallback();
    void tablesAreSoughtInTheirOrder_data();
    void tablesAreSoughtInTheirOrder();
    void withoutAnyTableThereAreTheFallbacks();
    void damagedTableIsNone();
    void tableIsReadOnce();
    void builtInTablesAreThere();
    void textsComeFromTheInstalledManagerUntilItEnds();
    void languagesAreNamedInTheInterfaceLanguage();
    void placeholdersAreFilledInTheirOrder_data();
    void placeholdersAreFilledInTheirOrder();

private:
    std::unique_ptr<LanguageManager> makeManager(const QStringList &tables = {u"en"_s,
                                                                              u"zh-Hans"_s});

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<UserDefaults> m_defaults;
    QStringList m_preferredLanguages;
};

void LanguageManagerTest::init()
{
    m_preferredLanguages.clear();
    m_defaults.reset(); // It is written at its end, and so has to end before its directory.
    m_directory = std::make_unique<QTemporaryDir>();
    m_defaults = std::make_unique<UserDefaults>(m_directory->filePath(u"test.conf"_s));
}

std::unique_ptr<LanguageManager> LanguageManagerTest::makeManager(const QStringList &tables)
{
    return std::make_unique<LanguageManager>(*m_defaults, tablesNamed(tables),
                                             [this] { return m_preferredLanguages; });
}

void LanguageManagerTest::firstStartIsInEnglishWhateverTheSystemSpeaks()
{
    m_preferredLanguages = {u"zh-Hans-CN"_s};
    const auto manager = makeManager();
    QCOMPARE(manager->currentLanguage(), AppLanguage::English);
    QCOMPARE(manager->languageCode(), u"en"_s);
    QVERIFY(!m_defaults->contains(kKey));
}

void LanguageManagerTest::unknownStoredLanguageIsEnglish_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::newRow("another word") << QVariant(u"french"_s);
    QTest::newRow("another spelling") << QVariant(u"Chinese"_s);
    QTest::newRow("nothing") << QVariant(QString());
    QTest::newRow("a number") << QVariant(2);
}

void LanguageManagerTest::unknownStoredLanguageIsEnglish()
{
    QFETCH(QVariant, stored);
    m_defaults->set(kKey, stored);
    QCOMPARE(makeManager()->currentLanguage(), AppLanguage::English);
}

void LanguageManagerTest::storedLanguageIsTakenUp()
{
    m_defaults->set(kKey, u"chinese"_s);
    QCOMPARE(makeManager()->currentLanguage(), AppLanguage::Chinese);
    QCOMPARE(makeManager()->languageCode(), u"zh-Hans"_s);
    m_defaults->set(kKey, u"system"_s);
    QCOMPARE(makeManager()->currentLanguage(), AppLanguage::System);
}

void LanguageManagerTest::systemTakesTheFirstLanguageThatItKnows_data()
{
    QTest::addColumn<QStringList>("languages");
    QTest::addColumn<QString>("code");
    QTest::newRow("French, traditional Chinese, English")
        << QStringList{u"fr-FR"_s, u"zh-Hant-TW"_s, u"en-US"_s} << u"zh-Hans"_s;
    QTest::newRow("English, Chinese") << QStringList{u"en-GB"_s, u"zh-CN"_s} << u"en"_s;
    QTest::newRow("French alone") << QStringList{u"fr-FR"_s} << u"en"_s;
    QTest::newRow("none") << QStringList() << u"en"_s;
}

void LanguageManagerTest::systemTakesTheFirstLanguageThatItKnows()
{
    QFETCH(QString, code);
    QFETCH(QStringList, languages);
    m_preferredLanguages = languages;
    m_defaults->set(kKey, u"system"_s);
    QCOMPARE(makeManager()->languageCode(), code);
}

void LanguageManagerTest::chosenLanguageIsStoredAndAnnounced()
{
    const auto manager = makeManager();
    QSignalSpy announced(manager.get(), &LanguageManager::languageChanged);
    const std::pair<AppLanguage, QString> languages[] = {{AppLanguage::System, u"system"_s},
                                                         {AppLanguage::English, u"english"_s},
                                                         {AppLanguage::Chinese, u"chinese"_s}};
    for (const auto &[language, stored] : languages) {
        manager->setLanguage(language);
        QCOMPARE(m_defaults->string(kKey), stored);
        QCOMPARE(manager->currentLanguage(), language);
    }
    QCOMPARE(announced.count(), 3);
}

void LanguageManagerTest::chosenLanguageCountsFromTheNextText()
{
    const auto manager = makeManager();
    QCOMPARE(manager->text(u"table"_s, {}), u"en"_s);
    QString textWhenAnnounced;
    connect(manager.get(), &LanguageManager::languageChanged, this,
            [&] { textWhenAnnounced = manager->text(u"table"_s, {}); });
    manager->setLanguage(AppLanguage::Chinese);
    QCOMPARE(textWhenAnnounced, u"zh-Hans"_s);
}

void LanguageManagerTest::changedLocaleCountsOnlyWhereTheSystemDecides()
{
    m_preferredLanguages = {u"en"_s};
    const auto manager = makeManager();
    manager->setLanguage(AppLanguage::System);
    QCOMPARE(manager->text(u"table"_s, {}), u"en"_s);
    QSignalSpy announced(manager.get(), &LanguageManager::languageChanged);

    m_preferredLanguages = {u"zh"_s};
    manager->systemLocaleChanged();
    QCOMPARE(announced.count(), 1);
    QCOMPARE(manager->text(u"table"_s, {}), u"zh-Hans"_s);

    manager->setLanguage(AppLanguage::English);
    manager->systemLocaleChanged();
    QCOMPARE(announced.count(), 2);
    QCOMPARE(manager->text(u"table"_s, {}), u"en"_s);
}

void LanguageManagerTest::missingKeyShowsTheFallback()
{
    QCOMPARE(makeManager()->text(u"menu.no_such"_s, u"Fallback"_s), u"Fallback"_s);
}

void LanguageManagerTest::keyThatStandsForItsOwnTextShowsTheFallback()
{
    LanguageManager manager(*m_defaults,
                            LanguageTables([](const QString &) { return R"({"a.b": "a.b"})"_ba; }),
                            [] { return QStringList(); });
    QCOMPARE(manager.text(u"a.b"_s, u"Fallback"_s), u"Fallback"_s);
}

void LanguageManagerTest::tablesAreSoughtInTheirOrder_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QStringList>("tables");
    QTest::addColumn<QString>("found");
    const QStringList all{u"en"_s,       u"en-CN"_s,   u"en_CN"_s,      u"zh-Hans"_s, u"zh-Hans-CN"_s,
                          u"zh_Hans"_s,  u"zh_Hans_CN"_s, u"zh-Hant"_s, u"zh_CN"_s,   u"zh"_s};
    QTest::newRow("its own") << u"english"_s << all << u"en"_s;
    QTest::newRow("its own for China") << u"english"_s << all.mid(1) << u"en-CN"_s;
    QTest::newRow("the same with an underscore") << u"english"_s << all.mid(2) << u"en_CN"_s;
    QTest::newRow("English without a table shows Chinese")
        << u"english"_s << all.mid(3) << u"zh-Hans"_s;
    QTest::newRow("Chinese for China") << u"chinese"_s << all.mid(4) << u"zh-Hans-CN"_s;
    QTest::newRow("Chinese with an underscore") << u"chinese"_s << all.mid(5) << u"zh_Hans"_s;
    QTest::newRow("the same for China") << u"chinese"_s << all.mid(6) << u"zh_Hans_CN"_s;
    QTest::newRow("traditional Chinese") << u"chinese"_s << all.mid(7) << u"zh-Hant"_s;
    QTest::newRow("Chinese of China") << u"english"_s << all.mid(8) << u"zh_CN"_s;
    QTest::newRow("any Chinese") << u"english"_s << all.mid(9) << u"zh"_s;
    QTest::newRow("never English for Chinese") << u"chinese"_s << all.first(3) << QString();
}

void LanguageManagerTest::tablesAreSoughtInTheirOrder()
{
    QFETCH(QString, language);
    QFETCH(QStringList, tables);
    QFETCH(QString, found);
    m_defaults->set(kKey, language);
    QCOMPARE(makeManager(tables)->text(u"table"_s, {}), found);
}

void LanguageManagerTest::withoutAnyTableThereAreTheFallbacks()
{
    QCOMPARE(makeManager({})->text(u"table"_s, u"Fallback"_s), u"Fallback"_s);
}

void LanguageManagerTest::damagedTableIsNone()
{
    LanguageManager manager(*m_defaults, LanguageTables([](const QString &name) {
                                return std::optional<QByteArray>(
                                    name == "en"_L1 ? "{\"table\": " : "{\"table\": \"Chinese\"}");
                            }),
                            [] { return QStringList(); });
    QCOMPARE(manager.text(u"table"_s, {}), u"Chinese"_s);
}

void LanguageManagerTest::tableIsReadOnce()
{
    int readCount = 0;
    LanguageManager manager(*m_defaults, LanguageTables([&readCount](const QString &) {
                                ++readCount;
                                return std::optional<QByteArray>("{}");
                            }),
                            [] { return QStringList(); });
    manager.text(u"one"_s, {});
    manager.text(u"other"_s, {});
    manager.setLanguage(AppLanguage::Chinese);
    manager.text(u"one"_s, {});
    manager.setLanguage(AppLanguage::English);
    manager.text(u"one"_s, {});
    QCOMPARE(readCount, 2);
}

void LanguageManagerTest::builtInTablesAreThere()
{
    LanguageManager manager(*m_defaults);
    QCOMPARE(manager.text(u"menu.show_in_finder"_s, {}), u"Show in File Manager"_s);
    manager.setLanguage(AppLanguage::Chinese);
    QCOMPARE(manager.text(u"menu.show_in_finder"_s, {}), u"在文件管理器中显示"_s);
}

void LanguageManagerTest::textsComeFromTheInstalledManagerUntilItEnds()
{
    QCOMPARE(localized(u"table"_s, u"Fallback"_s), u"Fallback"_s);
    auto manager = makeManager();
    QCOMPARE(localized(u"table"_s, u"Fallback"_s), u"Fallback"_s);
    manager->install();
    QCOMPARE(localized(u"table"_s, u"Fallback"_s), u"en"_s);
    manager.reset();
    QCOMPARE(localized(u"table"_s, u"Fallback"_s), u"Fallback"_s);
}

void LanguageManagerTest::languagesAreNamedInTheInterfaceLanguage()
{
    QCOMPARE(displayName(AppLanguage::System), u"Follow System"_s);
    QCOMPARE(displayName(AppLanguage::English), u"English"_s);
    QCOMPARE(displayName(AppLanguage::Chinese), u"简体中文"_s);
    LanguageManager manager(*m_defaults);
    manager.setLanguage(AppLanguage::Chinese);
    manager.install();
    QCOMPARE(displayName(AppLanguage::System), u"跟随系统"_s);
    QCOMPARE(displayName(AppLanguage::English), u"English"_s);
}

void LanguageManagerTest::placeholdersAreFilledInTheirOrder_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QVariantList>("values");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << u"now"_s << QVariantList{3} << u"now"_s;
    QTest::newRow("two numbers") << u"Image size: %d × %lld"_s << QVariantList{640, qint64(48)}
                                 << u"Image size: 640 × 48"_s;
    QTest::newRow("in the current locale")
        << u"%d"_s << QVariantList{1234567} << QLocale().toString(1234567);
    QTest::newRow("a text that looks like a placeholder")
        << u"%@ and %@"_s << QVariantList{u"%@"_s, u"%d"_s} << u"%@ and %d"_s;
    QTest::newRow("a text of digits") << u"“%@”"_s << QVariantList{u"007"_s} << u"“007”"_s;
    QTest::newRow("a per cent sign") << u"100 % of %d"_s << QVariantList{5} << u"100 % of 5"_s;
    QTest::newRow("too few values") << u"%d of %d"_s << QVariantList{1} << u"1 of %d"_s;
}

void LanguageManagerTest::placeholdersAreFilledInTheirOrder()
{
    QFETCH(const QString, format);
    QFETCH(const QVariantList, values);
    QTEST(filledIn(format, values), "text");
}

QTEST_GUILESS_MAIN(LanguageManagerTest)
#include "LanguageManagerTest.moc"
