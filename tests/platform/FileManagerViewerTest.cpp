#include "platform/linux/FileManagerViewer.h"

#include "foundation/FilePath.h"
#include "tests/fakes/FakeScheduler.h"
#include "tests/fakes/FakeWorkspace.h"
#include "tests/platform/PrivateDesktop.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto kService = u"org.freedesktop.FileManager1"_s;
constexpr auto kPatience = 5s;

QList<QUrl> local(const QStringList &paths)
{
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls.append(FilePath::toUrl(path));
    return urls;
}

} // namespace

/// A file manager on a connection of its own, which keeps what it is asked to show.
class FakeFileManager : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    explicit FakeFileManager(const QString &busAddress)
        : m_bus(QDBusConnection::connectToBus(busAddress, u"file manager"_s))
    {
        m_bus.registerObject(u"/org/freedesktop/FileManager1"_s, this,
                             QDBusConnection::ExportAllSlots);
        m_bus.registerService(kService);
    }

    ~FakeFileManager() override { QDBusConnection::disconnectFromBus(u"file manager"_s); }

    /// Answers what was not answered.
    void answer()
    {
        for (const QDBusMessage &call : std::exchange(m_unanswered, {}))
            m_bus.send(call.createReply());
    }

    QList<QStringList> shown;
    QStringList tokens;
    bool isSilent = false;
    bool refuses = false;

public slots:
    void ShowItems(const QStringList &urls, const QString &token) // The name is the bus's.
    {
        shown.append(urls);
        tokens.append(token);
        if (refuses)
            sendErrorReply(QDBusError::Failed, u"No display"_s);
        if (isSilent) {
            setDelayedReply(true);
            m_unanswered.append(message());
        }
    }

private:
    QDBusConnection m_bus;
    QList<QDBusMessage> m_unanswered;
};

class FileManagerViewerTest : public QObject
{
    Q_OBJECT

public:
    FileManagerViewerTest(QString busAddress, QString folder)
        : m_busAddress(std::move(busAddress))
        , m_folder(std::move(folder))
    {
    }

private slots:
    void initTestCase();
    void init();

    void theFileManagerIsGivenTheFilesAndTheToken();
    void everyNameArrivesAsItIs();
    void aThousandFilesAreOneCall();
    void nothingIsAskedForNoFiles();
    void aFileManagerThatDoesNotRunIsStarted();
    void withoutAFileManagerTheFolderIsOpened();
    void aRefusalOpensTheFolder();
    void withoutABusTheFolderIsOpened();
    void silenceOpensTheFolderOnce();
    void anAnswerInTimeOpensNoFolder();
    void anEndingProgramOpensNoFolder();
    void eachFolderIsOpenedOnce();
    void aFolderIsShownWhereItLies();
    void whatOpensFoldersInheritsNothingOfOurs();
    void withoutAnythingThatOpensFoldersNothingHappens();

private:
    /// What xdg-open was given, each time that it was started.
    QStringList opened() const { return linesOf(u"opened"_s); }

    QStringList linesOf(const QString &name) const
    {
        QFile file(m_folder + u'/' + name);
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    }

    /// The bus notices new services by itself, but a moment later.
    static void lookForServices()
    {
        const QString bus = u"org.freedesktop.DBus"_s;
        QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
            bus, u"/org/freedesktop/DBus"_s, bus, u"ReloadConfig"_s));
    }

    void writeScript(const QString &name, const QByteArray &text) const
    {
        QFile file(m_folder + u'/' + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + text);
        file.close();
        QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner));
    }

    QString m_busAddress;
    QString m_folder;
    FakeWorkspace m_workspace;
    std::unique_ptr<FakeScheduler> m_scheduler;
    std::unique_ptr<FileManagerViewer> m_viewer;
};

void FileManagerViewerTest::initTestCase()
{
    // The line that tells of the start comes last, in one piece.
    writeScript(u"xdg-open"_s, "descriptors=$(ls -l /proc/$$/fd)\n"
                               "cd \"$(dirname \"$0\")\"\n"
                               "{ env; echo \"cwd=$OLDPWD\"; } > inherited\n"
                               "echo \"$descriptors\" > descriptors\n"
                               "echo \"$#:$1\" >> opened\n");
}

void FileManagerViewerTest::init()
{
    QFile::remove(m_folder + u"/opened"_s);
    qputenv("PATH", m_folder.toUtf8() + ":/usr/bin:/bin");
    m_workspace = FakeWorkspace();
    m_scheduler = std::make_unique<FakeScheduler>();
    m_viewer = std::make_unique<FileManagerViewer>(m_workspace, *m_scheduler);
}

void FileManagerViewerTest::theFileManagerIsGivenTheFilesAndTheToken()
{
    FakeFileManager manager(m_busAddress);
    m_workspace.nextToken = u"tessarine-1-1_TIME42"_s;
    m_viewer->activateFileViewerSelecting(local({u"/tmp/a"_s}));
    QTRY_COMPARE(manager.shown, QList<QStringList>({{u"file:///tmp/a"_s}}));
    QCOMPARE(manager.tokens, QStringList{u"tessarine-1-1_TIME42"_s});
}

void FileManagerViewerTest::everyNameArrivesAsItIs()
{
    FakeFileManager manager(m_busAddress);
    const QByteArrayList paths{"/tmp/100% \xC3\xBC.txt",  "/tmp/a b#c?d&e=f;g:h@i",
                               "/tmp/line\nend\ttab",     "/tmp/'quoted\" $(x) `y` \\z",
                               "/tmp/caf\xE9 not UTF-8",  "/tmp/-option",
                               "/tmp/\xF0\x9F\x98\x80" "e\xCC\x81", "/tmp/%41 %zz +"};
    QList<QUrl> urls;
    for (const QByteArray &path : paths)
        urls.append(FilePath::toUrl(path));
    urls.append(QUrl(u"smb://server/share/a b"_s));
    m_viewer->activateFileViewerSelecting(urls);
    QTRY_COMPARE(manager.shown.size(), 1);
    const QStringList shown = manager.shown.first();
    QCOMPARE(shown.size(), paths.size() + 1);
    for (qsizetype index = 0; index < paths.size(); ++index) {
        const QByteArray url = shown.at(index).toLatin1();
        QVERIFY(url.startsWith("file:///tmp/"));
        QCOMPARE(QByteArray::fromPercentEncoding(url.mid(7)), paths.at(index));
        QVERIFY(!url.contains('#') && !url.contains('?') && !url.contains(' '));
    }
    QCOMPARE(shown.last(), u"smb://server/share/a%20b"_s);
}

void FileManagerViewerTest::aThousandFilesAreOneCall()
{
    FakeFileManager manager(m_busAddress);
    QStringList paths;
    for (int number = 0; number < 1000; ++number)
        paths.append(u"/tmp/%1"_s.arg(number));
    m_viewer->activateFileViewerSelecting(local(paths));
    QTRY_COMPARE(manager.shown.size(), 1);
    QCOMPARE(manager.shown.first().size(), 1000);
    QCOMPARE(manager.shown.first().last(), u"file:///tmp/999"_s);
}

void FileManagerViewerTest::nothingIsAskedForNoFiles()
{
    FakeFileManager manager(m_busAddress);
    m_viewer->activateFileViewerSelecting({});
    m_viewer->activateFileViewerSelecting(local({u"/tmp/a"_s}));
    QTRY_COMPARE(manager.shown.size(), 1);
    QCOMPARE(manager.shown.first().size(), 1);
}

void FileManagerViewerTest::aFileManagerThatDoesNotRunIsStarted()
{
    // Where the bus looks for services in the test's home.
    const QString services = m_folder + u"/dbus-1/services"_s;
    QVERIFY(QDir().mkpath(services));
    // One that ends well might have a child that is still to come up.
    writeScript(u"starter"_s, "echo started >> '" + m_folder.toUtf8() + "/opened'\nexit 1\n");
    QFile service(services + u"/manager.service"_s);
    QVERIFY(service.open(QIODevice::WriteOnly));
    service.write("[D-BUS Service]\nName=org.freedesktop.FileManager1\nExec=" + m_folder.toUtf8()
                  + "/starter\n");
    service.close();
    const auto forget = qScopeGuard([&] {
        service.remove();
        lookForServices();
    });
    lookForServices();
    m_viewer->activateFileViewerSelecting(local({u"/tmp/a"_s}));
    // It does not come up, and is given up at once.
    QTRY_COMPARE(opened(), (QStringList{u"started"_s, u"1:file:///tmp/"_s}));
}

void FileManagerViewerTest::withoutAFileManagerTheFolderIsOpened()
{
    m_viewer->activateFileViewerSelecting(local({u"/tmp/ü 100%/a#b"_s}));
    QTRY_COMPARE(opened(), QStringList{u"1:file:///tmp/%C3%BC%20100%25/"_s});
    // It was asked once and answered; the end of the patience changes nothing.
    m_scheduler->advance(kPatience);
    QCOMPARE(opened().size(), 1);
}

void FileManagerViewerTest::aRefusalOpensTheFolder()
{
    FakeFileManager manager(m_busAddress);
    manager.refuses = true;
    m_viewer->activateFileViewerSelecting(local({u"/tmp/a"_s}));
    QTRY_COMPARE(opened(), QStringList{u"1:file:///tmp/"_s});
}

void FileManagerViewerTest::withoutABusTheFolderIsOpened()
{
    FakeFileManager manager(m_busAddress);
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    m_viewer->activateFileViewerSelecting(local({u"/tmp/a"_s}));
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_busAddress.toUtf8());
    QTRY_COMPARE(opened(), QStringList{u"1:file:///tmp/"_s});
    QVERIFY(manager.shown.isEmpty());
}

void FileManagerViewerTest::silenceOpensTheFolderOnce()
{
    FakeFileManager manager(m_busAddress);
    manager.isSilent = true;
    m_viewer->activateFileViewerSelecting(local({u"/tmp/a"_s}));
    QTRY_COMPARE(manager.shown.size(), 1);
    m_scheduler->advance(kPatience - 1ms);
    QVERIFY(opened().isEmpty());
    m_scheduler->advance(1ms);
    QTRY_COMPARE(opened(), QStringList{u"1:file:///tmp/"_s});

    // Neither time nor the answers that come too late open it again.
    manager.refuses = true;
    m_scheduler->advance(1min);
    manager.answer();
    manager.isSilent = false;
    m_viewer->activateFileViewerSelecting(local({u"/other/a"_s}));
    QTRY_COMPARE(opened(), (QStringList{u"1:file:///tmp/"_s, u"1:file:///other/"_s}));
}

void FileManagerViewerTest::anAnswerInTimeOpensNoFolder()
{
    FakeFileManager manager(m_busAddress);
    manager.isSilent = true;
    m_viewer->activateFileViewerSelecting(local({u"/tmp/a"_s}));
    QTRY_COMPARE(manager.shown.size(), 1);
    manager.answer();
    // A later refusal has come by when the earlier answer must have.
    manager.isSilent = false;
    manager.refuses = true;
    m_viewer->activateFileViewerSelecting(local({u"/other/a"_s}));
    QTRY_COMPARE(opened(), QStringList{u"1:file:///other/"_s});
    m_scheduler->advance(1min);
    m_viewer->activateFileViewerSelecting(local({u"/third/a"_s}));
    QTRY_COMPARE(opened(), (QStringList{u"1:file:///other/"_s, u"1:file:///third/"_s}));
}

void FileManagerViewerTest::anEndingProgramOpensNoFolder()
{
    FakeFileManager manager(m_busAddress);
    manager.isSilent = true;
    m_viewer->activateFileViewerSelecting(local({u"/tmp/a"_s}));
    QTRY_COMPARE(manager.shown.size(), 1);
    m_viewer.reset();
    m_scheduler->advance(1min);
    FileManagerViewer later(m_workspace, *m_scheduler);
    manager.isSilent = false;
    manager.refuses = true;
    later.activateFileViewerSelecting(local({u"/other/a"_s}));
    QTRY_COMPARE(opened(), QStringList{u"1:file:///other/"_s});
}

void FileManagerViewerTest::eachFolderIsOpenedOnce()
{
    m_viewer->activateFileViewerSelecting(local({u"/tmp/b"_s, u"/other/a"_s, u"/tmp/a"_s}));
    QTRY_COMPARE(opened().size(), 2);
    QStringList folders = opened();
    folders.sort(); // They start side by side.
    QCOMPARE(folders, (QStringList{u"1:file:///other/"_s, u"1:file:///tmp/"_s}));
}

void FileManagerViewerTest::aFolderIsShownWhereItLies()
{
    m_viewer->activateFileViewerSelecting({QUrl(u"file:///home/someone/Pictures/"_s)});
    QTRY_COMPARE(opened(), QStringList{u"1:file:///home/someone/"_s});
}

void FileManagerViewerTest::whatOpensFoldersInheritsNothingOfOurs()
{
    QTemporaryDir elsewhere;
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(elsewhere.path()));
    m_workspace.nextToken = u"tessarine-1-2_TIME43"_s;
    m_viewer->activateFileViewerSelecting(local({u"/tmp/a"_s}));
    QTRY_COMPARE(opened().size(), 1);
    QVERIFY(QDir::setCurrent(before));
    const QStringList inherited = linesOf(u"inherited"_s);
    QVERIFY(inherited.contains(u"cwd="_s + QDir::homePath()));
    QVERIFY(inherited.contains(u"DESKTOP_STARTUP_ID=tessarine-1-2_TIME43"_s));
    const QStringList descriptors = linesOf(u"descriptors"_s);
    for (const QString &stream : {u" 0 -> /dev/null"_s, u" 1 -> /dev/null"_s, u" 2 -> /dev/null"_s})
        QCOMPARE(descriptors.filter(stream).size(), 1);
}

void FileManagerViewerTest::withoutAnythingThatOpensFoldersNothingHappens()
{
    qputenv("PATH", "/nowhere");
    m_viewer->activateFileViewerSelecting(local({u"/tmp/a"_s}));
    QTRY_VERIFY(m_viewer->findChildren<QDBusPendingCallWatcher *>().isEmpty());
    // The next one works.
    FakeFileManager manager(m_busAddress);
    m_viewer->activateFileViewerSelecting(local({u"/tmp/b"_s}));
    QTRY_COMPARE(manager.shown.size(), 1);
    QVERIFY(opened().isEmpty());
}

int main(int argc, char *argv[])
{
    PrivateDesktop desktop;
    // Services that are installed on this machine are not to be started.
    desktop.setVariable("XDG_DATA_DIRS", desktop.folder());
    desktop.setVariable("XDG_DATA_HOME", desktop.folder());
    const QString busAddress = desktop.startBus();
    if (busAddress.isEmpty())
        return EXIT_FAILURE;
    qputenv("DBUS_SESSION_BUS_ADDRESS", busAddress.toUtf8());
    qputenv("XDG_RUNTIME_DIR", desktop.folder().toUtf8()); // Where the session's own bus may be.
    QCoreApplication application(argc, argv);
    FileManagerViewerTest test(busAddress, desktop.folder());
    return QTest::qExec(&test, argc, argv);
}

#include "FileManagerViewerTest.moc"
