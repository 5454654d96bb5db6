#include "tests/window/HistoryWindowFixture.h"

#include "appearance/SymbolImage.h"
#include "window/FilterButton.h"

using namespace Qt::StringLiterals;

/// Runs once for each scale, since a process has one. Nothing that is straight is soft at any.
class HistoryScaleTest : public QObject, private HistoryWindowFixture
{
    Q_OBJECT

private slots:
    void init()
    {
        setUpWindow();
        makeCompat(SampleHistory::numbered(3));
        openWholly();
        m_image = m_window->shell().grab().toImage();
        m_scale = m_image.devicePixelRatio();
    }
    void cleanup() { tearDownWindow(); }

    void theLineUnderThePillsIsAWholeNumberOfPixels();
    void pillsHaveSharpEdges();
    void theVeilHasSharpEdges();
    void symbolsAreDrawnAtTheDevicesSize_data();
    void symbolsAreDrawnAtTheDevicesSize();
    void theRingOfTheFocusHasSharpEdges_data();
    void theRingOfTheFocusHasSharpEdges();
    void theCaretIsAWholeNumberOfPixelsWide();

private:
    int pixels(qreal length) const { return qRound(length * m_scale); }

    /// How many pixels of each colour follow each other down a column.
    QList<std::pair<QRgb, int>> runsDown(int x, int from, int to) const
    {
        QList<std::pair<QRgb, int>> runs;
        for (int y = from; y < to; ++y) {
            const QRgb color = m_image.pixel(x, y);
            if (runs.isEmpty() || runs.last().first != color)
                runs.append({color, 0});
            ++runs.last().second;
        }
        return runs;
    }

    QImage m_image;
    qreal m_scale = 1;
};

void HistoryScaleTest::theLineUnderThePillsIsAWholeNumberOfPixels()
{
    const auto runs = runsDown(pixels(200), pixels(95), pixels(103));
    QCOMPARE(runs.size(), 3);
    QCOMPARE(runs.at(1).second, std::max(1, qRound(m_scale)));
    QCOMPARE(runs.first().first, runs.last().first);
}

void HistoryScaleTest::pillsHaveSharpEdges()
{
    for (const FilterButton *pill : m_window->shell().findChildren<FilterButton *>()) {
        if (pill->isSelected() || pill->geometry().right() > m_window->shell().width())
            continue;
        const QPoint corner = pill->mapTo(&m_window->shell(), QPoint());
        const int x = pixels(corner.x() + pill->width() / 2.0); // The title begins lower.
        const auto top = runsDown(x, pixels(corner.y() - 2), pixels(corner.y() + 4));
        QCOMPARE(top.size(), 3);
        QCOMPARE(top.at(1).second, std::max(1, qRound(m_scale)));
        QCOMPARE(top.first().first, top.last().first);
    }
}

void HistoryScaleTest::theVeilHasSharpEdges()
{
    const auto runs = runsDown(pixels(280), pixels(101), pixels(110));
    QCOMPARE(runs.size(), 2);
    QCOMPARE(runs.first().second, pixels(104) - pixels(101));
}

void HistoryScaleTest::symbolsAreDrawnAtTheDevicesSize_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("pointSize");
    QTest::addColumn<int>("weight");
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QPointF>("middle"); // A negative x counts from the right.
    const QColor secondary = systemColors(ColorScheme::Light).secondaryLabelColor;
    const QColor tertiary = systemColors(ColorScheme::Light).tertiaryLabelColor;
    const qreal row = 100 + 72 + 36;
    QTest::newRow("search") << u"magnifyingglass"_s << 24 << int(SymbolWeight::Semibold)
                            << secondary << QPointF(24 + 16, 15 + 16);
    QTest::newRow("pin") << u"pin"_s << 14 << int(SymbolWeight::Semibold) << secondary
                         << QPointF(-40 + 14, 26 + 14);
    QTest::newRow("type") << u"doc.text"_s << 24 << int(SymbolWeight::Regular) << secondary
                          << QPointF(16 + 16, row);
    QTest::newRow("star") << u"star"_s << 15 << int(SymbolWeight::Medium) << tertiary
                          << QPointF(-42 + 13, row);
}

void HistoryScaleTest::symbolsAreDrawnAtTheDevicesSize()
{
    QFETCH(const QString, name);
    QFETCH(const int, pointSize);
    QFETCH(const int, weight);
    QFETCH(const QColor, color);
    QFETCH(QPointF, middle);
    if (middle.x() < 0)
        middle.rx() += m_window->shell().width();
    QPixmap symbol = symbolPixmap({name, pointSize, SymbolWeight(weight)}, color, m_scale);
    QCOMPARE(symbol.width(), qRound(1.2 * pointSize * m_scale));
    symbol.setDevicePixelRatio(1);
    QImage wanted(symbol.size(), m_image.format());
    wanted.fill(systemColors(ColorScheme::Light).windowBackgroundColor);
    QPainter(&wanted).drawPixmap(0, 0, symbol);
    wanted.setDevicePixelRatio(m_scale);
    const QPointF corner
        = middle * m_scale - QPointF(symbol.width() / 2.0, symbol.height() / 2.0);
    QCOMPARE(m_image.copy(QRect(corner.toPoint(), symbol.size())), wanted);
}

void HistoryScaleTest::theRingOfTheFocusHasSharpEdges_data()
{
    QTest::addColumn<int>("tabs");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("pill") << 1 << QByteArray("filter.all");
    QTest::newRow("pin") << 2 << QByteArray("pinButton");
}

void HistoryScaleTest::theRingOfTheFocusHasSharpEdges()
{
    QFETCH(const int, tabs);
    QFETCH(const QByteArray, name);
    for (int i = 0; i < tabs; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QVERIFY(part(name)->hasFocus());
    m_image = m_window->shell().grab().toImage();
    const QRect box = geometryOf(name);
    const int x = pixels(box.x() + box.width() / 2.0);
    const auto above = runsDown(x, pixels(box.y()) - pixels(5), pixels(box.y()));
    QCOMPARE(above.size(), 3);
    QCOMPARE(QColor(above.at(1).first), systemColors(ColorScheme::Light).controlAccentColor);
    QCOMPARE(above.at(1).second, qRound(2 * m_scale));
    QCOMPARE(above.at(1).second + above.at(2).second, qRound(3.5 * m_scale));
    const int bottom = pixels(box.y() + box.height());
    const auto below = runsDown(x, bottom, bottom + pixels(5));
    QCOMPARE(below.size(), 3);
    QCOMPARE(below.at(0).second, above.at(2).second);
    QCOMPARE(below.at(1), above.at(1));
}

void HistoryScaleTest::theCaretIsAWholeNumberOfPixelsWide()
{
    const QRgb caret = systemColors(ColorScheme::Light).controlAccentColor.rgb();
    const int y = pixels(33);
    int width = 0;
    for (int x = pixels(60); x < pixels(70); ++x)
        width += m_image.pixel(x, y) == caret ? 1 : 0;
    QCOMPARE(width, qRound(1.5 * m_scale));
    QVERIFY(m_image.pixel(pixels(64), y) == caret);
}

QTEST_MAIN(HistoryScaleTest)
#include "HistoryScaleTest.moc"
