#include "tests/fakes/CountingSource.h"
#include "tests/fakes/FakeWorkspace.h"
#include "tests/window/SampleHistory.h"

#include "foundation/TextSignature.h"
#include "window/ApplicationNames.h"
#include "window/HistoryFilter.h"

#include <QTest>

using namespace Qt::StringLiterals;
using SampleHistory::shared;

/// Compares the filter with the rule at its plainest, on random histories that change under a random
/// person's hands.
class SearchRuleTest : public QObject
{
    Q_OBJECT

private slots:
    void everyAnswerIsThatOfThePlainRule();
};

namespace {

constexpr int kRounds = 400;
constexpr int kSteps = 40;

/// What the plain rule needs to know of an entry, as it was made.
struct Entry
{
    QString text;
    QString sourceName; ///< Empty if there is no source.
    ClipboardItemPointer item;
};

struct Source
{
    QString bundleID;
    QString installedName; ///< Empty if it is not installed.
    QString displayName;
};

const QList<Source> &sources()
{
    static const QList<Source> all{
        {u"org.example.shots"_s, u"Screen GRABBER"_s, u"Screen GRABBER"_s},
        {u"org.example.my-tool"_s, {}, u"My Tool"_s},
        {u"xterm"_s, {}, u"Xterm"_s},
        {u"tr.example.harita"_s, u"İstanbul Haritası"_s, u"İstanbul Haritası"_s},
        {u"de.example.strasse"_s, u"Große Straße"_s, u"Große Straße"_s},
        {u"cn.example.notes"_s, u"备忘录"_s, u"备忘录"_s},
    };
    return all;
}

const QStringList &fragments()
{
    static const QStringList all{
        u"a"_s, u"E"_s, u"i"_s, u"I"_s, u"k"_s, u"K"_s, u"s"_s, u"q"_s, u" "_s, u"  "_s, u"\n"_s,
        u"7"_s, u"@"_s, u"["_s, u"tide "_s, u"The Key "_s, u"remote"_s, u"ISTANBUL"_s,
        u"\u0130"_s, u"\u0131"_s, u"I\u0307"_s, u"\u0307"_s, u"\u212A"_s, u"\u212B"_s, u"\u2126"_s,
        u"ß"_s, u"\u1E9E"_s, u"Straße"_s, u"STRASSE"_s, u"ä"_s, u"Ä"_s, u"A\u0308"_s, u"é"_s,
        u"e\u0301"_s, u"σ"_s, u"ς"_s, u"Σ"_s, u"ὈΔΥΣΣΕΎΣ"_s, u"ᾳ"_s, u"ᾼ"_s, u"ǅ"_s, u"ﬁ"_s,
        u"中"_s, u"剪贴板"_s, u"手机"_s, u"远"_s, u"。"_s, u"\U0001F600"_s, u"\U0001F44D\U0001F3FD"_s,
        u"\U0001F469\u200D\U0001F4BB"_s, u"\U00010400"_s, u"\U00010428"_s, u"\u00A0"_s, u"\uFFFD"_s,
    };
    return all;
}

bool plainlyContains(const QString &text, const QString &query)
{
    return text.toLower().contains(query.toLower());
}

bool plainlyFinds(const Entry &entry, const QString &query)
{
    if (query.isEmpty())
        return true;
    if (entry.item->isRemoteClipboard) {
        for (const QString &word : {u"remote"_s, u"remote clipboard"_s, u"远端"_s, u"手机"_s}) {
            if (word.contains(query.toLower()))
                return true;
        }
    }
    if (!entry.sourceName.isEmpty() && plainlyContains(entry.sourceName, query))
        return true;
    return entry.item->stringValue && plainlyContains(entry.text, query);
}

bool plainlyBelongs(const Entry &entry, const FilterCategory &category)
{
    switch (category.kind) {
    case FilterCategory::Kind::All: return true;
    case FilterCategory::Kind::Favorites: return entry.item->isFavorite;
    case FilterCategory::Kind::Content: return entry.item->contentType == category.contentType;
    case FilterCategory::Kind::Tag: return entry.item->tags.indexOf(category.tagName) >= 0;
    }
    return false;
}

/// A history and a person who searches it.
class Session
{
public:
    explicit Session(quint32 seed) : m_random(seed)
    {
        for (int count = m_random.bounded(1, 30); count > 0; --count)
            m_entries.append(randomEntry());
        refreshItems();
        m_target = randomPart(20);
    }

    void step()
    {
        switch (m_random.bounded(12)) {
        case 0: m_query.chop(1); break;
        case 1: m_query.clear(); break;
        case 2: m_query = m_random.bounded(2) ? randomText(3) : randomPart(); break;
        case 3: m_query.prepend(randomText(1)); break;
        case 4: m_query += u' '; break;
        case 5: category = randomCategory(); break;
        case 6: changeList(); break;
        case 7: sign(); break;
        case 8: m_target = randomPart(20); m_query.clear(); break;
        default: typeOn(); break;
        }
    }

    ClipboardItemList expected() const
    {
        ClipboardItemList matching;
        for (const Entry &entry : m_entries) {
            if (plainlyBelongs(entry, category) && plainlyFinds(entry, m_query))
                matching.append(entry.item);
        }
        return matching;
    }

    const QString &query() const { return m_query; }
    const ClipboardItemList &items() const { return m_items; }

    FilterCategory category;

private:
    /// The next unit of UTF-16 of what the person wants, which may be half a character.
    void typeOn()
    {
        if (m_query.size() < m_target.size())
            m_query += m_target.at(m_query.size());
        else
            m_query += randomText(1);
    }

    QString randomText(int most)
    {
        QString text;
        for (int count = m_random.bounded(1, most + 1); count > 0; --count)
            text += fragments().at(m_random.bounded(fragments().size()));
        return text;
    }

    /// Longer than what stays in memory, with as much before its last words as it likes.
    QString randomLongText()
    {
        const QString filling = randomText(4);
        const qsizetype size = m_random.bounded(900, 2600);
        QString text = filling.repeated(size / filling.size() + 1) + randomText(30);
        while (text.toUtf8().size() <= Utf8Text::kLongText)
            text += randomText(10);
        return text;
    }

    QString randomPart(int most = 6)
    {
        const Entry &entry = m_entries.at(m_random.bounded(m_entries.size()));
        const QString &whole = m_random.bounded(8) ? entry.text : entry.sourceName;
        if (whole.isEmpty())
            return randomText(1);
        // The ends, and where the start in memory ends, more often than what is in between.
        qsizetype begin = m_random.bounded(whole.size());
        if (m_random.bounded(3) == 0)
            begin = std::clamp<qsizetype>(1024 - m_random.bounded(8), 0, whole.size() - 1);
        else if (m_random.bounded(3) == 0)
            begin = std::max<qsizetype>(0, whole.size() - m_random.bounded(1, 30));
        const QString part = whole.mid(begin, m_random.bounded(1, most + 1));
        return m_random.bounded(2) ? part : part.toUpper();
    }

    Entry randomEntry()
    {
        using Type = ClipboardContentType;
        static constexpr Type types[]{Type::Text, Type::Url, Type::Image, Type::File, Type::Mixed};
        ClipboardItem made = makeItem(types[m_random.bounded(5)], FakeClock().now());
        Entry entry;
        if (m_random.bounded(10) > 0) {
            entry.text = m_random.bounded(4) ? randomText(20) : randomLongText();
            made.stringValue = Utf8Text(entry.text);
            if (made.stringValue->isLong() && m_random.bounded(3) > 0) {
                const QByteArray utf8 = entry.text.toUtf8();
                made.stringValue
                    = Utf8Text::elsewhere(utf8, std::make_shared<CountingSource>(utf8));
            }
        }
        if (m_random.bounded(3) == 0) {
            const Source &source = sources().at(m_random.bounded(sources().size()));
            made.sourceAppBundleID = source.bundleID;
            entry.sourceName = source.displayName;
        }
        made.isRemoteClipboard = m_random.bounded(8) == 0;
        made.isFavorite = m_random.bounded(4) == 0;
        if (m_random.bounded(4) == 0)
            made.tags = {m_random.bounded(2) ? u"Work"_s : u"work"_s};
        entry.item = shared(made);
        return entry;
    }

    FilterCategory randomCategory()
    {
        switch (m_random.bounded(6)) {
        case 0: return FilterCategory::favorites();
        case 1: return FilterCategory::tag(u"work"_s);
        case 2: return FilterCategory::content(ClipboardContentType::Text);
        case 3: return FilterCategory::content(ClipboardContentType::Image);
        default: return FilterCategory::all();
        }
    }

    void changeList()
    {
        if (m_random.bounded(2) && m_entries.size() > 1)
            m_entries.removeAt(m_random.bounded(m_entries.size()));
        else
            m_entries.prepend(randomEntry());
        refreshItems();
    }

    /// Some texts become known to the search while it goes on.
    void sign()
    {
        for (const Entry &entry : m_entries) {
            if (entry.item->stringValue && m_random.bounded(2))
                entry.item->stringValue->longBytes().setSignature(
                    TextSignature::of(entry.text.toUtf8()));
        }
    }

    void refreshItems()
    {
        m_items.clear();
        for (const Entry &entry : m_entries)
            m_items.append(entry.item);
    }

    QRandomGenerator m_random;
    QList<Entry> m_entries;
    ClipboardItemList m_items;
    QString m_query;
    QString m_target; ///< What the person wants to type.
};

} // namespace

void SearchRuleTest::everyAnswerIsThatOfThePlainRule()
{
    const auto firstSeed = quint32(qEnvironmentVariableIntValue("SEARCH_RULE_SEED"));
    FakeWorkspace workspace;
    for (const Source &source : sources()) {
        if (!source.installedName.isEmpty())
            workspace.names[source.bundleID] = source.installedName;
    }
    ApplicationNames names(workspace);
    qsizetype foundCount = 0;
    qsizetype askedCount = 0;
    int atHandCount = 0;
    for (quint32 seed = firstSeed; seed < firstSeed + kRounds; ++seed) {
        Session session(seed);
        HistoryFilter filter(names);
        for (int step = 0; step < kSteps; ++step) {
            session.step();
            filter.setCategory(session.category);
            filter.setSearchText(session.query());
            const ClipboardItemList expected = session.expected();
            const auto atHand = filter.matchesAtHandIn(session.items());
            if (atHand.value_or(expected) != expected
                || filter.matchesIn(session.items()) != expected)
                QFAIL(qPrintable(u"SEARCH_RULE_SEED=%1, step %2: '%3'"_s.arg(seed).arg(step).arg(
                    session.query())));
            atHandCount += atHand.has_value();
            for (const ClipboardItemPointer &item : session.items())
                QCOMPARE(filter.matches(*item), expected.contains(item));
            if (!session.query().isEmpty()) {
                foundCount += expected.size();
                askedCount += session.items().size();
            }
        }
    }
    // Neither answer may be the exception.
    QVERIFY2(foundCount * 20 > askedCount && foundCount * 10 < askedCount * 9,
             qPrintable(u"%1 of %2 found"_s.arg(foundCount).arg(askedCount)));
    QVERIFY(atHandCount > 0 && atHandCount < kRounds * kSteps);
    QVERIFY(workspace.nameLookupCount <= sources().size());
}

QTEST_GUILESS_MAIN(SearchRuleTest)
#include "SearchRuleTest.moc"
