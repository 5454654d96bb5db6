#include "tests/window/HistoryWindowFixture.h"

#include "appearance/InterfaceFont.h"
#include "language/LanguageManager.h"
#include "window/FilterButton.h"
#include "window/PinButton.h"

#include <QApplication>
#include <QScreen>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class HistoryWindowLookTest : public QObject, private HistoryWindowFixture
{
    Q_OBJECT

private slots:
    void init() { setUpWindow(); }
    void cleanup() { tearDownWindow(); }

    void partsHaveNamesForThoseWhoHear();
    void pillsHoldTheirTitlesInEachLanguage_data();
    void pillsHoldTheirTitlesInEachLanguage();
    void aPillWithTheFocusHasARing();
    void withoutPinButtonTheFieldIsWider();
    void theDesktopsColorsAreFollowed();
    void withoutPreferenceThePaletteDecides();
    void cornersAreRound();
    void anAlertGetsTheShapeOfTheWindow();
};

void HistoryWindowLookTest::partsHaveNamesForThoseWhoHear()
{
    make();
    QCOMPARE(field()->accessibleName(), u"Search"_s);
    QCOMPARE(field()->placeholderText(), u"Search"_s);
    QCOMPARE(table()->accessibleName(), u"Clipboard History"_s);
    QCOMPARE(part("searchIcon")->accessibleName(), u"Search"_s);
    QCOMPARE(part("pinButton")->accessibleName(), u"Pin window"_s);
    m_window->togglePin();
    QCOMPARE(part("pinButton")->accessibleName(), u"Pin window"_s);
    QCOMPARE(part("pinButton")->toolTip(), u"Unpin window"_s);
}

void HistoryWindowLookTest::pillsHoldTheirTitlesInEachLanguage_data()
{
    QTest::addColumn<AppLanguage>("language");
    QTest::newRow("English") << AppLanguage::English;
    QTest::newRow("Chinese") << AppLanguage::Chinese;
}

void HistoryWindowLookTest::pillsHoldTheirTitlesInEachLanguage()
{
    QFETCH(const AppLanguage, language);
    LanguageManager manager(*m_defaults);
    manager.setLanguage(language);
    manager.install();
    make();
    int right = 0;
    for (const FilterButton *pill : m_window->panel().findChildren<FilterButton *>()) {
        const QFontMetricsF metrics(interfaceFont(12, QFont::Medium));
        QCOMPARE(pill->width(), int(std::ceil(metrics.horizontalAdvance(pill->text()))) + 24);
        QVERIFY(pill->x() > right);
        right = pill->geometry().right();
    }
    QVERIFY(right > 0 && right < part("filterBar")->width());
}

void HistoryWindowLookTest::aPillWithTheFocusHasARing()
{
    makeCompat();
    openWholly();
    const QPoint ring(24 - 3, 62 + 16);
    const QColor ground(picture().pixel(ring));
    QTest::keyClick(field(), Qt::Key_Tab);
    QVERIFY(part("filter.all")->hasFocus());
    QCOMPARE(QColor(picture().pixel(ring)), systemColors(ColorScheme::Light).controlAccentColor);
    QTest::keyClick(part("filter.all"), Qt::Key_Right);
    QCOMPARE(QColor(picture().pixel(ring)), ground);
}

void HistoryWindowLookTest::withoutPinButtonTheFieldIsWider()
{
    m_defaults->set(kPinKey, false);
    make();
    m_window->show();
    QVERIFY(!part("pinButton")->isVisible());
    QVERIFY(!part("pinButton")->isEnabled());
    QCOMPARE(geometryOf("searchField"), QRect(64, 18, 604, 36));
    m_defaults->set(kPinKey, true);
    m_window->refreshPinButtonVisibility();
    QCOMPARE(geometryOf("searchField"), QRect(64, 18, 590, 36));
    QVERIFY(part("pinButton")->isVisible());
}

void HistoryWindowLookTest::theDesktopsColorsAreFollowed()
{
    makeCompat();
    m_window->show();
    QCOMPARE(QColor(picture().pixel(340, 5)), QColor(0xF6, 0xF6, 0xF8));
    m_appearance->dark = true;
    m_appearance->onChanged();
    QCOMPARE(QColor(picture().pixel(340, 5)), QColor(0x1E, 0x1F, 0x23));
}

void HistoryWindowLookTest::withoutPreferenceThePaletteDecides()
{
    m_appearance->dark.reset();
    makeCompat();
    m_window->show();
    const QPalette palette = QGuiApplication::palette();
    QApplication::setPalette(QPalette(QColor(40, 40, 40)));
    QCoreApplication::sendPostedEvents();
    QCOMPARE(QColor(picture().pixel(340, 5)), QColor(0x1E, 0x1F, 0x23));
    QApplication::setPalette(QPalette(QColor(240, 240, 240)));
    QCoreApplication::sendPostedEvents();
    QCOMPARE(QColor(picture().pixel(340, 5)), QColor(0xF6, 0xF6, 0xF8));
    QApplication::setPalette(palette);
}

void HistoryWindowLookTest::cornersAreRound()
{
    make();
    openWholly();
    // The selected last row reaches into the lower corners.
    QTest::keyClick(field(), Qt::Key_PageDown);
    QTest::keyClick(field(), Qt::Key_PageDown);
    const QImage image = picture();
    for (const QPoint corner : {QPoint(0, 0), QPoint(679, 0), QPoint(0, 499), QPoint(679, 499),
                                QPoint(7, 7), QPoint(672, 492)})
        QCOMPARE(qAlpha(image.pixel(corner)), 0);
    QVERIFY(qAlpha(image.pixel(9, 9)) > 200);
    makeCompat();
    m_window->show();
    QVERIFY(!m_window->panel().mask().contains(QPoint(3, 3)));
    QVERIFY(m_window->panel().mask().contains(QPoint(7, 7)));
    QVERIFY(m_window->panel().mask().contains(QPoint(340, 0)));
}

void HistoryWindowLookTest::anAlertGetsTheShapeOfTheWindow()
{
    make();
    openWholly();
    const QImage before = picture();
    askForATag();
    const QImage veiled = picture();
    QCOMPARE(veiled.pixelColor(2, 2).alpha(), 0);
    QVERIFY(veiled.pixelColor(340, 60) != before.pixelColor(340, 60));
}

QTEST_MAIN(HistoryWindowLookTest)
#include "HistoryWindowLookTest.moc"
