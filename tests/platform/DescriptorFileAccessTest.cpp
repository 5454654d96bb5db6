#include "platform/linux/DescriptorFileAccess.h"

#include "foundation/FilePath.h"
#include "tests/platform/TestVolume.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class DescriptorFileAccessTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_directory = std::make_unique<QTemporaryDir>(); }

    void whatCanBeReadIsGranted_data();
    void whatCanBeReadIsGranted();
    void whatIsNotThereIsRefused();
    void whatMayNotBeReadIsRefused();
    void noDescriptorIsLeft();
    void theOtherEndOfAPipeFeelsNothing();
    void aVolumeStaysMountedWhileItsFileIsHeld();
    void filesExistIfAllDo_data();
    void filesExistIfAllDo();
    void anOpenFileIsReadLaterAlsoWhenItIsDeleted();
    void onlyFilesAreOpened();
    void aVolumeThatDoesNotAnswerIsGivenUp();

private:
    QString path(const QString &name) const { return m_directory->filePath(name); }
    QUrl url(const QString &name) const { return FilePath::toUrl(path(name)); }

    QUrl write(const QString &name) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("cannot write the test file");
        return FilePath::toUrl(file.fileName());
    }

    static qsizetype descriptorCount()
    {
        return QDir(u"/proc/self/fd"_s).entryList(QDir::Files | QDir::System).size();
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    DescriptorFileAccess m_access{BoundedCalls(1min)};
};

void DescriptorFileAccessTest::whatCanBeReadIsGranted_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a file") << u"a.txt"_s;
    QTest::newRow("a name of many letters") << u"ä 100%\n#?.txt"_s;
    QTest::newRow("a name that is not UTF-8") << FilePath::fromBytes("caf\xE9.txt");
}

void DescriptorFileAccessTest::whatCanBeReadIsGranted()
{
    QFETCH(QString, name);
    const QByteArray bytes = FilePath::toBytes(path(name));
    QCOMPARE(::mknod(bytes.constData(), S_IFREG | 0600, 0), 0);
    QVERIFY(m_access.start(url(name)));
    QVERIFY(m_access.start(FilePath::toUrl(m_directory->path())));
    QCOMPARE(::unlink(bytes.constData()), 0);
    QVERIFY(!m_access.start(url(name)));
}

void DescriptorFileAccessTest::whatIsNotThereIsRefused()
{
    QVERIFY(!m_access.start(url(u"none"_s)));
    QVERIFY(!m_access.start(QUrl(u"https://example.org/"_s)));
    QVERIFY(!m_access.start(QUrl(u"file://server/"_s)));
    QVERIFY(QFile::link(path(u"none"_s), path(u"link"_s)));
    QVERIFY(!m_access.start(url(u"link"_s)));
}

void DescriptorFileAccessTest::whatMayNotBeReadIsRefused()
{
    const QUrl file = write(u"a.txt"_s);
    QVERIFY(QFile::setPermissions(path(u"a.txt"_s), QFile::WriteOwner));
    // Nothing is forbidden to root, and the question is who runs the program.
    const bool isRoot = ::getuid() == 0;
    constexpr uid_t kNobody = 65534;
    if (isRoot)
        QCOMPARE(::setreuid(kNobody, uid_t(-1)), 0);
    const bool isGranted = m_access.start(file) != nullptr;
    if (isRoot)
        QCOMPARE(::setreuid(0, uid_t(-1)), 0);
    QVERIFY(!isGranted);
}

void DescriptorFileAccessTest::noDescriptorIsLeft()
{
    const QUrl file = write(u"a.txt"_s);
    QVERIFY(m_access.start(file));
    const qsizetype before = descriptorCount();
    auto scope = m_access.start(file);
    QCOMPARE(descriptorCount(), before + 1);
    scope.reset();
    QCOMPARE(descriptorCount(), before);
}

void DescriptorFileAccessTest::theOtherEndOfAPipeFeelsNothing()
{
    const QByteArray pipe = FilePath::toBytes(path(u"pipe"_s));
    QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
    const auto scope = m_access.start(url(u"pipe"_s));
    QVERIFY(scope);
    // There is no reader.
    QCOMPARE(::open(pipe.constData(), O_WRONLY | O_NONBLOCK), -1);
    QCOMPARE(errno, ENXIO);
}

void DescriptorFileAccessTest::aVolumeStaysMountedWhileItsFileIsHeld()
{
    QVERIFY(QDir().mkdir(path(u"volume"_s)));
    TestVolume volume(path(u"volume"_s));
    REQUIRE_MOUNT(volume.mountMemory());
    auto scope = m_access.start(write(u"volume/a.txt"_s));
    QVERIFY(scope);
    QVERIFY(!volume.unmount());
    scope.reset();
    QVERIFY(volume.unmount());
    QVERIFY(!m_access.start(url(u"volume/a.txt"_s)));
}

void DescriptorFileAccessTest::filesExistIfAllDo_data()
{
    QTest::addColumn<QStringList>("urls");
    QTest::addColumn<bool>("exist");
    QTest::newRow("one") << QStringList{u"a"_s} << true;
    QTest::newRow("a directory") << QStringList{u"."_s} << true;
    QTest::newRow("two") << QStringList{u"a"_s, u"b"_s} << true;
    QTest::newRow("one of two") << QStringList{u"a"_s, u"c"_s} << false;
    QTest::newRow("a link to one") << QStringList{u"to a"_s} << true;
    QTest::newRow("a link to none") << QStringList{u"to c"_s} << false;
}

void DescriptorFileAccessTest::filesExistIfAllDo()
{
    QFETCH(QStringList, urls);
    QFETCH(bool, exist);
    write(u"a"_s);
    write(u"b"_s);
    QVERIFY(QFile::link(path(u"a"_s), path(u"to a"_s)));
    QVERIFY(QFile::link(path(u"c"_s), path(u"to c"_s)));
    QList<QUrl> list;
    for (const QString &name : urls)
        list.append(url(name));
    QCOMPARE(m_access.exist(list), exist);

    list.append(QUrl(u"https://example.org/"_s));
    QCOMPARE(m_access.exist(list), false);
}

void DescriptorFileAccessTest::anOpenFileIsReadLaterAlsoWhenItIsDeleted()
{
    QFile file(path(u"a"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("1234");
    file.close();
    const auto bytes = m_access.open(path(u"a"_s));
    QVERIFY(bytes);
    QVERIFY(!bytes->isInMemory());
    QVERIFY(file.remove());
    QCOMPARE(bytes->read(), "1234"_ba);
}

void DescriptorFileAccessTest::onlyFilesAreOpened()
{
    QVERIFY(!m_access.open(path(u"none"_s)));
    QVERIFY(!m_access.open(m_directory->path()));
    QCOMPARE(::mkfifo(FilePath::toBytes(path(u"pipe"_s)).constData(), 0600), 0);
    QVERIFY(!m_access.open(path(u"pipe"_s)));
}

void DescriptorFileAccessTest::aVolumeThatDoesNotAnswerIsGivenUp()
{
    QVERIFY(QDir().mkdir(path(u"volume"_s)));
    TestVolume volume(path(u"volume"_s));
    REQUIRE_MOUNT(volume.mountSilent());
    const DescriptorFileAccess access(BoundedCalls(20ms));
    QCOMPARE(access.exist({url(u"volume/a"_s)}), std::nullopt);
    QVERIFY(!access.start(url(u"volume/a"_s)));
    QVERIFY(!access.open(path(u"volume/a"_s)));
    // The others go on.
    QVERIFY(m_access.start(write(u"a"_s)));
}

QTEST_GUILESS_MAIN(DescriptorFileAccessTest)
#include "DescriptorFileAccessTest.moc"
