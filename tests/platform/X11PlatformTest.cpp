#include "platform/x11/X11Platform.h"

#include "tests/fakes/FakeImageCodec.h"
#include "tests/fakes/FakeScheduler.h"
#include "tests/platform/PrivateDesktop.h"

#include <QTest>

using namespace Qt::StringLiterals;

class X11PlatformTest : public QObject
{
    Q_OBJECT

public:
    explicit X11PlatformTest(PrivateDesktop &desktop)
        : m_desktop(desktop)
    {
    }

private slots:
    void cleanup() { qputenv("DISPLAY", m_desktop.displayName()); }
    void platformOffersEverything();
    void withoutADisplayThereIsAReason_data();
    void withoutADisplayThereIsAReason();
    void serverWithoutExtensionsStillServes();
    void serverThatTellsOfNoCopyIsRefusedWithAReason();

private:
    PrivateDesktop &m_desktop;
    FakeImageCodec m_codec;
    FakeScheduler m_scheduler;
};

void X11PlatformTest::platformOffersEverything()
{
    requireX11Display();
    const std::unique_ptr<Platform> platform = makeX11Platform(m_codec, m_scheduler);

    QVERIFY(platform->pasteKeystroke().isPermitted());
    QVERIFY(!platform->appearance().isComposited());
    QVERIFY(!platform->workspace().frontmostApplication());
    int pressCount = 0;
    platform->globalHotkey().onPressed = [&pressCount] { ++pressCount; };
    QCOMPARE(platform->globalHotkey().assign(49, 0x800), 0);
    QPoint place;
    platform->pointerMonitor().onMousePressed
        = [&place](QPoint position, quint64) { place = position; };
    platform->pointerMonitor().start();
    m_desktop.xdotool(u"key alt+space mousemove 7 8 click 1"_s);
    QTRY_COMPARE(place, QPoint(7, 8));
    QCOMPARE(pressCount, 1);
}

void X11PlatformTest::withoutADisplayThereIsAReason_data()
{
    QTest::addColumn<QByteArray>("display");
    QTest::addColumn<QByteArray>("reason");

    QTest::newRow("not set") << QByteArray()
                             << QByteArray("There is no X11 display: DISPLAY is not set");
    QTest::newRow("not there") << QByteArray(":4711")
                               << QByteArray("The X11 display :4711 cannot be reached");
    QTest::newRow("no name of a display")
        << QByteArray("nonsense") << QByteArray("The X11 display nonsense cannot be reached");
    QTest::newRow("no such screen")
        << m_desktop.displayName() + ".7"
        << "The X11 display " + m_desktop.displayName() + ".7 cannot be reached";
}

void X11PlatformTest::withoutADisplayThereIsAReason()
{
    QFETCH(QByteArray, display);
    QFETCH(QByteArray, reason);
    qputenv("DISPLAY", display);

    try {
        requireX11Display();
        QFAIL("There is a display");
    } catch (const PlatformError &error) {
        QCOMPARE(QByteArray(error.what()), reason);
    }
    QVERIFY_EXCEPTION_THROWN(makeX11Platform(m_codec, m_scheduler), PlatformError);
}

void X11PlatformTest::serverWithoutExtensionsStillServes()
{
    PrivateDesktop bare;
    QVERIFY(bare.start({u"-extension"_s, u"XTEST"_s, u"-extension"_s, u"COMPOSITE"_s}));
    {
        const std::unique_ptr<Platform> platform = makeX11Platform(m_codec, m_scheduler);
        QVERIFY(!platform->pasteKeystroke().isPermitted());
        QCOMPARE(platform->pasteKeystroke().postKeyDown(), PasteKeystroke::KeyDown::Failed);
        QVERIFY(!platform->appearance().isComposited());
        QCOMPARE(platform->globalHotkey().assign(49, 0x800), 0);
    }
}

void X11PlatformTest::serverThatTellsOfNoCopyIsRefusedWithAReason()
{
    PrivateDesktop bare;
    QVERIFY(bare.start({u"-extension"_s, u"XFIXES"_s}));
    try {
        makeX11Platform(m_codec, m_scheduler);
        QFAIL("A server without XFixes was accepted");
    } catch (const PlatformError &error) {
        QCOMPARE(QByteArray(error.what()), QByteArray("the X server lacks the XFixes extension"));
    }
}

int main(int argc, char *argv[])
{
    return runOnPrivateDesktop<X11PlatformTest>(argc, argv);
}

#include "X11PlatformTest.moc"
