#include "tests/window/HistoryWindowFixture.h"

#include "appearance/InterfaceFont.h"
#include "language/LanguageManager.h"
#include "window/FilterButton.h"
#include "window/PinButton.h"

#include <QAccessible>
#include <QApplication>
#include <QMenu>
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
    void ringsComeBackWithTheWindow_data();
    void ringsComeBackWithTheWindow();
    void ringsComeBackFromAMenu_data();
    void ringsComeBackFromAMenu();
    void thePinHasARingByWhateverKeyboard();
    void aClickGivesNoRing();
    void withoutPinButtonTheFieldIsWider();
    void theDesktopsColorsAreFollowed();
    void withoutPreferenceThePaletteDecides();
    void cornersAreRound();
    void anAlertGetsTheShapeOfTheWindow();
    void timesStayAsTheyAreWhileTheWindowIsOpen();

private:
    /// The five pixels above the middle of the upper edge, from the outermost on.
    QList<QColor> colorsAbove(const char *name)
    {
        const QRect box = geometryOf(name);
        const QImage image = picture();
        QList<QColor> colors;
        for (int y = box.top() - 5; y < box.top(); ++y)
            colors.append(image.pixelColor(box.center().x(), y));
        return colors;
    }

    /// Gives the focus by the Tab key to the part of a row of the data.
    void focusByTab()
    {
        QFETCH(const QByteArray, name);
        while (QApplication::focusWidget() != part(name))
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }

    const QColor m_ground = systemColors(ColorScheme::Light).windowBackgroundColor;
    const QColor m_accent = systemColors(ColorScheme::Light).controlAccentColor;
    const QList<QColor> m_ring{m_ground, m_accent, m_accent, m_ground, m_ground};
};

namespace {

void addPartsWithARing()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("pill") << QByteArray("filter.all");
    QTest::newRow("pin") << QByteArray("pinButton");
}

} // namespace

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
    for (const FilterButton *pill : m_window->shell().findChildren<FilterButton *>()) {
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
    QCOMPARE(colorsAbove("filter.all"), QList<QColor>(5, m_ground));
    QTest::keyClick(field(), Qt::Key_Tab);
    QVERIFY(part("filter.all")->hasFocus());
    QCOMPARE(colorsAbove("filter.all"), m_ring);
    QTest::keyClick(part("filter.all"), Qt::Key_Right);
    QCOMPARE(colorsAbove("filter.all"), QList<QColor>(5, m_ground));
    QCOMPARE(colorsAbove("filter.text"), m_ring);
}

void HistoryWindowLookTest::ringsComeBackWithTheWindow_data()
{
    addPartsWithARing();
}

void HistoryWindowLookTest::ringsComeBackWithTheWindow()
{
    QFETCH(const QByteArray, name);
    makeCompat();
    openWholly();
    m_window->togglePin();
    focusByTab();
    QCOMPARE(colorsAbove(name), m_ring);
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QCOMPARE(colorsAbove(name), QList<QColor>(5, m_ground));
    m_window->shell().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_window->shell()));
    QCOMPARE(colorsAbove(name), m_ring);
}

void HistoryWindowLookTest::ringsComeBackFromAMenu_data()
{
    addPartsWithARing();
}

void HistoryWindowLookTest::ringsComeBackFromAMenu()
{
    QFETCH(const QByteArray, name);
    makeCompat();
    openWholly();
    focusByTab();
    QMenu menu;
    menu.addAction(u"x"_s);
    menu.popup(QPoint(20, 20));
    QVERIFY(menu.isVisible());
    menu.close();
    QVERIFY(part(name)->hasFocus());
    QCOMPARE(colorsAbove(name), m_ring);
}

void HistoryWindowLookTest::thePinHasARingByWhateverKeyboard()
{
    makeCompat();
    openWholly();
    QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(part("pinButton"));
    spoken->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    QVERIFY(part("pinButton")->hasFocus());
    QCOMPARE(colorsAbove("pinButton"), m_ring);
}

void HistoryWindowLookTest::aClickGivesNoRing()
{
    makeCompat();
    openWholly();
    part("pinButton")->setFocus(Qt::MouseFocusReason);
    QVERIFY(part("pinButton")->hasFocus());
    QCOMPARE(colorsAbove("pinButton"), QList<QColor>(5, m_ground));
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
    QVERIFY(!m_window->shell().mask().contains(QPoint(5, 5)));
    QVERIFY(m_window->shell().mask().contains(QPoint(6, 6)));
    QVERIFY(m_window->shell().mask().contains(QPoint(340, 0)));
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

void HistoryWindowLookTest::timesStayAsTheyAreWhileTheWindowIsOpen()
{
    make(SampleHistory::numbered(3));
    openWholly();
    const QRect times(550, 100, 76, 216);
    const QImage before = picture().copy(times);
    m_clock->advance(1h);
    QVERIFY(picture().copy(times) == before);
    // What is made anew tells the time anew.
    m_window.reset();
    make(SampleHistory::numbered(3));
    openWholly();
    QVERIFY(picture().copy(times) != before);
}

QTEST_MAIN(HistoryWindowLookTest)
#include "HistoryWindowLookTest.moc"
