#include "platform/linux/InodeBookmarks.h"

#include "foundation/FilePath.h"
#include "tests/platform/TestVolume.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class InodeBookmarksTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_directory = std::make_unique<QTemporaryDir>(); }

    void untouchedFileResolvesToItsPathAndIsNotStale();
    void untouchedFileGivesTheSameTokenAgain();
    void fileRenamedInPlaceIsFound();
    void fileMovedToASiblingFolderIsFound();
    void fileMovedIntoAFolderBelowIsFound();
    void fileReplacedThroughATemporaryFileIsStaleAtItsPath();
    void fileChangedInPlaceIsNotStale();
    void deletedFileIsNotFound();
    void vanishedVolumeIsNotFound();
    void directoryIsFoundAfterARename();
    void pathThatIsNotUtf8KeepsItsBytes();
    void everyNameIsFoundAfterARename_data();
    void everyNameIsFoundAfterARename();
    void emptyFileIsFound();
    void symbolicLinkIsAFileOfItsOwn();
    void deadSymbolicLinkHasABookmark();
    void pipeIsNotWaitedFor();
    void unmountedVolumeIsNotFoundUntilItIsBack();
    void fileOnAVolumeThatDoesNotAnswerIsNotFound();
    void searchEndsAtAVolumeThatDoesNotAnswer();
    void malformedTokenIsRefused_data();
    void malformedTokenIsRefused();
    void missingFileGetsNoToken();

private:
    QString path(const QString &name) const { return m_directory->filePath(name); }

    QUrl write(const QString &name, const QByteArray &bytes = "content")
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write the test file");
        return QUrl::fromLocalFile(file.fileName());
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    InodeBookmarks m_bookmarks{BoundedCalls(1min)};
};

void InodeBookmarksTest::untouchedFileResolvesToItsPathAndIsNotStale()
{
    const QUrl url = write(u"a b ü%.txt"_s);
    const auto resolved = m_bookmarks.resolve(m_bookmarks.create(url));
    QCOMPARE(resolved.url.toLocalFile(), url.toLocalFile());
    QVERIFY(!resolved.isStale);
}

void InodeBookmarksTest::untouchedFileGivesTheSameTokenAgain()
{
    const QUrl url = write(u"a.txt"_s);
    QCOMPARE(m_bookmarks.create(url), m_bookmarks.create(url));
}

void InodeBookmarksTest::fileRenamedInPlaceIsFound()
{
    const QByteArray token = m_bookmarks.create(write(u"a.txt"_s));
    QVERIFY(QFile::rename(path(u"a.txt"_s), path(u"b.txt"_s)));
    const auto resolved = m_bookmarks.resolve(token);
    QCOMPARE(resolved.url.toLocalFile(), path(u"b.txt"_s));
    QVERIFY(resolved.isStale);
}

void InodeBookmarksTest::fileMovedToASiblingFolderIsFound()
{
    QVERIFY(QDir(m_directory->path()).mkpath(u"one"_s));
    QVERIFY(QDir(m_directory->path()).mkpath(u"two"_s));
    const QByteArray token = m_bookmarks.create(write(u"one/a.txt"_s));
    QVERIFY(QFile::rename(path(u"one/a.txt"_s), path(u"two/a.txt"_s)));
    QCOMPARE(m_bookmarks.resolve(token).url.toLocalFile(), path(u"two/a.txt"_s));
}

void InodeBookmarksTest::fileMovedIntoAFolderBelowIsFound()
{
    QVERIFY(QDir(m_directory->path()).mkpath(u"below"_s));
    const QByteArray token = m_bookmarks.create(write(u"a.txt"_s));
    QVERIFY(QFile::rename(path(u"a.txt"_s), path(u"below/c.txt"_s)));
    QCOMPARE(m_bookmarks.resolve(token).url.toLocalFile(), path(u"below/c.txt"_s));
}

void InodeBookmarksTest::fileReplacedThroughATemporaryFileIsStaleAtItsPath()
{
    const QByteArray token = m_bookmarks.create(write(u"a.txt"_s));
    write(u"a.txt.tmp"_s, "edited");
    const QByteArray from = QFile::encodeName(path(u"a.txt.tmp"_s));
    const QByteArray to = QFile::encodeName(path(u"a.txt"_s));
    QCOMPARE(std::rename(from.constData(), to.constData()), 0);
    const auto resolved = m_bookmarks.resolve(token);
    QCOMPARE(resolved.url.toLocalFile(), path(u"a.txt"_s));
    QVERIFY(resolved.isStale);
}

void InodeBookmarksTest::fileChangedInPlaceIsNotStale()
{
    const QByteArray token = m_bookmarks.create(write(u"a.txt"_s));
    write(u"a.txt"_s, "another content, and longer");
    QVERIFY(!m_bookmarks.resolve(token).isStale);
}

void InodeBookmarksTest::deletedFileIsNotFound()
{
    const QByteArray token = m_bookmarks.create(write(u"a.txt"_s));
    write(u"other.txt"_s);
    QVERIFY(QFile::remove(path(u"a.txt"_s)));
    QVERIFY_EXCEPTION_THROWN(m_bookmarks.resolve(token), BookmarkError);
}

void InodeBookmarksTest::vanishedVolumeIsNotFound()
{
    QVERIFY(QDir(m_directory->path()).mkpath(u"volume/folder"_s));
    const QByteArray token = m_bookmarks.create(write(u"volume/folder/a.txt"_s));
    QVERIFY(QDir(path(u"volume"_s)).removeRecursively());
    QVERIFY_EXCEPTION_THROWN(m_bookmarks.resolve(token), BookmarkError);
}

void InodeBookmarksTest::directoryIsFoundAfterARename()
{
    QVERIFY(QDir(m_directory->path()).mkpath(u"folder"_s));
    const QByteArray token = m_bookmarks.create(QUrl::fromLocalFile(path(u"folder"_s)));
    QVERIFY(QDir(m_directory->path()).rename(u"folder"_s, u"renamed"_s));
    QCOMPARE(m_bookmarks.resolve(token).url.toLocalFile(), path(u"renamed"_s));
}

void InodeBookmarksTest::pathThatIsNotUtf8KeepsItsBytes()
{
    const QByteArray bytes = QFile::encodeName(m_directory->path()) + "/caf\xe9.txt";
    FILE *file = std::fopen(bytes.constData(), "w");
    QVERIFY(file);
    std::fclose(file);
    const QUrl url = QUrl::fromEncoded("file://" + bytes.toPercentEncoding("/"));
    const auto resolved = m_bookmarks.resolve(m_bookmarks.create(url));
    QVERIFY(!resolved.isStale);
    QVERIFY(resolved.url.toEncoded().endsWith("caf%E9.txt"));
    QCOMPARE(::unlink(bytes.constData()), 0);
}

void InodeBookmarksTest::everyNameIsFoundAfterARename_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("not UTF-8") << "\xFF\xE9.txt"_ba;
    QTest::newRow("a line break") << "two\nlines.txt"_ba;
    QTest::newRow("a percent sign") << "100%41.txt"_ba;
    QTest::newRow("other letters") << "Übersicht 文字.txt"_ba;
    QTest::newRow("marks of URLs") << "a#b?c=d&e;f.txt"_ba;
}

void InodeBookmarksTest::everyNameIsFoundAfterARename()
{
    QFETCH(QByteArray, name);
    const QByteArray folder = QFile::encodeName(m_directory->path());
    const QByteArray path = folder + '/' + name;
    QCOMPARE(::mknod(path.constData(), S_IFREG | 0600, 0), 0);
    const QByteArray token = m_bookmarks.create(FilePath::toUrl(path));
    QCOMPARE(FilePath::bytesOf(m_bookmarks.resolve(token).url), path);

    const QByteArray renamed = folder + "/renamed " + name;
    QCOMPARE(std::rename(path.constData(), renamed.constData()), 0);
    const auto resolved = m_bookmarks.resolve(token);
    QCOMPARE(FilePath::bytesOf(resolved.url), renamed);
    QVERIFY(resolved.isStale);
    QCOMPARE(::unlink(renamed.constData()), 0);
}

void InodeBookmarksTest::emptyFileIsFound()
{
    const QByteArray token = m_bookmarks.create(write(u"a.txt"_s, ""));
    QVERIFY(QFile::rename(path(u"a.txt"_s), path(u"b.txt"_s)));
    QCOMPARE(m_bookmarks.resolve(token).url.toLocalFile(), path(u"b.txt"_s));
}

void InodeBookmarksTest::symbolicLinkIsAFileOfItsOwn()
{
    write(u"target"_s);
    QVERIFY(QFile::link(path(u"target"_s), path(u"link"_s)));
    const QByteArray token = m_bookmarks.create(QUrl::fromLocalFile(path(u"link"_s)));
    QVERIFY(QFile::remove(path(u"target"_s)));
    write(u"target"_s);
    QVERIFY(!m_bookmarks.resolve(token).isStale);

    QVERIFY(QFile::rename(path(u"link"_s), path(u"renamed"_s)));
    QCOMPARE(FilePath::of(m_bookmarks.resolve(token).url), path(u"renamed"_s));
}

void InodeBookmarksTest::deadSymbolicLinkHasABookmark()
{
    QVERIFY(QFile::link(path(u"none"_s), path(u"link"_s)));
    const QUrl url = QUrl::fromLocalFile(path(u"link"_s));
    QCOMPARE(m_bookmarks.resolve(m_bookmarks.create(url)).url, url);
}

void InodeBookmarksTest::pipeIsNotWaitedFor()
{
    QCOMPARE(::mkfifo(QFile::encodeName(path(u"pipe"_s)).constData(), 0600), 0);
    const QUrl url = QUrl::fromLocalFile(path(u"pipe"_s));
    QCOMPARE(m_bookmarks.resolve(m_bookmarks.create(url)).url, url);
}

void InodeBookmarksTest::unmountedVolumeIsNotFoundUntilItIsBack()
{
    QVERIFY(QDir(m_directory->path()).mkpath(u"stick/folder"_s));
    QVERIFY(QDir(m_directory->path()).mkpath(u"mounts/volume"_s));
    write(u"stick/folder/a.txt"_s);
    TestVolume volume(path(u"mounts/volume"_s));
    REQUIRE_MOUNT(volume.mountFolder(path(u"stick"_s)));
    const QUrl url = QUrl::fromLocalFile(path(u"mounts/volume/folder/a.txt"_s));
    const QByteArray token = m_bookmarks.create(url);
    QVERIFY(volume.unmount());
    QVERIFY_EXCEPTION_THROWN(m_bookmarks.resolve(token), BookmarkError);

    QVERIFY(volume.mountFolder(path(u"stick"_s)));
    QCOMPARE(m_bookmarks.resolve(token), (FileBookmarks::Resolved{url, false}));
}

void InodeBookmarksTest::fileOnAVolumeThatDoesNotAnswerIsNotFound()
{
    QVERIFY(QDir(m_directory->path()).mkpath(u"volume"_s));
    const QUrl url = write(u"volume/a.txt"_s);
    const QByteArray token = m_bookmarks.create(url);
    TestVolume volume(path(u"volume"_s));
    REQUIRE_MOUNT(volume.mountSilent());
    const InodeBookmarks bookmarks(BoundedCalls(20ms));
    QVERIFY_EXCEPTION_THROWN(bookmarks.create(url), BookmarkError);
    QVERIFY_EXCEPTION_THROWN(bookmarks.resolve(token), BookmarkError);
}

void InodeBookmarksTest::searchEndsAtAVolumeThatDoesNotAnswer()
{
    QVERIFY(QDir(m_directory->path()).mkpath(u"one"_s));
    QVERIFY(QDir(m_directory->path()).mkpath(u"volume"_s));
    const QByteArray token = m_bookmarks.create(write(u"one/a.txt"_s));
    QVERIFY(QFile::remove(path(u"one/a.txt"_s)));
    TestVolume volume(path(u"volume"_s));
    REQUIRE_MOUNT(volume.mountSilent());
    const InodeBookmarks bookmarks(BoundedCalls(20ms));
    QVERIFY_EXCEPTION_THROWN(bookmarks.resolve(token), BookmarkError);
}

void InodeBookmarksTest::malformedTokenIsRefused_data()
{
    QTest::addColumn<QByteArray>("token");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("foreign") << QByteArray("bookmark of another system");
    QTest::newRow("cut") << m_bookmarks.create(QUrl::fromLocalFile(u"/tmp"_s)).chopped(30);
    QTest::newRow("relative path")
        << QByteArray("tessarine-bookmark-1\0tmp\0" "1\0" "2\0" "3\0" "4", 32);
    QTest::newRow("no number")
        << QByteArray("tessarine-bookmark-1\0/tmp\0" "x\0" "2\0" "3\0" "4", 33);
}

void InodeBookmarksTest::malformedTokenIsRefused()
{
    QFETCH(QByteArray, token);
    QVERIFY_EXCEPTION_THROWN(m_bookmarks.resolve(token), BookmarkError);
}

void InodeBookmarksTest::missingFileGetsNoToken()
{
    QVERIFY_EXCEPTION_THROWN(m_bookmarks.create(QUrl::fromLocalFile(path(u"none"_s))),
                             BookmarkError);
}

QTEST_GUILESS_MAIN(InodeBookmarksTest)
#include "InodeBookmarksTest.moc"
