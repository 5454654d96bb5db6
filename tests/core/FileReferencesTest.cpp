#include "core/FileReferences.h"

#include "core/ClipboardItem.h"
#include "foundation/UserDefaults.h"
#include "tests/fakes/FakeFiles.h"
#include "tests/fakes/PrintedLines.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

ClipboardItem fileItem(std::optional<QByteArray> bookmark, std::optional<QString> path)
{
    ClipboardItem item = makeItem(ClipboardContentType::File, Timestamp{});
    item.stringValue = Utf8Text(u"a.txt, b.txt"_s);
    item.fileBookmarkData = std::move(bookmark);
    item.filePath = std::move(path);
    return item;
}

const QUrl kOld(u"file:///old/a.txt"_s);
const QUrl kNew(u"file:///new/a%20%251.txt"_s);

} // namespace

class FileReferencesTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_printed.reset(); }

    void aBookmarkIsMadeWhileTheFileIsHeld();
    void aBookmarkThatFailsIsAbsentAndTold_data();
    void aBookmarkThatFailsIsAbsentAndTold();
    void theTrailIsSilentUnlessItIsAskedFor();

    void aGoodBookmarkLeadsToTheFile();
    void aBookmarkIsBelievedWithoutALook();
    void aStaleBookmarkIsToldByTheNamesOfTheEntry();
    void aStaleBookmarkOfAnEntryWithoutNamesIsToldToo();
    void aCorruptBookmarkIsToldAndThePathTried();
    void withoutBookmarkThePathIsTriedInSilence();
    void aDeletedFileWithoutBookmarkIsNowhere();
    void aCorruptBookmarkWithoutPathLeadsNowhere();
    void aPathThatIsNotToldInTimeLeadsNowhere();
    void theBookmarkAloneLeadsPastThePath();

    void aRenewedBookmarkIsOfTheNewPlace();
    void aRenewalThatFailsIsTold();

    void filesWhoseExistenceIsNotToldInTimeAreBelieved();

private:
    void logAll() { m_defaults->set(u"debug.drag_paste_logging"_s, true); }

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<PrintedLines> m_printed;
    std::unique_ptr<UserDefaults> m_defaults;
    std::unique_ptr<FakeFiles> m_files;
};

void FileReferencesTest::init()
{
    m_defaults.reset(); // It is written at its end, and so has to end before its directory.
    m_directory = std::make_unique<QTemporaryDir>();
    m_printed = std::make_unique<PrintedLines>();
    m_defaults = std::make_unique<UserDefaults>(m_directory->filePath(u"test.conf"_s));
    m_files = std::make_unique<FakeFiles>(*m_defaults);
}

void FileReferencesTest::aBookmarkIsMadeWhileTheFileIsHeld()
{
    logAll();
    QCOMPARE(m_files->references.createBookmark(kNew), "bookmark of file:///new/a%20%251.txt"_ba);
    QCOMPARE(m_files->access.started, QList{kNew});
    QCOMPARE(m_files->access.openCount, 0);
    QCOMPARE(m_printed->lines(),
             QStringList{u"[DragPaste] createFileItem bookmark created path=/new/a %1.txt bytes=36 "
                         u"startedAccessing=true"_s});
}

void FileReferencesTest::aBookmarkThatFailsIsAbsentAndTold_data()
{
    QTest::addColumn<bool>("isGranted");
    QTest::newRow("of a file that may be read") << true;
    QTest::newRow("of a file that may not") << false;
}

void FileReferencesTest::aBookmarkThatFailsIsAbsentAndTold()
{
    QFETCH(bool, isGranted);
    logAll();
    m_files->bookmarks.creationError = "the disk is on fire";
    m_files->access.isGranted = isGranted;
    QCOMPARE(m_files->references.createBookmark(kOld), std::nullopt);
    QCOMPARE(m_files->access.openCount, 0);
    QCOMPARE(m_printed->lines(),
             QStringList({u"Failed to create bookmark for file: the disk is on fire"_s,
                          u"[DragPaste] createFileItem bookmark failed path=/old/a.txt error=the "
                          u"disk is on fire startedAccessing="_s
                              + (isGranted ? u"true"_s : u"false"_s)}));
}

void FileReferencesTest::theTrailIsSilentUnlessItIsAskedFor()
{
    QVERIFY(m_files->references.createBookmark(kOld));
    QCOMPARE(m_printed->lines(), QStringList());
    m_files->bookmarks.creationError = "no";
    m_files->references.createBookmark(kOld);
    m_files->references.renewBookmark(QUuid(), kOld);
    QCOMPARE(m_printed->lines().filter(u"[DragPaste]"_s), QStringList());
}

void FileReferencesTest::aGoodBookmarkLeadsToTheFile()
{
    m_files->bookmarks.places = {{"token", {kNew, false}}};
    QCOMPARE(m_files->references.resolve(fileItem("token", u"/old/a.txt"_s)),
             (FileBookmarks::Resolved{kNew, false}));
    QCOMPARE(m_printed->lines(), QStringList());
}

void FileReferencesTest::aBookmarkIsBelievedWithoutALook()
{
    m_files->bookmarks.places = {{"token", {kNew, false}}};
    m_files->access.files = {kOld};
    QCOMPARE(m_files->references.resolve(fileItem("token", u"/old/a.txt"_s))->url, kNew);
}

void FileReferencesTest::aStaleBookmarkIsToldByTheNamesOfTheEntry()
{
    m_files->bookmarks.places = {{"token", {kNew, true}}};
    QCOMPARE(m_files->references.resolve(fileItem("token", std::nullopt)),
             (FileBookmarks::Resolved{kNew, true}));
    QCOMPARE(m_printed->lines(), QStringList{u"Bookmark data is stale for item: a.txt, b.txt"_s});
}

void FileReferencesTest::aStaleBookmarkOfAnEntryWithoutNamesIsToldToo()
{
    m_files->bookmarks.places = {{"token", {kNew, true}}};
    ClipboardItem item = fileItem("token", std::nullopt);
    item.stringValue.reset();
    m_files->references.resolve(item);
    QCOMPARE(m_printed->lines(), QStringList{u"Bookmark data is stale for item: unknown"_s});
}

void FileReferencesTest::aCorruptBookmarkIsToldAndThePathTried()
{
    m_files->access.files = {kOld};
    QCOMPARE(m_files->references.resolve(fileItem("corrupt", u"/old/a.txt"_s)),
             (FileBookmarks::Resolved{kOld, false}));
    QCOMPARE(m_printed->lines(),
             QStringList{u"Failed to resolve bookmark data: nothing is known of it"_s});
}

void FileReferencesTest::withoutBookmarkThePathIsTriedInSilence()
{
    m_files->access.files = {kOld};
    QCOMPARE(m_files->references.resolve(fileItem(std::nullopt, u"/old/a.txt"_s)),
             (FileBookmarks::Resolved{kOld, false}));
    QCOMPARE(m_printed->lines(), QStringList());
}

void FileReferencesTest::aDeletedFileWithoutBookmarkIsNowhere()
{
    QCOMPARE(m_files->references.resolve(fileItem(std::nullopt, u"/old/a.txt"_s)), std::nullopt);
    QCOMPARE(m_files->references.resolve(fileItem(std::nullopt, std::nullopt)), std::nullopt);
}

void FileReferencesTest::aCorruptBookmarkWithoutPathLeadsNowhere()
{
    QCOMPARE(m_files->references.resolve(fileItem("corrupt", std::nullopt)), std::nullopt);
}

void FileReferencesTest::aPathThatIsNotToldInTimeLeadsNowhere()
{
    m_files->access.answers = false;
    QCOMPARE(m_files->references.resolve(fileItem(std::nullopt, u"/old/a.txt"_s)), std::nullopt);
}

void FileReferencesTest::theBookmarkAloneLeadsPastThePath()
{
    m_files->bookmarks.places = {{"token", {kNew, true}}};
    m_files->access.files = {kOld};
    const auto resolved = [this](std::optional<QByteArray> bookmark) {
        return m_files->references.resolveBookmark(fileItem(bookmark, u"/old/a.txt"_s));
    };
    QCOMPARE(resolved("token"), (FileBookmarks::Resolved{kNew, true}));
    QCOMPARE(resolved("corrupt"), std::nullopt);
    QCOMPARE(resolved(std::nullopt), std::nullopt);
}

void FileReferencesTest::aRenewedBookmarkIsOfTheNewPlace()
{
    logAll();
    QCOMPARE(m_files->references.renewBookmark(QUuid(), kOld), "bookmark of file:///old/a.txt"_ba);
    QCOMPARE(m_printed->lines(), QStringList());
}

void FileReferencesTest::aRenewalThatFailsIsTold()
{
    logAll();
    m_files->bookmarks.creationError = "gone";
    const QUuid id(u"0a1b2c3d-0000-4000-8000-00000000000f"_s);
    QCOMPARE(m_files->references.renewBookmark(id, kNew), std::nullopt);
    QCOMPARE(m_printed->lines(),
             QStringList({u"Failed to refresh stale bookmark for item: "
                          u"0A1B2C3D-0000-4000-8000-00000000000F, error: gone"_s,
                          u"[DragPaste] refreshStaleBookmark failed "
                          u"id=0A1B2C3D-0000-4000-8000-00000000000F path=/new/a %1.txt "
                          u"error=gone"_s}));
}

void FileReferencesTest::filesWhoseExistenceIsNotToldInTimeAreBelieved()
{
    QVERIFY(!m_files->references.mayExist({kOld}));
    m_files->access.files = {kOld};
    QVERIFY(m_files->references.mayExist({kOld}));
    QVERIFY(!m_files->references.mayExist({kOld, kNew}));
    m_files->access.answers = false;
    QVERIFY(m_files->references.mayExist({kNew}));
}

QTEST_GUILESS_MAIN(FileReferencesTest)
#include "FileReferencesTest.moc"
