#include "window/BlurBehind.h"

#include "tests/fakes/FakeDesktopAppearance.h"

#include <QTest>
#include <QWidget>

#include <memory>

class BlurBehindTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theShapeIsToldBeforeTheWindowAppears();
    void theShapeFollowsTheWindow();
    void theWishIsTakenBack();
    void withoutTheWishNothingIsAsked();

private:
    std::unique_ptr<FakeDesktopAppearance> m_appearance;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<BlurBehind> m_blur;
};

void BlurBehindTest::init()
{
    m_appearance = std::make_unique<FakeDesktopAppearance>();
    m_window = std::make_unique<QWidget>();
    m_window->resize(300, 200);
    m_blur = std::make_unique<BlurBehind>(*m_window, 28, *m_appearance);
}

void BlurBehindTest::cleanup()
{
    m_blur.reset();
    m_window.reset();
}

void BlurBehindTest::theShapeIsToldBeforeTheWindowAppears()
{
    m_blur->setWanted(true);
    QVERIFY(!m_appearance->blurredWindow);
    m_window->show();
    QCOMPARE(m_appearance->blurredWindow, m_window->windowHandle());
    const QPainterPath &shape = m_appearance->blurredShape;
    QCOMPARE(shape.boundingRect(), QRectF(0, 0, 300, 200));
    QVERIFY(!shape.contains(QPointF(3, 3)));
    QVERIFY(shape.contains(QPointF(3, 28)));
}

void BlurBehindTest::theShapeFollowsTheWindow()
{
    m_blur->setWanted(true);
    m_window->show();
    m_window->resize(300, 260);
    QCOMPARE(m_appearance->blurredShape.boundingRect(), QRectF(0, 0, 300, 260));
}

void BlurBehindTest::theWishIsTakenBack()
{
    m_blur->setWanted(true);
    m_window->show();
    m_blur->setWanted(false);
    QVERIFY(m_appearance->blurredShape.isEmpty());
    m_window->resize(300, 260);
    QVERIFY(m_appearance->blurredShape.isEmpty());
    m_blur->setWanted(true);
    QCOMPARE(m_appearance->blurredShape.boundingRect(), QRectF(0, 0, 300, 260));
}

void BlurBehindTest::withoutTheWishNothingIsAsked()
{
    m_window->show();
    m_window->resize(300, 260);
    QVERIFY(!m_appearance->blurredWindow);
}

QTEST_MAIN(BlurBehindTest)
#include "BlurBehindTest.moc"
