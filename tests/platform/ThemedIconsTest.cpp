#include "platform/linux/ThemedIcons.h"

#include "foundation/FilePath.h"

#include <QDir>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// The environment names a folder of the test's own, with programs and themes.
class ThemedIconsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void aProgramHasTheIconOfItsEntry();
    void anEntryMayNameAFile();
    void anEntryMayNameAnIconLikeAFile();
    void programsWithoutAnIcon_data();
    void programsWithoutAnIcon();
    void aFileHasTheIconOfItsKind_data();
    void aFileHasTheIconOfItsKind();
    void aFolderHasItsOwnIconWhateverItsName_data();
    void aFolderHasItsOwnIconWhateverItsName();
    void filesHaveNoIconWhereTheThemeHasNoneAtAll();
    void theDesktopsThemeIsAskedForOnce();
    void settingsFilesNameTheThemeElse_data();
    void settingsFilesNameTheThemeElse();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    void write(const QString &name, const QByteArray &contents);
    void writeEntry(const QString &id, const QString &icon);
    void writeTheme(const QString &name, const QStringList &icons);

    std::unique_ptr<QTemporaryDir> m_folder;
};

void ThemedIconsTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    qputenv("HOME", QFile::encodeName(path(u"home"_s)));
    qputenv("XDG_DATA_HOME", QFile::encodeName(path(u"data"_s)));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(path(u"config"_s)));
    writeTheme(u"chosen"_s, {u"editor"_s, u"application-pdf"_s, u"x-office-document"_s,
                            u"text-x-generic"_s, u"folder"_s});
}

void ThemedIconsTest::write(const QString &name, const QByteArray &contents)
{
    QDir().mkpath(QFileInfo(path(name)).path());
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(contents);
}

void ThemedIconsTest::writeEntry(const QString &id, const QString &icon)
{
    write(u"data/applications/"_s + id + u".desktop"_s,
          "[Desktop Entry]\nName=Editor\nIcon=" + icon.toUtf8() + '\n');
}

/// Each icon holds the names of the theme and of itself.
void ThemedIconsTest::writeTheme(const QString &name, const QStringList &icons)
{
    const QString folder = u"data/icons/"_s + name;
    write(folder + u"/index.theme"_s, "[Icon Theme]\nDirectories=48\n[48]\nSize=48\n");
    for (const QString &icon : icons)
        write(folder + u"/48/"_s + icon + u".png"_s, (name + u' ' + icon).toUtf8());
}

void ThemedIconsTest::aProgramHasTheIconOfItsEntry()
{
    writeEntry(u"org.example.Editor"_s, u"editor"_s);
    const ThemedIcons icons([] { return u"chosen"_s; });
    QCOMPARE(icons.applicationIcon(u"org.example.Editor"_s, 32), QByteArray("chosen editor"));
}

void ThemedIconsTest::anEntryMayNameAFile()
{
    writeEntry(u"org.example.Editor"_s, path(u"some where.svg"_s));
    write(u"some where.svg"_s, "drawn");
    const ThemedIcons icons([] { return u"chosen"_s; });
    QCOMPARE(icons.applicationIcon(u"org.example.Editor"_s, 32), QByteArray("drawn"));
}

void ThemedIconsTest::anEntryMayNameAnIconLikeAFile()
{
    writeEntry(u"org.example.Editor"_s, u"editor.png"_s);
    const ThemedIcons icons([] { return u"chosen"_s; });
    QCOMPARE(icons.applicationIcon(u"org.example.Editor"_s, 32), QByteArray("chosen editor"));
}

void ThemedIconsTest::programsWithoutAnIcon_data()
{
    QTest::addColumn<QString>("icon");
    QTest::newRow("none") << QString();
    QTest::newRow("of a name that no theme knows") << u"no-icon-is-called-like-this"_s;
    QTest::newRow("a file that is missing") << u"/nowhere/icon.png"_s;
    QTest::newRow("a device without an end") << u"/dev/zero"_s;
    QTest::newRow("a pipe") << u"pipe"_s;
    QTest::newRow("much larger than icons are") << u"large"_s;
    QTest::newRow("a way out of the themes") << u"../../../large"_s;
}

void ThemedIconsTest::programsWithoutAnIcon()
{
    QFETCH(const QString, icon);
    write(u"large.png"_s, QByteArray(4 << 20, 'x'));
    write(u"data/icons/chosen/48/large.png"_s, QByteArray(4 << 20, 'x'));
    const QString pipe = path(u"data/icons/chosen/48/pipe.png"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    writeEntry(u"org.example.Editor"_s, icon);
    const ThemedIcons icons([] { return u"chosen"_s; });
    QVERIFY(!icons.applicationIcon(u"org.example.Editor"_s, 32));
    QVERIFY(!icons.applicationIcon(u"org.example.unknown"_s, 32));
    QVERIFY(!icons.applicationIcon(QString(), 32));
}

void ThemedIconsTest::aFileHasTheIconOfItsKind_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<std::optional<QByteArray>>("icon");
    QTest::newRow("of its own") << u"Report.PDF"_s << std::optional<QByteArray>("chosen application-pdf");
    QTest::newRow("of what it is like")
        << u"letter.odt"_s << std::optional<QByteArray>("chosen x-office-document");
    const std::optional<QByteArray> unknown("chosen text-x-generic");
    QTest::newRow("of no known kind") << u"a.no-such-kind"_s << unknown;
    QTest::newRow("without a suffix") << u"folder"_s << unknown;
}

void ThemedIconsTest::aFolderHasItsOwnIconWhateverItsName_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << u"letters"_s;
    QTest::newRow("like a document") << u"letters.pdf"_s;
    QTest::newRow("with a byte that is no UTF-8") << FilePath::fromBytes("letters \xff");
}

void ThemedIconsTest::aFolderHasItsOwnIconWhateverItsName()
{
    QFETCH(const QString, name);
    const ThemedIcons icons([] { return u"chosen"_s; });
    const QString folder = path(name);
    QVERIFY(icons.fileIcon(folder, 32) != "chosen folder");
    QCOMPARE(::mkdir(FilePath::toBytes(folder).constData(), 0700), 0);
    // QTemporaryDir leaves names behind that are no UTF-8.
    const auto cleanUp = qScopeGuard([&] { ::rmdir(FilePath::toBytes(folder).constData()); });
    QCOMPARE(icons.fileIcon(folder, 32), QByteArray("chosen folder"));
    QCOMPARE(::symlink(FilePath::toBytes(folder).constData(),
                       FilePath::toBytes(path(u"link.pdf"_s)).constData()), 0);
    QCOMPARE(icons.fileIcon(path(u"link.pdf"_s), 32), QByteArray("chosen folder"));
}

void ThemedIconsTest::filesHaveNoIconWhereTheThemeHasNoneAtAll()
{
    writeTheme(u"poor"_s, {u"application-pdf"_s});
    qputenv("XDG_DATA_DIRS", QFile::encodeName(path(u"nothing"_s)));
    const ThemedIcons icons([] { return u"poor"_s; });
    QVERIFY(icons.fileIcon(u"/nowhere/a.pdf"_s, 32));
    QVERIFY(!icons.fileIcon(u"/nowhere/a.no-such-kind"_s, 32));
}

void ThemedIconsTest::aFileHasTheIconOfItsKind()
{
    QFETCH(const QString, fileName);
    const ThemedIcons icons([] { return u"chosen"_s; });
    QTEST(icons.fileIcon(fileName, 32), "icon");
}

void ThemedIconsTest::theDesktopsThemeIsAskedForOnce()
{
    int count = 0;
    const ThemedIcons icons([&count] {
        ++count;
        return u"chosen"_s;
    });
    QCOMPARE(count, 0);
    static_cast<void>(icons.fileIcon(u"a.pdf"_s, 32));
    static_cast<void>(icons.fileIcon(u"b.pdf"_s, 32));
    QCOMPARE(count, 1);
}

void ThemedIconsTest::settingsFilesNameTheThemeElse_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("contents");
    QTest::newRow("KDE") << u"kdeglobals"_s << QByteArray("[Icons]\nTheme=filed\n");
    QTest::newRow("LXQt") << u"lxqt/lxqt.conf"_s << QByteArray("[General]\nicon_theme=filed\n");
    QTest::newRow("GTK") << u"gtk-3.0/settings.ini"_s
                         << QByteArray("[Settings]\ngtk-icon-theme-name=filed\n");
}

void ThemedIconsTest::settingsFilesNameTheThemeElse()
{
    QFETCH(const QString, file);
    QFETCH(const QByteArray, contents);
    writeTheme(u"filed"_s, {u"application-pdf"_s});
    write(u"config/"_s + file, contents);
    const ThemedIcons icons([] { return std::nullopt; });
    QCOMPARE(icons.fileIcon(u"a.pdf"_s, 32), QByteArray("filed application-pdf"));
}

QTEST_APPLESS_MAIN(ThemedIconsTest)
#include "ThemedIconsTest.moc"
