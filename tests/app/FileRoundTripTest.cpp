#include "app/PastePipeline.h"
#include "app/ScopedFileLease.h"
#include "capture/ClipboardMonitor.h"
#include "capture/PrivacySettingsManager.h"
#include "core/ClipboardItemManager.h"
#include "foundation/FilePath.h"
#include "foundation/UserDefaults.h"
#include "persistence/JSONClipboardHistoryStore.h"
#include "persistence/SwiftDataClipboardHistoryStore.h"
#include "platform/linux/DescriptorFileAccess.h"
#include "platform/linux/InodeBookmarks.h"
#include "platform/linux/UriList.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeImageCodec.h"
#include "tests/fakes/FakePasteKeystroke.h"
#include "tests/fakes/FakePasteboard.h"
#include "tests/fakes/FakeScheduler.h"
#include "tests/fakes/FakeWorkspace.h"
#include "tests/fakes/PrintedLines.h"
#include "tests/platform/TestVolume.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

enum class Store { Json, Database };

/// QFile does not open names that are no UTF-8.
void open(QFile &file, const QByteArray &path, int flags, QIODevice::OpenMode mode)
{
    const int descriptor = ::open(path.constData(), flags | O_CLOEXEC, 0600);
    if (descriptor < 0 || !file.open(descriptor, mode, QFile::AutoCloseHandle))
        qFatal("The file cannot be opened.");
}

QByteArray contentOf(const QByteArray &path)
{
    QFile file;
    open(file, path, O_RDONLY, QIODevice::ReadOnly);
    return file.readAll();
}

void write(const QByteArray &path, const QByteArray &content)
{
    QFile file;
    open(file, path, O_WRONLY | O_CREAT | O_TRUNC, QIODevice::WriteOnly);
    file.write(content);
}

} // namespace

/// A copied file on its whole road: from the lists of a file manager into the history and a store,
/// and after a new start out of it onto the pasteboard. What is checked at the end is that a
/// program can open what it is given.
class FileRoundTripTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void anUntouchedFileIsPasted_data();
    void anUntouchedFileIsPasted();
    void aRenamedFileIsPasted_data() { everyNameInEveryStore(); }
    void aRenamedFileIsPasted();
    void aFileMovedToASiblingFolderIsPasted_data() { everyStore(); }
    void aFileMovedToASiblingFolderIsPasted();
    void aFileThatAnEditorReplacedIsPasted_data() { everyStore(); }
    void aFileThatAnEditorReplacedIsPasted();
    void aDirectoryIsPasted_data() { everyStore(); }
    void aDirectoryIsPasted();
    void aSymbolicLinkIsPasted_data() { everyStore(); }
    void aSymbolicLinkIsPasted();
    void aDeletedFileIsPastedByItsOldPath();
    void aFileOnAnUnmountedVolumeIsPastedOnceItIsBack();
    void aFileInAFolderThatIsGoneIsPastedOnceItIsBack();
    void aFileOnAVolumeThatDoesNotAnswerIsPastedByItsPath();
    void aCorruptBookmarkIsPastedByThePath();
    void tenThousandFilesAreOneEntryWithOneBookmark();

private:
    static void everyStore();
    static void everyNameInEveryStore();

    void start(std::chrono::milliseconds patience = 1min);
    void copy(const QList<QByteArray> &paths);
    void restart(std::chrono::milliseconds patience = 1min);
    ClipboardItem item() const;
    QList<QByteArray> pastedPaths();
    QByteArray pastedPath();
    void renameFile(const QByteArray &from, const QByteArray &to) const;

    QByteArray path(const QByteArray &name) const
    {
        return QFile::encodeName(m_files->path()) + '/' + name;
    }

    std::optional<PrintedLines> m_printed;
    std::unique_ptr<QTemporaryDir> m_files;
    std::unique_ptr<QTemporaryDir> m_data;
    FakeClock m_clock;
    Store m_store = Store::Database;

    struct Run;
    std::unique_ptr<Run> m_run;
};

/// One start of the program.
struct FileRoundTripTest::Run
{
    Run(const QDir &data, Store store, const Clock &clock, std::chrono::milliseconds patience)
        : defaults(data.filePath(u"test.conf"_s))
        , bookmarks(BoundedCalls(patience))
        , access(BoundedCalls(patience))
        , manager(open(data, store, clock),
                  ImageStorage(data.filePath(u"images"_s), codec, defaults, clock), references,
                  defaults, clock)
        , monitor(pasteboard, scheduler, clock, manager, privacy, references)
        , fileLease(references, scheduler, clock, defaults)
    {
        monitor.startMonitoring();
    }

    static std::unique_ptr<ClipboardHistoryStore> open(const QDir &data, Store store,
                                                       const Clock &clock)
    {
        if (store == Store::Json)
            return std::make_unique<JSONClipboardHistoryStore>(data.filePath(u"history.json"_s),
                                                               clock);
        return std::make_unique<SwiftDataClipboardHistoryStore>(data.filePath(u"history.store"_s),
                                                                clock);
    }

    UserDefaults defaults;
    InodeBookmarks bookmarks;
    DescriptorFileAccess access;
    FileReferences references{bookmarks, access, defaults};
    PrivacySettingsManager privacy{defaults};
    FakePasteboard pasteboard;
    FakeWorkspace workspace;
    FakePasteKeystroke keystroke;
    FakeScheduler scheduler;
    FakeImageCodec codec;
    ClipboardItemManager manager;
    ClipboardMonitor monitor;
    ScopedFileLease fileLease;
    PastePipeline pipeline{pasteboard, workspace, keystroke, scheduler, monitor,
                           manager,    defaults,  codec,     fileLease};
};

void FileRoundTripTest::init()
{
    m_printed.emplace();
    m_files = std::make_unique<QTemporaryDir>();
    m_data = std::make_unique<QTemporaryDir>();
    m_store = Store::Database;
}

void FileRoundTripTest::cleanup()
{
    m_run.reset();
    // Qt does not see the names that it cannot read, and would leave them behind.
    const QByteArray command = "rm -rf -- '" + QFile::encodeName(m_files->path()) + "'";
    QCOMPARE(std::system(command.constData()), 0);
    m_printed.reset();
}

void FileRoundTripTest::start(std::chrono::milliseconds patience)
{
    m_run = std::make_unique<Run>(QDir(m_data->path()), m_store, m_clock, patience);
}

/// As a file manager does it, with a start of the program before.
void FileRoundTripTest::copy(const QList<QByteArray> &paths)
{
    start();
    QList<QByteArray> urls;
    for (const QByteArray &path : paths)
        urls.append("file://" + path.toPercentEncoding("/"));
    PasteboardSnapshot snapshot;
    snapshot.types = {PasteboardType::kFileUrl.toString()};
    snapshot.fileUrls = UriList::parse(UriList::fromUrls(urls));
    m_clock.advance(1s);
    m_run->pasteboard.copy(snapshot);
    m_run->scheduler.advance(500ms);
    QCOMPARE(m_run->manager.items().size(), 1);
}

/// Ends the program and starts it again; what it knew comes back from the store.
void FileRoundTripTest::restart(std::chrono::milliseconds patience)
{
    const ClipboardItem before = item();
    m_run.reset();
    start(patience);
    ClipboardItem after = item();
    // The JSON store keeps whole seconds; the clock of the test has no others.
    QCOMPARE(after, before);
}

ClipboardItem FileRoundTripTest::item() const
{
    const ClipboardItemList items = m_run->manager.items();
    return items.size() == 1 ? *items.first() : ClipboardItem();
}

/// The files that a file manager would copy after a paste of the entry.
QList<QByteArray> FileRoundTripTest::pastedPaths()
{
    m_clock.advance(1s);
    m_run->pipeline.pasteItem(item());
    m_run->scheduler.advance(1s);
    m_run->manager.drain();
    QList<QByteArray> urls;
    for (const auto &entry : m_run->pasteboard.written.entries) {
        if (entry.type == PasteboardType::kFileUrl)
            urls.append(entry.data.bytes());
    }
    QList<QByteArray> paths;
    // As GLib reads such a list.
    for (const QByteArray &line : UriList::fromUrls(urls).split('\n')) {
        if (!line.isEmpty())
            paths.append(QByteArray::fromPercentEncoding(line.trimmed().sliced(strlen("file://"))));
    }
    return paths;
}

QByteArray FileRoundTripTest::pastedPath()
{
    const QList<QByteArray> paths = pastedPaths();
    return paths.size() == 1 ? paths.first() : QByteArray();
}

void FileRoundTripTest::renameFile(const QByteArray &from, const QByteArray &to) const
{
    QCOMPARE(std::rename(path(from).constData(), path(to).constData()), 0);
}

void FileRoundTripTest::everyStore()
{
    QTest::addColumn<Store>("store");
    QTest::newRow("JSON") << Store::Json;
    QTest::newRow("database") << Store::Database;
}

void FileRoundTripTest::everyNameInEveryStore()
{
    const QList<std::pair<const char *, QByteArray>> names{
        {"ordinary", "a report.txt"},
        {"no UTF-8", "caf\xE9 \xFF\xFE.t\xFFt"},
        {"no UTF-8 beside UTF-8", "\xC3\xA4\xE4\xE6\x96\x87.txt"},
        {"a line break", "two\nlines\r\n.txt"},
        {"a percent sign", "100%41%.txt"},
        {"other letters", "Übersicht 文字 😀.txt"},
        {"private characters", "\xEE\xBE\xBF.txt"},
        {"marks of URLs", "a#b?c=d&e;f:g@h\\i\"'.txt"},
        {"blanks around it", "  a.txt  "},
        {"a hidden file", ".hidden"},
    };
    QTest::addColumn<Store>("store");
    QTest::addColumn<QByteArray>("name");
    for (const auto &[what, name] : names) {
        QTest::addRow("%s, JSON", what) << Store::Json << name;
        QTest::addRow("%s, database", what) << Store::Database << name;
    }
}

void FileRoundTripTest::anUntouchedFileIsPasted_data()
{
    everyNameInEveryStore();
}

void FileRoundTripTest::anUntouchedFileIsPasted()
{
    QFETCH(QByteArray, name);
    QFETCH(Store, store);
    m_store = store;
    write(path(name), "content");
    copy({path(name)});
    restart();
    const ClipboardItem before = item();
    QCOMPARE(FilePath::toBytes(before.filePath.value()), path(name));
    QCOMPARE(before.stringValue->toString(), FilePath::readable(FilePath::fromBytes(name)));
    QCOMPARE(pastedPath(), path(name));
    QCOMPARE(item(), before);
}

void FileRoundTripTest::aRenamedFileIsPasted()
{
    QFETCH(QByteArray, name);
    QFETCH(Store, store);
    m_store = store;
    write(path(name), "content");
    copy({path(name)});
    const ClipboardItem before = item();
    renameFile(name, "renamed " + name);
    restart();
    QCOMPARE(pastedPath(), path("renamed " + name));
    QCOMPARE(contentOf(pastedPath()), "content"_ba);

    // The paste has renewed the bookmark, which leads on from there.
    QVERIFY(item().fileBookmarkData != before.fileBookmarkData);
    QVERIFY(item().contentHash != before.contentHash);
    QCOMPARE(item().filePath, before.filePath);
    restart();
    renameFile("renamed " + name, "again " + name);
    QCOMPARE(pastedPath(), path("again " + name));
}

void FileRoundTripTest::aFileMovedToASiblingFolderIsPasted()
{
    QFETCH(Store, store);
    m_store = store;
    QVERIFY(QDir(m_files->path()).mkpath(u"one"_s));
    QVERIFY(QDir(m_files->path()).mkpath(u"two"_s));
    write(path("one/empty"), "");
    copy({path("one/empty")});
    restart();
    renameFile("one/empty", "two/empty");
    QCOMPARE(pastedPath(), path("two/empty"));
}

void FileRoundTripTest::aFileThatAnEditorReplacedIsPasted()
{
    QFETCH(Store, store);
    m_store = store;
    write(path("a.txt"), "old");
    copy({path("a.txt")});
    const QByteArray before = item().fileBookmarkData.value();
    restart();
    write(path(".a.txt.swp"), "edited");
    renameFile(".a.txt.swp", "a.txt");
    QCOMPARE(pastedPath(), path("a.txt"));
    QCOMPARE(contentOf(pastedPath()), "edited"_ba);
    QVERIFY(m_printed->contains(u"Bookmark data is stale for item: a.txt"_s));
    QVERIFY(item().fileBookmarkData != before);

    // Once only.
    restart();
    const qsizetype lineCount = m_printed->lines().size();
    QCOMPARE(pastedPath(), path("a.txt"));
    QVERIFY(!m_printed->lines().mid(lineCount).contains(
        u"Bookmark data is stale for item: a.txt"_s));
}

void FileRoundTripTest::aDirectoryIsPasted()
{
    QFETCH(Store, store);
    m_store = store;
    QVERIFY(QDir(m_files->path()).mkpath(u"folder"_s));
    copy({path("folder/")});
    QCOMPARE(item().stringValue->toString(), u"folder"_s);
    restart();
    QCOMPARE(pastedPath(), path("folder"));
    write(path("folder/file"), "content");
    QCOMPARE(pastedPath(), path("folder"));
    renameFile("folder", "renamed");
    QCOMPARE(pastedPath(), path("renamed"));
}

void FileRoundTripTest::aSymbolicLinkIsPasted()
{
    QFETCH(Store, store);
    m_store = store;
    write(path("target"), "content");
    QCOMPARE(::symlink("target", path("link").constData()), 0);
    copy({path("link")});
    restart();
    QCOMPARE(pastedPath(), path("link"));
    renameFile("link", "renamed");
    QCOMPARE(pastedPath(), path("renamed"));
    QCOMPARE(contentOf(pastedPath()), "content"_ba);
}

void FileRoundTripTest::aDeletedFileIsPastedByItsOldPath()
{
    write(path("\xFF"), "content");
    copy({path("\xFF")});
    const ClipboardItem before = item();
    QCOMPARE(::unlink(path("\xFF").constData()), 0);
    QCOMPARE(m_run->manager.resolveFileURL(item()), std::nullopt);
    QCOMPARE(pastedPath(), path("\xFF"));
    QCOMPARE(item(), before);
    QVERIFY(m_printed->contains(u"Failed to resolve bookmark data: The file couldn't be found"_s));
}

void FileRoundTripTest::aFileOnAnUnmountedVolumeIsPastedOnceItIsBack()
{
    QVERIFY(QDir(m_files->path()).mkpath(u"stick"_s));
    QVERIFY(QDir(m_files->path()).mkpath(u"volume"_s));
    write(path("stick/a.txt"), "content");
    TestVolume volume(m_files->filePath(u"volume"_s));
    REQUIRE_MOUNT(volume.mountFolder(m_files->filePath(u"stick"_s)));
    copy({path("volume/a.txt")});
    const ClipboardItem before = item();
    // Nothing holds the volume.
    QVERIFY(volume.unmount());
    // It lies beside, in the folder that was mounted, and nobody has to look there.
    QVERIFY(QDir(m_files->path()).mkpath(u"x/y/z"_s));
    renameFile("stick", "x/y/z/stick");
    QCOMPARE(m_run->manager.resolveFileURL(item()), std::nullopt);
    QCOMPARE(pastedPath(), path("volume/a.txt"));
    QCOMPARE(item(), before);

    QVERIFY(volume.mountFolder(m_files->filePath(u"x/y/z/stick"_s)));
    QCOMPARE(m_run->manager.resolveFileURL(item())->isStale, false);
    QCOMPARE(contentOf(pastedPath()), "content"_ba);
}

void FileRoundTripTest::aFileInAFolderThatIsGoneIsPastedOnceItIsBack()
{
    QVERIFY(QDir(m_files->path()).mkpath(u"mount/volume/folder"_s));
    write(path("mount/volume/folder/a.txt"), "content");
    copy({path("mount/volume/folder/a.txt")});
    const ClipboardItem before = item();
    QTemporaryDir elsewhere(QDir::tempPath() + u"/elsewhere"_s);
    const QByteArray hidden = QFile::encodeName(elsewhere.path()) + "/a/b/c";
    QVERIFY(QDir(elsewhere.path()).mkpath(u"a/b"_s));
    QCOMPARE(std::rename(path("mount/volume").constData(), hidden.constData()), 0);
    QCOMPARE(m_run->manager.resolveFileURL(item()), std::nullopt);
    QCOMPARE(pastedPath(), path("mount/volume/folder/a.txt"));
    QCOMPARE(item(), before);

    QCOMPARE(std::rename(hidden.constData(), path("mount/volume").constData()), 0);
    QCOMPARE(m_run->manager.resolveFileURL(item())->isStale, false);
}

void FileRoundTripTest::aFileOnAVolumeThatDoesNotAnswerIsPastedByItsPath()
{
    QVERIFY(QDir(m_files->path()).mkpath(u"volume"_s));
    write(path("volume/a.txt"), "content");
    copy({path("volume/a.txt")});
    TestVolume volume(m_files->filePath(u"volume"_s));
    REQUIRE_MOUNT(volume.mountSilent());
    restart(20ms);
    QCOMPARE(pastedPath(), path("volume/a.txt"));
    QVERIFY(m_printed->contains(
        u"Failed to resolve bookmark data: The file system does not answer"_s));
}

void FileRoundTripTest::aCorruptBookmarkIsPastedByThePath()
{
    write(path("caf\xE9"), "content");
    copy({path("caf\xE9")});
    ClipboardItem corrupt = item();
    corrupt.fileBookmarkData = "corrupt"_ba;
    QCOMPARE(m_run->manager.resolveFileURL(corrupt),
             (FileBookmarks::Resolved{FilePath::toUrl(path("caf\xE9")), false}));
    QVERIFY(m_printed->contains(
        u"Failed to resolve bookmark data: The bookmark data is not in the correct format"_s));
}

void FileRoundTripTest::tenThousandFilesAreOneEntryWithOneBookmark()
{
    QList<QByteArray> paths;
    for (int number = 0; number < 10'000; ++number) {
        paths.append(path("file " + QByteArray::number(number)));
        QCOMPARE(::mknod(paths.last().constData(), S_IFREG | 0600, 0), 0);
    }
    copy(paths);
    QCOMPARE(item().fileTypes.size(), 10'000);
    restart();
    QCOMPARE(pastedPath(), path("file 0"));
}

QTEST_GUILESS_MAIN(FileRoundTripTest)
#include "FileRoundTripTest.moc"
