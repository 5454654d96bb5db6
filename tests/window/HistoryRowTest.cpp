#include "tests/fakes/FakeWorkspace.h"
#include "tests/window/SampleHistory.h"

#include "window/ApplicationNames.h"
#include "window/HistoryRow.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using SampleHistory::item;
using SampleHistory::textItem;
using Type = ClipboardContentType;

class HistoryRowTest : public QObject
{
    Q_OBJECT

private slots:
    void eightyCharactersFit();
    void linesAndTabsAreShownOnOneLine();
    void blanksAloneShowTheType();
    void anImageWithoutTextShowsAPlaceholder();
    void aFileWithoutTextShowsItsName();
    void aFileWithoutPathShowsTheType();
    void theMetaLineJoinsTypeSourceAndTwoTags();
    void aNameTurnsNothingButItself();
    void aRemoteImageWithoutSourceShowsBothWords();
    void textsOfAnyLengthAreCut();
    void theTimeStaysUntilTheEntryChanges();
    void aChangedEntryIsWordedAnew();

private:
    HistoryRow rowOf(const ClipboardItem &entry)
    {
        return makeHistoryRow(entry, m_names, m_clock.now());
    }

    FakeWorkspace m_workspace;
    FakeClock m_clock;
    ApplicationNames m_names{m_workspace};
};

void HistoryRowTest::eightyCharactersFit()
{
    QCOMPARE(rowOf(textItem(QString(80, u'a'))).content, QString(80, u'a'));
    QCOMPARE(rowOf(textItem(QString(81, u'a'))).content, QString(80, u'a') + u"..."_s);
}

void HistoryRowTest::linesAndTabsAreShownOnOneLine()
{
    QCOMPARE(rowOf(textItem(u"a\nb\tc"_s)).content, u"a / b | c"_s);
}

void HistoryRowTest::blanksAloneShowTheType()
{
    const HistoryRow row = rowOf(textItem(u" \n\t "_s));
    // Line ends and tabs become signs of their own, which are no blanks.
    QCOMPARE(row.content, u"/ |"_s);
    const HistoryRow blank = rowOf(textItem(u"   "_s));
    QCOMPARE(blank.content, u"Text"_s);
    QVERIFY(blank.isPlaceholder);
    QVERIFY(!row.isPlaceholder);
}

void HistoryRowTest::anImageWithoutTextShowsAPlaceholder()
{
    const HistoryRow row = rowOf(item(Type::Image));
    QCOMPARE(row.content, u"[Image]"_s);
    QVERIFY(row.isPlaceholder);
}

void HistoryRowTest::aFileWithoutTextShowsItsName()
{
    ClipboardItem file = item(Type::File);
    file.filePath = u"/home/nora/notes.txt"_s;
    QCOMPARE(rowOf(file).content, u"notes.txt"_s);
    QVERIFY(!rowOf(file).isPlaceholder);
}

void HistoryRowTest::aFileWithoutPathShowsTheType()
{
    const HistoryRow row = rowOf(item(Type::File));
    QCOMPARE(row.content, u"File"_s);
    QVERIFY(row.isPlaceholder);
}

void HistoryRowTest::theMetaLineJoinsTypeSourceAndTwoTags()
{
    ClipboardItem entry = textItem(u"x"_s);
    entry.sourceAppBundleID = u"org.example.mail"_s;
    QCOMPARE(rowOf(entry).meta, u"TEXT · Mail"_s);
    entry.tags = {u"one"_s, u"two"_s};
    QCOMPARE(rowOf(entry).meta, u"TEXT · Mail · one · two"_s);
    entry.tags = {u"one"_s, u"two"_s, u"three"_s};
    QCOMPARE(rowOf(entry).meta, u"TEXT · Mail · one · two · +1"_s);
}

void HistoryRowTest::aNameTurnsNothingButItself()
{
    ClipboardItem entry = textItem(u"x"_s);
    entry.tags = {u"\u202Eone\u2069"_s, u"two"_s};
    QCOMPARE(rowOf(entry).meta, u"TEXT · one · two"_s);
    entry.tags = {u"\u2067שלום\u202C"_s, u"two"_s};
    QCOMPARE(rowOf(entry).meta, u"TEXT · \u2068שלום\u2069 · two"_s);
    entry.tags = {u"سفر"_s, u"\u200Fmark"_s};
    QCOMPARE(rowOf(entry).meta, u"TEXT · \u2068سفر\u2069 · \u2068\u200Fmark\u2069"_s);
    entry.tags = {};
    entry.sourceAppBundleID = u"org.example.\u202Eevil"_s;
    QVERIFY(!rowOf(entry).meta.contains(QChar(0x202E)));
}

void HistoryRowTest::aRemoteImageWithoutSourceShowsBothWords()
{
    ClipboardItem entry = item(Type::Image);
    entry.isRemoteClipboard = true;
    QCOMPARE(rowOf(entry).meta, u"IMAGE · REMOTE"_s);
}

void HistoryRowTest::textsOfAnyLengthAreCut()
{
    const QString marks = u"e"_s + QString(100'000, QChar(0x301));
    ClipboardItem entry = textItem(marks);
    entry.sourceAppBundleID = marks;
    entry.tags = {marks, u'x' + marks};
    QCOMPARE(rowOf(entry).content, marks.first(480) + u"..."_s);
    QVERIFY(rowOf(entry).meta.size() < 600);

    ClipboardItem file = item(Type::File);
    file.filePath = u"/home/nora/"_s + marks;
    QCOMPARE(rowOf(file).content, marks.first(480) + u"..."_s);
}

void HistoryRowTest::theTimeStaysUntilTheEntryChanges()
{
    HistoryRowCache rows(m_names, m_clock);
    const ClipboardItemPointer entry = SampleHistory::shared(textItem(u"x"_s));
    QCOMPARE(rows.row(entry).time, u"now"_s);
    m_clock.advance(3min);
    QCOMPARE(rows.row(entry).time, u"now"_s);
    rows.forgetAll();
    QCOMPARE(rows.row(entry).time, u"3 min. ago"_s);
}

void HistoryRowTest::aChangedEntryIsWordedAnew()
{
    HistoryRowCache rows(m_names, m_clock);
    ClipboardItem entry = textItem(u"before"_s);
    QCOMPARE(rows.row(SampleHistory::shared(entry)).content, u"before"_s);
    entry.stringValue = Utf8Text(u"after"_s);
    QCOMPARE(rows.row(SampleHistory::shared(entry)).content, u"after"_s);
}

QTEST_GUILESS_MAIN(HistoryRowTest)
#include "HistoryRowTest.moc"
