#include "platform/x11/X11Pasteboard.h"

#include "platform/linux/QtImageCodec.h"
#include "tests/fakes/CountingSource.h"
#include "tests/fakes/FakeImageCodec.h"
#include "tests/platform/ForeignOwner.h"
#include "tests/platform/PrivateDisplay.h"
#include "tests/platform/Xclip.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLargeByteCount = 50 * 1000 * 1000;

/// Text that shows it when pieces are lost or change places.
QByteArray largeText()
{
    QByteArray text;
    text.reserve(kLargeByteCount);
    for (int line = 0; text.size() < kLargeByteCount; ++line)
        text += QByteArray::number(line) + '\n';
    text.truncate(kLargeByteCount);
    return text;
}

QByteArray pngOf(const QImage &image)
{
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return file;
}

QImage smallPicture()
{
    QImage image(7, 5, QImage::Format_RGB32);
    image.fill(Qt::red);
    image.setPixelColor(3, 2, Qt::blue);
    return image;
}

/// hostile_requestor.py.
void startToAsk(QProcess &requestor, const QStringList &arguments)
{
    requestor.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    requestor.start(u"/usr/bin/python3"_s,
                    QStringList{QFINDTESTDATA("../desktop/hostile_requestor.py")} + arguments);
}

/// All that it says.
QByteArray ask(const QStringList &arguments)
{
    QProcess requestor;
    startToAsk(requestor, arguments);
    requestor.waitForFinished();
    return requestor.readAllStandardOutput();
}

/// Tells when it begins with a PNG, and ends it when it may.
class SlowPngCodec : public FakeImageCodec
{
public:
    std::optional<QByteArray> pngFromPicture(const QByteArray &file) const override
    {
        isAsked.release();
        mayGoOn.tryAcquire(1, 20'000); // A test that fails has to end, too.
        return FakeImageCodec::pngFromPicture(file);
    }
    mutable QSemaphore isAsked;
    mutable QSemaphore mayGoOn;
};

PasteboardContents picture(const LazyBytes &jpeg)
{
    PasteboardContents contents;
    contents.add(PasteboardType::kJpeg, jpeg);
    return contents;
}

PasteboardContents plainText(const QByteArray &text)
{
    PasteboardContents contents;
    contents.add(PasteboardType::kString, text);
    return contents;
}

} // namespace

class X11PasteboardTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void whatLiesThereAtStartIsNoChange();
    void textOfAnotherProgramIsRead();
    void changesAreCalledOutOnTheMainThread();
    void copiesInQuickSuccessionAreAllKept();
    void latinTextIsDecoded();
    void anEmptyTextIsPresent();
    void richFormsAreReadByteForByte();
    void aPictureIsRead();
    void aPictureBesideATextIsNotFetched_data();
    void aPictureBesideATextIsNotFetched();
    void aPictureBesideFilesIsFetched();
    void aPictureIsFetchedWhereTheTextFails_data();
    void aPictureIsFetchedWhereTheTextFails();
    void copiesBehindAPictureKeepTheirOrder();
    void fileListsAreRead();
    void aLargeTextIsRead();
    void aSecretIsNeverFetched();
    void aSecretIsKnownInEachSpelling_data();
    void aSecretIsKnownInEachSpelling();
    void aMarkBehindVeryManyTargetsCounts();
    void aHarmlessMarkDoesNotHinder();
    void aMarkThatIsNotTaughtCountsAsSecret();
    void theNextCopyIsReadAfterATroublesomeOwner_data();
    void theNextCopyIsReadAfterATroublesomeOwner();
    void anOwnerThatTakesOverAtEachRequestIsLeftInPeace_data();
    void anOwnerThatTakesOverAtEachRequestIsLeftInPeace();
    void theLastOfVeryManyChangesIsRead();
    void anOwnerThatGoesSilentCostsOnlyWhatItWithholds();
    void refusedFormsAreAbsent();
    void anotherKindOfAnswerIsNoText();
    void aFloodOfTargetsIsCutOff();
    void aClearedClipboardIsAChange();
    void anOwnerThatEndsIsNoChange();

    void ownWritesAreMarkedAndNotReadBack();
    void writtenTextIsServed();
    void textBeyondLatinIsNotOfferedAsString();
    void richFormsAreServedByteForByte();
    void filesAreServedAsFileManagersWantThem();
    void picturesAreServedAsPngToo();
    void aPictureThatCannotBecomeAPngIsServedAsItIs();
    void aPictureOfAnyFormatIsServedAsTiff();
    void theTiffOfAPictureIsMadeWhenAProgramAsks();
    void whatTurnsOutToBeNoPictureIsNotServedAsOne();
    void thePngOfWhatWeWriteIsMadeUnasked();
    void aNewerWriteAbandonsAPngNotBegun();
    void whoWaitsForAPngIsRefusedWhenAnotherProgramCopies();
    void whatLiesElsewhereIsReadOnlyWhenAProgramAsks();
    void whatCannotBeReadIsRefused();
    void aLargeTextIsServed();
    void severalProgramsAreServedAtOnce();
    void aRequestorThatEndsHalfWayHindersNobody();
    void aFloodOfRequestsHindersNobody();
    void whoAsksInOurNameHindersNobody();
    void severalTargetsAreServedInOneRequest();
    void severalTargetsWaitForAPngUnderWay();
    void programsOfAnOlderTimeAreServed();
    void whoAsksForAnEarlierTimeIsRefused();
    void anEmptyWriteClears();
    void primaryIsServedOnDemand();
    void primaryIsRefusedWhenTheClipboardIsNotOurs();

private:
    void verifyNextCopyIsRead();

    QtImageCodec m_codec;
    std::unique_ptr<X11Pasteboard> m_pasteboard;
    int m_changeCalls = 0;
};

void X11PasteboardTest::init()
{
    m_changeCalls = 0;
    m_pasteboard = std::make_unique<X11Pasteboard>(m_codec);
    m_pasteboard->onChanged = [this] { ++m_changeCalls; };
}

void X11PasteboardTest::cleanup()
{
    m_pasteboard.reset();
}

/// Another program can still copy, and is read at once.
void X11PasteboardTest::verifyNextCopyIsRead()
{
    const QByteArray text =
        "next copy " + QByteArray::number(QRandomGenerator::global()->generate());
    QVERIFY(Xclip::copy(text));
    QTRY_COMPARE_WITH_TIMEOUT(m_pasteboard->snapshot().string.value_or(Utf8Text()).utf8(), text,
                              1000);
}

void X11PasteboardTest::whatLiesThereAtStartIsNoChange()
{
    ForeignOwner owner(u"honest"_s, {u"UTF8_STRING:=old"_s});
    QTRY_VERIFY(owner.hasSaid(u"owned"_s));
    const auto late = std::make_unique<X11Pasteboard>(m_codec);
    const quint64 atStart = late->changeCount();
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    const qsizetype asked = owner.askedTargets().size();

    owner.retake();
    QTRY_COMPARE(late->changeCount(), atStart + 1);
    // Each of the two pasteboards asked for the offer and the text of what came after its start.
    QTRY_COMPARE(owner.askedTargets().size(), asked + 4);
}

void X11PasteboardTest::textOfAnotherProgramIsRead()
{
    const quint64 before = m_pasteboard->changeCount();
    QVERIFY(Xclip::copy("hello w\xC3\xB6rld"));

    QTRY_COMPARE(m_pasteboard->changeCount(), before + 1);
    const PasteboardSnapshot snapshot = m_pasteboard->snapshot();
    QCOMPARE(snapshot.changeCount, before + 1);
    QCOMPARE(snapshot.types, QStringList{PasteboardType::kString.toString()});
    QCOMPARE(snapshot.string.value().utf8(), QByteArray("hello w\xC3\xB6rld"));
    QVERIFY(!snapshot.html && !snapshot.rtf && !snapshot.fileUrls && !snapshot.image);
    QVERIFY(!snapshot.isOwnWrite);
}

void X11PasteboardTest::changesAreCalledOutOnTheMainThread()
{
    QVERIFY(Xclip::copy("call"));
    QThread *callThread = nullptr;
    m_pasteboard->onChanged = [&] { callThread = QThread::currentThread(); };
    QTRY_COMPARE(callThread, QThread::currentThread());
}

void X11PasteboardTest::copiesInQuickSuccessionAreAllKept()
{
    constexpr int kCopies = 20;
    const quint64 before = m_pasteboard->changeCount();
    for (int number = 1; number <= kCopies; ++number) {
        QVERIFY(Xclip::copy(QByteArray::number(number)));
        // The main thread is busy: no event loop runs here, and nothing is taken.
        QDeadlineTimer deadline(5000);
        while (m_pasteboard->changeCount() < before + quint64(number) && !deadline.hasExpired())
            QThread::yieldCurrentThread();
    }

    const QList<PasteboardSnapshot> taken = m_pasteboard->takeSnapshotsSince(before + 1);
    QCOMPARE(taken.size(), kCopies - 1);
    for (int index = 0; index < taken.size(); ++index)
        QCOMPARE(taken.at(index).string.value().utf8(), QByteArray::number(index + 2));
    QVERIFY(m_pasteboard->takeSnapshotsSince(taken.last().changeCount).isEmpty());
    QCOMPARE(m_pasteboard->snapshot().string.value().utf8(), QByteArray::number(kCopies));
}

void X11PasteboardTest::latinTextIsDecoded()
{
    QVERIFY(Xclip::copy("gr\xFC\xDF", u"STRING"_s));
    QTRY_COMPARE(m_pasteboard->snapshot().string.value_or(Utf8Text()).toString(), u"grüß"_s);
}

void X11PasteboardTest::anEmptyTextIsPresent()
{
    const ForeignOwner owner(u"honest"_s, {u"UTF8_STRING:="_s, u"text/html:=<b></b>"_s});
    QTRY_VERIFY(m_pasteboard->snapshot().string.has_value());
    QVERIFY(m_pasteboard->snapshot().string->isEmpty());
}

void X11PasteboardTest::richFormsAreReadByteForByte()
{
    QTemporaryDir directory;
    const QByteArray html("<p>\xFF\x00\xFEodd bytes\r\n</p>", 21);
    QFile file(directory.filePath(u"form.html"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(html);
    file.close();
    const ForeignOwner owner(u"honest"_s,
                             {u"text/html:=@"_s + file.fileName(), u"application/rtf:={\\rtf1 a}"_s,
                              u"text/plain;charset=UTF-8:=a"_s, u"text/markdown:=*a*"_s});

    QTRY_VERIFY(m_pasteboard->snapshot().html.has_value());
    const PasteboardSnapshot snapshot = m_pasteboard->snapshot();
    QCOMPARE(snapshot.html.value(), html);
    QCOMPARE(snapshot.rtf.value(), QByteArray("{\\rtf1 a}"));
    QCOMPARE(snapshot.string.value().utf8(), QByteArray("a"));
}

void X11PasteboardTest::aPictureIsRead()
{
    QVERIFY(Xclip::copy(pngOf(smallPicture()), u"image/png"_s));

    QTRY_VERIFY(m_pasteboard->snapshot().image.has_value());
    const PasteboardSnapshot snapshot = m_pasteboard->snapshot();
    QCOMPARE(snapshot.types, QStringList{PasteboardType::kPng.toString()});
    QCOMPARE(snapshot.image->size, QSize(7, 5));
    QCOMPARE(QImage::fromData(snapshot.image->tiff).convertToFormat(QImage::Format_RGB32),
             smallPicture());
}

void X11PasteboardTest::aPictureBesideATextIsNotFetched_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("a text") << u"text"_s;
    QTest::newRow("a blank text") << u" "_s;
    QTest::newRow("an empty text") << QString();
}

void X11PasteboardTest::aPictureBesideATextIsNotFetched()
{
    QFETCH(QString, text);
    ForeignOwner owner(
        u"honest"_s, {u"image/png:=not needed"_s, u"UTF8_STRING:="_s + text, u"image/tiff:=no"_s});
    QTRY_VERIFY(m_pasteboard->snapshot().string.has_value());
    QTRY_COMPARE(owner.askedTargets(), (QStringList{u"TARGETS"_s, u"UTF8_STRING"_s}));
    QCOMPARE(m_pasteboard->snapshot().types,
             (QStringList{PasteboardType::kPng.toString(), PasteboardType::kString.toString(),
                          PasteboardType::kTiff.toString()}));
}

void X11PasteboardTest::aPictureBesideFilesIsFetched()
{
    FakeImageCodec codec;
    X11Pasteboard pasteboard(codec);
    const ForeignOwner owner(u"honest"_s,
                             {u"text/uri-list:=file:///gone"_s, u"image/png:=pixels"_s});
    QTRY_VERIFY(pasteboard.snapshot().image.has_value());
    QCOMPARE(pasteboard.snapshot().fileUrls.value(), QList<QUrl>{QUrl(u"file:///gone"_s)});
}

void X11PasteboardTest::aPictureIsFetchedWhereTheTextFails_data()
{
    QTest::addColumn<QString>("mood");
    QTest::newRow("refused") << u"textless"_s;
    QTest::newRow("of a wrong type") << u"wrongtype"_s;
}

void X11PasteboardTest::aPictureIsFetchedWhereTheTextFails()
{
    QFETCH(QString, mood);
    FakeImageCodec codec;
    m_pasteboard.reset(); // It would ask as well.
    X11Pasteboard pasteboard(codec);
    ForeignOwner owner(mood, {u"UTF8_STRING:=never"_s, u"text/plain:=never"_s,
                              u"image/png:=pixels"_s, u"image/tiff:=not needed"_s});
    QTRY_VERIFY(pasteboard.snapshot().image.has_value());
    QVERIFY(!pasteboard.snapshot().string);
    QCOMPARE(pasteboard.snapshot().image->tiff, QByteArray("tiff of pixels"));
    QTRY_COMPARE(owner.askedTargets().count(u"image/png"_s), 1);
    QVERIFY(!owner.askedTargets().contains(u"image/tiff"_s));
}

void X11PasteboardTest::copiesBehindAPictureKeepTheirOrder()
{
    class SlowCodec : public FakeImageCodec
    {
    public:
        std::optional<PasteboardImage> tiffFromPicture(const QByteArray &) const override
        {
            isAsked.release();
            mayGoOn.acquire();
            return PasteboardImage{"tiff", QSize(1, 1)};
        }
        mutable QSemaphore isAsked;
        mutable QSemaphore mayGoOn;
    };
    SlowCodec codec;
    X11Pasteboard pasteboard(codec);
    QVERIFY(Xclip::copy("picture", u"image/png"_s));
    QVERIFY(codec.isAsked.tryAcquire(1, 5000));
    const quint64 before = pasteboard.changeCount();
    PasteboardContents own = plainText("text");
    pasteboard.write(own);
    QTRY_COMPARE(Xclip::paste(u"UTF8_STRING"_s), QByteArray("text"));
    codec.mayGoOn.release();

    QTRY_COMPARE(pasteboard.changeCount(), before + 2);
    const QList<PasteboardSnapshot> taken = pasteboard.takeSnapshotsSince(before);
    QVERIFY(taken.at(0).image.has_value());
    QCOMPARE(taken.at(1).string.value().utf8(), QByteArray("text"));
}

void X11PasteboardTest::fileListsAreRead()
{
    QVERIFY(Xclip::copy("file:///tmp/one\r\nfile:///tmp/tw%20o\r\n", u"text/uri-list"_s));
    QTRY_VERIFY(m_pasteboard->snapshot().fileUrls.has_value());
    QCOMPARE(
        m_pasteboard->snapshot().fileUrls.value(),
        (QList<QUrl>{QUrl::fromLocalFile(u"/tmp/one"_s), QUrl::fromLocalFile(u"/tmp/tw o"_s)}));

    QVERIFY(Xclip::copy("copy\nfile:///tmp/three", u"x-special/gnome-copied-files"_s));
    QTRY_COMPARE(m_pasteboard->snapshot().fileUrls.value_or(QList<QUrl>()),
                 QList<QUrl>{QUrl::fromLocalFile(u"/tmp/three"_s)});
}

void X11PasteboardTest::aLargeTextIsRead()
{
    const QByteArray text = largeText();
    QVERIFY(Xclip::copy(text));
    QTRY_VERIFY_WITH_TIMEOUT(m_pasteboard->snapshot().string.has_value(), 20000);
    QVERIFY(m_pasteboard->snapshot().string->utf8() == text);
}

void X11PasteboardTest::aSecretIsNeverFetched()
{
    ForeignOwner owner(u"honest"_s, {u"UTF8_STRING:=password"_s, u"text/html:=password"_s,
                                     u"x-kde-passwordManagerHint:=secret"_s});
    const quint64 before = m_pasteboard->changeCount();
    QTRY_COMPARE(m_pasteboard->changeCount(), before + 1);
    const PasteboardSnapshot snapshot = m_pasteboard->snapshot();
    QVERIFY(snapshot.types.isEmpty());
    QVERIFY(!snapshot.string && !snapshot.html);

    verifyNextCopyIsRead();
    QTRY_VERIFY(owner.hasSaid(u"lost"_s));
    QCOMPARE(owner.askedTargets(), (QStringList{u"TARGETS"_s, u"x-kde-passwordManagerHint"_s}));
}

void X11PasteboardTest::aSecretIsKnownInEachSpelling_data()
{
    QTest::addColumn<QByteArray>("mark");
    QTest::newRow("with the zero at its end") << QByteArray("secret\0", 7);
    QTest::newRow("with a line end") << QByteArray("secret\n");
    QTest::newRow("with a capital letter") << QByteArray("Secret");
    QTest::newRow("in UTF-16") << QByteArray("s\0e\0c\0r\0e\0t\0", 12);
    QTest::newRow("empty") << QByteArray();
}

void X11PasteboardTest::aSecretIsKnownInEachSpelling()
{
    QFETCH(QByteArray, mark);
    const QTemporaryDir directory;
    QFile file(directory.filePath(u"mark"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(mark);
    file.close();
    ForeignOwner owner(u"honest"_s, {u"UTF8_STRING:=password"_s,
                                     u"x-kde-passwordManagerHint:=@"_s + file.fileName()});
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QVERIFY(!m_pasteboard->snapshot().string);
    QVERIFY(!owner.askedTargets().contains(u"UTF8_STRING"_s));
}

void X11PasteboardTest::aMarkBehindVeryManyTargetsCounts()
{
    QStringList offers{u"UTF8_STRING:=password"_s};
    for (int number = 0; number < 600; ++number)
        offers.append(u"application/x-form-%1:=x"_s.arg(number));
    offers.append(u"x-kde-passwordManagerHint:=secret"_s);
    ForeignOwner owner(u"honest"_s, offers);
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QVERIFY(!m_pasteboard->snapshot().string);
    QVERIFY(!owner.askedTargets().contains(u"UTF8_STRING"_s));
}

void X11PasteboardTest::aHarmlessMarkDoesNotHinder()
{
    const ForeignOwner owner(u"honest"_s,
                             {u"UTF8_STRING:=user"_s, u"x-kde-passwordManagerHint:=public"_s});
    QTRY_COMPARE(m_pasteboard->snapshot().string.value_or(Utf8Text()).utf8(), QByteArray("user"));
}

void X11PasteboardTest::aMarkThatIsNotTaughtCountsAsSecret()
{
    ForeignOwner owner(u"refusing"_s,
                       {u"UTF8_STRING:=password"_s, u"x-kde-passwordManagerHint:=secret"_s});
    const quint64 before = m_pasteboard->changeCount();
    QTRY_COMPARE(m_pasteboard->changeCount(), before + 1);
    QTRY_VERIFY(owner.askedTargets().contains(u"x-kde-passwordManagerHint"_s));
    QVERIFY(!owner.askedTargets().contains(u"UTF8_STRING"_s));
}

void X11PasteboardTest::theNextCopyIsReadAfterATroublesomeOwner_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("lastTarget");
    QTest::newRow("one that never answers") << u"silent"_s << u"TARGETS"_s;
    QTest::newRow("one that withholds the data") << u"mute"_s << u"UTF8_STRING"_s;
    QTest::newRow("one that stops half-way") << u"half"_s << u"UTF8_STRING"_s;
    QTest::newRow("one that trickles") << u"trickle"_s << u"UTF8_STRING"_s;
    QTest::newRow("one that dies when asked") << u"dying"_s << u"UTF8_STRING"_s;
    QTest::newRow("one that dies half-way") << u"halfdying"_s << u"UTF8_STRING"_s;
    QTest::newRow("one that answers text as numbers") << u"wrongtype"_s << u"UTF8_STRING"_s;
    QTest::newRow("one that refuses") << u"refusing"_s << u"UTF8_STRING"_s;
    QTest::newRow("one that offers too much") << u"flood"_s << u"UTF8_STRING"_s;
    QTest::newRow("one that offers what does not exist") << u"noatoms"_s << u"UTF8_STRING"_s;
    QTest::newRow("one that tells its offer as text") << u"wrongoffer"_s << u"UTF8_STRING"_s;
    QTest::newRow("one that announces too much") << u"liar"_s << u"UTF8_STRING"_s;
    QTest::newRow("one that announces and has nothing") << u"empty"_s << u"UTF8_STRING"_s;
    QTest::newRow("one that deletes its answer") << u"deleting"_s << u"UTF8_STRING"_s;
    QTest::newRow("one that gives what it refused") << u"late"_s << u"UTF8_STRING"_s;
    QTest::newRow("one that answers elsewhere") << u"elsewhere"_s << u"UTF8_STRING"_s;
    QTest::newRow("one that takes over at each request") << u"restless"_s << u"TARGETS"_s;
    QTest::newRow("one that takes over behind each answer") << u"hasty"_s << u"TARGETS"_s;
    QTest::newRow("one that tells of pieces without end") << u"noisy"_s << u"UTF8_STRING"_s;
}

void X11PasteboardTest::theNextCopyIsReadAfterATroublesomeOwner()
{
    QFETCH(QString, mode);
    QFETCH(QString, lastTarget);
    ForeignOwner owner(mode, {u"UTF8_STRING:=never"_s, u"text/html:=never"_s});
    QTRY_VERIFY(owner.askedTargets().contains(lastTarget));

    verifyNextCopyIsRead();
}

void X11PasteboardTest::anOwnerThatTakesOverAtEachRequestIsLeftInPeace_data()
{
    QTest::addColumn<QString>("mood");
    QTest::newRow("before it answers") << u"restless"_s;
    QTest::newRow("behind its answer") << u"hasty"_s;
}

void X11PasteboardTest::anOwnerThatTakesOverAtEachRequestIsLeftInPeace()
{
    QFETCH(QString, mood);
    ForeignOwner owner(mood, {u"UTF8_STRING:=restless"_s});
    // Each question brings the next taking; the last one stands behind a longer quiet.
    constexpr int kQuestions = 33;
    const auto questions = [&owner] { return owner.askedTargets().count(u"TARGETS"_s); };
    QTRY_COMPARE_WITH_TIMEOUT(questions(), kQuestions, 20000);
    verifyNextCopyIsRead();
    QCOMPARE(questions(), kQuestions);
}

void X11PasteboardTest::theLastOfVeryManyChangesIsRead()
{
    ForeignOwner owner(u"changing"_s, {u"UTF8_STRING:=at last"_s});
    QTRY_COMPARE_WITH_TIMEOUT(m_pasteboard->snapshot().string.value_or(Utf8Text()).utf8(),
                              QByteArray("at last"), 20000);
    QVERIFY(owner.askedTargets().size() < 1000);
}

void X11PasteboardTest::anOwnerThatGoesSilentCostsOnlyWhatItWithholds()
{
    const ForeignOwner owner(u"half"_s, {u"UTF8_STRING:=never"_s});
    const quint64 before = m_pasteboard->changeCount();
    QTRY_COMPARE_WITH_TIMEOUT(m_pasteboard->changeCount(), before + 1, 10000);
    QVERIFY(m_pasteboard->snapshot().hasType(PasteboardType::kString));
    QVERIFY(!m_pasteboard->snapshot().string);
}

void X11PasteboardTest::refusedFormsAreAbsent()
{
    ForeignOwner owner(u"refusing"_s,
                       {u"UTF8_STRING:=no"_s, u"text/plain:=no"_s, u"text/html:=no"_s});
    const quint64 before = m_pasteboard->changeCount();
    QTRY_COMPARE(m_pasteboard->changeCount(), before + 1);
    QVERIFY(!m_pasteboard->snapshot().string && !m_pasteboard->snapshot().html);
    QTRY_VERIFY(owner.askedTargets().contains(u"text/plain"_s));
}

void X11PasteboardTest::anotherKindOfAnswerIsNoText()
{
    const ForeignOwner owner(u"wrongtype"_s, {u"UTF8_STRING:=no"_s, u"text/html:=no"_s});
    const quint64 before = m_pasteboard->changeCount();
    QTRY_COMPARE(m_pasteboard->changeCount(), before + 1);
    QVERIFY(!m_pasteboard->snapshot().string && !m_pasteboard->snapshot().html);
}

void X11PasteboardTest::aFloodOfTargetsIsCutOff()
{
    const ForeignOwner owner(u"flood"_s, {u"UTF8_STRING:=text"_s});
    QTRY_COMPARE(m_pasteboard->snapshot().string.value_or(Utf8Text()).utf8(), QByteArray("text"));
}

void X11PasteboardTest::aClearedClipboardIsAChange()
{
    QVERIFY(Xclip::copy("text"));
    QTRY_VERIFY(m_pasteboard->snapshot().string.has_value());
    const quint64 before = m_pasteboard->changeCount();
    X11Pasteboard other(m_codec);
    other.write({});
    QTRY_COMPARE(m_pasteboard->changeCount(), before + 1);
    QVERIFY(m_pasteboard->snapshot().types.isEmpty());
    QVERIFY(!m_pasteboard->snapshot().isOwnWrite);
}

void X11PasteboardTest::anOwnerThatEndsIsNoChange()
{
    auto owner = std::make_unique<ForeignOwner>(u"honest"_s, QStringList{u"UTF8_STRING:=kept"_s});
    QTRY_VERIFY(m_pasteboard->snapshot().string.has_value());
    const quint64 before = m_pasteboard->changeCount();
    owner.reset();
    verifyNextCopyIsRead();
    QCOMPARE(m_pasteboard->changeCount(), before + 1);
}

void X11PasteboardTest::ownWritesAreMarkedAndNotReadBack()
{
    ForeignOwner owner(u"mute"_s, {u"UTF8_STRING:=never"_s});
    QTRY_VERIFY(owner.askedTargets().contains(u"UTF8_STRING"_s));
    const quint64 before = m_pasteboard->changeCount();
    PasteboardContents contents = plainText("mine");
    contents.add(PasteboardType::kHtml, "<b>mine</b>"_ba);
    m_pasteboard->write(contents);

    QTRY_COMPARE(m_pasteboard->changeCount(), before + 1);
    QTRY_COMPARE(m_changeCalls, 1);
    const PasteboardSnapshot snapshot = m_pasteboard->snapshot();
    QVERIFY(snapshot.isOwnWrite);
    QCOMPARE(snapshot.types,
             (QStringList{PasteboardType::kString.toString(), PasteboardType::kHtml.toString()}));
    QCOMPARE(snapshot.string.value().utf8(), QByteArray("mine"));
    // Had it been read back, the copy of another program would be the third change.
    verifyNextCopyIsRead();
    QCOMPARE(m_pasteboard->changeCount(), before + 2);
}

void X11PasteboardTest::writtenTextIsServed()
{
    m_pasteboard->write(plainText("gr\xC3\xBC\xC3\x9F"));
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QCOMPARE(Xclip::offeredTargets(),
             (QStringList{u"TARGETS"_s, u"TIMESTAMP"_s, u"MULTIPLE"_s, u"UTF8_STRING"_s,
                          u"text/plain;charset=utf-8"_s, u"text/plain"_s, u"TEXT"_s, u"STRING"_s}));
    QCOMPARE(Xclip::paste(u"UTF8_STRING"_s), QByteArray("gr\xC3\xBC\xC3\x9F"));
    QCOMPARE(Xclip::paste(u"text/plain"_s), QByteArray("gr\xC3\xBC\xC3\x9F"));
    QCOMPARE(Xclip::paste(u"TEXT"_s), QByteArray("gr\xC3\xBC\xC3\x9F"));
    QCOMPARE(Xclip::paste(u"STRING"_s), QByteArray("gr\xFC\xDF"));
    QVERIFY(!Xclip::paste(u"TIMESTAMP"_s).isEmpty());
    QVERIFY(Xclip::paste(u"text/html"_s).isEmpty());
}

void X11PasteboardTest::textBeyondLatinIsNotOfferedAsString()
{
    m_pasteboard->write(plainText("\xE4\xBD\xA0\xE5\xA5\xBD"));
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QVERIFY(!Xclip::offeredTargets().contains(u"STRING"_s));
    QCOMPARE(Xclip::paste(u"UTF8_STRING"_s), QByteArray("\xE4\xBD\xA0\xE5\xA5\xBD"));
}

void X11PasteboardTest::richFormsAreServedByteForByte()
{
    const QByteArray html("<p>\xFF\x00\xFE</p>", 10);
    PasteboardContents contents;
    contents.add(PasteboardType::kHtml, html);
    contents.add(PasteboardType::kRtf, "{\\rtf1}"_ba);
    m_pasteboard->write(contents);
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QCOMPARE(Xclip::offeredTargets(),
             (QStringList{u"TARGETS"_s, u"TIMESTAMP"_s, u"MULTIPLE"_s, u"text/html"_s,
                          u"text/rtf"_s, u"application/rtf"_s}));
    QCOMPARE(Xclip::paste(u"text/html"_s), html);
    QCOMPARE(Xclip::paste(u"text/rtf"_s), QByteArray("{\\rtf1}"));
    QCOMPARE(Xclip::paste(u"application/rtf"_s), QByteArray("{\\rtf1}"));
}

void X11PasteboardTest::filesAreServedAsFileManagersWantThem()
{
    PasteboardContents contents;
    contents.add(PasteboardType::kFileUrl, "file:///tmp/one"_ba);
    contents.add(PasteboardType::kFileUrl, "file:///tmp/tw%20o"_ba);
    m_pasteboard->write(contents);
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QCOMPARE(Xclip::paste(u"text/uri-list"_s),
             QByteArray("file:///tmp/one\r\nfile:///tmp/tw%20o\r\n"));
    for (const QString &target :
         {u"x-special/gnome-copied-files"_s, u"x-special/mate-copied-files"_s})
        QCOMPARE(Xclip::paste(target), QByteArray("copy\nfile:///tmp/one\nfile:///tmp/tw%20o"));
}

void X11PasteboardTest::picturesAreServedAsPngToo()
{
    const QByteArray tiff = m_codec.tiffFromPicture(pngOf(smallPicture()))->tiff;
    PasteboardContents contents;
    contents.add(PasteboardType::kTiff, tiff);
    m_pasteboard->write(contents);
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QCOMPARE(Xclip::offeredTargets(), (QStringList{u"TARGETS"_s, u"TIMESTAMP"_s, u"MULTIPLE"_s,
                                                   u"image/tiff"_s, u"image/png"_s}));
    QCOMPARE(Xclip::paste(u"image/tiff"_s), tiff);
    for (int time = 0; time < 2; ++time) {
        const QImage pasted = QImage::fromData(Xclip::paste(u"image/png"_s), "PNG");
        QCOMPARE(pasted.convertToFormat(QImage::Format_RGB32), smallPicture());
    }
}

void X11PasteboardTest::aPictureThatCannotBecomeAPngIsServedAsItIs()
{
    PasteboardContents contents;
    contents.add(PasteboardType::kTiff, "no TIFF at all"_ba);
    m_pasteboard->write(contents);
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QTRY_VERIFY(!Xclip::offeredTargets().contains(u"image/png"_s));
    QVERIFY(Xclip::paste(u"image/png"_s).isEmpty());
    QCOMPARE(Xclip::paste(u"image/tiff"_s), QByteArray("no TIFF at all"));
}

void X11PasteboardTest::aPictureOfAnyFormatIsServedAsTiff()
{
    const QByteArray png = pngOf(smallPicture());
    PasteboardContents contents;
    contents.addAsTiff(png);
    m_pasteboard->write(contents);
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QCOMPARE(Xclip::offeredTargets(), (QStringList{u"TARGETS"_s, u"TIMESTAMP"_s, u"MULTIPLE"_s,
                                                   u"image/tiff"_s, u"image/png"_s}));
    const QByteArray tiff = m_codec.tiffFromPicture(png)->tiff;
    for (int time = 0; time < 2; ++time)
        QCOMPARE(Xclip::paste(u"image/tiff"_s), tiff);
    const QImage pasted = QImage::fromData(Xclip::paste(u"image/png"_s), "PNG");
    QCOMPARE(pasted.convertToFormat(QImage::Format_RGB32), smallPicture());
}

void X11PasteboardTest::theTiffOfAPictureIsMadeWhenAProgramAsks()
{
    FakeImageCodec codec;
    X11Pasteboard pasteboard(codec);
    const auto source = std::make_shared<CountingSource>("pixels");
    PasteboardContents contents;
    contents.addAsTiff(LazyBytes::elsewhere(6, source));
    pasteboard.write(contents);
    QTRY_VERIFY(Xclip::offeredTargets().contains(u"image/png"_s));
    // The one reading up to here is for the PNG.
    QCOMPARE(Xclip::paste(u"image/png"_s), QByteArray("png of pixels"));
    QCOMPARE(source->readCount.load(), 1);
    QCOMPARE(ask({u"multiple"_s, u"image/tiff"_s, u"image/png"_s}),
             QByteArray("asked\nimage/tiff tiff of pixels\nimage/png png of pixels\n"));
    QCOMPARE(Xclip::paste(u"image/tiff"_s), QByteArray("tiff of pixels"));
    QCOMPARE(source->readCount.load(), 2);
}

void X11PasteboardTest::whatTurnsOutToBeNoPictureIsNotServedAsOne()
{
    FakeImageCodec codec;
    X11Pasteboard pasteboard(codec);
    PasteboardContents contents;
    contents.addAsTiff("no picture"_ba);
    pasteboard.write(contents);
    QTRY_COMPARE(pasteboard.changeCount(), quint64(1));
    QVERIFY(Xclip::paste(u"image/tiff"_s).isEmpty());
    QVERIFY(Xclip::paste(u"image/png"_s).isEmpty());
    QCOMPARE(Xclip::offeredTargets(),
             (QStringList{u"TARGETS"_s, u"TIMESTAMP"_s, u"MULTIPLE"_s}));
}

void X11PasteboardTest::thePngOfWhatWeWriteIsMadeUnasked()
{
    SlowPngCodec codec;
    X11Pasteboard pasteboard(codec);
    const auto source = std::make_shared<CountingSource>("pixels");
    pasteboard.write(picture(LazyBytes::elsewhere(6, source)));
    QVERIFY(codec.isAsked.tryAcquire(1, 5000));
    codec.mayGoOn.release();
    for (int time = 0; time < 2; ++time)
        QCOMPARE(Xclip::paste(u"image/png"_s), QByteArray("png of pixels"));
    QVERIFY(!codec.isAsked.tryAcquire());
    QCOMPARE(source->readCount.load(), 1);
}

void X11PasteboardTest::aNewerWriteAbandonsAPngNotBegun()
{
    SlowPngCodec codec;
    X11Pasteboard pasteboard(codec);
    pasteboard.write(picture("pixels one"_ba));
    QVERIFY(codec.isAsked.tryAcquire(1, 5000));
    const auto overtaken = std::make_shared<CountingSource>("pixels two");
    pasteboard.write(picture(LazyBytes::elsewhere(10, overtaken)));
    pasteboard.write(picture("pixels three"_ba));
    QTRY_COMPARE(pasteboard.changeCount(), quint64(3));
    codec.mayGoOn.release(2);
    QCOMPARE(Xclip::paste(u"image/png"_s), QByteArray("png of pixels three"));
    QCOMPARE(overtaken->readCount.load(), 0);
}

void X11PasteboardTest::whoWaitsForAPngIsRefusedWhenAnotherProgramCopies()
{
    SlowPngCodec codec;
    X11Pasteboard pasteboard(codec);
    pasteboard.write(picture("pixels"_ba));
    QVERIFY(codec.isAsked.tryAcquire(1, 5000));
    QProcess requestor;
    startToAsk(requestor, {u"multiple"_s, u"image/png"_s});
    QTRY_VERIFY(requestor.bytesAvailable() > 0);
    QCOMPARE(Xclip::paste(u"image/jpeg"_s), QByteArray("pixels"));
    QVERIFY(Xclip::copy("other"));
    QVERIFY(requestor.waitForFinished());
    QCOMPARE(requestor.readAllStandardOutput(), QByteArray("asked\nrefused\n"));
    codec.mayGoOn.release();
}

void X11PasteboardTest::whatLiesElsewhereIsReadOnlyWhenAProgramAsks()
{
    const QByteArray png = pngOf(smallPicture());
    const auto source = std::make_shared<CountingSource>(png);
    PasteboardContents contents;
    contents.add(PasteboardType::kPng, LazyBytes::elsewhere(png.size(), source));
    m_pasteboard->write(contents);
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QVERIFY(Xclip::offeredTargets().contains(u"image/png"_s));
    QCOMPARE(source->readCount.load(), 0);

    for (int time = 1; time <= 2; ++time) {
        QCOMPARE(Xclip::paste(u"image/png"_s), png);
        QCOMPARE(source->readCount.load(), time);
    }
}

void X11PasteboardTest::whatCannotBeReadIsRefused()
{
    PasteboardContents contents;
    contents.add(PasteboardType::kTiff,
                 LazyBytes::elsewhere(10, std::make_shared<CountingSource>(std::nullopt)));
    m_pasteboard->write(contents);
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QVERIFY(Xclip::paste(u"image/tiff"_s).isEmpty());
    QVERIFY(Xclip::paste(u"image/png"_s).isEmpty());
    m_pasteboard->write(plainText("later"));
    QTRY_COMPARE(Xclip::paste(u"UTF8_STRING"_s), QByteArray("later"));
}

void X11PasteboardTest::aLargeTextIsServed()
{
    const QByteArray text = largeText();
    m_pasteboard->write(plainText(text));
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QVERIFY(Xclip::paste(u"UTF8_STRING"_s) == text);
}

void X11PasteboardTest::severalProgramsAreServedAtOnce()
{
    const QByteArray text = largeText().first(8'000'000);
    m_pasteboard->write(plainText(text));
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    std::array<QProcess, 4> programs;
    for (QProcess &program : programs)
        program.start(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"clipboard"_s});
    for (QProcess &program : programs) {
        QVERIFY(program.waitForFinished());
        QVERIFY(program.readAllStandardOutput() == text);
    }
}

void X11PasteboardTest::aRequestorThatEndsHalfWayHindersNobody()
{
    const QByteArray text = largeText();
    m_pasteboard->write(plainText(text));
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QCOMPARE(ask({u"half"_s}), QByteArray("half\n"));
    QVERIFY(Xclip::paste(u"UTF8_STRING"_s) == text);
    verifyNextCopyIsRead();
}

void X11PasteboardTest::aFloodOfRequestsHindersNobody()
{
    m_pasteboard->write(plainText("wanted"));
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QCOMPARE(ask({u"flood"_s}), QByteArray("flooded\n"));
    QCOMPARE(Xclip::paste(u"UTF8_STRING"_s), QByteArray("wanted"));
    verifyNextCopyIsRead();
}

void X11PasteboardTest::whoAsksInOurNameHindersNobody()
{
    m_pasteboard->write(plainText(largeText()));
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QCOMPARE(ask({u"foreign"_s}), QByteArray("asked\n"));
    m_pasteboard->write(plainText("next"));
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(2));
    QCOMPARE(Xclip::paste(u"UTF8_STRING"_s), QByteArray("next"));
}

void X11PasteboardTest::severalTargetsAreServedInOneRequest()
{
    m_pasteboard->write(plainText("several"));
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QCOMPARE(ask({u"multiple"_s, u"UTF8_STRING"_s, u"text/html"_s, u"STRING"_s, u"MULTIPLE"_s}),
             QByteArray("asked\nUTF8_STRING several\ntext/html refused\nSTRING several\n"
                        "MULTIPLE refused\n"));
}

void X11PasteboardTest::severalTargetsWaitForAPngUnderWay()
{
    SlowPngCodec codec;
    X11Pasteboard pasteboard(codec);
    pasteboard.write(picture("pixels"_ba));
    QProcess requestor;
    startToAsk(requestor, {u"multiple"_s, u"image/jpeg"_s, u"image/png"_s});
    QTRY_VERIFY(requestor.bytesAvailable() > 0);
    QCOMPARE(requestor.readAllStandardOutput(), QByteArray("asked\n"));
    // Nobody else waits, and the request for both was there before this one.
    QCOMPARE(Xclip::paste(u"image/jpeg"_s), QByteArray("pixels"));
    codec.mayGoOn.release();
    QVERIFY(requestor.waitForFinished());
    QCOMPARE(requestor.readAllStandardOutput(),
             QByteArray("image/jpeg pixels\nimage/png png of pixels\n"));
}

void X11PasteboardTest::programsOfAnOlderTimeAreServed()
{
    m_pasteboard->write(plainText("old"));
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QCOMPARE(ask({u"old"_s}), QByteArray("old\n"));
}

void X11PasteboardTest::whoAsksForAnEarlierTimeIsRefused()
{
    m_pasteboard->write(plainText("later"));
    QTRY_COMPARE(m_pasteboard->changeCount(), quint64(1));
    QCOMPARE(ask({u"early"_s}), QByteArray("refused\n"));
}

void X11PasteboardTest::anEmptyWriteClears()
{
    QVERIFY(Xclip::copy("something"));
    QTRY_VERIFY(m_pasteboard->snapshot().string.has_value());
    const quint64 before = m_pasteboard->changeCount();
    m_pasteboard->write({});
    QTRY_COMPARE(m_pasteboard->changeCount(), before + 1);
    QVERIFY(m_pasteboard->snapshot().isOwnWrite);
    QVERIFY(m_pasteboard->snapshot().types.isEmpty());
    QVERIFY(Xclip::offeredTargets().isEmpty());
    verifyNextCopyIsRead();
}

void X11PasteboardTest::primaryIsServedOnDemand()
{
    m_pasteboard->write(plainText("for both"));
    QVERIFY(m_pasteboard->alsoOwnPrimary());
    QCOMPARE(Xclip::paste(u"UTF8_STRING"_s, u"primary"_s), QByteArray("for both"));
    // What is there goes on to be served when the clipboard has passed to another program.
    verifyNextCopyIsRead();
    QCOMPARE(Xclip::paste(u"UTF8_STRING"_s, u"primary"_s), QByteArray("for both"));
}

void X11PasteboardTest::primaryIsRefusedWhenTheClipboardIsNotOurs()
{
    verifyNextCopyIsRead();
    QVERIFY(!m_pasteboard->alsoOwnPrimary());
}

int main(int argc, char *argv[])
{
    // Before there is an application: the server's address is part of the environment.
    const PrivateDisplay display;
    if (!display.isRunning())
        return 1;
    QCoreApplication application(argc, argv);
    X11PasteboardTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "X11PasteboardTest.moc"
