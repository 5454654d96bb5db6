#include "platform/x11/X11DesktopSettings.h"

#include "tests/platform/FakeSettingsManager.h"
#include "tests/platform/PrivateDesktop.h"

#include <QCoreApplication>
#include <QTest>

#include <memory>

namespace {

MadeX11Settings animations(qint32 isOn)
{
    return MadeX11Settings().text("Net/ThemeName", "Clear").number("Gtk/EnableAnimations", isOn);
}

MadeX11Settings theme(const QByteArray &name)
{
    return MadeX11Settings().number("Gtk/EnableAnimations", 1).text("Net/ThemeName", name);
}

} // namespace

class X11DesktopSettingsTest : public QObject
{
    Q_OBJECT

public:
    explicit X11DesktopSettingsTest(QByteArray displayName)
        : m_displayName(std::move(displayName))
    {
    }

private slots:
    void init();
    void cleanup();
    void settingsAreReadOnceTheLoopRuns();
    void changesAreFollowed();
    void managersThatComeAndGoAreFollowed();
    void nonsenseIsNoWish();

private:
    QByteArray m_displayName;
    std::unique_ptr<X11Connection> m_connection;
    std::unique_ptr<X11DesktopSettings> m_settings;
    int m_changeCount = 0;
};

void X11DesktopSettingsTest::init()
{
    m_connection = std::make_unique<X11Connection>(m_displayName);
    m_settings = std::make_unique<X11DesktopSettings>(*m_connection);
    m_changeCount = 0;
    m_settings->onChanged = [this] { ++m_changeCount; };
}

void X11DesktopSettingsTest::cleanup()
{
    m_settings.reset();
    m_connection.reset();
}

void X11DesktopSettingsTest::settingsAreReadOnceTheLoopRuns()
{
    const FakeSettingsManager manager(m_displayName, animations(0));
    QVERIFY(!m_settings->values().isAnimationOff);
    QTRY_VERIFY(m_settings->values().isAnimationOff);
    QVERIFY(!m_settings->values().isContrastHigh);
    QCOMPARE(m_changeCount, 1);
}

void X11DesktopSettingsTest::changesAreFollowed()
{
    FakeSettingsManager manager(m_displayName, animations(0));
    QTRY_COMPARE(m_changeCount, 1);
    manager.publish(animations(1));
    QTRY_VERIFY(!m_settings->values().isAnimationOff);
    manager.publish(theme("HighContrastInverse"));
    QTRY_VERIFY(m_settings->values().isContrastHigh);
    manager.publish(theme("Clear"));
    QTRY_VERIFY(!m_settings->values().isContrastHigh);
    QCOMPARE(m_changeCount, 4);
}

void X11DesktopSettingsTest::managersThatComeAndGoAreFollowed()
{
    QCoreApplication::processEvents();
    for (int i = 0; i < 2; ++i) {
        {
            FakeSettingsManager manager(m_displayName, animations(0));
            QTRY_VERIFY(m_settings->values().isAnimationOff);
            manager.publish(theme("HighContrast"));
            QTRY_VERIFY(m_settings->values().isContrastHigh);
        }
        QTRY_VERIFY(m_settings->values() == X11DesktopSettings::Values());
    }
}

void X11DesktopSettingsTest::nonsenseIsNoWish()
{
    FakeSettingsManager manager(m_displayName, animations(0));
    QTRY_COMPARE(m_changeCount, 1);
    manager.publish(MadeX11Settings().text("Gtk/EnableAnimations", "0").number("Net/ThemeName", 0));
    QTRY_COMPARE(m_changeCount, 2);
    QVERIFY(m_settings->values() == X11DesktopSettings::Values());
}

int main(int argc, char *argv[])
{
    PrivateDesktop desktop;
    if (!desktop.start())
        return EXIT_FAILURE;
    QCoreApplication application(argc, argv);
    X11DesktopSettingsTest test(desktop.displayName());
    return QTest::qExec(&test, argc, argv);
}

#include "X11DesktopSettingsTest.moc"
