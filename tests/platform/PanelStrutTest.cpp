#include "platform/x11/PanelStrut.h"

#include <QTest>

namespace {

constexpr QSize kScreen(3000, 1400);
constexpr QRect kLeft(0, 0, 1200, 1400);
constexpr QRect kRight(1200, 200, 1600, 1000);

} // namespace

/// Two monitors side by side, of which the right one is lower.
class PanelStrutTest : public QObject
{
    Q_OBJECT

private slots:
    void panelCutsItsOwnMonitor_data();
    void panelCutsItsOwnMonitor();
    void partialWordsComeFirst();
    void tooFewWordsSayNothing();
    void panelsThatLeaveNothingAreNotBelieved();
};

void PanelStrutTest::panelCutsItsOwnMonitor_data()
{
    using Words = QList<quint32>;
    QTest::addColumn<Words>("words");
    QTest::addColumn<QRect>("left");
    QTest::addColumn<QRect>("right");
    QTest::newRow("none") << Words() << kLeft << kRight;
    QTest::newRow("lower edge of the left one")
        << Words{0, 0, 0, 30, 0, 0, 0, 0, 0, 0, 0, 1199} << QRect(0, 0, 1200, 1370) << kRight;
    QTest::newRow("lower edge of the right one, within the screen")
        << Words{0, 0, 0, 230, 0, 0, 0, 0, 0, 0, 1200, 2799} << kLeft
        << QRect(1200, 200, 1600, 970);
    QTest::newRow("upper edge of the right one, within the screen")
        << Words{0, 0, 230, 0, 0, 0, 0, 0, 1200, 2799, 0, 0} << kLeft
        << QRect(1200, 230, 1600, 970);
    QTest::newRow("inner edge of the right one")
        << Words{1230, 0, 0, 0, 200, 1199, 0, 0, 0, 0, 0, 0} << kLeft
        << QRect(1230, 200, 1570, 1000);
    QTest::newRow("inner edge of the left one")
        << Words{0, 1830, 0, 0, 0, 0, 0, 1399, 0, 0, 0, 0} << QRect(0, 0, 1170, 1400) << kRight;
    QTest::newRow("beyond all screens")
        << Words{0xffffffff, 0, 0, 0, 0, 0xffffffff, 0, 0, 0, 0, 0, 0} << kLeft << kRight;
}

void PanelStrutTest::panelCutsItsOwnMonitor()
{
    QFETCH(QList<quint32>, words);
    const QList<PanelStrut> struts = panelStruts(words, {});
    QTEST(withoutStruts(kLeft, kScreen, struts), "left");
    QTEST(withoutStruts(kRight, kScreen, struts), "right");
}

void PanelStrutTest::partialWordsComeFirst()
{
    const QList<quint32> partial{0, 0, 0, 30, 0, 0, 0, 0, 0, 0, 5, 1199};
    QCOMPARE(panelStruts(partial, {1, 2, 3, 4}),
             (QList<PanelStrut>{{Qt::BottomEdge, 30, 5, 1199}}));
    QCOMPARE(panelStruts({}, {0, 0, 24, 0}), (QList<PanelStrut>{{Qt::TopEdge, 24, 0, 0x7fff}}));
}

void PanelStrutTest::tooFewWordsSayNothing()
{
    QVERIFY(panelStruts({1, 2, 3}, {}).isEmpty());
    QVERIFY(panelStruts({}, {1, 2, 3}).isEmpty());
}

void PanelStrutTest::panelsThatLeaveNothingAreNotBelieved()
{
    const QList<PanelStrut> struts = panelStruts({}, {800, 2400, 0, 0});
    QCOMPARE(withoutStruts(kLeft, kScreen, struts), kLeft);
}

QTEST_APPLESS_MAIN(PanelStrutTest)
#include "PanelStrutTest.moc"
