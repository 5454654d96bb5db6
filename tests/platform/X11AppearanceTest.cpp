#include "platform/x11/X11Appearance.h"

#include "tests/platform/PrivateDesktop.h"

#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;

class X11AppearanceTest : public QObject
{
    Q_OBJECT

public:
    explicit X11AppearanceTest(PrivateDesktop &desktop)
        : m_desktop(desktop)
    {
    }

private slots:
    void cleanup() { m_desktop.endPrograms(); }
    void plainServerIsNotComposited();
    void compositorComesAndGoes();
    void compositorThatRunsAlreadyIsSeenAtOnce();
    void withoutABusThereIsNoPreference();

private:
    PrivateDesktop &m_desktop;
};

void X11AppearanceTest::plainServerIsNotComposited()
{
    X11Connection connection(m_desktop.displayName());
    QVERIFY(!X11Appearance(connection).isComposited());
}

void X11AppearanceTest::compositorComesAndGoes()
{
    X11Connection connection(m_desktop.displayName());
    X11Appearance appearance(connection);
    QList<bool> changes;
    appearance.onChanged = [&] { changes.append(appearance.isComposited()); };

    QProcess &ended = m_desktop.launch(u"picom"_s);
    QTRY_COMPARE(changes, QList<bool>{true});
    m_desktop.end(ended);
    QTRY_COMPARE(changes, (QList<bool>{true, false}));

    QProcess &killed = m_desktop.launch(u"picom"_s);
    QTRY_COMPARE(changes, (QList<bool>{true, false, true}));
    killed.kill();
    QTRY_COMPARE(changes, (QList<bool>{true, false, true, false}));
}

void X11AppearanceTest::compositorThatRunsAlreadyIsSeenAtOnce()
{
    X11Connection connection(m_desktop.displayName());
    m_desktop.launch(u"picom"_s);
    QVERIFY(PrivateDesktop::waitUntil(
        [&connection] { return X11Appearance(connection).isComposited(); }));
}

void X11AppearanceTest::withoutABusThereIsNoPreference()
{
    X11Connection connection(m_desktop.displayName());
    X11Appearance appearance(connection);
    bool isAsked = false;
    QObject context;
    QMetaObject::invokeMethod(
        &context, [&isAsked] { isAsked = true; }, Qt::QueuedConnection);
    QTRY_VERIFY(isAsked);
    QVERIFY(!appearance.prefersDark());
}

int main(int argc, char *argv[])
{
    PrivateDesktop desktop;
    if (!desktop.start())
        return EXIT_FAILURE;
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qunsetenv("XDG_RUNTIME_DIR");
    QGuiApplication application(argc, argv);
    X11AppearanceTest test(desktop);
    return QTest::qExec(&test, argc, argv);
}

#include "X11AppearanceTest.moc"
