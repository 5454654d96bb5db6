#include "platform/x11/X11PointerMonitor.h"

#include "tests/platform/PrivateDesktop.h"

#include <QTest>

using namespace Qt::StringLiterals;

class X11PointerMonitorTest : public QObject
{
    Q_OBJECT

public:
    explicit X11PointerMonitorTest(PrivateDesktop &desktop)
        : m_desktop(desktop)
    {
    }

private slots:
    void init();
    void leftAndRightPressesAreToldWithTheirPlace();
    void otherButtonsAreNotTold();
    void nothingIsToldBeforeStartAndAfterStop();
    void pressesInsideAGrabAreTold();
    void pressStillReachesTheWindowBelow();
    void aPressHasTheTimestampOfTheEventThatItsWindowGets();

private:
    PrivateDesktop &m_desktop;
    std::unique_ptr<X11Connection> m_connection;
    std::unique_ptr<X11PointerMonitor> m_monitor;
    QList<QPoint> m_presses;
    QList<quint64> m_timestamps;
};

void X11PointerMonitorTest::init()
{
    m_monitor.reset();
    m_connection = std::make_unique<X11Connection>(m_desktop.displayName());
    m_monitor = std::make_unique<X11PointerMonitor>(*m_connection);
    m_presses.clear();
    m_timestamps.clear();
    m_monitor->onMousePressed = [this](QPoint position, quint64 timestamp) {
        m_presses.append(position);
        m_timestamps.append(timestamp);
    };
}

void X11PointerMonitorTest::leftAndRightPressesAreToldWithTheirPlace()
{
    m_monitor->start();
    m_desktop.xdotool(u"mousemove 120 230 click 1"_s);
    QTRY_COMPARE(m_presses, QList<QPoint>{QPoint(120, 230)});
    m_desktop.xdotool(u"mousemove 1000 700 click 3"_s);
    QTRY_COMPARE(m_presses, (QList<QPoint>{QPoint(120, 230), QPoint(1000, 700)}));
}

void X11PointerMonitorTest::otherButtonsAreNotTold()
{
    m_monitor->start();
    m_desktop.xdotool(u"mousemove 10 10 click 2 click 4 click 5 click 8 mousemove 20 20 click 1"_s);
    QTRY_COMPARE(m_presses, QList<QPoint>{QPoint(20, 20)});
}

void X11PointerMonitorTest::nothingIsToldBeforeStartAndAfterStop()
{
    m_desktop.xdotool(u"mousemove 1 1 click 1"_s);
    m_monitor->start();
    m_monitor->start();
    m_desktop.xdotool(u"mousemove 2 2 click 1"_s);
    QTRY_COMPARE(m_presses, QList<QPoint>{QPoint(2, 2)});
    m_monitor->stop();
    m_monitor->stop();
    m_desktop.xdotool(u"mousemove 3 3 click 1"_s);
    m_monitor->start();
    m_desktop.xdotool(u"mousemove 4 4 click 1"_s);
    QTRY_COMPARE(m_presses, (QList<QPoint>{QPoint(2, 2), QPoint(4, 4)}));
}

void X11PointerMonitorTest::pressesInsideAGrabAreTold()
{
    QProcess &grabber = m_desktop.launch(
        u"/usr/bin/python3"_s,
        {u"-c"_s, u"import time\nfrom Xlib import X, display\nd = display.Display()\n"
                  "r = d.screen().root\n"
                  "r.grab_pointer(0, X.ButtonPressMask, X.GrabModeAsync, X.GrabModeAsync, 0, 0,"
                  " X.CurrentTime)\nd.sync()\n"
                  "w = r.create_window(0, 0, 1, 1, 0, X.CopyFromParent)\n"
                  "w.set_wm_class('grabber', 'Grabber')\nw.map()\nd.sync()\ntime.sleep(1000)\n"_s});
    QVERIFY(m_desktop.findWindow(u"Grabber"_s) != 0);
    m_monitor->start();
    m_desktop.xdotool(u"mousemove 50 60 click 1"_s);
    QTRY_COMPARE(m_presses, QList<QPoint>{QPoint(50, 60)});
    m_desktop.end(grabber);
}

void X11PointerMonitorTest::pressStillReachesTheWindowBelow()
{
    m_monitor->start();
    QProcess &terminal =
        m_desktop.launch(u"xterm"_s, {u"-fa"_s, u"Mono"_s, u"-geometry"_s, u"80x24+0+0"_s, u"-e"_s,
                                      u"sh"_s, u"-c"_s, u"printf 'chosenword\\n'; sleep 1000"_s});
    QVERIFY(m_desktop.findWindow(u"XTerm"_s) != 0);
    // A double click in an xterm selects the word for PRIMARY.
    QTRY_VERIFY([this] {
        m_desktop.xdotool(u"mousemove 30 10 click --repeat 2 --delay 20 1"_s);
        return m_desktop.run(u"timeout"_s, {u"2"_s, u"xclip"_s, u"-o"_s}) == "chosenword";
    }());
    QVERIFY(!m_presses.isEmpty());
    m_desktop.end(terminal);
}

void X11PointerMonitorTest::aPressHasTheTimestampOfTheEventThatItsWindowGets()
{
    m_monitor->start();
    const QString log = m_desktop.folder() + u"/presses"_s;
    QProcess &window = m_desktop.launch(
        u"/usr/bin/python3"_s,
        {u"-c"_s, u"import sys\nfrom Xlib import X, display\nd = display.Display()\n"
                  "w = d.screen().root.create_window(0, 0, 300, 300, 0, X.CopyFromParent,"
                  " event_mask=X.ButtonPressMask)\n"
                  "w.set_wm_class('pressed', 'Pressed')\nw.map()\nd.sync()\n"
                  "while True:\n"
                  "    event = d.next_event()\n"
                  "    with open(sys.argv[1], 'a') as file: print(event.time, file=file)\n"_s,
         log});
    QVERIFY(m_desktop.findWindow(u"Pressed"_s) != 0);
    m_desktop.xdotool(u"mousemove 150 150 click 1 click 3"_s);
    QTRY_COMPARE(m_timestamps.size(), 2);
    QByteArray expected;
    for (const quint64 timestamp : m_timestamps)
        expected += QByteArray::number(timestamp) + '\n';
    const auto logged = [&log] {
        QFile file(log);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    QTRY_COMPARE(logged(), expected);
    m_desktop.end(window);
}

int main(int argc, char *argv[])
{
    return runOnPrivateDesktop<X11PointerMonitorTest>(argc, argv);
}

#include "X11PointerMonitorTest.moc"
