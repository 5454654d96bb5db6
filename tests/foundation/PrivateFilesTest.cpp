#include "foundation/PrivateFiles.h"

#include "tests/fakes/FileSizeLimit.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <optional>
#include <system_error>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

mode_t modeOf(const QString &path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

} // namespace

class PrivateFilesTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void theUmaskDoesNotMatter_data();
    void theUmaskDoesNotMatter();
    void aDirectoryOpenToOthersIsClosedToThem();
    void filesInADirectoryThatWasOpenAreClosed();
    void directoriesAboveThatExistStayAsTheyAre();
    void aFileThatExistsKeepsItsContent();
    void aFileInTheWayOfADirectoryIsAFailure();
    void aDirectoryInTheWayOfAFileIsAFailure();
    void aFileInAMissingDirectoryIsAFailure();
    void anEmptyPathIsAFailure();
    void closingWhatDoesNotExistDoesNothing();
    void whatIsWrittenIsForTheUserAlone_data();
    void whatIsWrittenIsForTheUserAlone();
    void writingLeavesAFileThatExistsAlone();
    void writingIntoAMissingDirectoryFails();
    void whatCannotBeWrittenToTheEndIsRemoved();

private:
    QString path(const QString &name) const { return m_directory->filePath(name); }

    std::optional<QTemporaryDir> m_directory;
};

void PrivateFilesTest::init()
{
    m_directory.emplace();
}

void PrivateFilesTest::theUmaskDoesNotMatter_data()
{
    QTest::addColumn<uint>("mask");
    QTest::newRow("nothing masked") << 0u;
    QTest::newRow("usual") << 022u;
    QTest::newRow("everything masked") << 0777u;
}

void PrivateFilesTest::theUmaskDoesNotMatter()
{
    QFETCH(const uint, mask);
    const mode_t before = umask(mask);
    const bool areThere
        = ensurePrivateDirectory(path(u"a/b"_s)) && ensurePrivateFile(path(u"a/b/file"_s));
    umask(before);
    QVERIFY(areThere);
    QCOMPARE(modeOf(path(u"a"_s)), mode_t(0700));
    QCOMPARE(modeOf(path(u"a/b"_s)), mode_t(0700));
    QCOMPARE(modeOf(path(u"a/b/file"_s)), mode_t(0600));
}

void PrivateFilesTest::aDirectoryOpenToOthersIsClosedToThem()
{
    QCOMPARE(mkdir(QFile::encodeName(path(u"open"_s)).constData(), 0755), 0);
    QVERIFY(ensurePrivateDirectory(path(u"open"_s)));
    QCOMPARE(modeOf(path(u"open"_s)), mode_t(0700));
}

void PrivateFilesTest::filesInADirectoryThatWasOpenAreClosed()
{
    QVERIFY(ensurePrivateDirectory(path(u"open"_s)));
    for (const QString &name : {u"open/file"_s, u"open/.hidden"_s}) {
        QVERIFY(ensurePrivateFile(path(name)));
        QCOMPARE(chmod(QFile::encodeName(path(name)).constData(), 0666), 0);
    }
    QCOMPARE(chmod(QFile::encodeName(path(u"open"_s)).constData(), 0777), 0);
    QVERIFY(ensurePrivateDirectory(path(u"open"_s)));
    QCOMPARE(modeOf(path(u"open/file"_s)), mode_t(0600));
    QCOMPARE(modeOf(path(u"open/.hidden"_s)), mode_t(0600));
}

void PrivateFilesTest::directoriesAboveThatExistStayAsTheyAre()
{
    QCOMPARE(mkdir(QFile::encodeName(path(u"shared"_s)).constData(), 0755), 0);
    const mode_t before = modeOf(path(u"shared"_s));
    QVERIFY(ensurePrivateDirectory(path(u"shared/mine"_s)));
    QCOMPARE(modeOf(path(u"shared"_s)), before);
}

void PrivateFilesTest::aFileThatExistsKeepsItsContent()
{
    QFile file(path(u"file"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("content");
    file.close();
    QVERIFY(file.setPermissions(QFile::Permissions(0x6664)));
    QVERIFY(ensurePrivateFile(path(u"file"_s)));
    QCOMPARE(modeOf(path(u"file"_s)), mode_t(0600));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), "content");
}

void PrivateFilesTest::aFileInTheWayOfADirectoryIsAFailure()
{
    QVERIFY(ensurePrivateFile(path(u"file"_s)));
    QVERIFY(!ensurePrivateDirectory(path(u"file"_s)));
    QVERIFY(!ensurePrivateDirectory(path(u"file/below"_s)));
}

void PrivateFilesTest::aDirectoryInTheWayOfAFileIsAFailure()
{
    QVERIFY(ensurePrivateDirectory(path(u"directory"_s)));
    QVERIFY(!ensurePrivateFile(path(u"directory"_s)));
    QCOMPARE(modeOf(path(u"directory"_s)), mode_t(0700));
}

void PrivateFilesTest::aFileInAMissingDirectoryIsAFailure()
{
    QVERIFY(!ensurePrivateFile(path(u"nowhere/file"_s)));
}

void PrivateFilesTest::anEmptyPathIsAFailure()
{
    QVERIFY(!ensurePrivateDirectory(QString()));
    QVERIFY(!ensurePrivateFile(QString()));
}

void PrivateFilesTest::closingWhatDoesNotExistDoesNothing()
{
    closeToOthers(path(u"nothing"_s));
    QVERIFY(!QFileInfo::exists(path(u"nothing"_s)));
}

void PrivateFilesTest::whatIsWrittenIsForTheUserAlone_data()
{
    theUmaskDoesNotMatter_data();
}

void PrivateFilesTest::whatIsWrittenIsForTheUserAlone()
{
    QFETCH(const uint, mask);
    const mode_t before = umask(mask);
    writePrivateFile(path(u"file"_s), "content");
    umask(before);
    QCOMPARE(modeOf(path(u"file"_s)), mode_t(0600));
    QFile file(path(u"file"_s));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), "content");
}

void PrivateFilesTest::writingLeavesAFileThatExistsAlone()
{
    writePrivateFile(path(u"file"_s), "first");
    QVERIFY_EXCEPTION_THROWN(writePrivateFile(path(u"file"_s), "second"), std::system_error);
    QFile file(path(u"file"_s));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), "first");
}

void PrivateFilesTest::writingIntoAMissingDirectoryFails()
{
    try {
        writePrivateFile(path(u"nowhere/file"_s), "content");
        QFAIL("It was written.");
    } catch (const std::system_error &error) {
        QCOMPARE(error.what(), "No such file or directory");
    }
}

void PrivateFilesTest::whatCannotBeWrittenToTheEndIsRemoved()
{
    const FileSizeLimit limit(100'000);
    QVERIFY_EXCEPTION_THROWN(writePrivateFile(path(u"file"_s), QByteArray(200'000, 'x')),
                             std::system_error);
    QVERIFY(!QFileInfo::exists(path(u"file"_s)));
}

QTEST_APPLESS_MAIN(PrivateFilesTest)
#include "PrivateFilesTest.moc"
