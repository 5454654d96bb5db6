#include "widgets/DesktopLook.h"

#include "tests/fakes/FakeDesktopAppearance.h"

#include <QApplication>
#include <QPalette>
#include <QProxyStyle>
#include <QTest>

namespace {

const QColor kChosen(0xC0, 0x20, 0x60);

class StillStyle : public QProxyStyle
{
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        return hint == SH_Widget_Animation_Duration
            ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

} // namespace

class DesktopLookTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void whatTheDesktopSaysIsTaken();
    void nobodysHighlightIsNoAccent();
    void aChosenHighlightIsTheAccentWhereTheDesktopTellsNone();
    void withoutACompositorNothingIsBlurred();
    void aStyleThatDoesNotAnimateStandsForReducedMotion();
};

void DesktopLookTest::cleanup()
{
    QApplication::setPalette(QPalette());
}

void DesktopLookTest::whatTheDesktopSaysIsTaken()
{
    FakeDesktopAppearance appearance;
    const Look plain{.scheme = ColorScheme::Light};
    appearance.dark = false;
    QVERIFY(desktopLook(appearance) == plain);
    appearance.dark = true;
    appearance.blur = true;
    appearance.highContrast = true;
    appearance.reducedMotion = true;
    appearance.accent = kChosen;
    appearance.scale = 1.2;
    const Look all{.scheme = ColorScheme::Dark,
                   .isTranslucent = true,
                   .isBlurred = true,
                   .isHighContrast = true,
                   .isMotionReduced = true,
                   .accent = kChosen,
                   .textScale = 1.2};
    QVERIFY(desktopLook(appearance) == all);
}

void DesktopLookTest::nobodysHighlightIsNoAccent()
{
    QVERIFY(!desktopLook(FakeDesktopAppearance()).accent);
}

void DesktopLookTest::aChosenHighlightIsTheAccentWhereTheDesktopTellsNone()
{
    FakeDesktopAppearance appearance;
    QPalette palette;
    palette.setColor(QPalette::Highlight, kChosen);
    QApplication::setPalette(palette);
    QCOMPARE(desktopLook(appearance).accent, std::optional(kChosen));
    appearance.accent = QColor(Qt::green);
    QCOMPARE(desktopLook(appearance).accent, std::optional(QColor(Qt::green)));
}

void DesktopLookTest::withoutACompositorNothingIsBlurred()
{
    FakeDesktopAppearance appearance;
    appearance.blur = true;
    appearance.composited = false;
    QVERIFY(!desktopLook(appearance).isBlurred);
    QVERIFY(!desktopLook(appearance).isTranslucent);
}

void DesktopLookTest::aStyleThatDoesNotAnimateStandsForReducedMotion()
{
    QApplication::setStyle(new StillStyle);
    QVERIFY(desktopLook(FakeDesktopAppearance()).isMotionReduced);
    QApplication::setStyle(new QProxyStyle);
    QVERIFY(!desktopLook(FakeDesktopAppearance()).isMotionReduced);
}

QTEST_MAIN(DesktopLookTest)
#include "DesktopLookTest.moc"
