#include "platform/linux/QtImageCodec.h"
#include "platform/x11/X11Pasteboard.h"
#include "tests/fakes/FakeImageCodec.h"
#include "tests/platform/ForeignOwner.h"
#include "tests/platform/PrivateDisplay.h"
#include "tests/platform/Xclip.h"

#include <QBuffer>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

QByteArray pictureFile(const char *format)
{
    QImage image(7, 5, QImage::Format_RGB32);
    image.fill(Qt::red);
    image.setPixelColor(3, 2, Qt::blue);
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return file;
}

/// leaving_client.py in one of its modes, for as long as the object lives.
class LeavingClient
{
public:
    explicit LeavingClient(const QStringList &arguments)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(u"/usr/bin/python3"_s,
                        QStringList{QFINDTESTDATA("../desktop/leaving_client.py")} + arguments);
    }
    ~LeavingClient()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    bool hasSaid(const QByteArray &line) { return output().split('\n').contains(line); }
    qsizetype lineCount() { return output().count('\n'); }
    void tell(const QByteArray &line) { m_process.write(line + '\n'); }
    QByteArray lastWords()
    {
        m_process.waitForFinished();
        return output().trimmed();
    }

private:
    QByteArray output()
    {
        m_output += m_process.readAllStandardOutput();
        return m_output;
    }

    QProcess m_process;
    QByteArray m_output;
};

QByteArray clientSays(const QString &mode)
{
    LeavingClient client({mode});
    return client.lastWords();
}

/// What a leaving program is told when it hands over its copy.
QByteArray askToSave()
{
    return clientSays(u"save"_s);
}

/// A pasteboard that is allowed to keep whatever it reads, unless told otherwise.
class PermittingPasteboard
{
public:
    explicit PermittingPasteboard(const ImageCodec &codec)
        : pasteboard(codec)
    {
        pasteboard.onChanged = [this] {
            const auto taken = pasteboard.takeSnapshotsSince(m_taken);
            for (const PasteboardSnapshot &snapshot : taken) {
                m_taken = snapshot.changeCount;
                if (isAllowed)
                    pasteboard.keepAlive(snapshot);
            }
        };
    }

    X11Pasteboard pasteboard;
    bool isAllowed = true;

private:
    quint64 m_taken = 0;
};

} // namespace

class X11KeepAliveTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void allFormsOutliveTheirOwner();
    void aPictureOutlivesItsOwnerByteForByte_data();
    void aPictureOutlivesItsOwnerByteForByte();
    void thePngOfAKeptPictureIsMadeOnlyWhenAProgramAsks();
    void filesOutliveTheirOwner();
    void veryManyFilesOutliveTheirOwnerAtOnce();
    void takingOverIsNoChange();
    void permissionMayComeAfterTheEnd();
    void nothingIsKeptWithoutPermission();
    void whatIsDiscardedIsNotKept();
    void aSecretIsNotKept();
    void whatWasClearedOnPurposeIsNotKept();
    void nothingOlderThanTheOwnerThatEndedIsKept();
    void whoCopiesAsOfAnEarlierKeyPressIsNotRefused();
    void theNextOwnerIsReadAfterATakeOver();
    void whatWasTakenOverCanBeReplacedByUs();

    void leavingProgramsAreAnswered();
    void leavingProgramsAreAnsweredWhenTheReadingIsOver();
    void whoHandsOverASecretIsRefused();
    void anotherManagerIsLeftAloneUntilItEnds();

    void oneOfTwoTakesOver();
    void anExchangeWithTheSameContentEnds();
    void anExchangeWithNewContentEnds();

private:
    X11Pasteboard &pasteboard() { return m_permitting->pasteboard; }
    void waitForChange(quint64 changeCount);

    QtImageCodec m_codec;
    std::unique_ptr<PermittingPasteboard> m_permitting;
};

void X11KeepAliveTest::init()
{
    m_permitting = std::make_unique<PermittingPasteboard>(m_codec);
}

void X11KeepAliveTest::cleanup()
{
    m_permitting.reset();
}

/// Returns when the main thread has seen it as well.
void X11KeepAliveTest::waitForChange(quint64 changeCount)
{
    QTRY_COMPARE(pasteboard().changeCount(), changeCount);
    QCoreApplication::processEvents();
}

void X11KeepAliveTest::allFormsOutliveTheirOwner()
{
    auto owner = std::make_unique<ForeignOwner>(
        u"honest"_s,
        QStringList{u"UTF8_STRING:=grüß"_s, u"text/html:=<b>b</b>"_s, u"text/rtf:={\\rtf1 r}"_s});
    waitForChange(1);
    owner.reset();

    QTRY_COMPARE(Xclip::paste(u"UTF8_STRING"_s), QByteArray("gr\xC3\xBC\xC3\x9F"));
    QCOMPARE(Xclip::paste(u"STRING"_s), QByteArray("gr\xFC\xDF"));
    QCOMPARE(Xclip::paste(u"text/html"_s), QByteArray("<b>b</b>"));
    QCOMPARE(Xclip::paste(u"application/rtf"_s), QByteArray("{\\rtf1 r}"));
}

void X11KeepAliveTest::aPictureOutlivesItsOwnerByteForByte_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("png") << QByteArray("png");
    QTest::newRow("jpeg") << QByteArray("jpeg");
    QTest::newRow("bmp") << QByteArray("bmp");
}

void X11KeepAliveTest::aPictureOutlivesItsOwnerByteForByte()
{
    QFETCH(QByteArray, format);
    const QByteArray file = pictureFile(format.constData());
    const QString target = u"image/"_s + QString::fromLatin1(format);
    const QTemporaryDir folder;
    QFile picture(folder.filePath(u"picture"_s));
    QVERIFY(picture.open(QIODevice::WriteOnly));
    picture.write(file);
    picture.close();
    auto owner = std::make_unique<ForeignOwner>(
        u"honest"_s, QStringList{target + u":=@"_s + picture.fileName()});
    waitForChange(1);
    owner.reset();

    QTRY_COMPARE(Xclip::paste(target), file);
    // Programs that know no other format get it as a PNG too.
    const QImage pasted = QImage::fromData(Xclip::paste(u"image/png"_s), "PNG");
    QCOMPARE(pasted.size(), QSize(7, 5));
}

void X11KeepAliveTest::thePngOfAKeptPictureIsMadeOnlyWhenAProgramAsks()
{
    class CountingCodec : public FakeImageCodec
    {
    public:
        std::optional<QByteArray> pngFromPicture(const QByteArray &file) const override
        {
            ++pngCount;
            return FakeImageCodec::pngFromPicture(file);
        }
        mutable std::atomic<int> pngCount = 0;
    };
    static const CountingCodec codec; // The pasteboard ends only in cleanup().
    m_permitting = std::make_unique<PermittingPasteboard>(codec);
    auto owner =
        std::make_unique<ForeignOwner>(u"honest"_s, QStringList{u"image/jpeg:=pixels"_s});
    waitForChange(1);
    owner.reset();

    QTRY_COMPARE(Xclip::paste(u"image/jpeg"_s), QByteArray("pixels"));
    QVERIFY(Xclip::offeredTargets().contains(u"image/png"_s));
    QCOMPARE(codec.pngCount.load(), 0);
    QCOMPARE(Xclip::paste(u"image/png"_s), QByteArray("png of pixels"));
    QCOMPARE(codec.pngCount.load(), 1);
}

void X11KeepAliveTest::filesOutliveTheirOwner()
{
    auto owner = std::make_unique<ForeignOwner>(
        u"honest"_s, QStringList{u"text/uri-list:=file:///tmp/tw%20o%FF"_s});
    waitForChange(1);
    owner.reset();
    QTRY_COMPARE(Xclip::paste(u"text/uri-list"_s), QByteArray("file:///tmp/tw%20o%FF\r\n"));
}

void X11KeepAliveTest::veryManyFilesOutliveTheirOwnerAtOnce()
{
    constexpr int kFiles = 20'000;
    QByteArray list;
    for (int number = 0; number < kFiles; ++number)
        list += "file:///" + QByteArray::number(number) + "\r\n";
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"list"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(list.left(200'000)); // More does not go into one request.
    file.close();
    list = list.first(list.lastIndexOf("\r\n", 199'998) + 2);
    auto owner = std::make_unique<ForeignOwner>(
        u"honest"_s, QStringList{u"text/uri-list:=@"_s + file.fileName()});
    waitForChange(1);
    owner.reset();
    QTRY_VERIFY(Xclip::paste(u"text/uri-list"_s).startsWith(list));
    QVERIFY(Xclip::copy("next"));
    waitForChange(2);
}

void X11KeepAliveTest::takingOverIsNoChange()
{
    auto owner = std::make_unique<ForeignOwner>(u"honest"_s, QStringList{u"UTF8_STRING:=kept"_s});
    waitForChange(1);
    owner.reset();
    QTRY_COMPARE(Xclip::paste(u"UTF8_STRING"_s), QByteArray("kept"));
    QVERIFY(Xclip::copy("next"));
    waitForChange(2);
    QCOMPARE(pasteboard().snapshot().string.value().utf8(), QByteArray("next"));
}

void X11KeepAliveTest::permissionMayComeAfterTheEnd()
{
    m_permitting->isAllowed = false;
    auto owner = std::make_unique<ForeignOwner>(u"honest"_s, QStringList{u"UTF8_STRING:=kept"_s});
    waitForChange(1);
    owner.reset();
    QVERIFY(Xclip::offeredTargets().isEmpty());
    pasteboard().keepAlive(pasteboard().snapshot());
    QTRY_COMPARE(Xclip::paste(u"UTF8_STRING"_s), QByteArray("kept"));
}

void X11KeepAliveTest::nothingIsKeptWithoutPermission()
{
    m_permitting->isAllowed = false;
    auto owner = std::make_unique<ForeignOwner>(u"honest"_s, QStringList{u"UTF8_STRING:=gone"_s});
    waitForChange(1);
    owner.reset();
    // Its end was seen when the answer that came after it is there.
    QCOMPARE(askToSave(), QByteArray("NULL 0"));
    QVERIFY(Xclip::offeredTargets().isEmpty());
}

void X11KeepAliveTest::whatIsDiscardedIsNotKept()
{
    m_permitting->isAllowed = false;
    auto owner = std::make_unique<ForeignOwner>(u"honest"_s, QStringList{u"UTF8_STRING:=gone"_s});
    waitForChange(1);
    const PasteboardSnapshot snapshot = pasteboard().snapshot();
    pasteboard().discard(snapshot);
    QVERIFY(!pasteboard().snapshot().string);
    pasteboard().keepAlive(snapshot);
    owner.reset();
    QCOMPARE(askToSave(), QByteArray("refused"));
    QVERIFY(Xclip::offeredTargets().isEmpty());
}

void X11KeepAliveTest::aSecretIsNotKept()
{
    auto owner = std::make_unique<ForeignOwner>(
        u"honest"_s,
        QStringList{u"UTF8_STRING:=password"_s, u"x-kde-passwordManagerHint:=secret"_s});
    waitForChange(1);
    owner.reset();
    QCOMPARE(askToSave(), QByteArray("refused"));
    QVERIFY(Xclip::offeredTargets().isEmpty());
}

void X11KeepAliveTest::whatWasClearedOnPurposeIsNotKept()
{
    auto owner = std::make_unique<ForeignOwner>(u"honest"_s, QStringList{u"UTF8_STRING:=gone"_s});
    waitForChange(1);
    {
        X11Pasteboard other(m_codec);
        other.write({});
        waitForChange(2);
    }
    owner.reset();
    QCOMPARE(askToSave(), QByteArray("refused"));
    QVERIFY(Xclip::offeredTargets().isEmpty());
}

void X11KeepAliveTest::nothingOlderThanTheOwnerThatEndedIsKept()
{
    QVERIFY(Xclip::copy("older"));
    waitForChange(1);
    auto owner = std::make_unique<ForeignOwner>(u"silent"_s, QStringList{u"UTF8_STRING:=never"_s});
    QTRY_VERIFY(owner->askedTargets().contains(u"TARGETS"_s));
    owner.reset();
    QCOMPARE(askToSave(), QByteArray("refused"));
    QVERIFY(Xclip::offeredTargets().isEmpty());
}

void X11KeepAliveTest::whoCopiesAsOfAnEarlierKeyPressIsNotRefused()
{
    auto owner = std::make_unique<ForeignOwner>(u"honest"_s, QStringList{u"UTF8_STRING:=kept"_s});
    waitForChange(1);
    LeavingClient late({u"late"_s});
    QTRY_VERIFY(late.hasSaid("ready"));
    owner.reset();
    QTRY_COMPARE(Xclip::paste(u"UTF8_STRING"_s), QByteArray("kept"));
    late.tell("now");
    QVERIFY(late.lastWords().endsWith("owned"));
}

void X11KeepAliveTest::theNextOwnerIsReadAfterATakeOver()
{
    for (int round = 1; round <= 3; ++round) {
        const QByteArray text = "text " + QByteArray::number(round);
        auto owner = std::make_unique<ForeignOwner>(
            u"honest"_s, QStringList{u"UTF8_STRING:="_s + QString::fromUtf8(text)});
        waitForChange(quint64(round));
        QCOMPARE(pasteboard().snapshot().string.value().utf8(), text);
        owner.reset();
        QTRY_COMPARE(Xclip::paste(u"UTF8_STRING"_s), text);
    }
}

void X11KeepAliveTest::whatWasTakenOverCanBeReplacedByUs()
{
    auto owner = std::make_unique<ForeignOwner>(u"honest"_s, QStringList{u"UTF8_STRING:=kept"_s});
    waitForChange(1);
    owner.reset();
    QTRY_COMPARE(Xclip::paste(u"UTF8_STRING"_s), QByteArray("kept"));
    PasteboardContents contents;
    contents.add(PasteboardType::kString, "ours"_ba);
    pasteboard().write(contents);
    waitForChange(2);
    QVERIFY(pasteboard().snapshot().isOwnWrite);
    QCOMPARE(Xclip::paste(u"UTF8_STRING"_s), QByteArray("ours"));
}

void X11KeepAliveTest::leavingProgramsAreAnswered()
{
    const ForeignOwner owner(u"honest"_s, {u"UTF8_STRING:=kept"_s});
    waitForChange(1);
    QCOMPARE(askToSave(), QByteArray("NULL 0"));
    // It lives on, and the clipboard stays its own.
    QVERIFY(!Xclip::offeredTargets().contains(u"TIMESTAMP"_s));
}

void X11KeepAliveTest::leavingProgramsAreAnsweredWhenTheReadingIsOver()
{
    ForeignOwner owner(u"half"_s, {u"UTF8_STRING:=never"_s});
    QTRY_VERIFY(owner.askedTargets().contains(u"UTF8_STRING"_s));
    QCOMPARE(pasteboard().changeCount(), quint64(0));
    QCOMPARE(askToSave(), QByteArray("refused"));
    QCOMPARE(pasteboard().changeCount(), quint64(1));
}

void X11KeepAliveTest::whoHandsOverASecretIsRefused()
{
    const ForeignOwner owner(
        u"honest"_s, {u"UTF8_STRING:=password"_s, u"x-kde-passwordManagerHint:=secret"_s});
    waitForChange(1);
    QCOMPARE(askToSave(), QByteArray("refused"));
}

void X11KeepAliveTest::anotherManagerIsLeftAloneUntilItEnds()
{
    m_permitting.reset();
    auto manager = std::make_unique<LeavingClient>(QStringList{u"manage"_s});
    QTRY_COMPARE(manager->lineCount(), 1);
    const QByteArray window = clientSays(u"whose"_s);
    QVERIFY(manager->hasSaid(window));
    m_permitting = std::make_unique<PermittingPasteboard>(m_codec);
    const ForeignOwner owner(u"honest"_s, {u"UTF8_STRING:=kept"_s});
    waitForChange(1);
    QCOMPARE(clientSays(u"whose"_s), window);
    manager.reset();
    QTRY_COMPARE(askToSave(), QByteArray("NULL 0"));
}

void X11KeepAliveTest::oneOfTwoTakesOver()
{
    PermittingPasteboard other(m_codec);
    auto owner = std::make_unique<ForeignOwner>(u"honest"_s, QStringList{u"UTF8_STRING:=kept"_s});
    waitForChange(1);
    QTRY_COMPARE(other.pasteboard.changeCount(), quint64(1));
    QCoreApplication::processEvents();
    owner.reset();
    QTRY_COMPARE(Xclip::paste(u"UTF8_STRING"_s), QByteArray("kept"));
    // To the one that came too late it is one more copy, and there it ends.
    QTRY_COMPARE(pasteboard().changeCount() + other.pasteboard.changeCount(), quint64(3));
    QVERIFY(Xclip::copy("next"));
    QTRY_COMPARE(pasteboard().changeCount() + other.pasteboard.changeCount(), quint64(5));
    QCOMPARE(pasteboard().snapshot().string.value().utf8(), QByteArray("next"));
    QCOMPARE(other.pasteboard.snapshot().string.value().utf8(), QByteArray("next"));
}

void X11KeepAliveTest::anExchangeWithTheSameContentEnds()
{
    LeavingClient client({u"answer"_s, u"again"_s});
    QTRY_VERIFY(client.hasSaid("watching"));
    QVERIFY(Xclip::copy("begin"));
    QTRY_VERIFY(client.hasSaid("round 5"));
    QTRY_COMPARE(askToSave(), QByteArray("refused"));
    QVERIFY(Xclip::offeredTargets().isEmpty());
    QVERIFY(!client.hasSaid("round 6"));
}

void X11KeepAliveTest::anExchangeWithNewContentEnds()
{
    LeavingClient client({u"count"_s, u"more"_s});
    QTRY_VERIFY(client.hasSaid("watching"));
    QVERIFY(Xclip::copy("begin"));
    QTRY_VERIFY_WITH_TIMEOUT(client.hasSaid("round 257"), 60000);
    QTRY_COMPARE(askToSave(), QByteArray("refused"));
    QVERIFY(Xclip::offeredTargets().isEmpty());
    QVERIFY(!client.hasSaid("round 258"));
}

int main(int argc, char *argv[])
{
    // Before there is an application: the server's address is part of the environment.
    const PrivateDisplay display;
    if (!display.isRunning())
        return 1;
    QCoreApplication application(argc, argv);
    X11KeepAliveTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "X11KeepAliveTest.moc"
