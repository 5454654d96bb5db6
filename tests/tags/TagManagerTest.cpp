#include "tags/TagManager.h"

#include "foundation/UserDefaults.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString kTagsKey = u"custom.tags"_s;
const QString kTagsV2Key = u"custom.tags.v2"_s;
const QString kStrategyKey = u"custom.tags.color.strategy"_s;

QByteArray storedTag(const QString &name, const QString &color)
{
    const QJsonObject object{{u"id"_s, u"1B4E28BA-2FA1-11D2-883F-0016D3CCA427"_s},
                             {u"name"_s, name},
                             {u"color"_s, color}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QByteArray storedTags(const QByteArrayList &tags)
{
    return '[' + tags.join(',') + ']';
}

} // namespace

class TagManagerTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void thereAreNoTagsAtFirst();
    void whiteSpaceAroundANameGoes();
    void aNameIsTakenLetterByLetter();
    void aLongNameIsCut();
    void aCharacterIsWhatAReaderCounts();
    void aNameOfNothingButWhiteSpaceIsRefused_data();
    void aNameOfNothingButWhiteSpaceIsRefused();
    void theSixteenthTagIsRefused();
    void aGivenColorIsTaken();

    void aRenameMayChangeTheCaseAlone();
    void aRenameIsRefusedWhateverTheCaseOfTheOther();
    void aRenameNormalizesTheNewName();
    void aRenameOfNoTagIsRefused();
    void aRenameToNothingIsRefused();
    void aRenameKeepsPlaceAndIdentity();
    void aRenameGivesTheColorOfTheNewName();

    void deletingKeepsTheOrderOfTheRest();
    void deletingTakesEveryTagOfThatNameAndNoOther();
    void movingGoesByOnePlaceOrToTheFront();
    void aMoveThatLeadsNowhereIsRefused();
    void theColorOfAnUnknownNameIsAbsent();

    void changesAreToldAtOnceAndOnceMore_data();
    void changesAreToldAtOnceAndOnceMore();
    void aDeletionIsToldFromTheEventLoopOnly();
    void whatIsRefusedIsNotTold();
    void aListenerSeesTheChangeInTheStoreToo();
    void theEndBeforeTheSecondNewsIsHarmless();

    void colorsFollowFromTheName_data();
    void colorsFollowFromTheName();
    void whiteSpaceAndCaseDoNotChangeAColor();
    void aColorInUseIsPassedOver();
    void thePaletteGoesRound();
    void withAllColorsInUseTheNameDecidesAlone();
    void aStoredColorStrategyIsLeftAlone_data();
    void aStoredColorStrategyIsLeftAlone();

    void bothFormsAreStored();
    void tagsComeBackAtTheNextStart();
    void deletedTagsDoNotComeBack();
    void aForeignColorIsReplacedAndStored();
    void rightColorsAreNotStoredAgain();
    void theOrderDecidesAboutColorsAtTheNextStart();
    void damagedTagsFallBackToTheNames_data();
    void damagedTagsFallBackToTheNames();
    void damagedTagsWithoutNamesLeaveNothing();
    void anEmptyListIsNoDamage();
    void namesAreTakenAsTheyAre();
    void fortyNamesStayForty();

private:
    TagManager &start();
    void create(const QStringList &names);
    QString colorName(const QString &name) const
    {
        const auto color = m_manager->color(name);
        return color ? rawValue(*color) : u"absent"_s;
    }
    void checkThatBothFormsAgree() const;

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<UserDefaults> m_defaults;
    std::unique_ptr<TagManager> m_manager;
};

void TagManagerTest::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    m_defaults = std::make_unique<UserDefaults>(m_directory->filePath(u"tessarine.conf"_s));
    start();
}

void TagManagerTest::cleanup()
{
    m_manager.reset();
    m_defaults.reset();
    m_directory.reset();
}

TagManager &TagManagerTest::start()
{
    m_manager = std::make_unique<TagManager>(*m_defaults);
    return *m_manager;
}

void TagManagerTest::create(const QStringList &names)
{
    for (const QString &name : names)
        QVERIFY2(m_manager->createTag(name), qPrintable(name));
}

void TagManagerTest::checkThatBothFormsAgree() const
{
    const auto stored = QJsonDocument::fromJson(m_defaults->data(kTagsV2Key).value_or("?"));
    QVERIFY(stored.isArray());
    QStringList names;
    for (const auto &entry : stored.array())
        names.append(entry.toObject().value(u"name"_s).toString());
    QCOMPARE(names, m_manager->tagNames());
    QCOMPARE(m_defaults->stringList(kTagsKey).value_or(QStringList{u"?"_s}), names);
}

void TagManagerTest::thereAreNoTagsAtFirst()
{
    QVERIFY(m_manager->tags().isEmpty());
    QVERIFY(m_manager->tagNames().isEmpty());
    QCOMPARE(m_manager->maxTagCount(), 15);
    QVERIFY(!m_defaults->contains(kTagsKey));
    QVERIFY(!m_defaults->contains(kTagsV2Key));
}

void TagManagerTest::whiteSpaceAroundANameGoes()
{
    QVERIFY(m_manager->createTag(u" \t\u00A0\u3000Work at home\u2003\r\n"_s));
    QCOMPARE(m_manager->tagNames(), QStringList{u"Work at home"_s});
    QVERIFY(!m_manager->createTag(u"Work at home"_s));
}

void TagManagerTest::aNameIsTakenLetterByLetter()
{
    QVERIFY(m_manager->createTag(u"  Work  "_s));
    QVERIFY(!m_manager->createTag(u"Work"_s));
    QVERIFY(m_manager->createTag(u"work"_s));
    QCOMPARE(m_manager->tagNames(), (QStringList{u"Work"_s, u"work"_s}));
}

void TagManagerTest::aLongNameIsCut()
{
    const QString uncut = u"abcdefghijklmnopqrstu"_s;
    QVERIFY(m_manager->createTag(uncut));
    QCOMPARE(m_manager->tagNames(), QStringList{u"abcdefghijklmnopqrst"_s});
    QVERIFY(!m_manager->createTag(uncut));
}

void TagManagerTest::aCharacterIsWhatAReaderCounts()
{
    const QString family = u"\U0001F469\u200D\U0001F469\u200D\U0001F467"_s;
    const QString accented = u"e\u0301"_s;
    QVERIFY(m_manager->createTag(family.repeated(21)));
    QVERIFY(m_manager->createTag(accented.repeated(20)));
    QCOMPARE(m_manager->tagNames(), (QStringList{family.repeated(20), accented.repeated(20)}));
}

void TagManagerTest::aNameOfNothingButWhiteSpaceIsRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("nothing") << QString();
    QTest::newRow("blanks") << u"   "_s;
    QTest::newRow("line ends") << u"\r\n\u2028\u0085"_s;
}

void TagManagerTest::aNameOfNothingButWhiteSpaceIsRefused()
{
    QFETCH(const QString, name);
    QSignalSpy told(m_manager.get(), &TagManager::tagsDidChange);
    QVERIFY(!m_manager->createTag(name));
    QCoreApplication::processEvents();
    QCOMPARE(told.count(), 0);
    QVERIFY(m_manager->tags().isEmpty());
}

void TagManagerTest::theSixteenthTagIsRefused()
{
    for (int i = 1; i <= 15; ++i)
        QVERIFY(m_manager->createTag(QString::number(i)));
    QVERIFY(!m_manager->createTag(u"16"_s));
    QCOMPARE(m_manager->tags().size(), 15);
    m_manager->deleteTag(u"3"_s);
    QVERIFY(m_manager->createTag(u"16"_s));
}

void TagManagerTest::aGivenColorIsTaken()
{
    create({u"travel"_s});
    QVERIFY(m_manager->createTag(u"Work"_s, TagColor::Lime)); // As that of the other.
    QCOMPARE(colorName(u"travel"_s), u"lime"_s);
    QCOMPARE(colorName(u"Work"_s), u"lime"_s);
}

void TagManagerTest::aRenameMayChangeTheCaseAlone()
{
    create({u"work"_s, u"WORK"_s});
    QVERIFY(m_manager->renameTag(u"work"_s, u"Work"_s));
    QCOMPARE(m_manager->tagNames(), (QStringList{u"Work"_s, u"WORK"_s}));
}

void TagManagerTest::aRenameIsRefusedWhateverTheCaseOfTheOther()
{
    create({u"work"_s, u"home"_s, u"Übung"_s});
    QVERIFY(!m_manager->renameTag(u"work"_s, u"HOME"_s));
    QVERIFY(!m_manager->renameTag(u"work"_s, u" üBUNG "_s));
    QCOMPARE(m_manager->tagNames(), (QStringList{u"work"_s, u"home"_s, u"Übung"_s}));
}

void TagManagerTest::aRenameNormalizesTheNewName()
{
    create({u"work"_s});
    QVERIFY(m_manager->renameTag(u"work"_s, u"  abcdefghijklmnopqrstuvw "_s));
    QCOMPARE(m_manager->tagNames(), QStringList{u"abcdefghijklmnopqrst"_s});
}

void TagManagerTest::aRenameOfNoTagIsRefused()
{
    create({u"work"_s});
    QVERIFY(!m_manager->renameTag(u"Work"_s, u"office"_s));
    QVERIFY(!m_manager->renameTag(u" work"_s, u"office"_s));
    QCOMPARE(m_manager->tagNames(), QStringList{u"work"_s});
}

void TagManagerTest::aRenameToNothingIsRefused()
{
    create({u"work"_s});
    QVERIFY(!m_manager->renameTag(u"work"_s, u" \n "_s));
    QCOMPARE(m_manager->tagNames(), QStringList{u"work"_s});
}

void TagManagerTest::aRenameKeepsPlaceAndIdentity()
{
    create({u"one"_s, u"two"_s, u"three"_s});
    const QUuid id = m_manager->tags().at(1).id;
    QVERIFY(m_manager->renameTag(u"two"_s, u"zwei"_s));
    QCOMPARE(m_manager->tagNames(), (QStringList{u"one"_s, u"zwei"_s, u"three"_s}));
    QCOMPARE(m_manager->tags().at(1).id, id);
}

void TagManagerTest::aRenameGivesTheColorOfTheNewName()
{
    create({u"travel"_s, u"Work"_s});
    QCOMPARE(colorName(u"Work"_s), u"teal"_s);
    QVERIFY(m_manager->renameTag(u"Work"_s, u"C++"_s));
    QCOMPARE(colorName(u"C++"_s), u"red"_s);
    // Its own former colour is free, that of the other is not.
    QVERIFY(m_manager->renameTag(u"C++"_s, u"Iğdır"_s));
    QCOMPARE(colorName(u"Iğdır"_s), u"sky"_s);
    QVERIFY(m_manager->renameTag(u"Iğdır"_s, u"IĞDıR"_s));
    QCOMPARE(colorName(u"IĞDıR"_s), u"sky"_s);
}

void TagManagerTest::deletingKeepsTheOrderOfTheRest()
{
    create({u"one"_s, u"two"_s, u"three"_s});
    const QList<Tag> before = m_manager->tags();
    m_manager->deleteTag(u"two"_s);
    QCOMPARE(m_manager->tags(), (QList<Tag>{before.at(0), before.at(2)}));
    checkThatBothFormsAgree();
}

void TagManagerTest::deletingTakesEveryTagOfThatNameAndNoOther()
{
    m_defaults->set(kTagsKey, QStringList{u"work"_s, u"Work"_s, u"work"_s, u"work "_s});
    start().deleteTag(u"work"_s);
    QCOMPARE(m_manager->tagNames(), (QStringList{u"Work"_s, u"work "_s}));
}

void TagManagerTest::movingGoesByOnePlaceOrToTheFront()
{
    create({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
    QVERIFY(m_manager->moveTagUp(u"c"_s));
    QCOMPARE(m_manager->tagNames(), (QStringList{u"a"_s, u"c"_s, u"b"_s, u"d"_s}));
    QVERIFY(m_manager->moveTagDown(u"a"_s));
    QCOMPARE(m_manager->tagNames(), (QStringList{u"c"_s, u"a"_s, u"b"_s, u"d"_s}));
    QVERIFY(m_manager->moveTagToFront(u"d"_s));
    QCOMPARE(m_manager->tagNames(), (QStringList{u"d"_s, u"c"_s, u"a"_s, u"b"_s}));
    checkThatBothFormsAgree();
}

void TagManagerTest::aMoveThatLeadsNowhereIsRefused()
{
    create({u"first"_s, u"last"_s});
    QCoreApplication::processEvents();
    QSignalSpy told(m_manager.get(), &TagManager::tagsDidChange);
    QVERIFY(!m_manager->moveTagToFront(u"first"_s));
    QVERIFY(!m_manager->moveTagUp(u"first"_s));
    QVERIFY(!m_manager->moveTagDown(u"last"_s));
    for (const QString &unknown : {u"First"_s, u"nobody"_s, QString()}) {
        QVERIFY(!m_manager->moveTagToFront(unknown));
        QVERIFY(!m_manager->moveTagUp(unknown));
        QVERIFY(!m_manager->moveTagDown(unknown));
    }
    QCoreApplication::processEvents();
    QCOMPARE(told.count(), 0);
    QCOMPARE(m_manager->tagNames(), (QStringList{u"first"_s, u"last"_s}));
}

void TagManagerTest::theColorOfAnUnknownNameIsAbsent()
{
    create({u"Work"_s});
    QVERIFY(m_manager->color(u"Work"_s).has_value());
    QVERIFY(!m_manager->color(u"work"_s).has_value());
    QVERIFY(!m_manager->color(QString()).has_value());
}

void TagManagerTest::changesAreToldAtOnceAndOnceMore_data()
{
    using Change = std::function<bool(TagManager &)>;
    QTest::addColumn<Change>("change");
    QTest::newRow("create") << Change([](auto &tags) { return tags.createTag(u"c"_s); });
    QTest::newRow("rename") << Change([](auto &tags) { return tags.renameTag(u"a"_s, u"z"_s); });
    QTest::newRow("to the front") << Change([](auto &tags) { return tags.moveTagToFront(u"b"_s); });
    QTest::newRow("up") << Change([](auto &tags) { return tags.moveTagUp(u"b"_s); });
    QTest::newRow("down") << Change([](auto &tags) { return tags.moveTagDown(u"a"_s); });
}

void TagManagerTest::changesAreToldAtOnceAndOnceMore()
{
    QFETCH(const std::function<bool(TagManager &)>, change);
    create({u"a"_s, u"b"_s});
    QCoreApplication::processEvents();
    QSignalSpy told(m_manager.get(), &TagManager::tagsDidChange);
    QVERIFY(change(*m_manager));
    QCOMPARE(told.count(), 1);
    QCoreApplication::processEvents();
    QCOMPARE(told.count(), 2);
    checkThatBothFormsAgree();
}

void TagManagerTest::aDeletionIsToldFromTheEventLoopOnly()
{
    create({u"a"_s});
    QCoreApplication::processEvents();
    QSignalSpy told(m_manager.get(), &TagManager::tagsDidChange);
    m_manager->deleteTag(u"a"_s);
    QCOMPARE(told.count(), 0);
    QCoreApplication::processEvents();
    QCOMPARE(told.count(), 1);
}

void TagManagerTest::whatIsRefusedIsNotTold()
{
    create({u"a"_s, u"b"_s});
    QCoreApplication::processEvents();
    QSignalSpy told(m_manager.get(), &TagManager::tagsDidChange);
    QVERIFY(!m_manager->createTag(u"a"_s));
    QVERIFY(!m_manager->renameTag(u"a"_s, u"B"_s));
    QVERIFY(!m_manager->renameTag(u"nobody"_s, u"somebody"_s));
    QCoreApplication::processEvents();
    QCOMPARE(told.count(), 0);
}

void TagManagerTest::aListenerSeesTheChangeInTheStoreToo()
{
    int seen = 0;
    connect(m_manager.get(), &TagManager::tagsDidChange, this, [&] {
        checkThatBothFormsAgree();
        ++seen;
    });
    create({u"a"_s});
    QCOMPARE(seen, 1);
}

void TagManagerTest::theEndBeforeTheSecondNewsIsHarmless()
{
    int told = 0;
    connect(m_manager.get(), &TagManager::tagsDidChange, this, [&told] { ++told; });
    create({u"a"_s});
    m_manager.reset();
    QCoreApplication::processEvents();
    QCOMPARE(told, 1);
}

/// The expected colours are entry (hash modulo 15) of the palette, reckoned apart from this program.
void TagManagerTest::colorsFollowFromTheName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("color");
    const std::initializer_list<std::pair<QString, QString>> rows{
        {u"Work"_s, u"teal"_s}, // 0x7058edf6366825c0
        {u"travel"_s, u"lime"_s}, // 0xd31edc60d0fba0d9
        {u"recipes"_s, u"green"_s}, // 0x338684c18cd2eeb4
        {u"a"_s, u"orange"_s}, // 0xaf63dc4c8601ec8c
        {u"C++"_s, u"red"_s}, // 0xf6d0cc190dae8bb0
        {u"Ideas 2026"_s, u"purple"_s}, // 0x9331543a4b039757
        {u"Straße"_s, u"green"_s}, // 0x0360987265b28b78
        {u"Übung"_s, u"green"_s}, // 0xd3b973973ab61654
        {u"ÄRGER"_s, u"orange"_s}, // 0x7a3ea0af13a54da6
        {u"naïve"_s, u"lime"_s}, // 0x1e858bc68a6332ab
        {u"résumé"_s, u"orange"_s}, // 0x577f0085d6e2ca5c
        {u"工作"_s, u"indigo"_s}, // 0xe8e4efd3638a2b5d
        {u"旅行计划"_s, u"red"_s}, // 0x372baecb87e41c04
        {u"Ελλάδα"_s, u"purple"_s}, // 0x96e056fff6bb6bd1
        {u"İstanbul"_s, u"pink"_s}, // 0xb3c0fa3d0d84731c, of i, a dot above, stanbul
        {u"Iğdır"_s, u"lime"_s}, // 0x844a5974bacfdb82
        {u"ışık"_s, u"pink"_s}, // 0x62568d084044d7e6
        {u"\U0001F389 party"_s, u"cyan"_s}, // 0x0d048d143f181fcd
        {u"\U0001F469\u200D\U0001F469\u200D\U0001F467 family"_s, u"mint"_s}, // 0xc09878155df67094
        {u"reading list"_s, u"brown"_s}, // 0xadfb23b3a98c038d
    };
    for (const auto &[name, color] : rows)
        QTest::newRow(qPrintable(name)) << name << color;
}

void TagManagerTest::colorsFollowFromTheName()
{
    QFETCH(const QString, name);
    QFETCH(const QString, color);
    create({name});
    QCOMPARE(colorName(name), color);
}

void TagManagerTest::whiteSpaceAndCaseDoNotChangeAColor()
{
    // Cut after twenty characters, the name keeps the blank at its end.
    const QString cutAtBlank = u"abcdefghijklmnopqrs tuv"_s;
    create({cutAtBlank});
    const QString withBlank = u"abcdefghijklmnopqrs "_s;
    const QString color = colorName(withBlank);
    m_manager->deleteTag(withBlank);
    create({u"ABCDEFGHIJKLMNOPQRS"_s});
    QCOMPARE(colorName(u"ABCDEFGHIJKLMNOPQRS"_s), color);

    create({u"  Work "_s});
    QCOMPARE(colorName(u"Work"_s), u"teal"_s);
    m_manager->deleteTag(u"Work"_s);
    create({u"wORK"_s});
    QCOMPARE(colorName(u"wORK"_s), u"teal"_s);
}

void TagManagerTest::aColorInUseIsPassedOver()
{
    create({u"recipes"_s, u"Straße"_s, u"Übung"_s, u"Work"_s});
    QCOMPARE(colorName(u"recipes"_s), u"green"_s);
    QCOMPARE(colorName(u"Straße"_s), u"mint"_s);
    QCOMPARE(colorName(u"Übung"_s), u"teal"_s);
    QCOMPARE(colorName(u"Work"_s), u"cyan"_s);
}

void TagManagerTest::thePaletteGoesRound()
{
    create({u"travel"_s, u"Iğdır"_s, u"naïve"_s, u"C++"_s});
    QCOMPARE(colorName(u"travel"_s), u"lime"_s);
    QCOMPARE(colorName(u"Iğdır"_s), u"sky"_s);
    QCOMPARE(colorName(u"naïve"_s), u"red"_s);
    QCOMPARE(colorName(u"C++"_s), u"orange"_s);
}

void TagManagerTest::withAllColorsInUseTheNameDecidesAlone()
{
    QByteArrayList tags;
    for (int i = 0; i < 15; ++i)
        tags.append(storedTag(QString::number(i), u"red"_s));
    tags.append(storedTag(u"Work"_s, u"red"_s));
    tags.append(storedTag(u"travel"_s, u"red"_s));
    m_defaults->set(kTagsV2Key, storedTags(tags));
    start();
    QSet<TagColor> colors;
    for (int i = 0; i < 15; ++i)
        colors.insert(*m_manager->color(QString::number(i)));
    QCOMPARE(colors.size(), 15);
    QCOMPARE(colorName(u"Work"_s), u"teal"_s);
    QCOMPARE(colorName(u"travel"_s), u"lime"_s);
}

void TagManagerTest::aStoredColorStrategyIsLeftAlone_data()
{
    QTest::addColumn<QVariant>("strategy");
    QTest::newRow("the known one") << QVariant(u"nameHash"_s);
    QTest::newRow("an unknown one") << QVariant(u"random"_s);
    QTest::newRow("no text") << QVariant(7);
}

void TagManagerTest::aStoredColorStrategyIsLeftAlone()
{
    QFETCH(const QVariant, strategy);
    m_defaults->set(kStrategyKey, strategy);
    start();
    create({u"Work"_s});
    QCOMPARE(colorName(u"Work"_s), u"teal"_s);
    QCOMPARE(m_defaults->string(kStrategyKey).value_or(QString()), strategy.toString());
}

void TagManagerTest::bothFormsAreStored()
{
    create({u"Work"_s, u"旅行计划"_s});
    const auto stored = QJsonDocument::fromJson(*m_defaults->data(kTagsV2Key)).array();
    QCOMPARE(stored.size(), 2);
    const QJsonObject first = stored.at(0).toObject();
    QCOMPARE(first.keys(), (QStringList{u"color"_s, u"id"_s, u"name"_s}));
    QCOMPARE(first.value(u"name"_s).toString(), u"Work"_s);
    QCOMPARE(first.value(u"color"_s).toString(), u"teal"_s);
    const QString id = first.value(u"id"_s).toString();
    QCOMPARE(id, m_manager->tags().at(0).id.toString(QUuid::WithoutBraces).toUpper());
    QVERIFY(QRegularExpression(u"^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"_s).match(id).hasMatch());
    QCOMPARE(stored.at(1).toObject().value(u"name"_s).toString(), u"旅行计划"_s);
    QCOMPARE(*m_defaults->stringList(kTagsKey), (QStringList{u"Work"_s, u"旅行计划"_s}));
}

void TagManagerTest::tagsComeBackAtTheNextStart()
{
    create({u"Work"_s, u"a \"quoted\", name"_s, u"\U0001F389"_s});
    const QList<Tag> before = m_manager->tags();
    m_manager.reset();
    m_defaults = std::make_unique<UserDefaults>(m_directory->filePath(u"other.conf"_s));
    QVERIFY(start().tags().isEmpty());
    m_manager.reset();
    m_defaults.reset();
    m_defaults = std::make_unique<UserDefaults>(m_directory->filePath(u"tessarine.conf"_s));
    QCOMPARE(start().tags(), before);
}

void TagManagerTest::deletedTagsDoNotComeBack()
{
    create({u"Work"_s});
    m_manager->deleteTag(u"Work"_s);
    m_manager.reset();
    m_defaults.reset();
    m_defaults = std::make_unique<UserDefaults>(m_directory->filePath(u"tessarine.conf"_s));
    QVERIFY(start().tags().isEmpty());
}

void TagManagerTest::aForeignColorIsReplacedAndStored()
{
    m_defaults->set(kTagsV2Key,
                    storedTags({storedTag(u"Work"_s, u"red"_s), storedTag(u"a"_s, u"orange"_s)}));
    QSignalSpy told(&start(), &TagManager::tagsDidChange);
    QCOMPARE(colorName(u"Work"_s), u"teal"_s);
    QCOMPARE(colorName(u"a"_s), u"orange"_s);
    const auto stored = QJsonDocument::fromJson(*m_defaults->data(kTagsV2Key)).array();
    QCOMPARE(stored.at(0).toObject().value(u"color"_s).toString(), u"teal"_s);
    checkThatBothFormsAgree();
    QCoreApplication::processEvents();
    QCOMPARE(told.count(), 1);
}

void TagManagerTest::rightColorsAreNotStoredAgain()
{
    // With a blank, as this program does not write it.
    const QByteArray stored = storedTags({storedTag(u"Work"_s, u"teal"_s)}) + ' ';
    m_defaults->set(kTagsV2Key, stored);
    start();
    QCOMPARE(colorName(u"Work"_s), u"teal"_s);
    QCOMPARE(*m_defaults->data(kTagsV2Key), stored);
    QVERIFY(!m_defaults->contains(kTagsKey));
}

void TagManagerTest::theOrderDecidesAboutColorsAtTheNextStart()
{
    create({u"recipes"_s, u"Straße"_s});
    QVERIFY(m_manager->moveTagUp(u"Straße"_s));
    QCOMPARE(colorName(u"recipes"_s), u"green"_s);
    start();
    QCOMPARE(colorName(u"Straße"_s), u"green"_s);
    QCOMPARE(colorName(u"recipes"_s), u"mint"_s);
    m_manager->deleteTag(u"Straße"_s);
    QCOMPARE(colorName(u"recipes"_s), u"mint"_s);
    start();
    QCOMPARE(colorName(u"recipes"_s), u"green"_s);
}

void TagManagerTest::damagedTagsFallBackToTheNames_data()
{
    const QByteArray good = storedTag(u"Work"_s, u"teal"_s);
    QTest::addColumn<QByteArray>("stored");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("tags");
    QTest::newRow("cut off") << storedTags({good}).chopped(3);
    QTest::newRow("no list") << good;
    QTest::newRow("a null") << QByteArray("null");
    QTest::newRow("a list of names") << QByteArray(R"(["Work"])");
    QTest::newRow("one of them without a name")
        << storedTags({good, R"({"id":"1B4E28BA-2FA1-11D2-883F-0016D3CCA427","color":"red"})"});
    QTest::newRow("one of them without an identity")
        << storedTags({good, R"({"name":"x","color":"red"})"});
    QTest::newRow("one of them without a colour")
        << storedTags({good, R"({"id":"1B4E28BA-2FA1-11D2-883F-0016D3CCA427","name":"x"})"});
    QTest::newRow("an unknown colour") << storedTags({storedTag(u"x"_s, u"Red"_s)});
    QTest::newRow("an identity that is none")
        << storedTags({R"({"id":"7","name":"x","color":"red"})"});
    QTest::newRow("an identity in braces")
        << storedTags({R"({"id":"{1B4E28BA-2FA1-11D2-883F-0016D3CCA427}","name":"x","color":"red"})"});
    QTest::newRow("a number for a name")
        << storedTags({R"({"id":"1B4E28BA-2FA1-11D2-883F-0016D3CCA427","name":7,"color":"red"})"});
    QTest::newRow("bytes that are no text") << QByteArray("[\"\xFF\xFE\x00\x01\"]", 8);
    QTest::newRow("half a surrogate pair")
        << storedTags({R"({"id":"1B4E28BA-2FA1-11D2-883F-0016D3CCA427","name":"\ud800","color":"red"})"});
    QTest::newRow("deeply nested lists") << QByteArray(200'000, '[');
    QTest::newRow("deeply nested lists that end")
        << QByteArray(100'000, '[') + QByteArray(100'000, ']');
    QTest::newRow("deeply nested objects") << '[' + QByteArray(R"({"id":)").repeated(50'000);
    QTest::newRow("very long") << QByteArray(1'000'000, '7');
}

void TagManagerTest::damagedTagsFallBackToTheNames()
{
    QFETCH(const QByteArray, stored);
    m_defaults->set(kTagsV2Key, stored);
    m_defaults->set(kTagsKey, QStringList{u"home"_s, u"travel"_s});
    start();
    QCOMPARE(m_manager->tagNames(), (QStringList{u"home"_s, u"travel"_s}));
    QCOMPARE(colorName(u"travel"_s), u"lime"_s);
    checkThatBothFormsAgree();
}

void TagManagerTest::damagedTagsWithoutNamesLeaveNothing()
{
    const QByteArray damaged = "[{";
    m_defaults->set(kTagsV2Key, damaged);
    start();
    QVERIFY(m_manager->tags().isEmpty());
    QCOMPARE(*m_defaults->data(kTagsV2Key), damaged);
    QVERIFY(!m_defaults->contains(kTagsKey));
    create({u"Work"_s});
    checkThatBothFormsAgree();
}

void TagManagerTest::anEmptyListIsNoDamage()
{
    m_defaults->set(kTagsV2Key, QByteArray("[]"));
    m_defaults->set(kTagsKey, QStringList{u"home"_s});
    QVERIFY(start().tags().isEmpty());
}

void TagManagerTest::namesAreTakenAsTheyAre()
{
    const QString longName = QString(30, u'x');
    const QStringList names{u"recipes"_s, u" Work "_s, u"Work"_s, u"Work"_s, QString(), longName,
                            u"Straße"_s};
    m_defaults->set(kTagsKey, names);
    start();
    QCOMPARE(m_manager->tagNames(), names);
    // Each by its name alone, so that some may share one.
    QCOMPARE(colorName(u"recipes"_s), u"green"_s);
    QCOMPARE(colorName(u"Straße"_s), u"green"_s);
    QCOMPARE(colorName(u" Work "_s), u"teal"_s);
    QCOMPARE(colorName(u"Work"_s), u"teal"_s);
    QCOMPARE(colorName(QString()), u"yellow"_s); // 0xcbf29ce484222325
    QSet<QUuid> ids;
    for (const Tag &tag : m_manager->tags())
        ids.insert(tag.id);
    QCOMPARE(ids.size(), names.size());
    checkThatBothFormsAgree();
    start();
    QCOMPARE(m_manager->tagNames(), names);
    // From now on the order counts. The long name's own colour is mint: 0xae99ae5e326c963d
    QCOMPARE(colorName(longName), u"mint"_s);
    QCOMPARE(colorName(u"Straße"_s), u"indigo"_s);
}

void TagManagerTest::fortyNamesStayForty()
{
    QStringList names;
    for (int i = 0; i < 40; ++i)
        names.append(u"name %1"_s.arg(i % 30));
    m_defaults->set(kTagsKey, names);
    start();
    QCOMPARE(m_manager->tagNames(), names);
    QVERIFY(!m_manager->createTag(u"one more"_s));
    start();
    QCOMPARE(m_manager->tagNames(), names);
    m_manager->deleteTag(u"name 0"_s);
    QCOMPARE(m_manager->tags().size(), 38);
    QVERIFY(m_manager->moveTagToFront(u"name 5"_s));
    QCOMPARE(m_manager->tags().first().name, u"name 5"_s);
}

QTEST_GUILESS_MAIN(TagManagerTest)
#include "TagManagerTest.moc"
