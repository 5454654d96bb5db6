#include "platform/linux/IconTheme.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QByteArray kPlain = "[Icon Theme]\nName=Plain\nInherits=parent\n"
                          "Directories=16/apps,32/apps,any/apps,16@2/apps\n"
                          "[16/apps]\nSize=16\nType=Fixed\n"
                          "[32/apps]\nSize=32\nType=Threshold\nThreshold=4\n"
                          "[any/apps]\nSize=128\nMinSize=64\nMaxSize=256\nType=Scalable\n"
                          "[16@2/apps]\nSize=16\nScale=2\nType=Fixed\n";
const QByteArray kOneSize = "[Icon Theme]\nDirectories=48\n[48]\nSize=48\nType=Fixed\n";

} // namespace

class IconThemeTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void theSizeNextToTheWantedOneIsTaken_data();
    void theSizeNextToTheWantedOneIsTaken();
    void theThemeGoesBeforeThoseItStandsOn();
    void themesThatStandOnEachOtherAreSearchedOnce();
    void theCommonThemeComesLast();
    void theFirstNameGoesBeforeTheSecondInATheme();
    void theFirstFolderWins();
    void iconsWithoutAThemeAreFoundInTheEnd();
    void whatIsNowhereIsEmpty();
    void namesThatLeadElsewhereAreNotFollowed();
    void brokenDescriptionsDoNoHarm_data();
    void brokenDescriptionsDoNoHarm();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    void write(const QString &name, const QByteArray &contents = {});
    QString find(const QStringList &names, int side = 48) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void IconThemeTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void IconThemeTest::write(const QString &name, const QByteArray &contents)
{
    QDir().mkpath(QFileInfo(path(name)).path());
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(contents);
}

/// Relative to the folder.
QString IconThemeTest::find(const QStringList &names, int side) const
{
    const IconTheme theme({path(u"home"_s), path(u"shared"_s)}, u"plain"_s);
    const QString found = theme.find(names, side);
    return found.isEmpty() ? found : QDir(m_folder->path()).relativeFilePath(found);
}

void IconThemeTest::theSizeNextToTheWantedOneIsTaken_data()
{
    QTest::addColumn<QStringList>("sizes");
    QTest::addColumn<int>("side");
    QTest::addColumn<QString>("found");
    const QStringList all{u"16"_s, u"32"_s, u"any"_s};
    QTest::newRow("the very one") << all << 16 << u"16"_s;
    QTest::newRow("within the threshold") << all << 36 << u"32"_s;
    QTest::newRow("larger before smaller") << all << 40 << u"any"_s;
    QTest::newRow("any size of a drawing") << all << 200 << u"any"_s;
    QTest::newRow("the largest if all are smaller") << QStringList{u"16"_s, u"32"_s} << 200 << u"32"_s;
    QTest::newRow("the smallest if all are larger") << all << 12 << u"16"_s;
    QTest::newRow("as many pixels at a doubled scale")
        << QStringList{u"16"_s, u"16@2"_s} << 32 << u"16@2"_s;
}

void IconThemeTest::theSizeNextToTheWantedOneIsTaken()
{
    QFETCH(const QStringList, sizes);
    QFETCH(const int, side);
    QFETCH(const QString, found);
    write(u"shared/plain/index.theme"_s, kPlain);
    for (const QString &size : sizes)
        write(u"shared/plain/"_s + size + u"/apps/editor.png"_s);
    QCOMPARE(find({u"editor"_s}, side), u"shared/plain/"_s + found + u"/apps/editor.png"_s);
}

void IconThemeTest::theThemeGoesBeforeThoseItStandsOn()
{
    write(u"shared/plain/index.theme"_s, kPlain);
    write(u"shared/parent/index.theme"_s, kOneSize);
    write(u"shared/parent/48/editor.png"_s);
    QCOMPARE(find({u"editor"_s}), u"shared/parent/48/editor.png"_s);
    write(u"shared/plain/16/apps/editor.svg"_s);
    QCOMPARE(find({u"editor"_s}), u"shared/plain/16/apps/editor.svg"_s);
}

void IconThemeTest::themesThatStandOnEachOtherAreSearchedOnce()
{
    write(u"shared/plain/index.theme"_s, kPlain);
    write(u"shared/parent/index.theme"_s, "[Icon Theme]\nInherits=plain,parent,../plain\n");
    write(u"shared/plain/32/apps/editor.xpm"_s);
    QCOMPARE(find({u"missing"_s}), QString());
    QCOMPARE(find({u"editor"_s}), u"shared/plain/32/apps/editor.xpm"_s);
}

void IconThemeTest::theCommonThemeComesLast()
{
    write(u"shared/plain/index.theme"_s, "[Icon Theme]\nInherits=hicolor,parent\n");
    write(u"shared/parent/index.theme"_s, kOneSize);
    write(u"shared/hicolor/index.theme"_s, kOneSize);
    write(u"shared/hicolor/48/editor.png"_s);
    QCOMPARE(find({u"editor"_s}), u"shared/hicolor/48/editor.png"_s);
    write(u"shared/parent/48/editor.png"_s);
    QCOMPARE(find({u"editor"_s}), u"shared/parent/48/editor.png"_s);
}

void IconThemeTest::theFirstNameGoesBeforeTheSecondInATheme()
{
    write(u"shared/plain/index.theme"_s, kPlain);
    write(u"shared/hicolor/index.theme"_s, kOneSize);
    write(u"shared/hicolor/48/text-html.png"_s);
    write(u"shared/plain/32/apps/text-x-generic.png"_s);
    const QStringList names{u"text-html"_s, u"text-x-generic"_s};
    // The person's theme shows something of the kind; that suits better than a foreign picture.
    QCOMPARE(find(names), u"shared/plain/32/apps/text-x-generic.png"_s);
    write(u"shared/plain/16/apps/text-html.png"_s);
    QCOMPARE(find(names), u"shared/plain/16/apps/text-html.png"_s);
}

void IconThemeTest::theFirstFolderWins()
{
    write(u"shared/hicolor/index.theme"_s, kOneSize);
    write(u"shared/hicolor/48/editor.png"_s);
    write(u"home/hicolor/48/editor.png"_s); // Without a description of its own.
    QCOMPARE(find({u"editor"_s}), u"home/hicolor/48/editor.png"_s);
}

void IconThemeTest::iconsWithoutAThemeAreFoundInTheEnd()
{
    write(u"shared/editor.xpm"_s);
    QCOMPARE(find({u"editor"_s}), u"shared/editor.xpm"_s);
    write(u"shared/hicolor/index.theme"_s, kOneSize);
    write(u"shared/hicolor/48/editor.png"_s);
    QCOMPARE(find({u"editor"_s}), u"shared/hicolor/48/editor.png"_s);
}

void IconThemeTest::whatIsNowhereIsEmpty()
{
    QCOMPARE(find({u"editor"_s}), QString());
    QCOMPARE(find({}), QString());
    QCOMPARE(find({QString()}), QString());
}

void IconThemeTest::namesThatLeadElsewhereAreNotFollowed()
{
    write(u"outside.png"_s);
    QDir().mkpath(path(u"shared"_s));
    QCOMPARE(find({u"../outside"_s}), QString());
}

void IconThemeTest::brokenDescriptionsDoNoHarm_data()
{
    QTest::addColumn<QByteArray>("description");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no groups") << QByteArray("Directories=16/apps\n=\n[\n]\n[]\n");
    QTest::newRow("no sizes") << QByteArray("[Icon Theme]\nDirectories=16/apps\n");
    QTest::newRow("sizes that are no numbers")
        << QByteArray("[Icon Theme]\nDirectories=16/apps\n[16/apps]\nSize=large\nScale=x\n");
    QTest::newRow("bytes") << QByteArray("\xff\x00[Icon Theme]\n\xfe=\x80\n", 20);
}

void IconThemeTest::brokenDescriptionsDoNoHarm()
{
    QFETCH(const QByteArray, description);
    write(u"shared/plain/index.theme"_s, description);
    write(u"shared/plain/16/apps/editor.png"_s);
    QCOMPARE(find({u"editor"_s}), QString());
}

QTEST_APPLESS_MAIN(IconThemeTest)
#include "IconThemeTest.moc"
