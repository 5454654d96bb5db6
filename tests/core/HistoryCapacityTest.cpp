#include "core/HistoryCapacity.h"

#include "foundation/UserDefaults.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class HistoryCapacityTest : public QObject
{
    Q_OBJECT

private slots:
    void onlyTheOfferedCapacitiesCount_data();
    void onlyTheOfferedCapacitiesCount();
    void aMissingSettingIsTheSmallestCapacity();
    void aSettingThatDoesNotCountIsNotRewritten();
    void theSettingIsReadAtEachUse();
};

void HistoryCapacityTest::onlyTheOfferedCapacitiesCount_data()
{
    QTest::addColumn<qint64>("value");
    QTest::addColumn<qsizetype>("capacity");
    QTest::newRow("small") << qint64(1'000) << qsizetype(1'000);
    QTest::newRow("large") << qint64(10'000) << qsizetype(10'000);
    QTest::newRow("nothing") << qint64(0) << qsizetype(1'000);
    QTest::newRow("another number") << qint64(500) << qsizetype(1'000);
    QTest::newRow("just beside") << qint64(9'999) << qsizetype(1'000);
    QTest::newRow("negative") << qint64(-10'000) << qsizetype(1'000);
    QTest::newRow("huge") << qint64(10'000) * 1'000'000'000 << qsizetype(1'000);
}

void HistoryCapacityTest::onlyTheOfferedCapacitiesCount()
{
    QFETCH(const qint64, value);
    QFETCH(const qsizetype, capacity);
    QCOMPARE(normalizedCapacity(value), capacity);
}

void HistoryCapacityTest::aMissingSettingIsTheSmallestCapacity()
{
    const QTemporaryDir directory;
    const UserDefaults defaults(directory.filePath(u"tessarine.conf"_s));
    QCOMPARE(currentCapacity(defaults), 1'000);
}

void HistoryCapacityTest::aSettingThatDoesNotCountIsNotRewritten()
{
    const QTemporaryDir directory;
    UserDefaults defaults(directory.filePath(u"tessarine.conf"_s));
    defaults.set(u"history.limit"_s, 500);
    QCOMPARE(currentCapacity(defaults), 1'000);
    QCOMPARE(defaults.integer(u"history.limit"_s), 500);
}

void HistoryCapacityTest::theSettingIsReadAtEachUse()
{
    const QTemporaryDir directory;
    UserDefaults defaults(directory.filePath(u"tessarine.conf"_s));
    QCOMPARE(currentCapacity(defaults), 1'000);
    defaults.set(u"history.limit"_s, 10'000);
    QCOMPARE(currentCapacity(defaults), 10'000);
}

QTEST_GUILESS_MAIN(HistoryCapacityTest)
#include "HistoryCapacityTest.moc"
