#include "appearance/SymbolImage.h"

#include <QDir>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

qint64 ink(const QPixmap &pixmap)
{
    const QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    qint64 sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += qAlpha(image.pixel(x, y));
    }
    return sum;
}

} // namespace

class SymbolImageTest : public QObject
{
    Q_OBJECT

private slots:
    void everySymbolOfTheSetCanBeDrawn();
    void theSideIsTheSizeTimesOnePointTwoInDevicePixels();
    void heavierWeightsHaveMoreInk();
    void everySymbolWithLinesHasThemThicker_data() { addAllSymbols(); }
    void everySymbolWithLinesHasThemThicker();
    void everySymbolIsBalancedInItsBox_data() { addAllSymbols(); }
    void everySymbolIsBalancedInItsBox();
    void onlyTheWantedColorIsDrawn();
    void anUnknownNameGivesNothing();
    void aSymbolIsDrawnOnWholeDevicePixelsInTheMiddle();

private:
    static void addAllSymbols()
    {
        QTest::addColumn<QString>("name");
        for (const QString &file : QDir(u":/symbols"_s).entryList(QDir::Files))
            QTest::newRow(qPrintable(file.chopped(4))) << file.chopped(4);
    }
};

void SymbolImageTest::everySymbolOfTheSetCanBeDrawn()
{
    const QStringList files = QDir(u":/symbols"_s).entryList(QDir::Files);
    QVERIFY(files.size() > 30);
    for (const QString &file : files) {
        const Symbol symbol{file.chopped(4), 24};
        QVERIFY2(ink(symbolPixmap(symbol, Qt::black, 1)) > 0, qPrintable(file));
    }
}

void SymbolImageTest::theSideIsTheSizeTimesOnePointTwoInDevicePixels()
{
    const Symbol symbol{u"doc.text"_s, 24};
    QCOMPARE(symbolPixmap(symbol, Qt::black, 1).size(), QSize(29, 29));
    QCOMPARE(symbolPixmap(symbol, Qt::black, 1.5).size(), QSize(43, 43));
    QCOMPARE(symbolPixmap(symbol, Qt::black, 2).size(), QSize(58, 58));
    QCOMPARE(symbolPixmap(symbol, Qt::black, 2).devicePixelRatio(), 2.0);
}

void SymbolImageTest::heavierWeightsHaveMoreInk()
{
    const QString name = u"magnifyingglass"_s;
    const qint64 regular = ink(symbolPixmap({name, 24, SymbolWeight::Regular}, Qt::black, 2));
    const qint64 medium = ink(symbolPixmap({name, 24, SymbolWeight::Medium}, Qt::black, 2));
    const qint64 semibold = ink(symbolPixmap({name, 24, SymbolWeight::Semibold}, Qt::black, 2));
    const qint64 bold = ink(symbolPixmap({name, 24, SymbolWeight::Bold}, Qt::black, 2));
    QVERIFY(regular < medium);
    QVERIFY(medium < semibold);
    QVERIFY(semibold < bold);
}

void SymbolImageTest::everySymbolWithLinesHasThemThicker()
{
    QFETCH(const QString, name);
    QFile file(u":/symbols/"_s + name + u".svg"_s);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray svg = file.readAll();
    const qint64 regular = ink(symbolPixmap({name, 24, SymbolWeight::Regular}, Qt::black, 2));
    const qint64 semibold = ink(symbolPixmap({name, 24, SymbolWeight::Semibold}, Qt::black, 2));
    if (svg.contains("stroke-width"))
        QVERIFY(semibold > regular);
    else
        QCOMPARE(semibold, regular);
}

/// The middle of what is seen of it lies near the middle of its box, and nothing is cut off.
void SymbolImageTest::everySymbolIsBalancedInItsBox()
{
    QFETCH(const QString, name);
    constexpr int kSide = 96; // 24 units of four pixels.
    constexpr double kMostOffset = 2 * 4;
    const QImage image = symbolPixmap({name, 80}, Qt::black, 1).toImage().convertToFormat(
        QImage::Format_ARGB32);
    QCOMPARE(image.size(), QSize(kSide, kSide));
    QRect covered;
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            if (qAlpha(image.pixel(x, y)) > 0)
                covered |= QRect(x, y, 1, 1);
        }
    }
    QVERIFY(QRect(4, 4, kSide - 8, kSide - 8).contains(covered));
    QVERIFY(qAbs(QRectF(covered).center().x() - kSide / 2.0) <= kMostOffset);
    QVERIFY(qAbs(QRectF(covered).center().y() - kSide / 2.0) <= kMostOffset);
}

void SymbolImageTest::onlyTheWantedColorIsDrawn()
{
    const QColor color(200, 40, 90);
    const QImage image = symbolPixmap({u"star.fill"_s, 24}, color, 2).toImage().convertToFormat(
        QImage::Format_ARGB32);
    QCOMPARE(QColor(image.pixel(29, 29)), color);
    QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
}

void SymbolImageTest::anUnknownNameGivesNothing()
{
    QVERIFY(symbolPixmap({u"no.such.symbol"_s, 24}, Qt::black, 1).isNull());
}

void SymbolImageTest::aSymbolIsDrawnOnWholeDevicePixelsInTheMiddle()
{
    const Symbol symbol{u"doc.text"_s, 24};
    QImage image(32, 32, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawSymbol(painter, QRectF(0, 0, 32, 32), symbol, Qt::black);
    painter.end();

    const QImage expected = symbolPixmap(symbol, Qt::black, 1).toImage().convertToFormat(
        image.format());
    QCOMPARE(image.copy(2, 2, 29, 29), expected);
}

QTEST_MAIN(SymbolImageTest)
#include "SymbolImageTest.moc"
