#include "tests/fakes/CountingSource.h"
#include "tests/fakes/FakeScheduler.h"
#include "tests/fakes/FakeWorkspace.h"
#include "tests/window/SampleHistory.h"

#include "foundation/TextSignature.h"
#include "window/ApplicationNames.h"
#include "window/SearchPreparation.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using SampleHistory::shared;
using SampleHistory::textItem;

class SearchPreparationTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void nothingIsDoneWhileTheWindowOpens();
    void longTextsGetASignatureAndAreNotKept();
    void aTextThatHasASignatureIsNotReadAgain();
    void namesAreLookedUpOneAtATimeAndOnce();
    void anEndBeforeTheBeginningLeavesNothing();
    void foundTextsAreReadAheadAndHeld();
    void lettersInARowReadAheadOnce();
    void noMoreIsReadAheadThanThereIsRoomFor();

private:
    void prepare(const ClipboardItemList &items)
    {
        m_preparation.emplace(m_scheduler, *m_names, items);
    }

    FakeScheduler m_scheduler;
    FakeWorkspace m_workspace;
    std::optional<ApplicationNames> m_names;
    std::optional<SearchPreparation> m_preparation;
};

namespace {

const QByteArray kLongText = QByteArray("tide ").repeated(1000);

ClipboardItem longItem(const std::shared_ptr<CountingSource> &source)
{
    ClipboardItem entry = textItem(QString());
    entry.stringValue = Utf8Text::elsewhere(kLongText, source);
    return entry;
}

} // namespace

void SearchPreparationTest::init()
{
    m_preparation.reset();
    m_workspace = {};
    m_names.emplace(m_workspace);
}

void SearchPreparationTest::nothingIsDoneWhileTheWindowOpens()
{
    const auto source = std::make_shared<CountingSource>(kLongText);
    ClipboardItem entry = longItem(source);
    entry.sourceAppBundleID = u"org.example.mail"_s;
    prepare({shared(entry)});
    m_scheduler.advance(199ms);
    QCOMPARE(m_workspace.nameLookupCount, 0);
    QCOMPARE(source->readCount.load(), 0);
}

void SearchPreparationTest::longTextsGetASignatureAndAreNotKept()
{
    const auto source = std::make_shared<CountingSource>(kLongText);
    const ClipboardItem entry = longItem(source);
    prepare({shared(textItem(u"short"_s)), shared(entry)});
    m_scheduler.advance(200ms);
    QTRY_VERIFY(entry.stringValue->longBytes().signature());
    m_preparation.reset();
    QCOMPARE(source->readCount.load(), 1);
    QCOMPARE(entry.stringValue->utf8(), kLongText);
    QCOMPARE(source->readCount.load(), 2);
}

void SearchPreparationTest::aTextThatHasASignatureIsNotReadAgain()
{
    const auto source = std::make_shared<CountingSource>(kLongText);
    const auto other = std::make_shared<CountingSource>(kLongText);
    const ClipboardItem entry = longItem(source);
    entry.stringValue->longBytes().setSignature(TextSignature::of(kLongText));
    prepare({shared(entry), shared(longItem(other))});
    m_scheduler.advance(200ms);
    QTRY_COMPARE(other->readCount.load(), 1);
    QCOMPARE(source->readCount.load(), 0);
}

void SearchPreparationTest::namesAreLookedUpOneAtATimeAndOnce()
{
    ClipboardItemList items;
    for (const QString &source : {u"a.b"_s, u"a.c"_s, u"a.b"_s, QString()}) {
        ClipboardItem entry = textItem(u"text"_s);
        entry.sourceAppBundleID = source;
        items.append(shared(entry));
    }
    prepare(items);
    m_scheduler.advance(200ms);
    QCOMPARE(m_workspace.nameLookupCount, 2);
    m_names->appDisplayName(u"a.b"_s);
    m_names->appDisplayName(u"a.c"_s);
    QCOMPARE(m_workspace.nameLookupCount, 2);
}

void SearchPreparationTest::anEndBeforeTheBeginningLeavesNothing()
{
    const auto source = std::make_shared<CountingSource>(kLongText);
    prepare({shared(longItem(source))});
    m_preparation.reset();
    m_scheduler.advance(1s);
    QCOMPARE(source->readCount.load(), 0);
}

void SearchPreparationTest::foundTextsAreReadAheadAndHeld()
{
    const auto source = std::make_shared<CountingSource>(kLongText);
    const ClipboardItem entry = longItem(source);
    prepare({});
    m_preparation->readAhead({shared(textItem(u"short"_s)), shared(entry)});
    m_scheduler.advance(40ms);
    QTRY_COMPARE(source->readCount.load(), 1);
    QCOMPARE(entry.stringValue->utf8(), kLongText);
    QCOMPARE(source->readCount.load(), 1);
    m_preparation.reset();
    QCOMPARE(entry.stringValue->utf8(), kLongText);
    QCOMPARE(source->readCount.load(), 2);
}

void SearchPreparationTest::lettersInARowReadAheadOnce()
{
    const auto first = std::make_shared<CountingSource>(kLongText);
    const auto second = std::make_shared<CountingSource>(kLongText);
    prepare({});
    m_preparation->readAhead({shared(longItem(first))});
    m_scheduler.advance(39ms);
    m_preparation->readAhead({shared(longItem(second))});
    m_scheduler.advance(40ms);
    QTRY_COMPARE(second->readCount.load(), 1);
    QCOMPARE(first->readCount.load(), 0);
}

void SearchPreparationTest::noMoreIsReadAheadThanThereIsRoomFor()
{
    // Each as long as may be, and nine of them more than is held.
    const QByteArray text(4 * 1024 * 1024, 'a');
    QList<std::shared_ptr<CountingSource>> sources;
    ClipboardItemList items;
    for (int i = 0; i < 9; ++i) {
        sources.append(std::make_shared<CountingSource>(text));
        ClipboardItem entry = textItem(QString());
        entry.stringValue = Utf8Text::elsewhere(text, sources.last());
        items.append(shared(entry));
    }
    ClipboardItem tooLong = textItem(QString());
    const auto hugeSource = std::make_shared<CountingSource>(text + 'a');
    tooLong.stringValue = Utf8Text::elsewhere(text + 'a', hugeSource);
    items.prepend(shared(tooLong));
    prepare({});
    m_preparation->readAhead(items);
    m_scheduler.advance(40ms);
    QTRY_COMPARE(sources.at(7)->readCount.load(), 1);
    m_preparation.reset(); // Ends after the text that it is at.
    QCOMPARE(sources.at(8)->readCount.load(), 0);
    QCOMPARE(hugeSource->readCount.load(), 0);
}

QTEST_GUILESS_MAIN(SearchPreparationTest)
#include "SearchPreparationTest.moc"
