#include "tags/TagColors.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TagColorsTest : public QObject
{
    Q_OBJECT

private slots:
    void eachColorHasItsShades_data();
    void eachColorHasItsShades();
    void rawValuesComeBack();
    void otherTextsAreNoColors();
};

void TagColorsTest::eachColorHasItsShades_data()
{
    QTest::addColumn<QString>("light");
    QTest::addColumn<QString>("dark");
    QTest::newRow("red") << u"#d93b3b"_s << u"#ff6b63"_s;
    QTest::newRow("orange") << u"#d86a12"_s << u"#ff9f43"_s;
    QTest::newRow("yellow") << u"#b8860b"_s << u"#f5cc4a"_s;
    QTest::newRow("green") << u"#2f9a48"_s << u"#57cc6b"_s;
    QTest::newRow("mint") << u"#129b86"_s << u"#5fd9c4"_s;
    QTest::newRow("teal") << u"#1e8a9a"_s << u"#5cc7d6"_s;
    QTest::newRow("cyan") << u"#1485b5"_s << u"#58bdf0"_s;
    QTest::newRow("blue") << u"#2b66d9"_s << u"#6e9bf5"_s;
    QTest::newRow("indigo") << u"#5450c8"_s << u"#908dfa"_s;
    QTest::newRow("purple") << u"#9145c4"_s << u"#c486f0"_s;
    QTest::newRow("pink") << u"#d13a78"_s << u"#ff7aa8"_s;
    QTest::newRow("brown") << u"#936b45"_s << u"#c49a70"_s;
    QTest::newRow("gray") << u"#7a7d85"_s << u"#9da0a8"_s;
    QTest::newRow("lime") << u"#b0db53"_s << u"#b0db53"_s;
    QTest::newRow("sky") << u"#84c9f0"_s << u"#84c9f0"_s;
}

void TagColorsTest::eachColorHasItsShades()
{
    QFETCH(const QString, light);
    QFETCH(const QString, dark);
    const auto color = tagColorFromRaw(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(color);
    QCOMPARE(systemColor(*color, ColorScheme::Light).name(), light);
    QCOMPARE(systemColor(*color, ColorScheme::Dark).name(), dark);
}

void TagColorsTest::rawValuesComeBack()
{
    for (int i = 0; i < kTagColorCount; ++i)
        QCOMPARE(tagColorFromRaw(rawValue(TagColor(i))), TagColor(i));
    QCOMPARE(rawValue(TagColor::Red), u"red"_s);
    QCOMPARE(rawValue(TagColor::Sky), u"sky"_s);
}

void TagColorsTest::otherTextsAreNoColors()
{
    for (const QString &text : {QString(), u"Red"_s, u"grey"_s, u"red "_s, u"0"_s})
        QVERIFY(!tagColorFromRaw(text));
}

QTEST_GUILESS_MAIN(TagColorsTest)
#include "TagColorsTest.moc"
