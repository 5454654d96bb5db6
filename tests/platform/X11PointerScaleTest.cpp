#include "platform/x11/X11PointerMonitor.h"

#include "tests/platform/PrivateDesktop.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;

class X11PointerScaleTest : public QObject
{
    Q_OBJECT

public:
    explicit X11PointerScaleTest(PrivateDesktop &desktop)
        : m_desktop(desktop)
    {
    }

private slots:
    void placeIsDeviceIndependent();

private:
    PrivateDesktop &m_desktop;
};

void X11PointerScaleTest::placeIsDeviceIndependent()
{
    QCOMPARE(QGuiApplication::primaryScreen()->devicePixelRatio(), 2.0);
    X11Connection connection(m_desktop.displayName());
    X11PointerMonitor monitor(connection);
    QPoint place;
    monitor.onMousePressed = [&place](QPoint position, quint64) { place = position; };
    monitor.start();
    m_desktop.xdotool(u"mousemove 400 300 click 1"_s);
    QTRY_COMPARE(place, QPoint(200, 150));
}

int main(int argc, char *argv[])
{
    PrivateDesktop desktop;
    if (!desktop.start())
        return EXIT_FAILURE;
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("QT_SCALE_FACTOR", "2");
    QGuiApplication application(argc, argv);
    X11PointerScaleTest test(desktop);
    return QTest::qExec(&test, argc, argv);
}

#include "X11PointerScaleTest.moc"
