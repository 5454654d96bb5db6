#include "appearance/InterfaceFont.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTest>

#include <cmath>

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
    void linesAreDrawnLetterForLetter_data();
    void linesAreDrawnLetterForLetter();
    void aLineIsCutAnewForEachWidth();
    void aLineFollowsFontAndPen();

private:
    static constexpr QRect kBox{10, 0, 280, 40};

    /// What \a draw paints at a scale.
    template <typename Draw>
    static QImage painted(qreal scale, Draw draw)
    {
        QImage image(QSize(300, 40) * scale, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setFont(interfaceFont(14));
        draw(painter);
        return image;
    }
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

void InterfaceFontTest::linesAreDrawnLetterForLetter_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("Latin") << u"Waffles & Ügly Ta-Ve"_s;
    QTest::newRow("Chinese") << u"周五下午三点 at 3"_s;
    QTest::newRow("emoji") << u"a 👨‍👩‍👧‍👦🇨🇭😀 b"_s;
    QTest::newRow("Arabic") << u"شكراً جزيلاً"_s;
    QTest::newRow("both ways") << u"one שלום two"_s;
    QTest::newRow("marks") << u"e"_s + QString(12, QChar(0x301)) + u" x"_s;
    QTest::newRow("nothing") << QString();
}

/// As the toolkit does it, which lays the text out each time.
void InterfaceFontTest::linesAreDrawnLetterForLetter()
{
    QFETCH(const QString, text);
    for (const qreal scale : {1.0, 1.25, 2.0}) {
        const QImage wanted = painted(scale, [&](QPainter &painter) {
            const QFontMetricsF metrics(painter.font(), painter.device());
            const qreal middle = 20 + (metrics.ascent() - metrics.descent()) / 2;
            painter.setLayoutDirection(Qt::LayoutDirectionAuto);
            painter.drawText(QPointF(10, std::round(middle * scale) / scale), text);
        });
        for (int time = 0; time < 2; ++time) {
            const QImage line
                = painted(scale, [&](QPainter &painter) { drawElided(painter, kBox, text); });
            QCOMPARE(line, wanted);
        }
    }
}

void InterfaceFontTest::aLineIsCutAnewForEachWidth()
{
    const QString text = u"a line of some length"_s;
    const auto drawn = [&](int width) {
        const QRect box(10, 0, width, 40);
        return painted(1, [&](QPainter &painter) { drawElided(painter, box, text); });
    };
    const QImage whole = drawn(280);
    const QImage cut = drawn(60);
    QVERIFY(cut != whole);
    QCOMPARE(cut.copy(75, 0, 225, 40), painted(1, [](QPainter &) {}).copy(75, 0, 225, 40));
    QCOMPARE(drawn(280), whole);
}

void InterfaceFontTest::aLineFollowsFontAndPen()
{
    const auto drawn = [](const QColor &color, int size) {
        return painted(1, [&](QPainter &painter) {
            painter.setFont(interfaceFont(size));
            painter.setPen(color);
            drawElided(painter, kBox, u"a line"_s);
        });
    };
    const QImage black = drawn(Qt::black, 14);
    QVERIFY(drawn(Qt::red, 14) != black);
    QVERIFY(drawn(Qt::black, 12) != black);
    setInterfaceTextScale(1.3);
    QVERIFY(drawn(Qt::black, 14) != black);
    setInterfaceTextScale(1);
    QCOMPARE(drawn(Qt::black, 14), black);
}

QTEST_MAIN(InterfaceFontTest)
#include "InterfaceFontTest.moc"
