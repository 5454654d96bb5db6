#include "platform/x11/X11Connection.h"

#include "tests/platform/PrivateDesktop.h"

#include <QGuiApplication>
#include <QTest>

#include <vector>

#include <xcb/xcb.h>

class X11ConnectionTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_connection.reset(); }
    void connectionThatTheServerEndsIsToldOnce();
    void connectionThatARequestEndsIsToldOnce();

private:
    std::unique_ptr<X11Connection> m_connection;
    int m_lossCount = 0;
};

void X11ConnectionTest::init()
{
    m_lossCount = 0;
    m_connection = std::make_unique<X11Connection>();
    m_connection->onLost = [this] { ++m_lossCount; };
}

void X11ConnectionTest::connectionThatTheServerEndsIsToldOnce()
{
    const quint32 window = xcb_generate_id(m_connection->xcb());
    xcb_create_window(m_connection->xcb(), XCB_COPY_FROM_PARENT, window,
                      m_connection->rootWindow(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    m_connection->reply(xcb_get_input_focus_reply, xcb_get_input_focus(m_connection->xcb()));
    QCoreApplication::processEvents();
    QCOMPARE(m_lossCount, 0);

    X11Connection other;
    xcb_kill_client(other.xcb(), window);
    other.flush();
    QTRY_COMPARE(m_lossCount, 1);
    m_connection->flush();
    QCoreApplication::processEvents();
    QCOMPARE(m_lossCount, 1);
}

void X11ConnectionTest::connectionThatARequestEndsIsToldOnce()
{
    const std::vector<char> bytes(4 * size_t(xcb_get_maximum_request_length(m_connection->xcb())));
    xcb_change_property(m_connection->xcb(), XCB_PROP_MODE_REPLACE, m_connection->rootWindow(),
                        XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, quint32(bytes.size()), bytes.data());
    m_connection->flush();
    QCOMPARE(m_lossCount, 0); // The caller may be in the middle of something.
    QTRY_COMPARE(m_lossCount, 1);
    m_connection->flush();
    QCoreApplication::processEvents();
    QCOMPARE(m_lossCount, 1);
}

int main(int argc, char *argv[])
{
    PrivateDesktop desktop;
    if (!desktop.start())
        return EXIT_FAILURE;
    QGuiApplication application(argc, argv);
    X11ConnectionTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "X11ConnectionTest.moc"
