#include "window/PresentationLayer.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class PresentationLayerTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aViewShownAsItIsIsPaintedAsEver();
    void opacityFadesAllThatTheViewHoldsAsOne();
    void scalingKeepsTheCentre();
    void whatIsTrueStaysUntouched();
    void whatChangesMeanwhileIsSeen();
    void theWindowsOwnGroundKeepsStill();

private:
    QColor colorAt(int x, int y);

    std::unique_ptr<QWidget> m_window;
    QWidget *m_view = nullptr;
    QPushButton *m_button = nullptr;
    std::unique_ptr<PresentationLayer> m_layer;
};

namespace {

void fill(QWidget &widget, const QColor &color)
{
    QPalette palette = widget.palette();
    palette.setColor(QPalette::Window, color);
    widget.setPalette(palette);
    widget.setAutoFillBackground(true);
}

} // namespace

void PresentationLayerTest::init()
{
    m_window = std::make_unique<QWidget>();
    m_window->setAttribute(Qt::WA_TranslucentBackground);
    m_window->resize(200, 100);
    m_view = new QWidget(m_window.get());
    m_view->setGeometry(m_window->rect());
    fill(*m_view, Qt::red);
    auto *child = new QWidget(m_view);
    child->setGeometry(80, 40, 40, 20);
    fill(*child, Qt::blue);
    m_button = new QPushButton(m_view);
    m_button->setGeometry(0, 0, 20, 20);
    m_layer = std::make_unique<PresentationLayer>(*m_view);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void PresentationLayerTest::cleanup()
{
    m_layer.reset();
    m_window.reset();
}

QColor PresentationLayerTest::colorAt(int x, int y)
{
    return m_window->grab().toImage().pixelColor(x, y);
}

void PresentationLayerTest::aViewShownAsItIsIsPaintedAsEver()
{
    const QImage before = m_window->grab().toImage();
    QVERIFY(!m_view->graphicsEffect());
    m_layer->setPresentation({.opacity = 0.5, .scale = 0.5});
    QVERIFY(m_window->grab().toImage() != before);
    m_layer->setPresentation({});
    QCOMPARE(m_window->grab().toImage(), before);
    QVERIFY(!m_view->graphicsEffect());
}

void PresentationLayerTest::opacityFadesAllThatTheViewHoldsAsOne()
{
    m_layer->setPresentation({.opacity = 0.5});
    const QColor ground = colorAt(40, 50);
    QVERIFY(qAbs(ground.alpha() - 128) <= 1);
    QCOMPARE(ground.red(), 255);
    // The red below does not shine through the blue.
    const QColor child = colorAt(100, 50);
    QVERIFY(qAbs(child.alpha() - 128) <= 1);
    QCOMPARE(child.red(), 0);
    QCOMPARE(child.blue(), 255);
    m_layer->setPresentation({.opacity = 0});
    QCOMPARE(colorAt(40, 50).alpha(), 0);
}

void PresentationLayerTest::scalingKeepsTheCentre()
{
    m_layer->setPresentation({.scale = 0.5});
    QCOMPARE(colorAt(47, 50).alpha(), 0);
    QCOMPARE(colorAt(53, 50), QColor(Qt::red));
    QCOMPARE(colorAt(147, 50), QColor(Qt::red));
    QCOMPARE(colorAt(153, 50).alpha(), 0);
    QCOMPARE(colorAt(100, 22).alpha(), 0);
    QCOMPARE(colorAt(100, 28), QColor(Qt::red));
    QCOMPARE(colorAt(93, 50), QColor(Qt::blue));
    QCOMPARE(colorAt(87, 50), QColor(Qt::red));
}

void PresentationLayerTest::whatIsTrueStaysUntouched()
{
    QSignalSpy clicks(m_button, &QPushButton::clicked);
    m_layer->setPresentation({.opacity = 0.1, .scale = 0.5});
    QCOMPARE(m_view->geometry(), QRect(0, 0, 200, 100));
    QCOMPARE(m_window->childAt(5, 5), m_button);
    QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, QPoint(5, 5));
    QCOMPARE(clicks.count(), 1);
}

void PresentationLayerTest::whatChangesMeanwhileIsSeen()
{
    m_layer->setPresentation({.opacity = 0.9});
    QVERIFY(colorAt(40, 50).green() == 0);
    fill(*m_view, Qt::green);
    QCOMPARE(colorAt(40, 50).green(), 255);
}

void PresentationLayerTest::theWindowsOwnGroundKeepsStill()
{
    m_window->setAttribute(Qt::WA_TranslucentBackground, false);
    m_window->setAttribute(Qt::WA_NoSystemBackground, false);
    fill(*m_window, Qt::white);
    m_layer->setPresentation({.opacity = 0});
    QCOMPARE(colorAt(40, 50), QColor(Qt::white));
}

QTEST_MAIN(PresentationLayerTest)
#include "PresentationLayerTest.moc"
