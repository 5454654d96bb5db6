#include "platform/linux/VirtualKeyCodes.h"

#include <QTest>

#include <set>

class VirtualKeyCodesTest : public QObject
{
    Q_OBJECT

private slots:
    void codesMeanTheirKeys_data();
    void codesMeanTheirKeys();
    void codesOfNoKeyAreAbsent();
    void everyKeyOfACombinationIsThereOnce();
};

void VirtualKeyCodesTest::codesMeanTheirKeys_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<quint32>("keysym");
    QTest::addColumn<quint16>("position");

    QTest::newRow("the letter A") << 0u << quint32('a') << quint16(30);
    QTest::newRow("the letter V") << 9u << quint32('v') << quint16(47);
    QTest::newRow("six is before five") << 22u << quint32('6') << quint16(7);
    QTest::newRow("five is after six") << 23u << quint32('5') << quint16(6);
    QTest::newRow("Enter") << 36u << 0xff0du << quint16(28);
    QTest::newRow("Tab") << 48u << 0xff09u << quint16(15);
    QTest::newRow("Space") << 49u << quint32(' ') << quint16(57);
    QTest::newRow("backquote") << 50u << quint32('`') << quint16(41);
    QTest::newRow("Escape by its name") << 52u << 0xff1bu << quint16(1);
    QTest::newRow("Escape by its place") << 53u << 0xff1bu << quint16(1);
}

void VirtualKeyCodesTest::codesMeanTheirKeys()
{
    QFETCH(quint32, code);
    QFETCH(quint32, keysym);
    QFETCH(quint16, position);

    const auto key = findVirtualKey(code);
    QVERIFY(key);
    QCOMPARE(key->keysym, keysym);
    QCOMPARE(key->position, position);
}

void VirtualKeyCodesTest::codesOfNoKeyAreAbsent()
{
    for (const quint32 code : {10u, 54u, 55u, 61u, 62u, 4711u})
        QVERIFY(!findVirtualKey(code));
}

void VirtualKeyCodesTest::everyKeyOfACombinationIsThereOnce()
{
    std::set<quint32> keysyms;
    std::set<quint16> positions;
    for (quint32 code = 0; code <= 50; ++code) {
        const auto key = findVirtualKey(code);
        QCOMPARE(key.has_value(), code != 10);
        if (!key)
            continue;
        QVERIFY(keysyms.insert(key->keysym).second);
        QVERIFY(positions.insert(key->position).second);
    }
    QCOMPARE(keysyms.size(), size_t(50));
}

QTEST_APPLESS_MAIN(VirtualKeyCodesTest)
#include "VirtualKeyCodesTest.moc"
