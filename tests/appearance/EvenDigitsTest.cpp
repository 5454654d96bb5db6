#include "appearance/EvenDigits.h"

#include "appearance/InterfaceFont.h"

#include <QImage>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int kWidth = 160;
constexpr int kHeight = 24;

QImage drawn(const QString &text)
{
    QImage image(2 * kWidth, 2 * kHeight, QImage::Format_RGB32);
    image.setDevicePixelRatio(2);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setFont(interfaceFont(11));
    drawWithEvenDigits(painter, QRectF(0, 0, kWidth, kHeight), text);
    return image;
}

/// The columns that have ink, from the first to the last.
std::pair<int, int> ink(const QImage &image)
{
    std::pair<int, int> columns(image.width(), -1);
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixel(x, y) != qRgb(255, 255, 255))
                columns = {std::min(columns.first, x), x};
        }
    }
    return columns;
}

} // namespace

class EvenDigitsTest : public QObject
{
    Q_OBJECT

private slots:
    void theWordBehindAFigureStaysWhereItIs_data();
    void theWordBehindAFigureStaysWhereItIs();
    void theTextEndsAtTheRight();
    void aNarrowDigitStandsInTheMiddleOfItsCell();
    void aTextWithoutFiguresIsDrawnAsUsual();
};

void EvenDigitsTest::theWordBehindAFigureStaysWhereItIs_data()
{
    QTest::addColumn<QString>("word");
    QTest::newRow("English") << u" min. ago"_s;
    QTest::newRow("Chinese") << u"分钟前"_s;
}

void EvenDigitsTest::theWordBehindAFigureStaysWhereItIs()
{
    QFETCH(const QString, word);
    const QImage one = drawn(u"11"_s + word);
    const QImage eight = drawn(u"88"_s + word);
    const int start = 2 * kWidth
        - int(2 * QFontMetricsF(interfaceFont(11)).horizontalAdvance(word));
    QVERIFY(one != eight);
    QCOMPARE(one.copy(start, 0, 2 * kWidth, 2 * kHeight),
             eight.copy(start, 0, 2 * kWidth, 2 * kHeight));
}

void EvenDigitsTest::theTextEndsAtTheRight()
{
    const auto [first, last] = ink(drawn(u"3 min. ago"_s));
    QVERIFY(first > kWidth);
    QVERIFY(last > 2 * kWidth - 6);
}

void EvenDigitsTest::aNarrowDigitStandsInTheMiddleOfItsCell()
{
    const auto [wideStart, wideEnd] = ink(drawn(u"0"_s));
    const auto [start, end] = ink(drawn(u"1"_s));
    QVERIFY(qAbs((wideStart + wideEnd) - (start + end)) <= 4);
}

void EvenDigitsTest::aTextWithoutFiguresIsDrawnAsUsual()
{
    QImage usual(2 * kWidth, 2 * kHeight, QImage::Format_RGB32);
    usual.setDevicePixelRatio(2);
    usual.fill(Qt::white);
    QPainter painter(&usual);
    painter.setFont(interfaceFont(11));
    drawTextLine(painter, QRectF(0, 0, kWidth, kHeight), u"yesterday"_s, Qt::AlignRight);
    painter.end();
    QCOMPARE(drawn(u"yesterday"_s), usual);
}

QTEST_MAIN(EvenDigitsTest)
#include "EvenDigitsTest.moc"
