#include "platform/x11/X11Blur.h"

#include "tests/platform/PrivateDesktop.h"

#include <QGuiApplication>
#include <QPainterPath>
#include <QTest>
#include <QWindow>

#include <memory>

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
    void anOfferIsSeenWhenItComesAndGoes();
    void anOfferThatWasThereBeforeIsSeen();
    void theShapeIsToldInPixels();
    void roundCornersAreLeftOut();
    void anEmptyShapeTakesTheWishBack();

private:
    void offer();
    void withdraw();
    QList<int> toldNumbers(QWindow &window);

    PrivateDesktop &m_desktop;
};

void X11BlurTest::offer()
{
    m_desktop.run(u"xprop"_s, {u"-root"_s, u"-f"_s, kProperty, u"8c"_s, u"-set"_s, kProperty, u"0"_s});
}

void X11BlurTest::withdraw()
{
    m_desktop.run(u"xprop"_s, {u"-root"_s, u"-remove"_s, kProperty});
}

/// What the window's property says, as another program reads it.
QList<int> X11BlurTest::toldNumbers(QWindow &window)
{
    const QByteArray answer =
        m_desktop.run(u"xprop"_s, {u"-id"_s, QString::number(window.winId()), kProperty});
    QList<int> numbers;
    if (!answer.contains("(CARDINAL) = "))
        return numbers;
    for (const QByteArray &number : answer.mid(answer.indexOf('=') + 1).split(','))
        numbers.append(number.trimmed().toInt());
    return numbers;
}

void X11BlurTest::anOfferIsSeenWhenItComesAndGoes()
{
    X11Connection connection(m_desktop.displayName());
    X11Blur blur(connection);
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
    X11Connection connection(m_desktop.displayName());
    QVERIFY(X11Blur(connection).isOffered());
    withdraw();
    QVERIFY(!X11Blur(connection).isOffered());
}

void X11BlurTest::theShapeIsToldInPixels()
{
    X11Connection connection(m_desktop.displayName());
    const X11Blur blur(connection);
    QWindow window;
    window.create();
    QPainterPath shape;
    shape.addRect(10, 20, 300, 200);
    blur.blurBehind(&window, shape);
    const int ratio = qRound(window.devicePixelRatio());
    QTRY_COMPARE(toldNumbers(window),
                 (QList<int>{10 * ratio, 20 * ratio, 300 * ratio, 200 * ratio}));
}

void X11BlurTest::roundCornersAreLeftOut()
{
    X11Connection connection(m_desktop.displayName());
    const X11Blur blur(connection);
    QWindow window;
    window.create();
    QPainterPath shape;
    shape.addRoundedRect(0, 0, 200, 100, 28, 28);
    blur.blurBehind(&window, shape);
    QTRY_VERIFY(!toldNumbers(window).isEmpty());
    const QList<int> numbers = toldNumbers(window);
    QCOMPARE(numbers.size() % 4, 0);
    QRegion region;
    for (qsizetype i = 0; i < numbers.size(); i += 4)
        region += QRect(numbers[i], numbers[i + 1], numbers[i + 2], numbers[i + 3]);
    QCOMPARE(region.boundingRect().size(), QSize(200, 100) * window.devicePixelRatio());
    for (const QPoint corner : {QPoint(3, 3), QPoint(196, 3), QPoint(3, 96), QPoint(196, 96)})
        QVERIFY(!region.contains(corner * window.devicePixelRatio()));
    QVERIFY(region.contains(QPoint(100, 1) * window.devicePixelRatio()));
}

void X11BlurTest::anEmptyShapeTakesTheWishBack()
{
    X11Connection connection(m_desktop.displayName());
    const X11Blur blur(connection);
    QWindow window;
    window.create();
    QPainterPath shape;
    shape.addRect(0, 0, 10, 10);
    blur.blurBehind(&window, shape);
    QTRY_VERIFY(!toldNumbers(window).isEmpty());
    blur.blurBehind(&window, {});
    QTRY_VERIFY(toldNumbers(window).isEmpty());
}

int main(int argc, char *argv[])
{
    PrivateDesktop desktop;
    if (!desktop.start())
        return EXIT_FAILURE;
    qputenv("QT_QPA_PLATFORM", "xcb");
    QGuiApplication application(argc, argv);
    X11BlurTest test(desktop);
    return QTest::qExec(&test, argc, argv);
}

#include "X11BlurTest.moc"
