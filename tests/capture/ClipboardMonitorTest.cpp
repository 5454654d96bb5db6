#include "capture/ClipboardMonitor.h"

#include "foundation/FilePath.h"
#include "platform/linux/DescriptorFileAccess.h"
#include "platform/linux/InodeBookmarks.h"
#include "tests/fakes/CaptureFixture.h"

#include <QSignalSpy>
#include <QStringEncoder>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

PasteboardSnapshot textSnapshot(const QString &text)
{
    PasteboardSnapshot snapshot;
    snapshot.types = {PasteboardType::kString.toString()};
    snapshot.string = Utf8Text(text);
    return snapshot;
}

PasteboardSnapshot richSnapshot(std::optional<QByteArray> html, std::optional<QByteArray> rtf)
{
    PasteboardSnapshot snapshot;
    if (html)
        snapshot.types.append(PasteboardType::kHtml.toString());
    if (rtf)
        snapshot.types.append(PasteboardType::kRtf.toString());
    snapshot.html = std::move(html);
    snapshot.rtf = std::move(rtf);
    return snapshot;
}

/// So large that it is not read on the main thread.
QByteArray largeHtml(const QByteArray &content, qsizetype size = 1'000'000)
{
    return "<!--" + QByteArray(size, 'x') + "-->" + content;
}

void addImage(PasteboardSnapshot &snapshot, QStringView type, QSize size = {2, 3})
{
    snapshot.types.append(type.toString());
    snapshot.image = PasteboardImage{"tiff bytes"_ba, size};
}

void addFiles(PasteboardSnapshot &snapshot, const QStringList &paths)
{
    snapshot.types.append(PasteboardType::kFileUrl.toString());
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls.append(FilePath::toUrl(path));
    snapshot.fileUrls = urls;
}

} // namespace

class ClipboardMonitorTest : public QObject, protected CaptureFixture
{
    Q_OBJECT

private slots:
    void init()
    {
        setUpCapture();
        m_bookmarks = std::make_unique<InodeBookmarks>(BoundedCalls(1min));
        m_fileAccess = std::make_unique<DescriptorFileAccess>(BoundedCalls(1min));
        m_fileReferences
            = std::make_unique<FileReferences>(*m_bookmarks, *m_fileAccess, *m_defaults);
        watchPasteboard(*m_fileReferences);
        m_captured.clear();
        m_monitor->onNewClipboardItem
            = [this](const ClipboardItem &item) { m_captured.append(item); };
    }

    void cleanup()
    {
        tearDownCapture();
    }

    // The poll.

    void whatLiesOnThePasteboardAtTheStartIsNotCaptured()
    {
        m_pasteboard->copyText(u"before"_s);
        m_monitor->startMonitoring();
        m_scheduler->advance(5s);
        QVERIFY(m_captured.isEmpty());
        QCOMPARE(m_pasteboard->snapshotCount, 0);

        m_pasteboard->copyText(u"after"_s);
        m_scheduler->advance(500ms);
        QCOMPARE(texts(), QStringList{u"after"_s});
    }

    void eachChangeIsReadAndCapturedOnce()
    {
        m_monitor->startMonitoring();
        m_pasteboard->copyText(u"one"_s);
        m_scheduler->advance(2s);
        QCOMPARE(texts(), QStringList{u"one"_s});
        QCOMPARE(m_pasteboard->snapshotCount, 1);
    }

    void changesBetweenTwoPollsAreAllCapturedInOrder()
    {
        m_monitor->startMonitoring();
        m_pasteboard->copyText(u"one"_s);
        m_pasteboard->write({});
        m_pasteboard->copyText(u"two"_s);
        m_pasteboard->copyText(u"three"_s);
        m_scheduler->advance(1s);
        QCOMPARE(texts(), QStringList({u"one"_s, u"two"_s, u"three"_s}));
        QCOMPARE(m_monitor->lastChangeCount(), m_pasteboard->changeCount());
    }

    void aChangeIsSeenAtTheNextPoll()
    {
        m_monitor->startMonitoring();
        m_scheduler->advance(600ms);
        m_pasteboard->copyText(u"one"_s);
        m_scheduler->advance(399ms);
        QVERIFY(m_captured.isEmpty());
        m_scheduler->advance(1ms);
        QCOMPARE(m_captured.size(), 1);
    }

    void aNoticeOfThePasteboardIsActedUponAtOnce()
    {
        m_monitor->startMonitoring();
        m_pasteboard->copyText(u"one"_s);
        m_pasteboard->onChanged();
        QCOMPARE(texts(), QStringList{u"one"_s});
        m_scheduler->advance(2s);
        QCOMPARE(m_captured.size(), 1);
    }

    void anIdlePollReadsNothingButTheCount()
    {
        m_monitor->startMonitoring();
        m_scheduler->advance(10min);
        QCOMPARE(m_pasteboard->snapshotCount, 0);
    }

    void ourOwnWriteIsSkippedSilently()
    {
        m_monitor->startMonitoring();
        m_pasteboard->write({});
        const QStringList before = m_printed->lines();
        m_scheduler->advance(1s);
        QVERIFY(m_captured.isEmpty());
        QCOMPARE(m_monitor->lastChangeCount(), m_pasteboard->changeCount());
        QCOMPARE(m_printed->lines(), before);
    }

    void anEntryIsInTheHistoryWhenItIsAnnounced()
    {
        m_monitor->startMonitoring();
        qsizetype countInside = 0;
        m_monitor->onNewClipboardItem
            = [&](const ClipboardItem &) { countInside = m_manager->items().size(); };
        m_pasteboard->copyText(u"one"_s);
        m_pasteboard->onChanged();
        QCOMPARE(countInside, 1);
    }

    void withoutListenerTheHistoryIsFilledAllTheSame()
    {
        m_monitor->onNewClipboardItem = {};
        capture(textSnapshot(u"one"_s));
        QCOMPARE(m_manager->items().size(), 1);
    }

    void nothingIsCapturedAfterStopping()
    {
        m_monitor->startMonitoring();
        m_monitor->stopMonitoring();
        m_pasteboard->copyText(u"one"_s);
        QVERIFY(!m_pasteboard->onChanged);
        m_scheduler->advance(2s);
        QVERIFY(m_captured.isEmpty());
    }

    void nothingRunsAfterTheEndOfTheMonitor()
    {
        m_monitor->startMonitoring();
        m_monitor->setUserPaused(true, 10s);
        m_monitor.reset();
        m_pasteboard->copyText(u"one"_s);
        m_scheduler->advance(1min);
        QVERIFY(!m_pasteboard->onChanged);
        QCOMPARE(m_pasteboard->snapshotCount, 0);
    }

    // Pauses.

    void aChangeDuringAUserPauseIsLostForGood()
    {
        m_monitor->startMonitoring();
        m_monitor->setUserPaused(true);
        m_pasteboard->copyText(u"secret"_s);
        m_scheduler->advance(1s);
        QCOMPARE(m_monitor->lastChangeCount(), m_pasteboard->changeCount());
        m_monitor->resumeFromUserPause();
        m_scheduler->advance(1s);
        QVERIFY(m_captured.isEmpty());
    }

    void eitherFlagAlonePauses_data()
    {
        QTest::addColumn<bool>("own");
        QTest::addColumn<bool>("user");
        QTest::addColumn<qsizetype>("captured");
        QTest::newRow("none") << false << false << qsizetype(1);
        QTest::newRow("own") << true << false << qsizetype(0);
        QTest::newRow("user's") << false << true << qsizetype(0);
        QTest::newRow("both") << true << true << qsizetype(0);
    }

    void eitherFlagAlonePauses()
    {
        QFETCH(bool, own);
        QFETCH(bool, user);
        m_monitor->startMonitoring();
        m_monitor->setPaused(own);
        m_monitor->setUserPaused(user);
        QCOMPARE(m_monitor->isPaused(), own);
        QCOMPARE(m_monitor->isUserPaused(), user);
        m_pasteboard->copyText(u"one"_s);
        m_scheduler->advance(1s);
        QTEST(m_captured.size(), "captured");
    }

    void aTimedPauseEndsByItself()
    {
        QSignalSpy changes(m_monitor.get(), &ClipboardMonitor::clipboardMonitorPauseStateChanged);
        m_monitor->setUserPaused(true, 900s);
        QCOMPARE(changes.count(), 1);
        m_scheduler->advance(899'999ms);
        QVERIFY(m_monitor->isUserPaused());
        m_scheduler->advance(1ms);
        QVERIFY(!m_monitor->isUserPaused());
        QCOMPARE(changes.count(), 2);
    }

    void aNewPauseReplacesTheTimerOfTheOld()
    {
        m_monitor->setUserPaused(true, 900s);
        m_scheduler->advance(600s);
        m_monitor->setUserPaused(true, 900s);
        m_scheduler->advance(899s);
        QVERIFY(m_monitor->isUserPaused());
        m_scheduler->advance(1s);
        QVERIFY(!m_monitor->isUserPaused());
    }

    void aPauseWithoutLengthLastsUntilResumed_data()
    {
        QTest::addColumn<std::optional<std::chrono::milliseconds>>("duration");
        QTest::newRow("none") << std::optional<std::chrono::milliseconds>();
        QTest::newRow("zero") << std::optional<std::chrono::milliseconds>(0ms);
    }

    void aPauseWithoutLengthLastsUntilResumed()
    {
        QFETCH(std::optional<std::chrono::milliseconds>, duration);
        // An earlier timer must not end it either.
        m_monitor->setUserPaused(true, 900s);
        m_monitor->setUserPaused(true, duration);
        m_scheduler->advance(24h);
        QVERIFY(m_monitor->isUserPaused());
        m_monitor->resumeFromUserPause();
        QVERIFY(!m_monitor->isUserPaused());
    }

    void resumingByHandEndsTheTimer()
    {
        QSignalSpy changes(m_monitor.get(), &ClipboardMonitor::clipboardMonitorPauseStateChanged);
        m_monitor->setUserPaused(true, 900s);
        m_monitor->resumeFromUserPause();
        m_monitor->setUserPaused(true);
        m_scheduler->advance(1000s);
        QVERIFY(m_monitor->isUserPaused());
        QCOMPARE(changes.count(), 3);
    }

    void theProgramsOwnPauseIsNotAnnounced()
    {
        QSignalSpy changes(m_monitor.get(), &ClipboardMonitor::clipboardMonitorPauseStateChanged);
        m_monitor->setPaused(true);
        m_monitor->setPaused(false);
        QCOMPARE(changes.count(), 0);
    }

    void whatWasCopiedBeforeAPauseIsCapturedHoweverLateItIsRead_data()
    {
        QTest::addColumn<bool>("isOver");
        QTest::newRow("in the pause") << false;
        QTest::newRow("after the pause") << true;
    }

    void whatWasCopiedBeforeAPauseIsCapturedHoweverLateItIsRead()
    {
        QFETCH(bool, isOver);
        m_monitor->startMonitoring();
        PasteboardSnapshot slow = textSnapshot(u"slow"_s);
        slow.notice = m_pasteboard->notice();
        m_monitor->setUserPaused(true);
        if (isOver)
            m_monitor->resumeFromUserPause();
        m_pasteboard->copy(slow);
        m_scheduler->advance(500ms);
        QCOMPARE(texts(), QStringList{u"slow"_s});
    }

    void whatWasCopiedInAPauseIsNeverCapturedHoweverLateItIsRead()
    {
        m_monitor->startMonitoring();
        m_monitor->setUserPaused(true);
        PasteboardSnapshot slow = textSnapshot(u"slow"_s);
        slow.notice = m_pasteboard->notice();
        m_monitor->resumeFromUserPause();
        m_pasteboard->copy(slow);
        m_pasteboard->copyText(u"after"_s);
        m_scheduler->advance(500ms);
        QCOMPARE(texts(), QStringList{u"after"_s});
        QCOMPARE(m_monitor->lastChangeCount(), m_pasteboard->changeCount());
    }

    void twoPausesThatOverlapAreOne()
    {
        m_monitor->startMonitoring();
        m_monitor->setPaused(true);
        m_pasteboard->copyText(u"one"_s);
        m_monitor->setUserPaused(true);
        m_pasteboard->copyText(u"two"_s);
        m_monitor->setPaused(false);
        m_pasteboard->copyText(u"three"_s);
        m_monitor->resumeFromUserPause();
        m_pasteboard->copyText(u"four"_s);
        m_scheduler->advance(500ms);
        QCOMPARE(texts(), QStringList{u"four"_s});
    }

    void whatWasCopiedBeforeTheStartIsNotCapturedHoweverLateItIsRead()
    {
        PasteboardSnapshot slow = textSnapshot(u"slow"_s);
        slow.notice = m_pasteboard->notice();
        m_monitor->startMonitoring();
        m_pasteboard->copy(slow);
        m_scheduler->advance(500ms);
        QVERIFY(m_captured.isEmpty());
    }

    // Large copies.

    void whatFollowsALargeCopyDoesNotOvertakeIt()
    {
        m_monitor->startMonitoring();
        m_pasteboard->copy(richSnapshot(largeHtml("first"), std::nullopt));
        m_scheduler->advance(500ms);
        m_pasteboard->copyText(u"second"_s);
        PasteboardSnapshot picture;
        addImage(picture, PasteboardType::kPng);
        m_pasteboard->copy(picture);
        m_pasteboard->copy(richSnapshot(std::nullopt, "{\\rtf1 fourth}"_ba));
        m_scheduler->advance(500ms);
        QVERIFY(m_captured.isEmpty());

        QTRY_COMPARE(m_captured.size(), 4);
        QCOMPARE(texts(), QStringList({u"first"_s, u"second"_s, u"(none)"_s, u"fourth"_s}));
        QCOMPARE(m_printed->lines().filter(u"Detected: "_s),
                 QStringList({u"Detected: Rich Text remote=false"_s,
                              u"Detected: Text/URL - 'second...' remote=false"_s,
                              u"Detected: Image remote=false"_s,
                              u"Detected: Rich Text remote=false"_s}));
        // With nothing more to wait for, what is small is captured at once.
        m_pasteboard->copyText(u"fifth"_s);
        m_scheduler->advance(500ms);
        QCOMPARE(m_captured.size(), 5);
    }

    void aLargeCopyHasItsTimeAndItsSource()
    {
        m_monitor->startMonitoring();
        m_pasteboard->setFrontmost(u"org.Browser"_s);
        const QByteArray html = largeHtml("text");
        m_pasteboard->copy(richSnapshot(html, std::nullopt));
        const Timestamp copied = m_clock->now();
        m_scheduler->advance(500ms);
        m_pasteboard->setFrontmost(u"org.Editor"_s);
        m_clock->advance(10s);

        QTRY_COMPARE(m_captured.size(), 1);
        QCOMPARE(m_captured.first().timestamp, copied);
        QCOMPARE(m_captured.first().sourceAppBundleID, u"org.Browser"_s);
        QCOMPARE(m_captured.first().htmlRepresentation, html);
    }

    void aLargeCopyIsInTheHistoryWhenItIsAnnounced()
    {
        qsizetype countInside = 0;
        m_monitor->onNewClipboardItem
            = [&](const ClipboardItem &) { countInside = m_manager->items().size(); };
        capture(richSnapshot(largeHtml("text"), std::nullopt));
        QTRY_COMPARE(countInside, 1);
    }

    void aLargeCopyWithoutTextGivesNoEntry()
    {
        capture(richSnapshot(largeHtml("<img>"), std::nullopt));
        QTRY_VERIFY(m_printed->contains(u"Detected: Unknown type, ignoring remote=false"_s));
        m_pasteboard->copyText(u"next"_s);
        m_scheduler->advance(500ms);
        QTRY_COMPARE(texts(), QStringList{u"next"_s});
    }

    void aLongTextIsTrimmed()
    {
        const QString text = u"word "_s.repeated(1'000'000);
        capture(textSnapshot(text));
        QTRY_COMPARE(m_captured.size(), 1);
        QCOMPARE(m_captured.first().stringValue->byteCount(), text.size() - 1);
    }

    void aPauseDoesNotLoseWhatWasCopiedBefore()
    {
        capture(richSnapshot(largeHtml("before"), std::nullopt));
        m_monitor->setUserPaused(true);
        QTRY_COMPARE(texts(), QStringList{u"before"_s});
    }

    void whatIsStillBeingReadAtTheEndGoesIntoTheHistory()
    {
        capture(richSnapshot(largeHtml("large"), std::nullopt));
        m_pasteboard->copyText(u"small"_s);
        m_scheduler->advance(500ms);
        m_monitor.reset();
        QVERIFY(m_captured.isEmpty()); // Who listened may have ended before.
        const ClipboardItemList items = m_manager->items();
        QCOMPARE(items.size(), 2);
        QCOMPARE(items.at(0)->stringValue->toString(), u"small"_s);
        QCOMPARE(items.at(1)->stringValue->toString(), u"large"_s);
    }

    void copiesThatWouldTakeTooMuchMemoryWaitOnThePasteboard()
    {
        m_monitor->startMonitoring();
        for (const char *text : {"one", "two"})
            m_pasteboard->copy(richSnapshot(largeHtml(text, 40'000'000), std::nullopt));
        m_scheduler->advance(500ms);
        m_pasteboard->copyText(u"three"_s);
        m_scheduler->advance(5s);
        QCOMPARE(m_pasteboard->snapshotCount, 1);
        QTRY_COMPARE(texts(), QStringList({u"one"_s, u"two"_s, u"three"_s}));
    }

    // Text.

    void textIsKeptTrimmedWithItsRichForms()
    {
        m_pasteboard->setFrontmost(u"org.Editor"_s);
        PasteboardSnapshot snapshot = textSnapshot(u" \n two words\t\u2029"_s);
        snapshot.html = "<b>two</b> words"_ba;
        snapshot.rtf = "{\\rtf1 two words}"_ba;
        capture(snapshot);

        QCOMPARE(texts(), QStringList{u"two words"_s});
        const ClipboardItem item = m_captured.first();
        QCOMPARE(item.contentType, ClipboardContentType::Text);
        QCOMPARE(item.htmlRepresentation, snapshot.html);
        QCOMPARE(item.rtfRepresentation, snapshot.rtf);
        QCOMPARE(item.sourceAppBundleID, u"org.Editor"_s);
        QVERIFY(!item.isRemoteClipboard);
        QVERIFY(!item.id.isNull());
        QCOMPARE(item.timestamp, m_clock->now());
        QVERIFY(m_printed->contains(u"Detected: Text/URL - ' \n two words\t\u2029...' remote=false"_s));
    }

    void theHashIsLeftToTheHistory()
    {
        capture(textSnapshot(u"one"_s));
        QVERIFY(m_captured.first().contentHash.isEmpty());
        QCOMPARE(m_manager->items().first()->contentHash.size(), 64);
    }

    void theHashOfALargeTextComesWithIt()
    {
        capture(richSnapshot(largeHtml("text"), std::nullopt));
        QTRY_COMPARE(m_captured.size(), 1);
        ClipboardItem item = m_captured.first();
        const QByteArray hash = std::exchange(item.contentHash, {});
        QCOMPARE(hash, computeContentHash(item));
        QCOMPARE(m_manager->items().first()->contentHash, hash);
    }

    void fiftyCharactersOfTheTextArePrinted()
    {
        const QString text = u"é👩‍👩‍👧"_s.repeated(40);
        capture(textSnapshot(text));
        QVERIFY(m_printed->contains(u"Detected: Text/URL - '"_s + u"é👩‍👩‍👧"_s.repeated(25)
                                    + u"...' remote=false"_s));
    }

    void blankTextGivesNoEntryButTheLine_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << u""_s;
        QTest::newRow("blanks") << u" \n\t "_s;
    }

    void blankTextGivesNoEntryButTheLine()
    {
        QFETCH(QString, text);
        capture(textSnapshot(text));
        QVERIFY(m_captured.isEmpty());
        QVERIFY(m_printed->contains(u"Detected: Text/URL - '"_s + text + u"...' remote=false"_s));
    }

    void blankTextBesideAPictureGivesNoEntry()
    {
        PasteboardSnapshot snapshot = textSnapshot(u" "_s);
        addImage(snapshot, PasteboardType::kTiff);
        capture(snapshot);
        QVERIFY(m_captured.isEmpty());
    }

    void addressesAreLinks_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isUrl");
        QTest::newRow("https with blanks around") << u"  https://example.com/a \n"_s << true;
        QTest::newRow("http") << u"http://example.com"_s << true;
        QTest::newRow("several lines") << u"https://example.com\nand more"_s << true;
        QTest::newRow("capitals") << u"HTTPS://EXAMPLE.COM/A"_s << false;
        QTest::newRow("in the middle") << u"see https://example.com"_s << false;
        QTest::newRow("another scheme") << u"ftp://example.com"_s << false;
        QTest::newRow("no slashes") << u"https:example"_s << false;
    }

    void addressesAreLinks()
    {
        QFETCH(QString, text);
        QFETCH(bool, isUrl);
        capture(textSnapshot(text));
        QCOMPARE(texts(), QStringList{text.trimmed()});
        QCOMPARE(m_captured.first().contentType,
                 isUrl ? ClipboardContentType::Url : ClipboardContentType::Text);
    }

    void styledTextAloneIsRendered()
    {
        const QByteArray html = " <p>Hello <b>you</b></p>\n<p>there</p> "_ba;
        capture(richSnapshot(html, std::nullopt));
        QCOMPARE(texts(), QStringList{u"Hello you\nthere"_s});
        QCOMPARE(m_captured.first().htmlRepresentation, html);
        QCOMPARE(m_captured.first().contentType, ClipboardContentType::Text);
        QVERIFY(m_printed->contains(u"Detected: Rich Text remote=false"_s));
    }

    void styledTextInUtf16IsRenderedAndKeptAsOffered_data()
    {
        QTest::addColumn<QByteArray>("html");
        const QString html = u"<p>Grüße, мир</p>"_s;
        using Converter = QStringConverter;
        for (const bool hasMark : {false, true}) {
            const auto flags = hasMark ? Converter::Flag::WriteBom : Converter::Flag::Default;
            const QByteArray suffix = hasMark ? " with a mark" : "";
            QTest::newRow("little" + suffix)
                << QByteArray(QStringEncoder(Converter::Utf16LE, flags)(html));
            QTest::newRow("big" + suffix)
                << QByteArray(QStringEncoder(Converter::Utf16BE, flags)(html));
        }
    }

    void styledTextInUtf16IsRenderedAndKeptAsOffered()
    {
        QFETCH(QByteArray, html);
        capture(richSnapshot(html, std::nullopt));
        QCOMPARE(texts(), QStringList{u"Grüße, мир"_s});
        QCOMPARE(m_captured.first().htmlRepresentation, html);
    }

    void htmlWithoutTextGivesWayToRtf()
    {
        const QByteArray html = "<div> <img src=\"a.png\"> </div>"_ba;
        const QByteArray rtf = "{\\rtf1 from rtf}"_ba;
        capture(richSnapshot(html, rtf));
        QCOMPARE(texts(), QStringList{u"from rtf"_s});
        QCOMPARE(m_captured.first().htmlRepresentation, html);
        QCOMPARE(m_captured.first().rtfRepresentation, rtf);
    }

    void htmlComesBeforeRtf()
    {
        capture(richSnapshot("from html"_ba, "{\\rtf1 from rtf}"_ba));
        QCOMPARE(texts(), QStringList{u"from html"_s});
    }

    void styledFormsWithoutTextGiveWayToThePicture()
    {
        PasteboardSnapshot snapshot = richSnapshot("<img src=\"a.png\">"_ba, "no rtf"_ba);
        addImage(snapshot, PasteboardType::kPng);
        capture(snapshot);
        QCOMPARE(m_captured.size(), 1);
        QCOMPARE(m_captured.first().contentType, ClipboardContentType::Image);
    }

    // Pictures.

    void picturesAreKeptAsTiff_data()
    {
        QTest::addColumn<QString>("type");
        QTest::newRow("tiff") << PasteboardType::kTiff.toString();
        QTest::newRow("png") << PasteboardType::kPng.toString();
        QTest::newRow("jpeg") << PasteboardType::kJpeg.toString();
        QTest::newRow("any other") << PasteboardType::kImage.toString();
    }

    void picturesAreKeptAsTiff()
    {
        QFETCH(QString, type);
        m_pasteboard->setFrontmost(u"org.Painter"_s);
        PasteboardSnapshot snapshot;
        addImage(snapshot, type);
        capture(snapshot);
        QCOMPARE(m_captured.size(), 1);
        const ClipboardItem item = m_captured.first();
        QCOMPARE(item.contentType, ClipboardContentType::Image);
        QCOMPARE(item.imageRepresentation, "tiff bytes"_ba);
        QVERIFY(!item.stringValue && !item.imageFileName && !item.imageDigest);
        QCOMPARE(item.sourceAppBundleID, u"org.Painter"_s);
        QVERIFY(m_printed->contains(u"Detected: Image remote=false"_s));
    }

    void theDigestOfAPictureComesWithIt()
    {
        PasteboardSnapshot snapshot;
        addImage(snapshot, PasteboardType::kPng);
        snapshot.image->digest = "a digest";
        capture(snapshot);
        QCOMPARE(m_captured.first().imageDigest, "a digest"_ba);
    }

    void aStoredPictureIsTold()
    {
        int count = 0;
        m_monitor->onPictureStored = [&count] { ++count; };
        PasteboardSnapshot snapshot;
        addImage(snapshot, PasteboardType::kPng);
        capture(snapshot);
        QTRY_COMPARE(count, 1);
        QVERIFY(m_manager->items().first()->imageFileName);
    }

    void aPictureMayBeStoredAfterTheMonitorHasEnded()
    {
        PasteboardSnapshot snapshot;
        addImage(snapshot, PasteboardType::kPng);
        capture(snapshot);
        m_monitor.reset();
        m_manager->drain();
        QCoreApplication::processEvents();
        QVERIFY(m_manager->items().first()->imageFileName);
    }

    void whatCannotBeKeptIsReported_data()
    {
        QTest::addColumn<PasteboardSnapshot>("snapshot");
        PasteboardSnapshot unreadable;
        unreadable.types = {PasteboardType::kPng.toString()};
        PasteboardSnapshot withoutWidth;
        addImage(withoutWidth, PasteboardType::kTiff, {0, 5});
        PasteboardSnapshot notOffered;
        addImage(notOffered, u"org.example.picture");
        QTest::newRow("an empty pasteboard") << PasteboardSnapshot();
        QTest::newRow("a picture that cannot be read") << unreadable;
        QTest::newRow("a picture without width") << withoutWidth;
        QTest::newRow("a type of its own") << notOffered;
    }

    void whatCannotBeKeptIsReported()
    {
        QFETCH(PasteboardSnapshot, snapshot);
        capture(snapshot);
        QVERIFY(m_captured.isEmpty());
        QVERIFY(m_printed->contains(u"Detected: Unknown type, ignoring remote=false"_s));
    }

    // Files.

    void severalFilesMakeOneEntry()
    {
        const QStringList paths{makeFile(u"Über uns.TXT"_s), makeFile(u"archive.tar.gz"_s),
                                makeFile(u".hidden"_s)};
        PasteboardSnapshot snapshot = textSnapshot(u"a string beside them"_s);
        addFiles(snapshot, paths);
        capture(snapshot);

        QCOMPARE(texts(), QStringList{u"Über uns.TXT, archive.tar.gz, .hidden"_s});
        const ClipboardItem item = m_captured.first();
        QCOMPARE(item.contentType, ClipboardContentType::File);
        QCOMPARE(item.fileTypes, QStringList({u"TXT"_s, u"gz"_s, u""_s}));
        QCOMPARE(item.filePath, paths.first());
        QVERIFY(m_printed->contains(u"Detected: File(s) - 3 items remote=false"_s));
    }

    void aDirectoryHasItsName()
    {
        const QString path = m_directory->filePath(u"some.dir"_s);
        QVERIFY(QDir().mkdir(path));
        PasteboardSnapshot snapshot;
        addFiles(snapshot, {path + u'/'});
        capture(snapshot);
        QCOMPARE(texts(), QStringList{u"some.dir"_s});
        QCOMPARE(m_captured.first().filePath, path);
        QCOMPARE(m_captured.first().fileTypes, QStringList{u"dir"_s});
        const auto resolved = m_bookmarks->resolve(m_captured.first().fileBookmarkData.value());
        QCOMPARE(resolved.url, QUrl::fromLocalFile(path));
    }

    void theFirstOfSeveralFilesHasABookmark()
    {
        m_defaults->set(u"debug.drag_paste_logging"_s, true);
        const QStringList paths{makeFile(u"a b.txt"_s), makeFile(u"c.txt"_s)};
        PasteboardSnapshot snapshot;
        addFiles(snapshot, paths);
        capture(snapshot);
        const QByteArray bookmark = m_captured.first().fileBookmarkData.value();
        QCOMPARE(bookmark, m_bookmarks->create(QUrl::fromLocalFile(paths.first())));
        QVERIFY(m_printed->contains(u"[DragPaste] createFileItem bookmark created path="_s
                                    + paths.first() + u" bytes="_s
                                    + QString::number(bookmark.size())
                                    + u" startedAccessing=true"_s));
        QCOMPARE(m_manager->items().first()->fileBookmarkData, bookmark);
    }

    void aNameThatIsNotUtf8KeepsItsBytes()
    {
        const QString path = makeFile(FilePath::fromBytes("caf\xE9.\xFF"));
        PasteboardSnapshot snapshot;
        addFiles(snapshot, {path});
        capture(snapshot);
        const ClipboardItem item = m_captured.first();
        QCOMPARE(item.filePath, path);
        QCOMPARE(item.stringValue->toString(), u"caf\uFFFD.\uFFFD"_s);
        const auto resolved = m_bookmarks->resolve(item.fileBookmarkData.value());
        QVERIFY(resolved.url.toEncoded().endsWith("/caf%E9.%FF"));
        QCOMPARE(::unlink(FilePath::toBytes(path).constData()), 0);
    }

    void namesThatDifferInUnreadableBytesAreTwoEntries()
    {
        for (const QByteArray &name : {"\xFE"_ba, "\xFF"_ba}) {
            PasteboardSnapshot snapshot;
            addFiles(snapshot, {makeFile(FilePath::fromBytes(name))});
            capture(snapshot);
        }
        QCOMPARE(m_manager->items().size(), 2);
        for (const ClipboardItemPointer &item : m_manager->items())
            QCOMPARE(::unlink(FilePath::toBytes(*item->filePath).constData()), 0);
    }

    void aPipeIsCapturedWithoutWaiting()
    {
        const QString path = m_directory->filePath(u"pipe"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        PasteboardSnapshot snapshot;
        addFiles(snapshot, {path});
        capture(snapshot);
        QCOMPARE(m_captured.first().filePath, path);
        QVERIFY(m_captured.first().fileBookmarkData);
    }

    void filesThatDoNotCountGiveWayToTheText_data()
    {
        QTest::addColumn<QList<QUrl>>("urls");
        const QUrl existing = QUrl::fromLocalFile(u"/"_s);
        QTest::newRow("a deleted file") << QList<QUrl>{QUrl::fromLocalFile(u"/no/such/file"_s)};
        QTest::newRow("one of two deleted")
            << QList<QUrl>{existing, QUrl::fromLocalFile(u"/no/such/file"_s)};
        QTest::newRow("no file") << QList<QUrl>{existing, QUrl(u"https://example.com"_s)};
        QTest::newRow("of another machine") << QList<QUrl>{QUrl(u"file://server/"_s)};
        QTest::newRow("one whose path has a zero")
            << QList<QUrl>{QUrl::fromEncoded("file:///etc/passwd%00.png")};
        QTest::newRow("an empty list") << QList<QUrl>{};
    }

    void filesThatDoNotCountGiveWayToTheText()
    {
        QFETCH(QList<QUrl>, urls);
        PasteboardSnapshot snapshot = textSnapshot(u"beside"_s);
        addFiles(snapshot, {});
        snapshot.fileUrls = urls;
        capture(snapshot);
        QCOMPARE(texts(), QStringList{u"beside"_s});
        QCOMPARE(m_captured.first().contentType, ClipboardContentType::Text);
    }

    void unreadableFilesGiveWayToTheText()
    {
        PasteboardSnapshot snapshot = textSnapshot(u"beside"_s);
        snapshot.types.append(PasteboardType::kFileUrl.toString());
        capture(snapshot);
        QCOMPARE(m_captured.first().contentType, ClipboardContentType::Text);
    }

    // Privacy.

    void anIgnoredProgramsCopyIsLostForGood()
    {
        m_privacy->saveIgnoredApps({{u"Vault"_s, u"org.vault"_s, std::nullopt}});
        m_pasteboard->setFrontmost(u"org.Vault"_s, u"The Vault"_s);
        m_monitor->startMonitoring();
        m_pasteboard->copyText(u"password"_s);
        m_scheduler->advance(500ms);
        QCOMPARE(m_monitor->lastChangeCount(), m_pasteboard->changeCount());
        QVERIFY(m_printed->contains(u"Ignored clipboard change from app: The Vault (org.Vault)"_s));

        m_pasteboard->setFrontmost(u"org.Editor"_s);
        m_scheduler->advance(5s);
        QVERIFY(m_captured.isEmpty());
        QVERIFY(m_manager->items().isEmpty());
    }

    void anIgnoredProgramMayHaveNoName()
    {
        m_pasteboard->frontmost = RunningApplication{u"com.apple.passwords"_s, {}, 1, 1};
        capture(textSnapshot(u"password"_s));
        QVERIFY(m_captured.isEmpty());
        QVERIFY(m_printed->contains(
            u"Ignored clipboard change from app: Unknown (com.apple.passwords)"_s));
    }

    void theListIsReadAtEachChange()
    {
        m_pasteboard->setFrontmost(u"org.vault"_s);
        capture(textSnapshot(u"one"_s));
        m_privacy->saveIgnoredApps({{u"Vault"_s, u"org.vault"_s, std::nullopt}});
        m_pasteboard->copyText(u"two"_s);
        m_scheduler->advance(500ms);
        QCOMPARE(texts(), QStringList{u"one"_s});
    }

    void whatComesFromAnotherDeviceIsNeverIgnored()
    {
        m_pasteboard->setFrontmost(u"com.apple.Passwords"_s);
        PasteboardSnapshot snapshot = textSnapshot(u"from afar"_s);
        snapshot.types.append(PasteboardType::kRemoteClipboard.toString());
        capture(snapshot);
        QCOMPARE(texts(), QStringList{u"from afar"_s});
        QVERIFY(m_captured.first().isRemoteClipboard);
        QVERIFY(!m_captured.first().sourceAppBundleID);
        QVERIFY(m_printed->contains(u"Detected: Text/URL - 'from afar...' remote=true"_s));
    }

    void withoutAProgramInFrontThereIsNoSource_data()
    {
        QTest::addColumn<bool>("hasProgram");
        QTest::newRow("no program") << false;
        QTest::newRow("a program without identifier") << true;
    }

    void withoutAProgramInFrontThereIsNoSource()
    {
        QFETCH(bool, hasProgram);
        if (hasProgram)
            m_pasteboard->frontmost = RunningApplication{{}, u"Nameless"_s, 1, 1};
        capture(textSnapshot(u"one"_s));
        QCOMPARE(m_captured.size(), 1);
        QVERIFY(!m_captured.first().sourceAppBundleID);
    }

    void theProgramThatWasInFrontAtTheNoticeIsTheSource()
    {
        m_monitor->startMonitoring();
        PasteboardSnapshot snapshot = textSnapshot(u"one"_s);
        snapshot.frontmostApplication = RunningApplication{u"org.first"_s, u"First"_s, 1, 1};
        m_pasteboard->setFrontmost(u"org.second"_s);
        m_pasteboard->copy(snapshot);
        m_scheduler->advance(500ms);
        QCOMPARE(m_captured.first().sourceAppBundleID, u"org.first"_s);
    }

    void theProgramThatWasInFrontAtTheNoticeMayBeIgnored()
    {
        m_monitor->startMonitoring();
        PasteboardSnapshot snapshot = textSnapshot(u"password"_s);
        snapshot.frontmostApplication
            = RunningApplication{u"com.apple.Passwords"_s, u"Passwords"_s, 1, 1};
        m_pasteboard->setFrontmost(u"org.second"_s);
        m_pasteboard->copy(snapshot);
        m_scheduler->advance(500ms);
        QVERIFY(m_captured.isEmpty());
    }

    void passwordsCoverTheSystemSettingsUntilTheyAreRemoved()
    {
        for (const QString &identifier : {u"com.apple.Passwords"_s, u"com.apple.passwords"_s,
                                          u"com.apple.systempreferences"_s}) {
            m_pasteboard->setFrontmost(identifier);
            capture(textSnapshot(identifier));
        }
        QVERIFY(m_captured.isEmpty());
        m_privacy->saveIgnoredApps(
            {{u"Keychain Access"_s, u"com.apple.keychainaccess"_s, std::nullopt}});
        for (const QString &identifier : {u"com.apple.Passwords"_s, u"com.apple.passwords"_s,
                                          u"com.apple.systempreferences"_s}) {
            m_pasteboard->setFrontmost(identifier);
            capture(textSnapshot(identifier));
        }
        QCOMPARE(m_captured.size(), 3);
    }

    void nothingOfAnIgnoredCopyIsPrinted()
    {
        m_pasteboard->setFrontmost(u"com.apple.Passwords"_s);
        capture(textSnapshot(u"hunter2"_s));
        QVERIFY(m_printed->lines().filter(u"hunter2"_s).isEmpty());
    }

    // What may outlive its program.

    void whatIsNotIgnoredMayOutliveItsProgram_data()
    {
        QTest::addColumn<bool>("isPaused");
        QTest::newRow("recorded") << false;
        QTest::newRow("in a pause") << true;
    }

    void whatIsNotIgnoredMayOutliveItsProgram()
    {
        QFETCH(bool, isPaused);
        m_monitor->startMonitoring();
        m_monitor->setUserPaused(isPaused);
        m_pasteboard->copyText(u"one"_s);
        m_scheduler->advance(500ms);
        QCOMPARE(m_pasteboard->keptAlive, QList<quint64>{1});
        QVERIFY(m_pasteboard->discarded.isEmpty());
    }

    void whatIsIgnoredIsDiscarded_data()
    {
        QTest::addColumn<bool>("isPaused");
        QTest::newRow("watching") << false;
        QTest::newRow("in a pause") << true;
    }

    void whatIsIgnoredIsDiscarded()
    {
        QFETCH(bool, isPaused);
        m_pasteboard->setFrontmost(u"com.apple.Passwords"_s, u"Passwords"_s);
        m_monitor->startMonitoring();
        m_monitor->setUserPaused(isPaused);
        m_pasteboard->copyText(u"password"_s);
        m_scheduler->advance(500ms);
        QCOMPARE(m_pasteboard->discarded, QList<quint64>{1});
        QVERIFY(m_pasteboard->keptAlive.isEmpty());
        // Of what is swallowed nothing is printed.
        QCOMPARE(m_printed->lines().filter(u"Ignored clipboard change"_s).size(), isPaused ? 0 : 1);
    }

    void ourOwnWritesAreLeftAlone()
    {
        m_monitor->startMonitoring();
        m_pasteboard->write({});
        m_scheduler->advance(500ms);
        QVERIFY(m_pasteboard->keptAlive.isEmpty());
        QVERIFY(m_pasteboard->discarded.isEmpty());
    }

private:
    void capture(const PasteboardSnapshot &snapshot)
    {
        m_monitor->startMonitoring();
        m_pasteboard->copy(snapshot);
        m_scheduler->advance(500ms);
    }

    QStringList texts() const
    {
        QStringList texts;
        for (const ClipboardItem &item : m_captured)
            texts.append(item.stringValue ? item.stringValue->toString() : u"(none)"_s);
        return texts;
    }

    QString makeFile(const QString &name) const
    {
        const QString path = m_directory->filePath(name);
        if (::mknod(FilePath::toBytes(path).constData(), S_IFREG | 0600, 0) != 0)
            qFatal("The file cannot be made.");
        return path;
    }

    std::unique_ptr<InodeBookmarks> m_bookmarks;
    std::unique_ptr<DescriptorFileAccess> m_fileAccess;
    std::unique_ptr<FileReferences> m_fileReferences;
    QList<ClipboardItem> m_captured;
};

QTEST_MAIN(ClipboardMonitorTest)
#include "ClipboardMonitorTest.moc"
