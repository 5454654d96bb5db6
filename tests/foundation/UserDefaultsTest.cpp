#include "foundation/UserDefaults.h"

#include "tests/fakes/FileSizeLimit.h"
#include "tests/fakes/PrintedLines.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <optional>
#include <thread>

using namespace Qt::StringLiterals;

class UserDefaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void missingKeysHaveNoValue();
    void valuesSurviveReopening();
    void aValueThatIsNoNumberCountsAsZero();
    void numbersComeFromHandWrittenFiles();
    void aDotIsNoGroup();
    void removedKeysAreMissing();
    void anEmptyStringIsNotMissing();
    void otherThreadsMayRead();
    void whatIsWrittenIsForTheUserAlone();
    void readingCreatesNothing();
    void whatIsSetReachesTheFileSoon();
    void fullDiskIsToldOnce();
    void folderThatCannotBeMadeIsToldOnce();
    void whatIsWrittenAtTheEndIsToldOfToo();
    void heldLockHoldsUpNobody();
    void pipeInPlaceOfTheFileIsNotWaitedFor();

private:
    void makePipe(const QString &path) const;
    QString path() const { return m_directory->filePath(u"sub/tessarine.conf"_s); }

    std::optional<QTemporaryDir> m_directory;
};

void UserDefaultsTest::init()
{
    m_directory.emplace();
}

void UserDefaultsTest::missingKeysHaveNoValue()
{
    const UserDefaults defaults(path());
    QVERIFY(!defaults.contains(u"a.b"_s));
    QCOMPARE(defaults.integer(u"a.b"_s), 0);
    QVERIFY(!defaults.boolean(u"a.b"_s));
    QVERIFY(!defaults.string(u"a.b"_s));
    QVERIFY(!defaults.data(u"a.b"_s));
}

void UserDefaultsTest::valuesSurviveReopening()
{
    const QByteArray bytes("{\"name\": \"\xC3\xA4\"}\0\xFF", 17);
    {
        UserDefaults defaults(path());
        defaults.set(u"history.limit"_s, 10'000);
        defaults.set(u"AppLanguage"_s, u"简体中文, \"quoted\"; = %"_s);
        defaults.set(u"debug.drag_paste_logging"_s, true);
        defaults.set(u"HotkeySettings"_s, bytes);
    }
    const UserDefaults defaults(path());
    QCOMPARE(defaults.integer(u"history.limit"_s), 10'000);
    QCOMPARE(defaults.string(u"AppLanguage"_s), u"简体中文, \"quoted\"; = %"_s);
    QVERIFY(defaults.boolean(u"debug.drag_paste_logging"_s));
    QCOMPARE(defaults.data(u"HotkeySettings"_s), bytes);
}

void UserDefaultsTest::aValueThatIsNoNumberCountsAsZero()
{
    UserDefaults defaults(path());
    defaults.set(u"history.limit"_s, u"plenty"_s);
    QCOMPARE(defaults.integer(u"history.limit"_s), 0);
}

void UserDefaultsTest::numbersComeFromHandWrittenFiles()
{
    const QString file = m_directory->filePath(u"written.conf"_s);
    QFile written(file);
    QVERIFY(written.open(QIODevice::WriteOnly));
    written.write("[General]\nhistory.limit=10000\n");
    written.close();
    QCOMPARE(UserDefaults(file).integer(u"history.limit"_s), 10'000);
}

void UserDefaultsTest::aDotIsNoGroup()
{
    { UserDefaults(path()).set(u"history.limit"_s, 1); }
    QFile file(path());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("history.limit=1"));
}

void UserDefaultsTest::removedKeysAreMissing()
{
    UserDefaults defaults(path());
    defaults.set(u"key"_s, 1);
    defaults.remove(u"key"_s);
    QVERIFY(!defaults.contains(u"key"_s));
}

void UserDefaultsTest::anEmptyStringIsNotMissing()
{
    { UserDefaults(path()).set(u"key"_s, u""_s); }
    const UserDefaults defaults(path());
    QVERIFY(defaults.contains(u"key"_s));
    QCOMPARE(defaults.string(u"key"_s), QString());
}

void UserDefaultsTest::otherThreadsMayRead()
{
    UserDefaults defaults(path());
    defaults.set(u"history.limit"_s, 1'000);
    std::jthread reader([&defaults](const std::stop_token &stop) {
        while (!stop.stop_requested()) {
            const qint64 limit = defaults.integer(u"history.limit"_s);
            if (limit != 1'000 && limit != 10'000)
                qFatal("a value that was never set");
        }
    });
    for (int i = 0; i < 500; ++i)
        defaults.set(u"history.limit"_s, i % 2 ? 1'000 : 10'000);
}

void UserDefaultsTest::whatIsWrittenIsForTheUserAlone()
{
    const mode_t before = umask(0);
    for (int value = 0; value < 2; ++value) {
        UserDefaults defaults(path());
        defaults.set(u"a.b"_s, value);
    }
    umask(before);
    const auto ofOthers = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther
        | QFile::WriteOther | QFile::ExeOther;
    QVERIFY(QFile::exists(path()));
    QVERIFY(!(QFile::permissions(path()) & ofOthers));
    QVERIFY(!(QFile::permissions(m_directory->filePath(u"sub"_s)) & ofOthers));
}

void UserDefaultsTest::readingCreatesNothing()
{
    QVERIFY(!UserDefaults(path()).contains(u"a.b"_s));
    QVERIFY(!QFile::exists(m_directory->filePath(u"sub"_s)));
}

void UserDefaultsTest::whatIsSetReachesTheFileSoon()
{
    const PrintedLines lines;
    UserDefaults defaults(path());
    defaults.set(u"a.b"_s, 7);
    QTRY_COMPARE(UserDefaults(path()).integer(u"a.b"_s), 7);
    QCOMPARE(lines.lines(), QStringList());
}

void UserDefaultsTest::fullDiskIsToldOnce()
{
    const PrintedLines lines;
    UserDefaults defaults(path());
    {
        const FileSizeLimit limit(0);
        for (int value = 1; value <= 3; ++value) {
            defaults.set(u"a.b"_s, value);
            QTRY_COMPARE(lines.lines().size(), 1);
            QCoreApplication::processEvents();
        }
        QVERIFY(lines.lines().constFirst().startsWith(u"Failed to write the settings"_s));
        QVERIFY(lines.lines().constFirst().endsWith(path()));
        QCOMPARE(lines.lines().size(), 1);
        QCOMPARE(defaults.integer(u"a.b"_s), 3);
    }
    // There is room again.
    defaults.set(u"c.d"_s, 4);
    QTRY_COMPARE(UserDefaults(path()).integer(u"c.d"_s), 4);
    QCOMPARE(UserDefaults(path()).integer(u"a.b"_s), 3);
}

void UserDefaultsTest::folderThatCannotBeMadeIsToldOnce()
{
    QFile inTheWay(m_directory->filePath(u"sub"_s));
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    const PrintedLines lines;
    UserDefaults defaults(path());
    defaults.set(u"a.b"_s, 1);
    QTRY_COMPARE(lines.lines().size(), 1);
    defaults.set(u"a.b"_s, 2);
    QCoreApplication::processEvents();
    QCOMPARE(lines.lines().size(), 1);
    QCOMPARE(defaults.integer(u"a.b"_s), 2);
}

void UserDefaultsTest::whatIsWrittenAtTheEndIsToldOfToo()
{
    QFile inTheWay(m_directory->filePath(u"sub"_s));
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    const PrintedLines lines;
    { UserDefaults(path()).set(u"a.b"_s, 1); }
    QCOMPARE(lines.lines().size(), 1);
}

void UserDefaultsTest::makePipe(const QString &path) const
{
    QVERIFY(QDir(m_directory->path()).mkpath(u"sub"_s));
    QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
}

void UserDefaultsTest::heldLockHoldsUpNobody()
{
    // Who wants the lock waits for the other end of the pipe.
    const QString lock = path() + u".lock"_s;
    makePipe(lock);
    const PrintedLines lines;
    {
        UserDefaults defaults(path());
        defaults.set(u"a.b"_s, 1);
        defaults.set(u"a.b"_s, 2);
        QCOMPARE(defaults.integer(u"a.b"_s), 2);
        QCOMPARE(lines.lines(), QStringList());
    }
    QCOMPARE(lines.lines().size(), 1);
    QVERIFY(lines.lines().constFirst().startsWith(u"Failed to write the settings"_s));

    const int otherEnd = ::open(QFile::encodeName(lock).constData(), O_WRONLY | O_NONBLOCK);
    QVERIFY(otherEnd >= 0);
    QVERIFY(QFile::remove(lock));
    ::close(otherEnd);
    const auto written = [this] {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    QTRY_VERIFY_WITH_TIMEOUT(written().contains("a.b=2"), 20000);
}

void UserDefaultsTest::pipeInPlaceOfTheFileIsNotWaitedFor()
{
    makePipe(path());
    const PrintedLines lines;
    UserDefaults defaults(path());
    QVERIFY(!defaults.contains(u"a.b"_s));
    defaults.set(u"a.b"_s, 1);
    QTRY_COMPARE(lines.lines().size(), 1);
    QVERIFY(lines.lines().constFirst().startsWith(u"Failed to write the settings"_s));
    QCOMPARE(defaults.integer(u"a.b"_s), 1);
    QVERIFY(!QFileInfo(path()).isFile());
}

QTEST_GUILESS_MAIN(UserDefaultsTest)
#include "UserDefaultsTest.moc"
