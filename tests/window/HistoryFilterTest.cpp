#include "tests/fakes/CountingSource.h"
#include "tests/fakes/FakeWorkspace.h"
#include "tests/window/SampleHistory.h"

#include "foundation/TextSignature.h"
#include "window/ApplicationNames.h"
#include "window/HistoryFilter.h"

#include <QTest>

using namespace Qt::StringLiterals;
using SampleHistory::item;
using SampleHistory::shared;
using SampleHistory::textItem;

class HistoryFilterTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void withoutQueryAndFilterTheListIsAsItCame();
    void aTextIsFoundInsideAndWithoutCase();
    void aBlankAtTheEndTakesPart();
    void accentsCount();
    void remoteWordsFindRemoteItems_data();
    void remoteWordsFindRemoteItems();
    void remoteWordsFindOnlyRemoteItems();
    void theNameOfTheSourceFindsAnImage();
    void aSourceThatIsNotInstalledIsFoundByTheNameMadeFromItsIdentifier();
    void withoutTextAndSourceNothingIsFound();
    void withoutTextAndSourceARemoteItemIsFoundByItsWords();
    void formattedTextTagsAndPathsAreNotSearched();
    void categoriesNarrow_data();
    void categoriesNarrow();
    void aTagIsComparedLetterByLetter();
    void filterAndQueryNarrowTogether();
    void theOrderStays();
    void theRuleForOneItemIsTheSame();
    void typingOnFindsTheSameAsSearchingAfresh();
    void aNewListIsSearchedWhole();
    void anotherCategoryIsSearchedWhole();
    void aLongTextIsSearchedToItsEnd();
    void whatWasReadToBeSearchedIsReadOnce();
    void aLongTextIsNotReadForWhatItsSignatureTells();
    void aLongTextThatCannotBeReadIsNotFound();

private:
    bool finds(const ClipboardItem &entry, const QString &query);

    FakeWorkspace m_workspace;
    std::unique_ptr<ApplicationNames> m_names;
    std::unique_ptr<HistoryFilter> m_filter;
};

namespace {

const QByteArray kLongText = QByteArray("a ").repeated(5000) + "needle";

/// An entry with the long text, which lies in \a source.
ClipboardItem longItem(const std::shared_ptr<CountingSource> &source)
{
    ClipboardItem entry = textItem(QString());
    entry.stringValue = Utf8Text::elsewhere(kLongText, source);
    return entry;
}

} // namespace

void HistoryFilterTest::init()
{
    m_workspace = {};
    m_names = std::make_unique<ApplicationNames>(m_workspace);
    m_filter = std::make_unique<HistoryFilter>(*m_names);
}

bool HistoryFilterTest::finds(const ClipboardItem &entry, const QString &query)
{
    m_filter->setSearchText(query);
    return m_filter->matchesIn({shared(entry)}).size() == 1;
}

void HistoryFilterTest::withoutQueryAndFilterTheListIsAsItCame()
{
    const ClipboardItemList items = SampleHistory::mixed();
    QCOMPARE(m_filter->matchesIn(items), items);
}

void HistoryFilterTest::aTextIsFoundInsideAndWithoutCase()
{
    QVERIFY(finds(textItem(u"The Tide Tables"_s), u"ide tab"_s));
    QVERIFY(finds(textItem(u"the tide tables"_s), u"TIDE"_s));
    QVERIFY(finds(textItem(u"ÜBERSICHT"_s), u"übersicht"_s));
    QVERIFY(!finds(textItem(u"the tide tables"_s), u"tables tide"_s));
}

void HistoryFilterTest::aBlankAtTheEndTakesPart()
{
    QVERIFY(!finds(textItem(u"tide"_s), u"tide "_s));
    QVERIFY(finds(textItem(u"tide tables"_s), u"tide "_s));
}

void HistoryFilterTest::accentsCount()
{
    QVERIFY(!finds(textItem(u"café"_s), u"cafe"_s));
}

void HistoryFilterTest::remoteWordsFindRemoteItems_data()
{
    QTest::addColumn<QString>("query");
    QTest::newRow("word") << u"remote"_s;
    QTest::newRow("capitals") << u"REMOTE"_s;
    QTest::newRow("part of a word") << u"emot"_s;
    QTest::newRow("two words") << u"remote clip"_s;
    QTest::newRow("Chinese for remote") << u"远端"_s;
    QTest::newRow("Chinese for phone") << u"手机"_s;
}

void HistoryFilterTest::remoteWordsFindRemoteItems()
{
    QFETCH(QString, query);
    ClipboardItem entry = textItem(u"whatever"_s);
    entry.isRemoteClipboard = true;
    QVERIFY(finds(entry, query));
}

void HistoryFilterTest::remoteWordsFindOnlyRemoteItems()
{
    QVERIFY(!finds(textItem(u"whatever"_s), u"remote"_s));
    ClipboardItem entry = textItem(u"whatever"_s);
    entry.isRemoteClipboard = true;
    QVERIFY(!finds(entry, u"remotely"_s));
}

void HistoryFilterTest::theNameOfTheSourceFindsAnImage()
{
    m_workspace.names[u"org.example.shots"_s] = u"Screen Grabber"_s;
    ClipboardItem entry = item(ClipboardContentType::Image);
    entry.sourceAppBundleID = u"org.example.shots"_s;
    QVERIFY(finds(entry, u"grabber"_s));
    QVERIFY(!finds(entry, u"org.example"_s));
}

void HistoryFilterTest::aSourceThatIsNotInstalledIsFoundByTheNameMadeFromItsIdentifier()
{
    ClipboardItem entry = item(ClipboardContentType::Image);
    entry.sourceAppBundleID = u"org.example.my-tool"_s;
    QVERIFY(finds(entry, u"my tool"_s));
    QVERIFY(!finds(entry, u"my-tool"_s));
}

void HistoryFilterTest::withoutTextAndSourceNothingIsFound()
{
    ClipboardItem entry = item(ClipboardContentType::Image);
    entry.sourceAppBundleID = QString();
    QVERIFY(!finds(entry, u"a"_s));
    QVERIFY(!finds(entry, u" "_s));
}

void HistoryFilterTest::withoutTextAndSourceARemoteItemIsFoundByItsWords()
{
    ClipboardItem entry = item(ClipboardContentType::Image);
    entry.isRemoteClipboard = true;
    QVERIFY(finds(entry, u"Remote"_s));
    QVERIFY(finds(entry, u"手机"_s));
    QVERIFY(!finds(entry, u"image"_s));
}

void HistoryFilterTest::formattedTextTagsAndPathsAreNotSearched()
{
    ClipboardItem entry = textItem(u"plain"_s);
    entry.htmlRepresentation = "needle"_ba;
    entry.rtfRepresentation = "needle"_ba;
    entry.tags = {u"needle"_s};
    entry.filePath = u"/needle"_s;
    QVERIFY(!finds(entry, u"needle"_s));
}

void HistoryFilterTest::categoriesNarrow_data()
{
    using Type = ClipboardContentType;
    QTest::addColumn<FilterCategory>("category");
    QTest::addColumn<int>("count");
    QTest::newRow("all") << FilterCategory::all() << 10;
    QTest::newRow("favorites") << FilterCategory::favorites() << 2;
    QTest::newRow("text") << FilterCategory::content(Type::Text) << 6;
    QTest::newRow("image") << FilterCategory::content(Type::Image) << 1;
    QTest::newRow("file") << FilterCategory::content(Type::File) << 1;
    QTest::newRow("link") << FilterCategory::content(Type::Url) << 1;
    QTest::newRow("tag") << FilterCategory::tag(u"travel"_s) << 2;
    QTest::newRow("unknown tag") << FilterCategory::tag(u"nobody"_s) << 0;
}

void HistoryFilterTest::categoriesNarrow()
{
    QFETCH(FilterCategory, category);
    m_filter->setCategory(category);
    QTEST(int(m_filter->matchesIn(SampleHistory::mixed()).size()), "count");
}

void HistoryFilterTest::aTagIsComparedLetterByLetter()
{
    m_filter->setCategory(FilterCategory::tag(u"Travel"_s));
    QVERIFY(m_filter->matchesIn(SampleHistory::mixed()).isEmpty());
}

void HistoryFilterTest::filterAndQueryNarrowTogether()
{
    m_filter->setCategory(FilterCategory::favorites());
    m_filter->setSearchText(u"tide"_s);
    const ClipboardItemList items = SampleHistory::mixed();
    QCOMPARE(m_filter->matchesIn(items), ClipboardItemList{items[3]});
}

void HistoryFilterTest::theOrderStays()
{
    ClipboardItemList items = SampleHistory::texts({u"ba"_s, u"c"_s, u"a"_s, u"ab"_s});
    m_filter->setSearchText(u"a"_s);
    QCOMPARE(m_filter->matchesIn(items), (ClipboardItemList{items[0], items[2], items[3]}));
}

void HistoryFilterTest::theRuleForOneItemIsTheSame()
{
    const ClipboardItemList items = SampleHistory::mixed();
    for (const QString &query : {u""_s, u"a"_s, u"remote"_s, u"mail"_s, u"会议"_s}) {
        m_filter->setSearchText(query);
        const ClipboardItemList matching = m_filter->matchesIn(items);
        for (const ClipboardItemPointer &entry : items)
            QCOMPARE(m_filter->matches(*entry), matching.contains(entry));
    }
}

void HistoryFilterTest::typingOnFindsTheSameAsSearchingAfresh()
{
    const ClipboardItemList items = SampleHistory::corpus(200) + SampleHistory::mixed();
    const QStringList steps{u"o"_s,   u"so"_s,   u"sol"_s, u"sol "_s, u"sol k"_s,
                            u"sol"_s, u"sola"_s, u"İ"_s,   u"Mail"_s, u"Maila"_s,
                            u"r"_s,   u"Re"_s,   u"rem"_s, u""_s,     u"w"_s};
    for (const QString &step : steps) {
        m_filter->setSearchText(step);
        HistoryFilter fresh(*m_names);
        fresh.setSearchText(step);
        QCOMPARE(m_filter->matchesIn(items), fresh.matchesIn(items));
    }
}

void HistoryFilterTest::aNewListIsSearchedWhole()
{
    m_filter->setSearchText(u"o"_s);
    QCOMPARE(m_filter->matchesIn(SampleHistory::texts({u"one"_s})).size(), 1);
    m_filter->setSearchText(u"on"_s);
    QCOMPARE(m_filter->matchesIn(SampleHistory::texts({u"on"_s, u"one"_s, u"two"_s})).size(), 2);
}

void HistoryFilterTest::anotherCategoryIsSearchedWhole()
{
    const ClipboardItemList items = SampleHistory::mixed();
    m_filter->setCategory(FilterCategory::favorites());
    m_filter->setSearchText(u"t"_s);
    m_filter->matchesIn(items);
    m_filter->setCategory(FilterCategory::all());
    m_filter->setSearchText(u"ti"_s);
    // The tides, the link's timetable and the pictures' caption.
    QCOMPARE(m_filter->matchesIn(items).size(), 3);
}

void HistoryFilterTest::aLongTextIsSearchedToItsEnd()
{
    const QString text = u"a "_s.repeated(50'000) + u"Needle"_s;
    QVERIFY(finds(textItem(text), u"needle"_s));
    // Half of it lies behind what stays in memory, wherever that ends.
    for (qsizetype before = 1000; before < 1100; ++before) {
        const QString split = u"x"_s.repeated(before) + u"ÄGYPTEN"_s + u"y"_s.repeated(5000);
        QVERIFY(finds(textItem(split), u"ägypten"_s));
    }
    QVERIFY(!finds(textItem(text), u"needles"_s));
}

void HistoryFilterTest::whatWasReadToBeSearchedIsReadOnce()
{
    const auto source = std::make_shared<CountingSource>(kLongText);
    const ClipboardItem entry = longItem(source);
    QVERIFY(finds(entry, u"n"_s));
    QVERIFY(finds(entry, u"needle"_s));
    QCOMPARE(source->readCount.load(), 1);
    m_filter.reset();
    QCOMPARE(entry.stringValue->utf8(), kLongText);
    QCOMPARE(source->readCount.load(), 2);
}

void HistoryFilterTest::aLongTextIsNotReadForWhatItsSignatureTells()
{
    const auto source = std::make_shared<CountingSource>(kLongText);
    const ClipboardItem entry = longItem(source);
    entry.stringValue->longBytes().setSignature(TextSignature::of(kLongText));
    QVERIFY(finds(entry, u"N"_s));
    QVERIFY(finds(entry, u"ee"_s));
    QVERIFY(!finds(entry, u"x"_s));
    QVERIFY(!finds(entry, u"pin"_s));
    QCOMPARE(source->readCount.load(), 0);
    QVERIFY(finds(entry, u"needle"_s));
    QCOMPARE(source->readCount.load(), 1);
}

void HistoryFilterTest::aLongTextThatCannotBeReadIsNotFound()
{
    const ClipboardItem entry = longItem(std::make_shared<CountingSource>(std::nullopt));
    QVERIFY(finds(entry, u"a a"_s));
    QVERIFY(!finds(entry, u"needle"_s));
}

QTEST_GUILESS_MAIN(HistoryFilterTest)
#include "HistoryFilterTest.moc"
