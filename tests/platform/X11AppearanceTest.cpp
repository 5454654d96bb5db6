#include "platform/x11/X11Appearance.h"

#include "tests/platform/FakeSettingsManager.h"
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
    void theSettingsManagerIsHeardWithoutABus();
    void blurIsOfferedByACompositorOnly();
    void textsAreNeverSmallerThanUsual();

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

void X11AppearanceTest::theSettingsManagerIsHeardWithoutABus()
{
    X11Connection connection(m_desktop.displayName());
    X11Appearance appearance(connection);
    int changeCount = 0;
    appearance.onChanged = [&changeCount] { ++changeCount; };
    const FakeSettingsManager manager(m_desktop.displayName(),
                                      MadeX11Settings()
                                          .number("Gtk/EnableAnimations", 0)
                                          .text("Net/ThemeName", "HighContrast"));
    QVERIFY(!appearance.prefersReducedMotion());
    QTRY_VERIFY(appearance.prefersReducedMotion());
    QVERIFY(appearance.prefersHighContrast());
    QCOMPARE(changeCount, 1);
}

void X11AppearanceTest::blurIsOfferedByACompositorOnly()
{
    const QString property = u"_KDE_NET_WM_BLUR_BEHIND_REGION"_s;
    m_desktop.run(u"xprop"_s, {u"-root"_s, u"-f"_s, property, u"8c"_s, u"-set"_s, property, u"0"_s});
    X11Connection connection(m_desktop.displayName());
    X11Appearance appearance(connection);
    QVERIFY(!appearance.offersBlur()); // Left by one that has ended.
    m_desktop.launch(u"picom"_s);
    QTRY_VERIFY(appearance.offersBlur());
    m_desktop.run(u"xprop"_s, {u"-root"_s, u"-remove"_s, property});
    QTRY_VERIFY(!appearance.offersBlur());
}

void X11AppearanceTest::textsAreNeverSmallerThanUsual()
{
    X11Connection connection(m_desktop.displayName());
    QCOMPARE(X11Appearance(connection).textScale(), 1.0);
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
