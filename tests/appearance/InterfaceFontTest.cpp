#include "appearance/InterfaceFont.h"

#include <QFontMetricsF>
#include <QTest>

using namespace Qt::StringLiterals;

class InterfaceFontTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { setInterfaceTextScale(1); }
    void sizesAreInPixels();
    void sizesFollowTheScaleAtOnce();
    void theScaleHasItsLimits_data();
    void theScaleHasItsLimits();
};

void InterfaceFontTest::sizesAreInPixels()
{
    QCOMPARE(interfaceFont(14).pixelSize(), 14);
    QCOMPARE(interfaceFont(14, QFont::DemiBold).weight(), QFont::DemiBold);
    const auto width = [](qreal pixelSize) {
        return QFontMetricsF(interfaceFont(pixelSize)).horizontalAdvance(u"Clipboard History"_s);
    };
    QVERIFY(width(11) < width(11.5));
    QVERIFY(width(11.5) <= width(12)); // Not everywhere are halves drawn.
}

void InterfaceFontTest::sizesFollowTheScaleAtOnce()
{
    const qreal width = QFontMetricsF(interfaceFont(20)).horizontalAdvance(u"Clipboard"_s);
    setInterfaceTextScale(1.25);
    QCOMPARE(interfaceFont(20).pixelSize(), 25);
    QVERIFY(QFontMetricsF(interfaceFont(20)).horizontalAdvance(u"Clipboard"_s) > width * 1.2);
    setInterfaceTextScale(1);
    QCOMPARE(interfaceFont(20).pixelSize(), 20);
}

void InterfaceFontTest::theScaleHasItsLimits_data()
{
    QTest::addColumn<qreal>("scale");
    QTest::addColumn<int>("pixelSize");

    QTest::newRow("smaller") << 0.5 << 20;
    QTest::newRow("nothing") << 0.0 << 20;
    QTest::newRow("below nothing") << -1.0 << 20;
    QTest::newRow("largest") << 1.3 << 26;
    QTest::newRow("larger") << 3.0 << 26;
}

void InterfaceFontTest::theScaleHasItsLimits()
{
    QFETCH(qreal, scale);
    QFETCH(int, pixelSize);
    setInterfaceTextScale(scale);
    QCOMPARE(interfaceFont(20).pixelSize(), pixelSize);
}

QTEST_MAIN(InterfaceFontTest)
#include "InterfaceFontTest.moc"
