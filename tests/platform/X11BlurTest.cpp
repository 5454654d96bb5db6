#include "platform/x11/X11Blur.h"

#include "tests/platform/PrivateDesktop.h"

#include <QPainterPath>
#include <QTest>
#include <QWindow>

#include <optional>

#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace {

const QString kProperty = u"_KDE_NET_WM_BLUR_BEHIND_REGION"_s;

} // namespace

class X11BlurTest : public QObject
{
    Q_OBJECT

public:
    explicit X11BlurTest(PrivateDesktop &desktop)
        : m_desktop(desktop)
    {
    }

private slots:
    void init();
    void cleanup();
    void anOfferIsSeenWhenItComesAndGoes();
    void anOfferThatWasThereBeforeIsSeen();
    void theShapeIsToldInPixels();
    void roundCornersAreLeftOut();
    void anEmptyShapeTakesTheWishBack();

private:
    void offer();
    void withdraw();
    void wishFor(const QPainterPath &shape);
    QList<int> toldNumbers();

    PrivateDesktop &m_desktop;
    std::optional<X11Connection> m_connection;
    std::optional<QWindow> m_window;
};

void X11BlurTest::init()
{
    m_connection.emplace(m_desktop.displayName());
    m_window.emplace();
    m_window->create();
}

void X11BlurTest::cleanup()
{
    m_window.reset();
    m_connection.reset();
}

void X11BlurTest::offer()
{
    m_desktop.run(u"xprop"_s, {u"-root"_s, u"-f"_s, kProperty, u"8c"_s, u"-set"_s, kProperty, u"0"_s});
}

void X11BlurTest::withdraw()
{
    m_desktop.run(u"xprop"_s, {u"-root"_s, u"-remove"_s, kProperty});
}

void X11BlurTest::wishFor(const QPainterPath &shape)
{
    X11Blur(*m_connection).blurBehind(&*m_window, shape);
}

/// What the window's property says, as another program reads it.
QList<int> X11BlurTest::toldNumbers()
{
    const QByteArray answer =
        m_desktop.run(u"xprop"_s, {u"-id"_s, QString::number(m_window->winId()), kProperty});
    QList<int> numbers;
    if (!answer.contains("(CARDINAL) = "))
        return numbers;
    for (const QByteArray &number : answer.mid(answer.indexOf('=') + 1).split(','))
        numbers.append(number.trimmed().toInt());
    return numbers;
}

void X11BlurTest::anOfferIsSeenWhenItComesAndGoes()
{
    X11Blur blur(*m_connection);
    int changeCount = 0;
    blur.onChanged = [&changeCount] { ++changeCount; };
    QVERIFY(!blur.isOffered());
    offer();
    QTRY_VERIFY(blur.isOffered());
    withdraw();
    QTRY_VERIFY(!blur.isOffered());
    QCOMPARE(changeCount, 2);
}

void X11BlurTest::anOfferThatWasThereBeforeIsSeen()
{
    offer();
    QVERIFY(X11Blur(*m_connection).isOffered());
    withdraw();
    QVERIFY(!X11Blur(*m_connection).isOffered());
}

void X11BlurTest::theShapeIsToldInPixels()
{
    QPainterPath shape;
    shape.addRect(10, 20, 300, 200);
    wishFor(shape);
    const int ratio = qRound(m_window->devicePixelRatio());
    QTRY_COMPARE(toldNumbers(),
                 (QList<int>{10 * ratio, 20 * ratio, 300 * ratio, 200 * ratio}));
}

void X11BlurTest::roundCornersAreLeftOut()
{
    QPainterPath shape;
    shape.addRoundedRect(0, 0, 200, 100, 28, 28);
    wishFor(shape);
    QTRY_VERIFY(!toldNumbers().isEmpty());
    const QList<int> numbers = toldNumbers();
    QCOMPARE(numbers.size() % 4, 0);
    QRegion region;
    for (qsizetype i = 0; i < numbers.size(); i += 4)
        region += QRect(numbers[i], numbers[i + 1], numbers[i + 2], numbers[i + 3]);
    QCOMPARE(region.boundingRect().size(), QSize(200, 100) * m_window->devicePixelRatio());
    for (const QPoint corner : {QPoint(3, 3), QPoint(196, 3), QPoint(3, 96), QPoint(196, 96)})
        QVERIFY(!region.contains(corner * m_window->devicePixelRatio()));
    QVERIFY(region.contains(QPoint(100, 1) * m_window->devicePixelRatio()));
}

void X11BlurTest::anEmptyShapeTakesTheWishBack()
{
    QPainterPath shape;
    shape.addRect(0, 0, 10, 10);
    wishFor(shape);
    QTRY_VERIFY(!toldNumbers().isEmpty());
    wishFor({});
    QTRY_VERIFY(toldNumbers().isEmpty());
}

int main(int argc, char *argv[])
{
    return runOnPrivateDesktop<X11BlurTest>(argc, argv);
}

#include "X11BlurTest.moc"
