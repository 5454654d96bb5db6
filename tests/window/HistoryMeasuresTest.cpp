#include "tests/window/HistoryWindowFixture.h"

#include "appearance/InterfaceFont.h"
#include "language/LanguageManager.h"
#include "window/FilterButton.h"
#include "window/RowLayout.h"

using namespace Qt::StringLiterals;

namespace {

const QColor kGround(0xF6, 0xF6, 0xF8);
const QColor kLabel(0x1C, 0x1D, 0x20);
const QColor kSecondary(0x50, 0x53, 0x5A);
const QColor kTertiary(0x5F, 0x62, 0x69);
const QColor kSelection(0x1B, 0x4D, 0xB3);

QColor blended(const QColor &ground, const QColor &color, double alpha)
{
    const auto mix = [alpha](int a, int b) { return qRound(a + (b - a) * alpha); };
    return {mix(ground.red(), color.red()), mix(ground.green(), color.green()),
            mix(ground.blue(), color.blue())};
}

bool isNear(const QColor &one, const QColor &other)
{
    return qAbs(one.red() - other.red()) <= 2 && qAbs(one.green() - other.green()) <= 2
        && qAbs(one.blue() - other.blue()) <= 2;
}

/// The baseline of a line of text that has its middle at \a middle.
qreal baselineAround(qreal middle, const QFont &font)
{
    const QFontMetricsF metrics(font);
    return std::round(middle + (metrics.ascent() - metrics.descent()) / 2);
}

/// \a text on the ground of the window, with its left end and its baseline at \a start.
QImage textOnGround(const QRect &region, const QFont &font, const QColor &color,
                    const QPointF &start, const QString &text)
{
    QImage image(region.size(), QImage::Format_ARGB32);
    image.fill(kGround);
    QPainter painter(&image);
    painter.translate(-region.topLeft());
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(start, text);
    return image;
}

} // namespace

/// Where things stand in the window, and how texts and lines look, measured on what is painted.
class HistoryMeasuresTest : public QObject, private HistoryWindowFixture
{
    Q_OBJECT

private slots:
    void init() { setUpWindow(); }
    void cleanup() { tearDownWindow(); }

    void viewsStandWhereTheyBelong_data();
    void viewsStandWhereTheyBelong();
    void partsOfARowStandWhereTheyBelong_data();
    void partsOfARowStandWhereTheyBelong();
    void textsAreSetInTheirSizesAndColors_data();
    void textsAreSetInTheirSizesAndColors();
    void theSearchIsLightAndLarge();
    void pillsAreInOneLine();
    void theLineUnderThePillsIsFaint();
    void theFirstRowHasAVeil();
    void theSelectionIsRoundAsTheWindowWants_data();
    void theSelectionIsRoundAsTheWindowWants();
    void theWindowIsTranslucentWithALineInside();

private:
    void makeKind(bool isCompat, const ClipboardItemList &items = SampleHistory::mixed())
    {
        isCompat ? makeCompat(items) : make(items);
    }
};

void HistoryMeasuresTest::viewsStandWhereTheyBelong_data()
{
    QTest::addColumn<bool>("isCompat");
    QTest::addColumn<AppLanguage>("language");
    QTest::addColumn<bool>("hasPin");
    QTest::addColumn<int>("height");
    for (const bool isCompat : {false, true}) {
        for (const AppLanguage language : {AppLanguage::English, AppLanguage::Chinese}) {
            for (const bool hasPin : {true, false}) {
                for (const int height : {244, 500, 900}) {
                    QTest::addRow("%s, %s, %s, %d high", isCompat ? "plain" : "glass",
                                  language == AppLanguage::English ? "English" : "Chinese",
                                  hasPin ? "pin" : "no pin", height)
                        << isCompat << language << hasPin << height;
                }
            }
        }
    }
}

void HistoryMeasuresTest::viewsStandWhereTheyBelong()
{
    QFETCH(const bool, isCompat);
    QFETCH(const AppLanguage, language);
    QFETCH(const bool, hasPin);
    QFETCH(const int, height);
    LanguageManager manager(*m_defaults);
    manager.setLanguage(language);
    manager.install();
    m_defaults->set(kPinKey, hasPin);
    makeKind(isCompat);
    m_window->show();
    m_window->shell().resize(680, height); // Higher than the screen of the tests, once.

    QCOMPARE(geometryOf("windowDragView"), QRect(0, 0, 680, 60));
    QCOMPARE(geometryOf("searchIcon"), QRect(24, 15, 32, 32));
    QCOMPARE(geometryOf("searchField"), QRect(64, 18, hasPin ? 590 : 604, 36));
    QCOMPARE(geometryOf("pinButton"), QRect(640, 26, 28, 28));
    QCOMPARE(part("pinButton")->isVisible(), hasPin);
    QCOMPARE(geometryOf("filterBar"), QRect(0, 62, 680, 32));
    QCOMPARE(geometryOf("separatorLine"), QRect(24, 99, 632, 1));
    QCOMPARE(geometryOf("tableContainerView"), QRect(0, 100, 680, height - 100));
    QCOMPARE(geometryOf("tableView"), QRect(0, 100, 680, height - 100));
    QCOMPARE(geometryOf("topResizeView"), QRect(0, 0, 680, 8));
    QCOMPARE(geometryOf("bottomResizeView"), QRect(0, height - 8, 680, 8));
    QCOMPARE(table()->visualRect(table()->model()->index(0, 0)), QRect(0, 0, 680, 72));
    QCOMPARE(table()->visualRect(table()->model()->index(1, 0)), QRect(0, 72, 680, 72));
}

void HistoryMeasuresTest::partsOfARowStandWhereTheyBelong_data()
{
    QTest::addColumn<int>("top");
    QTest::newRow("first") << 0;
    QTest::newRow("third") << 144;
    QTest::newRow("half out of sight") << -36;
}

void HistoryMeasuresTest::partsOfARowStandWhereTheyBelong()
{
    QFETCH(const int, top);
    const RowLayout layout(QRectF(0, top, 680, 72));
    QCOMPARE(layout.selection, QRectF(8, top + 4, 664, 64));
    QCOMPARE(layout.icon, QRectF(16, top + 20, 32, 32));
    QCOMPARE(layout.badge, QRectF(37, top + 41, 14, 14));
    QCOMPARE(layout.content.left(), 60.0);
    QCOMPARE(layout.content.right(), 542.0);
    QCOMPARE(layout.content.center().y(), top + 28.0);
    QCOMPARE(layout.meta.left(), 60.0);
    QCOMPARE(layout.meta.center().y(), top + 46.0);
    QCOMPARE(layout.time.left(), 550.0);
    QCOMPARE(layout.time.right(), 626.0);
    QCOMPARE(layout.time.center().y(), top + 36.0);
    QCOMPARE(layout.star, QRectF(638, top + 23, 26, 26));
}

void HistoryMeasuresTest::textsAreSetInTheirSizesAndColors_data()
{
    QTest::addColumn<bool>("isRightAligned");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("pixelSize");
    QTest::addColumn<int>("weight");
    QTest::addColumn<QColor>("color");
    QTest::addColumn<qreal>("middle");
    QTest::newRow("content") << false << u"entry 1"_s << 14 << int(QFont::Normal) << kLabel << 28.0;
    QTest::newRow("meta line") << false << u"TEXT"_s << 10 << int(QFont::DemiBold) << kTertiary
                               << 46.0;
    QTest::newRow("time") << true << u"now"_s << 11 << int(QFont::Normal) << kTertiary << 36.0;
}

void HistoryMeasuresTest::textsAreSetInTheirSizesAndColors()
{
    QFETCH(const bool, isRightAligned);
    QFETCH(const QString, text);
    QFETCH(const int, pixelSize);
    QFETCH(const int, weight);
    QFETCH(const QColor, color);
    QFETCH(const qreal, middle);
    makeCompat(SampleHistory::numbered(3));
    openWholly();
    const int row = 100 + 72; // The second: no veil lies under it.
    const QFont font = interfaceFont(pixelSize, QFont::Weight(weight));
    const QRect region = isRightAligned ? QRect(550, row + int(middle) - 8, 80, 16)
                                        : QRect(56, row + int(middle) - 9, 300, 18);
    const qreal x = isRightAligned ? 626 - QFontMetricsF(font).horizontalAdvance(text) : 60;
    const QPointF start(x, baselineAround(row + middle, font));
    QCOMPARE(picture().copy(region), textOnGround(region, font, color, start, text));
}

void HistoryMeasuresTest::theSearchIsLightAndLarge()
{
    makeCompat();
    openWholly();
    const QFont font = interfaceFont(22, QFont::Light);
    QCOMPARE(font.pixelSize(), 22);
    QCOMPARE(font.weight(), QFont::Light);
    const QString text = u"high water"_s;
    QTest::keyClicks(field(), text);
    // At the top of a box that begins at 18, so that text and symbol share a middle.
    const QPointF start(64, 18 + std::round(QFontMetricsF(font).ascent()));
    const QRect region(57, 19, 7 + QFontMetrics(font).horizontalAdvance(text) - 1, 34);
    QCOMPARE(picture().copy(region), textOnGround(region, font, kLabel, start, text));
}

void HistoryMeasuresTest::pillsAreInOneLine()
{
    makeCompat();
    openWholly();
    const QFontMetricsF metrics(interfaceFont(12, QFont::Medium));
    int x = 24;
    for (const FilterButton *pill : m_window->shell().findChildren<FilterButton *>()) {
        const int width = int(std::ceil(metrics.horizontalAdvance(pill->text()))) + 24;
        QCOMPARE(QRect(pill->mapTo(&m_window->shell(), QPoint()), pill->size()),
                 QRect(x, 65, width, 26));
        x += width + 8;
    }
    const QImage image = picture();
    QCOMPARE(image.pixelColor(24 + 13, 65), QColor(0x24, 0x59, 0xC7)); // The first is selected.
    QVERIFY(isNear(image.pixelColor(25, 66), kGround)); // Round by half its height.
}

void HistoryMeasuresTest::theLineUnderThePillsIsFaint()
{
    makeCompat();
    openWholly();
    const QImage image = picture();
    const QColor line = blended(kGround, kLabel, 0.46 * 0.35);
    for (const int x : {24, 340, 655})
        QVERIFY(isNear(image.pixelColor(x, 99), line));
    for (const QPoint beside : {QPoint(340, 98), QPoint(340, 100), QPoint(23, 99), QPoint(656, 99)})
        QVERIFY(isNear(image.pixelColor(beside), kGround));
}

void HistoryMeasuresTest::theFirstRowHasAVeil()
{
    makeCompat();
    openWholly();
    const QImage image = picture();
    const QColor veil = blended(kGround, kLabel, 0.05);
    QVERIFY(isNear(image.pixelColor(340, 104), veil));
    QVERIFY(isNear(image.pixelColor(340, 167), veil));
    QVERIFY(isNear(image.pixelColor(8, 136), veil));
    QVERIFY(isNear(image.pixelColor(671, 120), veil));
    QVERIFY(isNear(image.pixelColor(340, 103), kGround));
    QVERIFY(isNear(image.pixelColor(340, 168), kGround));
    QVERIFY(isNear(image.pixelColor(7, 136), kGround));
}

void HistoryMeasuresTest::theSelectionIsRoundAsTheWindowWants_data()
{
    QTest::addColumn<bool>("isCompat");
    QTest::addColumn<bool>("isInside");
    QTest::newRow("18 with a compositor") << false << false;
    QTest::newRow("10 without") << true << true;
}

void HistoryMeasuresTest::theSelectionIsRoundAsTheWindowWants()
{
    QFETCH(const bool, isCompat);
    QFETCH(const bool, isInside);
    makeKind(isCompat);
    openWholly();
    QTest::keyClick(field(), Qt::Key_Down);
    pass(std::chrono::seconds(2)); // The selection springs.
    const QImage image = picture();
    QVERIFY(isNear(image.pixelColor(340, 110), kSelection));
    QVERIFY(isNear(image.pixelColor(340, 104), blended(kSelection, Qt::white, 0.2)));
    // Between both arcs.
    QCOMPARE(isNear(image.pixelColor(8 + 4, 104 + 4), kSelection), isInside);
    QVERIFY(!isNear(image.pixelColor(8 + 1, 104 + 1), kSelection));
    QVERIFY(isNear(image.pixelColor(8 + 7, 104 + 7), kSelection));
}

void HistoryMeasuresTest::theWindowIsTranslucentWithALineInside()
{
    make();
    openWholly();
    const QImage image = picture();
    QVERIFY(qAbs(image.pixelColor(340, 10).alphaF() - 0.96) < 0.01);
    // Black at 0.3 over the ground at 0.96.
    const QColor line = image.pixelColor(340, 0);
    QVERIFY(qAbs(line.alphaF() - (0.3 + 0.7 * 0.96)) < 0.01);
    QVERIFY(isNear(line, blended(Qt::black, kGround, 0.7 * 0.96 / (0.3 + 0.7 * 0.96))));
    QVERIFY(qAbs(image.pixelColor(340, 1).alphaF() - 0.96) < 0.01);
    // The corner is round by 28: this far from both edges the arc passes.
    QCOMPARE(image.pixelColor(7, 7).alpha(), 0);
    QVERIFY(image.pixelColor(9, 9).alphaF() > 0.8);
}

QTEST_MAIN(HistoryMeasuresTest)
#include "HistoryMeasuresTest.moc"
