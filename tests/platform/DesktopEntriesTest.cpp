#include "platform/linux/DesktopEntries.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class DesktopEntriesTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void entryIsFoundById();
    void nameIsInTheLanguageOfTheSession_data();
    void nameIsInTheLanguageOfTheSession();
    void onlyTheEntrysOwnGroupCounts();
    void gtkIdGoesBeforeTheWindowClass();
    void windowClassIsMatchedIgnoringCase_data();
    void windowClassIsMatchedIgnoringCase();
    void instanceGoesBeforeTheClass();
    void entryOfTheSameNameForAnotherClassIsNotTaken();
    void browsersProfileIsCutOff();
    void userFolderGoesBeforeTheSystem();
    void hiddenEntryHidesTheProgram();
    void fileInASubfolderHasTheFolderInItsId();
    void programInstalledLaterIsFound();
    void unknownProgramsAreAbsent();
    void brokenFilesDoNoHarm();

private:
    void write(const QString &path, const QByteArray &keys);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DesktopEntries> m_entries;
};

void DesktopEntriesTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QDir(m_folder->path()).mkpath(u"user"_s);
    QDir(m_folder->path()).mkpath(u"system"_s);
    m_entries = std::make_unique<DesktopEntries>(QStringList{m_folder->filePath(u"user"_s),
                                                             m_folder->filePath(u"system"_s),
                                                             m_folder->filePath(u"missing"_s)},
                                                 u"de_AT.UTF-8@euro"_s);
}

void DesktopEntriesTest::write(const QString &path, const QByteArray &keys)
{
    const QString fullPath = m_folder->filePath(path);
    QDir().mkpath(QFileInfo(fullPath).path());
    QFile file(fullPath);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("# A comment\n[Desktop Entry]\nType=Application\n" + keys);
}

void DesktopEntriesTest::entryIsFoundById()
{
    write(u"system/org.some.Editor.desktop"_s,
          "Name=Editor\nCategories=Utility;TextEditor;\nStartupWMClass=ed\nIcon=pencil\n");

    const auto entry = m_entries->findById(u"org.some.Editor"_s);
    QVERIFY(entry);
    QCOMPARE(*entry,
             (DesktopEntry{
                 .id = u"org.some.Editor"_s,
                 .name = u"Editor"_s,
                 .windowClass = u"ed"_s,
                 .categories = {u"Utility"_s, u"TextEditor"_s},
                 .icon = u"pencil"_s}));
}

void DesktopEntriesTest::nameIsInTheLanguageOfTheSession_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QString>("name");

    QTest::newRow("language and country and modifier")
        << QByteArray("Name=a\nName[de]=b\nName[de_AT]=c\nName[de_AT@euro]=d\nName[de@euro]=e\n")
        << u"d"_s;
    QTest::newRow("language and country")
        << QByteArray("Name[de_AT]=c\nName[de@euro]=e\nName[de]=b\nName=a\n") << u"c"_s;
    QTest::newRow("language and modifier")
        << QByteArray("Name=a\nName[de]=b\nName[de@euro]=e\n") << u"e"_s;
    QTest::newRow("language") << QByteArray("Name[de]=b\nName[fr]=f\nName=a\n") << u"b"_s;
    QTest::newRow("another language only") << QByteArray("Name=a\nName[fr]=f\n") << u"a"_s;
    QTest::newRow("escapes and blanks") << QByteArray("Name = a\\sb\\\\c \r\n") << u"a b\\c"_s;
    QTest::newRow("no ASCII") << QByteArray("Name=\xc3\x9c\n") << u"Ü"_s;
}

void DesktopEntriesTest::nameIsInTheLanguageOfTheSession()
{
    QFETCH(QByteArray, keys);
    QFETCH(QString, name);
    write(u"system/one.desktop"_s, keys);

    QCOMPARE(m_entries->findById(u"one"_s)->name, name);
}

void DesktopEntriesTest::onlyTheEntrysOwnGroupCounts()
{
    write(u"system/one.desktop"_s,
          "Name=One\nGenericName=Thing\n[Desktop Action new]\nName=New window\n"
          "StartupWMClass=two\n");

    QCOMPARE(m_entries->findById(u"one"_s)->name, u"One"_s);
    QVERIFY(!m_entries->findByWindow({}, u"two"_s, u"Two"_s));
}

void DesktopEntriesTest::gtkIdGoesBeforeTheWindowClass()
{
    write(u"system/org.xfce.editor.desktop"_s, "Name=Right\n");
    write(u"system/editor.desktop"_s, "Name=Wrong\n");

    QCOMPARE(m_entries->findByWindow(u"org.xfce.editor"_s, u"editor"_s, u"Editor"_s)->id,
             u"org.xfce.editor"_s);
    // An id without an entry leaves the class to tell.
    QCOMPARE(m_entries->findByWindow(u"org.other"_s, u"editor"_s, u"Editor"_s)->id, u"editor"_s);
}

void DesktopEntriesTest::windowClassIsMatchedIgnoringCase_data()
{
    QTest::addColumn<QString>("instanceName");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("id");

    QTest::newRow("StartupWMClass and class") << u"shell"_s << u"XTERM"_s << u"debian-xterm"_s;
    QTest::newRow("StartupWMClass and both") << u"xterm"_s << u"XTerm"_s << u"debian-xterm"_s;
    QTest::newRow("file name and class") << u"main"_s << u"Pcmanfm"_s << u"pcmanfm"_s;
    QTest::newRow("file name and instance") << u"pcmanfm"_s << u"Other"_s << u"pcmanfm"_s;
    QTest::newRow("end of a dotted file name")
        << u"player"_s << u"Player"_s << u"org.some.Player"_s;
    QTest::newRow("file name in capitals") << u"viewer"_s << u"viewer"_s << u"Viewer"_s;
}

void DesktopEntriesTest::windowClassIsMatchedIgnoringCase()
{
    QFETCH(QString, instanceName);
    QFETCH(QString, className);
    QFETCH(QString, id);
    write(u"system/debian-xterm.desktop"_s, "Name=XTerm\nStartupWMClass=XTerm\n");
    write(u"system/pcmanfm.desktop"_s, "Name=Files\n");
    write(u"system/Viewer.desktop"_s, "Name=Viewer\n");
    write(u"system/org.some.Player.desktop"_s, "Name=Player\n");

    const auto entry = m_entries->findByWindow({}, instanceName, className);
    QVERIFY(entry);
    QCOMPARE(entry->id, id);
}

void DesktopEntriesTest::instanceGoesBeforeTheClass()
{
    write(u"system/browser.desktop"_s, "Name=Browser\nStartupWMClass=Browser\n");
    write(u"system/mail-app.desktop"_s, "Name=Mail\nStartupWMClass=crx_mail\n");

    QCOMPARE(m_entries->findByWindow({}, u"crx_mail"_s, u"Browser"_s)->id, u"mail-app"_s);
}

void DesktopEntriesTest::entryOfTheSameNameForAnotherClassIsNotTaken()
{
    write(u"system/office.desktop"_s, "Name=Start\nStartupWMClass=office-start\n");
    write(u"system/office-writer.desktop"_s, "Name=Writer\nStartupWMClass=office\n");

    QCOMPARE(m_entries->findByWindow({}, u"office"_s, u"Office"_s)->id, u"office-writer"_s);
}

void DesktopEntriesTest::browsersProfileIsCutOff()
{
    write(u"system/chromium.desktop"_s, "Name=Chromium\nStartupWMClass=chromium\n");

    QCOMPARE(m_entries->findByWindow({}, u"chromium (/home/me/p (1))"_s, u"Chromium"_s)->id,
             u"chromium"_s);
}

void DesktopEntriesTest::userFolderGoesBeforeTheSystem()
{
    write(u"system/one.desktop"_s, "Name=System\nStartupWMClass=uno\n");
    write(u"user/one.desktop"_s, "Name=User\n");

    QCOMPARE(m_entries->findById(u"one"_s)->name, u"User"_s);
    QVERIFY(!m_entries->findByWindow({}, u"uno"_s, u"Uno"_s));
}

void DesktopEntriesTest::hiddenEntryHidesTheProgram()
{
    write(u"system/one.desktop"_s, "Name=System\nStartupWMClass=uno\n");
    write(u"user/one.desktop"_s, "Name=User\nStartupWMClass=uno\nHidden=true\n");

    QVERIFY(!m_entries->findById(u"one"_s));
    QVERIFY(!m_entries->findByWindow({}, u"one"_s, u"uno"_s));
}

void DesktopEntriesTest::fileInASubfolderHasTheFolderInItsId()
{
    write(u"system/kde/tool.desktop"_s, "Name=Tool\n");

    QCOMPARE(m_entries->findById(u"kde-tool"_s)->name, u"Tool"_s);
    QCOMPARE(m_entries->findByWindow({}, u"x"_s, u"kde-tool"_s)->id, u"kde-tool"_s);
    QVERIFY(!m_entries->findById(u"kde/tool"_s));
}

void DesktopEntriesTest::programInstalledLaterIsFound()
{
    QVERIFY(!m_entries->findByWindow({}, u"two"_s, u"Late"_s));
    write(u"system/late-program.desktop"_s, "Name=Late\nStartupWMClass=late\n");

    // The folder's time may not have moved on yet; file systems count in milliseconds.
    QTRY_VERIFY([this] {
        write(u"system/late-program.desktop"_s, "Name=Late\nStartupWMClass=late\n");
        write(u"system/other.desktop"_s, "Name=Other\n");
        QFile::remove(m_folder->filePath(u"system/other.desktop"_s));
        return m_entries->findByWindow({}, u"two"_s, u"Late"_s).has_value();
    }());
}

void DesktopEntriesTest::unknownProgramsAreAbsent()
{
    write(u"system/one.desktop"_s, "Name=One\n");

    QVERIFY(!m_entries->findById({}));
    QVERIFY(!m_entries->findById(u"two"_s));
    QVERIFY(!m_entries->findById(u"../system/one"_s));
    QVERIFY(!m_entries->findByWindow({}, {}, {}));
    QVERIFY(!m_entries->findByWindow({}, {}, u"Two"_s));
}

void DesktopEntriesTest::brokenFilesDoNoHarm()
{
    QFile file(m_folder->filePath(u"system/broken.desktop"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[\n=\nName\n[Desktop Entry\nStartupWMClass=a\n\xff\xfe=\\");
    file.close();
    write(u"system/end.desktop"_s, "Name=End\\");

    QCOMPARE(m_entries->findById(u"broken"_s)->name, QString());
    QCOMPARE(m_entries->findById(u"end"_s)->name, u"End\\"_s);
    QVERIFY(!m_entries->findByWindow({}, u"a"_s, u"a"_s));
}

QTEST_APPLESS_MAIN(DesktopEntriesTest)
#include "DesktopEntriesTest.moc"
