#include "tests/fakes/FakeDesktopIcons.h"
#include "tests/fakes/FakeImageCodec.h"
#include "tests/window/SampleHistory.h"

#include "window/RowPictures.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <semaphore>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class RowPicturesTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void aThumbnailComesLaterAndIsThenAtHand();
    void theNameFollowsFromThatOfThePicture();
    void aPictureWithoutAFileIsMadeFromItsBytes();
    void theFileTakesThePlaceOfTheBytesWithoutAGap();
    void anEntryWithoutAPictureAsksForNothing();
    void whatIsNoThumbnailIsAskedForOnce_data();
    void whatIsNoThumbnailIsAskedForOnce();
    void namesThatLeadElsewhereAreNotRead();
    void eachIsMadeOnceHoweverOftenItIsDrawn();
    void everyResolutionHasItsOwn();
    void theRowsDrawnLastComeFirst();
    void rowsThatHaveScrolledAwayAreNotWaitedFor();
    void oldOnesMakeRoomForNewOnes();
    void theEndWaitsForADecodingAndForNoMore();
    void aFileHasTheIconOfItsKind();
    void aSourceHasTheIconOfItsProgramForGood();
    void aProgramWithoutAnIconIsAskedForAgainWhenToldSo();

private:
    QString path(const QString &name) const { return m_directory->filePath(name); }
    void write(const QString &name, const QByteArray &bytes = "pixels");
    static ClipboardItem imageItem(const QString &thumbnail);
    /// Asks as the list does when it draws the row.
    QImage drawn(const ClipboardItem &item, qreal scale = 1) const;
    void waitFor(const ClipboardItem &item);

    std::unique_ptr<QTemporaryDir> m_directory;
    FakeImageCodec m_codec;
    std::shared_ptr<FakeDesktopIcons> m_icons;
    std::atomic<int> m_decodedCount = 0;
    std::unique_ptr<RowPictures> m_pictures;
    QStringList m_arrived;
};

void RowPicturesTest::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    m_icons = std::make_shared<FakeDesktopIcons>();
    m_decodedCount = 0;
    m_codec.onImageWanted = [this] { ++m_decodedCount; };
    m_pictures = std::make_unique<RowPictures>(m_directory->path(), m_codec, m_icons);
    m_arrived.clear();
    connect(m_pictures.get(), &RowPictures::arrived, this,
            [this](const RowPictureName &name) { m_arrived.append(name.text); });
}

void RowPicturesTest::cleanup()
{
    m_pictures.reset();
}

void RowPicturesTest::write(const QString &name, const QByteArray &bytes)
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

ClipboardItem RowPicturesTest::imageItem(const QString &thumbnail)
{
    ClipboardItem item = SampleHistory::item(ClipboardContentType::Image);
    item.imageThumbnailFileName = thumbnail;
    return item;
}

QImage RowPicturesTest::drawn(const ClipboardItem &item, qreal scale) const
{
    return m_pictures->content(item, scale);
}

void RowPicturesTest::waitFor(const ClipboardItem &item)
{
    drawn(item);
    QTRY_VERIFY(!drawn(item).isNull());
}

void RowPicturesTest::aThumbnailComesLaterAndIsThenAtHand()
{
    write(u"a_thumb.jpg"_s);
    const ClipboardItem item = imageItem(u"a_thumb.jpg"_s);
    QVERIFY(drawn(item).isNull());
    QTRY_COMPARE(m_arrived, QStringList{u"a_thumb.jpg"_s});
    QCOMPARE(drawn(item).size(), QSize(32, 16)); // Of a picture of two pixels by one.
    QCOMPARE(contentPicture(item).text, u"a_thumb.jpg"_s);
}

void RowPicturesTest::theNameFollowsFromThatOfThePicture()
{
    write(u"b.2_thumb.jpg"_s);
    ClipboardItem item = SampleHistory::item(ClipboardContentType::Image);
    item.imageFileName = u"b.2.png"_s;
    QVERIFY(drawn(item).isNull());
    QTRY_COMPARE(m_arrived, QStringList{u"b.2_thumb.jpg"_s});
    QVERIFY(!drawn(item).isNull());
}

void RowPicturesTest::aPictureWithoutAFileIsMadeFromItsBytes()
{
    ClipboardItem item = SampleHistory::item(ClipboardContentType::Image);
    item.imageRepresentation = "pixels, huge";
    QVERIFY(drawn(item).isNull());
    QTRY_COMPARE(m_arrived, QStringList{contentPicture(item).text});
    QVERIFY(!drawn(item).isNull());
}

void RowPicturesTest::theFileTakesThePlaceOfTheBytesWithoutAGap()
{
    ClipboardItem item = SampleHistory::item(ClipboardContentType::Image);
    item.imageRepresentation = "pixels";
    waitFor(item);
    write(u"c_thumb.jpg"_s);
    item.imageRepresentation.reset();
    item.imageFileName = u"c.jpg"_s;
    item.imageThumbnailFileName = u"c_thumb.jpg"_s;
    QVERIFY(!drawn(item).isNull());
    QTRY_COMPARE(m_arrived.last(), u"c_thumb.jpg"_s);
    QVERIFY(!drawn(item).isNull());
}

void RowPicturesTest::anEntryWithoutAPictureAsksForNothing()
{
    const ClipboardItem item = SampleHistory::item(ClipboardContentType::Image);
    QCOMPARE(contentPicture(item).text, QString());
    QVERIFY(drawn(item).isNull());
    write(u"later.jpg"_s);
    waitFor(imageItem(u"later.jpg"_s));
    QCOMPARE(m_decodedCount, 1);
}

void RowPicturesTest::whatIsNoThumbnailIsAskedForOnce_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("decodedCount");
    QTest::newRow("no file") << u"missing.jpg"_s << 0;
    QTest::newRow("damaged") << u"damaged.jpg"_s << 1;
    QTest::newRow("empty") << u"empty.jpg"_s << 1;
    QTest::newRow("a pipe") << u"pipe.jpg"_s << 0;
    QTest::newRow("a directory") << u"directory.jpg"_s << 0;
    QTest::newRow("a link to a device without an end") << u"zero.jpg"_s << 0;
    QTest::newRow("a link to a file without a size") << u"endless.jpg"_s << 0;
    QTest::newRow("a huge picture in a small file") << u"huge.jpg"_s << 1;
    QTest::newRow("much larger than thumbnails are") << u"large.jpg"_s << 0;
}

void RowPicturesTest::whatIsNoThumbnailIsAskedForOnce()
{
    QFETCH(const QString, name);
    QFETCH(const int, decodedCount);
    write(u"damaged.jpg"_s, "not pixels");
    write(u"empty.jpg"_s, "");
    write(u"huge.jpg"_s, "pixels, huge");
    QVERIFY(QFile::link(u"/proc/self/pagemap"_s, path(u"endless.jpg"_s)));
    write(u"large.jpg"_s, "pixels" + QByteArray(1 << 20, 'x'));
    QCOMPARE(::mkfifo(QFile::encodeName(path(u"pipe.jpg"_s)).constData(), 0600), 0);
    QVERIFY(QDir(m_directory->path()).mkdir(u"directory.jpg"_s));
    QVERIFY(QFile::link(u"/dev/zero"_s, path(u"zero.jpg"_s)));

    const ClipboardItem item = imageItem(name);
    QVERIFY(drawn(item).isNull());
    // One after the other: this one is done when the next has come.
    write(u"next.jpg"_s);
    waitFor(imageItem(u"next.jpg"_s));
    QVERIFY(drawn(item).isNull());
    write(u"last.jpg"_s);
    waitFor(imageItem(u"last.jpg"_s));
    QCOMPARE(m_decodedCount, decodedCount + 2);
    QCOMPARE(m_arrived, QStringList({u"next.jpg"_s, u"last.jpg"_s}));
}

void RowPicturesTest::namesThatLeadElsewhereAreNotRead()
{
    QVERIFY(QDir(m_directory->path()).mkdir(u"images"_s));
    m_pictures = std::make_unique<RowPictures>(path(u"images"_s), m_codec, m_icons);
    write(u"outside.jpg"_s);
    write(u"images/inside.jpg"_s);
    const ClipboardItem item = imageItem(u"../outside.jpg"_s);
    drawn(item);
    waitFor(imageItem(u"inside.jpg"_s));
    QVERIFY(drawn(item).isNull());
    QCOMPARE(m_decodedCount, 1);
}

void RowPicturesTest::eachIsMadeOnceHoweverOftenItIsDrawn()
{
    write(u"d.jpg"_s);
    const ClipboardItem item = imageItem(u"d.jpg"_s);
    for (int i = 0; i < 10; ++i)
        drawn(item);
    QTRY_COMPARE(m_arrived.size(), 1);
    for (int i = 0; i < 10; ++i)
        QVERIFY(!drawn(item).isNull());
    QCOMPARE(m_decodedCount, 1);
    QCOMPARE(m_arrived.size(), 1);
}

void RowPicturesTest::everyResolutionHasItsOwn()
{
    write(u"e.jpg"_s);
    const ClipboardItem item = imageItem(u"e.jpg"_s);
    for (const qreal scale : {1.0, 1.25, 2.0}) {
        QVERIFY(drawn(item, scale).isNull());
        QTRY_VERIFY(!drawn(item, scale).isNull());
        QCOMPARE(drawn(item, scale).devicePixelRatio(), scale);
        QCOMPARE(drawn(item, scale).width(), qRound(32 * scale));
    }
    QCOMPARE(drawn(item).width(), 32);
}

void RowPicturesTest::theRowsDrawnLastComeFirst()
{
    std::binary_semaphore begun{0};
    std::binary_semaphore released{0};
    m_codec.onImageWanted = [&] {
        if (++m_decodedCount == 1) {
            begun.release();
            released.acquire();
        }
    };
    for (const QString &name : {u"f0"_s, u"f1"_s, u"f2"_s, u"f3"_s})
        write(name);
    drawn(imageItem(u"f0"_s));
    begun.acquire();
    for (const QString &name : {u"f1"_s, u"f2"_s, u"f3"_s})
        drawn(imageItem(name));
    released.release();
    QTRY_COMPARE(m_arrived, QStringList({u"f0"_s, u"f3"_s, u"f2"_s, u"f1"_s}));
}

void RowPicturesTest::rowsThatHaveScrolledAwayAreNotWaitedFor()
{
    std::binary_semaphore begun{0};
    std::binary_semaphore released{0};
    m_codec.onImageWanted = [&] {
        if (++m_decodedCount == 1) {
            begun.release();
            released.acquire();
        }
    };
    write(u"begun"_s);
    drawn(imageItem(u"begun"_s));
    begun.acquire();
    constexpr int kRows = 1'000;
    for (int i = 0; i < kRows; ++i) {
        write(QString::number(i));
        drawn(imageItem(QString::number(i)));
    }
    released.release();
    const QString oldestWanted = QString::number(kRows - 100);
    QTRY_VERIFY(m_arrived.contains(oldestWanted));
    QVERIFY(m_arrived.size() < 150);
    // A row that comes back into sight asks anew.
    QVERIFY(drawn(imageItem(u"0"_s)).isNull());
    QTRY_VERIFY(m_arrived.contains(u"0"_s));
}

void RowPicturesTest::oldOnesMakeRoomForNewOnes()
{
    write(u"first"_s);
    const ClipboardItem first = imageItem(u"first"_s);
    waitFor(first);
    constexpr int kScale = 8; // A thumbnail of 256 by 128 pixels is 128 KiB.
    constexpr int kRows = 40;
    const auto row = [this](int i) { return drawn(imageItem(QString::number(i)), kScale); };
    for (int i = 0; i < kRows; ++i) {
        write(QString::number(i));
        row(i);
    }
    QTRY_COMPARE(m_arrived.size(), 1 + kRows);
    int keptCount = 0;
    for (int i = 0; i < kRows; ++i)
        keptCount += row(i).isNull() ? 0 : 1;
    QCOMPARE(keptCount, 16); // Two megabytes of them.
    QVERIFY(drawn(first).isNull());
}

void RowPicturesTest::theEndWaitsForADecodingAndForNoMore()
{
    std::binary_semaphore begun{0};
    m_codec.onImageWanted = [&] {
        if (++m_decodedCount == 1)
            begun.release();
    };
    for (int i = 0; i < 50; ++i)
        write(QString::number(i));
    for (int i = 0; i < 50; ++i)
        drawn(imageItem(QString::number(i)));
    begun.acquire();
    m_pictures.reset();
    const int count = m_decodedCount;
    QCoreApplication::processEvents(); // What was on its way finds nobody.
    QCOMPARE(m_decodedCount, count);
    QCOMPARE(m_arrived, QStringList());
}

void RowPicturesTest::aFileHasTheIconOfItsKind()
{
    m_icons->files[u".pdf"_s] = "pixels";
    ClipboardItem item = SampleHistory::item(ClipboardContentType::File);
    QVERIFY(drawn(item).isNull());
    item.filePath = u"/nowhere/Report.pdf"_s;
    QVERIFY(drawn(item).isNull());
    QTRY_COMPARE(m_arrived, QStringList{u"/nowhere/Report.pdf"_s});
    QCOMPARE(drawn(item).size(), QSize(32, 16));
    // What is called alike may be another file, or a folder.
    item.filePath = u"/elsewhere/Report.pdf"_s;
    QVERIFY(drawn(item).isNull());
    QTRY_COMPARE(m_arrived.last(), *item.filePath);
    item.filePath = u"/nowhere/Report.xyz"_s;
    QVERIFY(drawn(item).isNull());
}

void RowPicturesTest::aSourceHasTheIconOfItsProgramForGood()
{
    m_icons->applications[u"org.example.Files"_s] = "pixels";
    ClipboardItem item = SampleHistory::textItem(u"text"_s);
    QVERIFY(m_pictures->source(item, 1).isNull());
    item.sourceAppBundleID = u"org.example.Files"_s;
    QVERIFY(m_pictures->source(item, 1).isNull());
    QTRY_COMPARE(m_arrived, QStringList{u"org.example.Files"_s});
    for (int i = 0; i < 40; ++i) {
        write(QString::number(i));
        drawn(imageItem(QString::number(i)), 8);
    }
    QTRY_COMPARE(m_arrived.size(), 41);
    QCOMPARE(m_pictures->source(item, 1).size(), QSize(12, 6));
}

void RowPicturesTest::aProgramWithoutAnIconIsAskedForAgainWhenToldSo()
{
    ClipboardItem item = SampleHistory::textItem(u"text"_s);
    item.sourceAppBundleID = u"org.example.unknown"_s;
    QVERIFY(m_pictures->source(item, 1).isNull());
    write(u"next"_s);
    waitFor(imageItem(u"next"_s));
    m_icons->applications[u"org.example.unknown"_s] = "pixels";
    QVERIFY(m_pictures->source(item, 1).isNull());
    write(u"last"_s);
    waitFor(imageItem(u"last"_s));
    QVERIFY(m_pictures->source(item, 1).isNull());

    m_pictures->forgetMissingSources();
    QVERIFY(m_pictures->source(item, 1).isNull());
    QTRY_COMPARE(m_arrived.last(), u"org.example.unknown"_s);
    m_icons->applications.clear();
    m_pictures->forgetMissingSources();
    QVERIFY(!m_pictures->source(item, 1).isNull()); // What there is stays.
}

QTEST_MAIN(RowPicturesTest)
#include "RowPicturesTest.moc"
