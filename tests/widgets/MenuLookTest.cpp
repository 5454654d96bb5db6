#include "widgets/MenuLook.h"

#include "appearance/InterfaceFont.h"
#include "appearance/SoftShadow.h"

#include <QMenu>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class MenuLookTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void itemsAreAsHighAsTheyShouldBe();
    void separatorsAreLow();
    void aMenuGetsRoomForItsShadowAndStaysWhereItWasAsked();
    void theRoomIsGoneWhenTheMenuHasClosed();
    void withoutACompositorThereIsNoRoomAndTheCornersAreCut();
    void theLookMayChangeBetweenTwoOpenings();
    void submenusGetTheLookToo();
    void theChosenItemHasTheGroundOfASelection();
    void aPressInTheShadowClosesTheMenu();
    void aMoveInTheShadowOfASubmenuReachesTheMenuBelow();
    void aTitleHasRoomBesideItsShortcut();
    void typingFindsAnItem();

private:
    QRect cardOf(const QMenu &menu) const
    {
        return menu.rect().marginsRemoved(menu.contentsMargins());
    }

    std::unique_ptr<QMenu> m_menu;
    QMenu *m_submenu = nullptr;
    QAction *m_first = nullptr;
    QAction *m_separator = nullptr;
    QAction *m_last = nullptr;
};

void MenuLookTest::init()
{
    m_menu = std::make_unique<QMenu>();
    m_first = m_menu->addAction(u"Show Clipboard History"_s);
    m_separator = m_menu->addSeparator();
    m_submenu = m_menu->addMenu(u"Pause Recording"_s);
    m_submenu->addAction(u"Pause"_s);
    m_last = m_menu->addAction(u"Quit Tessarine"_s);
    applyMenuLook(*m_menu, {});
}

void MenuLookTest::cleanup()
{
    m_menu.reset();
}

void MenuLookTest::itemsAreAsHighAsTheyShouldBe()
{
    m_menu->popup({100, 100});
    QCOMPARE(m_menu->actionGeometry(m_first).height(), 28);
    QCOMPARE(m_menu->actionGeometry(m_last).height(), 28);
    QCOMPARE(m_menu->actionGeometry(m_first).topLeft() - cardOf(*m_menu).topLeft(), QPoint(5, 5));
}

void MenuLookTest::separatorsAreLow()
{
    m_menu->popup({100, 100});
    QCOMPARE(m_menu->actionGeometry(m_separator).height(), 11);
}

void MenuLookTest::aMenuGetsRoomForItsShadowAndStaysWhereItWasAsked()
{
    m_menu->popup({100, 100});
    QCOMPARE(m_menu->contentsMargins(), SoftShadow().margins());
    QCOMPARE(m_menu->mapToGlobal(cardOf(*m_menu).topLeft()), QPoint(100, 100));
}

void MenuLookTest::theRoomIsGoneWhenTheMenuHasClosed()
{
    const QSize size = m_menu->sizeHint();
    m_menu->popup({100, 100});
    QCOMPARE(cardOf(*m_menu).size(), size);
    m_menu->close();
    QCOMPARE(m_menu->sizeHint(), size);
}

void MenuLookTest::withoutACompositorThereIsNoRoomAndTheCornersAreCut()
{
    applyMenuLook(*m_menu, {ColorScheme::Light, false});
    m_menu->popup({100, 100});
    QVERIFY(m_menu->contentsMargins().isNull());
    QVERIFY(!m_menu->mask().isEmpty());
    QVERIFY(!m_menu->mask().contains(QPoint(0, 0)));
    QVERIFY(m_menu->mask().contains(QPoint(8, 8)));
}

void MenuLookTest::theLookMayChangeBetweenTwoOpenings()
{
    m_menu->popup({100, 100});
    m_menu->close();
    applyMenuLook(*m_menu, {ColorScheme::Dark, false});
    m_menu->popup({100, 100});
    QVERIFY(m_menu->contentsMargins().isNull());
    const QColor ground = m_menu->grab().toImage().pixelColor(10, 3);
    QCOMPARE(ground, systemColors(ColorScheme::Dark).raisedSurfaceColor);
    m_menu->close();
    applyMenuLook(*m_menu, {ColorScheme::Dark, true});
    m_menu->popup({100, 100});
    QVERIFY(!m_menu->contentsMargins().isNull());
    QVERIFY(m_menu->mask().isEmpty());
}

void MenuLookTest::submenusGetTheLookToo()
{
    m_submenu->popup({100, 100});
    QCOMPARE(m_submenu->actionGeometry(m_submenu->actions().first()).height(), 28);
}

void MenuLookTest::theChosenItemHasTheGroundOfASelection()
{
    m_menu->popup({100, 100});
    const QPoint inItem = m_menu->actionGeometry(m_last).topLeft() + QPoint(4, 14);
    const SystemColors colors = systemColors(ColorScheme::Light);
    QCOMPARE(m_menu->grab().toImage().pixelColor(inItem), colors.raisedSurfaceColor);
    m_menu->setActiveAction(m_last);
    QCOMPARE(m_menu->grab().toImage().pixelColor(inItem), colors.selectionColor);
}

void MenuLookTest::aPressInTheShadowClosesTheMenu()
{
    m_menu->popup({100, 100});
    const QPoint inShadow = m_menu->rect().bottomRight() - QPoint(3, 3);
    QTest::mousePress(m_menu.get(), Qt::LeftButton, {}, cardOf(*m_menu).topLeft() + QPoint(2, 40));
    QVERIFY(m_menu->isVisible());
    QTest::mousePress(m_menu.get(), Qt::LeftButton, {}, inShadow);
    QVERIFY(!m_menu->isVisible());
}

void MenuLookTest::aMoveInTheShadowOfASubmenuReachesTheMenuBelow()
{
    m_menu->popup({100, 100});
    m_menu->setActiveAction(m_submenu->menuAction());
    QTRY_VERIFY(m_submenu->isVisible());
    QPoint place = m_menu->actionGeometry(m_last).center();
    place.setX(cardOf(*m_menu).right() - 8);
    const QPoint global = m_menu->mapToGlobal(place);
    QVERIFY(m_submenu->geometry().contains(global));
    QSignalSpy hovered(m_menu.get(), &QMenu::hovered);
    // The first move only tells the menu where the pointer was.
    for (const int offset : {0, 1, 2}) {
        const QPoint there = global + QPoint(offset, 0);
        QMouseEvent move(QEvent::MouseMove, m_submenu->mapFromGlobal(there), there, Qt::NoButton,
                         Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_submenu, &move);
    }
    QTRY_COMPARE(m_menu->activeAction(), m_last);
}

void MenuLookTest::aTitleHasRoomBesideItsShortcut()
{
    const int before = m_menu->sizeHint().width();
    m_first->setShortcut(QKeySequence(u"Ctrl+Q"_s));
    const QFontMetrics metrics(interfaceFont(12));
    QVERIFY(m_menu->sizeHint().width() >= before + metrics.horizontalAdvance(u"Ctrl+Q"_s));
}

void MenuLookTest::typingFindsAnItem()
{
    m_menu->popup({100, 100});
    QTest::keyClicks(m_menu.get(), u"qu"_s);
    QCOMPARE(m_menu->activeAction(), m_last);
}

QTEST_MAIN(MenuLookTest)
#include "MenuLookTest.moc"
