#include "platform/x11/X11StartupNotification.h"

#include "platform/x11/X11Connection.h"
#include "tests/platform/PrivateDesktop.h"

#include <QCoreApplication>
#include <QTest>

#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace {

/// Puts together what is said about starts, as a window manager does.
class MessageListener : public X11EventListener
{
public:
    explicit MessageListener(const QByteArray &displayName)
        : m_connection(displayName)
    {
        const quint32 eventMask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_connection.xcb(), m_connection.rootWindow(),
                                     XCB_CW_EVENT_MASK, &eventMask);
        // It is to be listening before anybody speaks.
        const auto answer =
            m_connection.reply(xcb_get_input_focus_reply, xcb_get_input_focus(m_connection.xcb()));
        m_connection.addListener(this);
    }
    ~MessageListener() override { m_connection.removeListener(this); }

    QByteArrayList messages;

private:
    void handleX11Event(int type, const void *event) override
    {
        const auto *message = static_cast<const xcb_client_message_event_t *>(event);
        if (type != XCB_CLIENT_MESSAGE || message->format != 8)
            return;
        if (message->type == m_connection.atom(X11AtomName::NetStartupInfoBegin))
            m_pieces.insert(message->window, {});
        else if (message->type != m_connection.atom(X11AtomName::NetStartupInfo))
            return;
        const QByteArrayView piece(reinterpret_cast<const char *>(message->data.data8), 20);
        const qsizetype end = piece.indexOf('\0');
        m_pieces[message->window] += piece.first(end < 0 ? piece.size() : end);
        if (end >= 0)
            messages.append(m_pieces.take(message->window));
    }

    X11Connection m_connection;
    QHash<quint32, QByteArray> m_pieces;
};

} // namespace

class X11StartupNotificationTest : public QObject
{
    Q_OBJECT

public:
    explicit X11StartupNotificationTest(PrivateDesktop &desktop)
        : m_desktop(desktop)
    {
    }

private slots:
    void timeStandsAtTheEndOfTheToken_data();
    void timeStandsAtTheEndOfTheToken();
    void endOfTheStartIsToldToEverybody_data();
    void endOfTheStartIsToldToEverybody();

private:
    PrivateDesktop &m_desktop;
};

void X11StartupNotificationTest::timeStandsAtTheEndOfTheToken_data()
{
    QTest::addColumn<QString>("token");
    QTest::addColumn<quint32>("time");
    QTest::newRow("no token") << QString() << 0U;
    QTest::newRow("a launcher's token") << u"panel-12-host-editor-0_TIME4711"_s << 4711U;
    QTest::newRow("no time") << u"panel-12-host-editor-0"_s << 0U;
    QTest::newRow("time zero") << u"launch_TIME0"_s << 0U;
    QTest::newRow("a program of that name") << u"panel_TIME1-editor_TIME4711"_s << 4711U;
    QTest::newRow("the largest time") << u"a_TIME4294967295"_s << 4294967295U;
    QTest::newRow("too large a time") << u"a_TIME4294967296"_s << 0U;
    QTest::newRow("no number") << u"a_TIME12x"_s << 0U;
    QTest::newRow("negative") << u"a_TIME-5"_s << 0U;
    QTest::newRow("random") << u"5b02f4e4-7c1d-4b6c"_s << 0U;
}

void X11StartupNotificationTest::timeStandsAtTheEndOfTheToken()
{
    QFETCH(QString, token);
    QFETCH(quint32, time);
    QCOMPARE(startupTimeOf(token), time);
}

void X11StartupNotificationTest::endOfTheStartIsToldToEverybody_data()
{
    QTest::addColumn<QString>("token");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("of one piece") << u"a"_s << QByteArray("remove: ID=\"a\"");
    // The zero behind it lies in a piece of its own.
    QTest::newRow("that fills its piece") << u"1234567"_s << QByteArray("remove: ID=\"1234567\"");
    QTest::newRow("of several pieces")
        << u"panel-12-host-editor-0_TIME4711"_s
        << QByteArray("remove: ID=\"panel-12-host-editor-0_TIME4711\"");
    QTest::newRow("with signs that mean something")
        << uR"(a "b" \c é)"_s << QByteArray("remove: ID=\"a \\\"b\\\" \\\\c é\"");
}

void X11StartupNotificationTest::endOfTheStartIsToldToEverybody()
{
    QFETCH(QString, token);
    QFETCH(QByteArray, message);
    MessageListener listener(m_desktop.displayName());
    X11Connection connection(m_desktop.displayName());
    completeStartup(connection, token);
    completeStartup(connection, u"last"_s);
    QTRY_COMPARE(listener.messages, (QByteArrayList{message, "remove: ID=\"last\""}));
}

int main(int argc, char *argv[])
{
    PrivateDesktop desktop;
    if (!desktop.start())
        return EXIT_FAILURE;
    QCoreApplication application(argc, argv);
    X11StartupNotificationTest test(desktop);
    return QTest::qExec(&test, argc, argv);
}

#include "X11StartupNotificationTest.moc"
