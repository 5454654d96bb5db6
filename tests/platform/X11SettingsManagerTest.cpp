#include "platform/x11/X11SettingsManager.h"

#include "tests/platform/MadeX11Settings.h"
#include "tests/platform/PrivateDesktop.h"

#include <QCoreApplication>
#include <QTest>

#include <memory>

#include <xcb/xcb.h>

namespace {

/// A settings manager on a connection of its own; it is gone with the object.
class FakeManager
{
public:
    FakeManager(const QByteArray &displayName, const MadeX11Settings &settings)
        : m_connection(displayName)
        , m_window(xcb_generate_id(m_connection.xcb()))
    {
        xcb_create_window(m_connection.xcb(), 0, m_window, m_connection.rootWindow(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, 0, 0, nullptr);
        publish(settings);
        xcb_set_selection_owner(m_connection.xcb(), m_window,
                                m_connection.atom(X11AtomName::XsettingsSelection),
                                XCB_CURRENT_TIME);
        m_connection.serverTime(); // Whose answer comes after all that.
    }

    void publish(const MadeX11Settings &settings)
    {
        const quint32 property = m_connection.atom(X11AtomName::XsettingsSettings);
        const QByteArray bytes = settings.bytes();
        xcb_change_property(m_connection.xcb(), XCB_PROP_MODE_REPLACE, m_window, property, property,
                            8, quint32(bytes.size()), bytes.constData());
        m_connection.flush();
    }

private:
    X11Connection m_connection;
    quint32 m_window;
};

MadeX11Settings animations(qint32 isOn)
{
    return MadeX11Settings().text("Net/ThemeName", "Clear").number("Gtk/EnableAnimations", isOn);
}

MadeX11Settings theme(const QByteArray &name)
{
    return MadeX11Settings().number("Gtk/EnableAnimations", 1).text("Net/ThemeName", name);
}

} // namespace

class X11SettingsManagerTest : public QObject
{
    Q_OBJECT

public:
    explicit X11SettingsManagerTest(QByteArray displayName)
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
    std::unique_ptr<X11SettingsManager> m_settings;
    int m_changeCount = 0;
};

void X11SettingsManagerTest::init()
{
    m_connection = std::make_unique<X11Connection>(m_displayName);
    m_settings = std::make_unique<X11SettingsManager>(*m_connection);
    m_changeCount = 0;
    m_settings->onChanged = [this] { ++m_changeCount; };
}

void X11SettingsManagerTest::cleanup()
{
    m_settings.reset();
    m_connection.reset();
}

void X11SettingsManagerTest::settingsAreReadOnceTheLoopRuns()
{
    const FakeManager manager(m_displayName, animations(0));
    QVERIFY(!m_settings->values().isAnimationOff);
    QTRY_VERIFY(m_settings->values().isAnimationOff);
    QVERIFY(!m_settings->values().isContrastHigh);
    QCOMPARE(m_changeCount, 1);
}

void X11SettingsManagerTest::changesAreFollowed()
{
    FakeManager manager(m_displayName, animations(0));
    QTRY_COMPARE(m_changeCount, 1);
    manager.publish(animations(1));
    QTRY_VERIFY(!m_settings->values().isAnimationOff);
    manager.publish(theme("HighContrastInverse"));
    QTRY_VERIFY(m_settings->values().isContrastHigh);
    manager.publish(theme("Clear"));
    QTRY_VERIFY(!m_settings->values().isContrastHigh);
    QCOMPARE(m_changeCount, 4);
}

void X11SettingsManagerTest::managersThatComeAndGoAreFollowed()
{
    QCoreApplication::processEvents();
    for (int i = 0; i < 2; ++i) {
        {
            FakeManager manager(m_displayName, animations(0));
            QTRY_VERIFY(m_settings->values().isAnimationOff);
            manager.publish(theme("HighContrast"));
            QTRY_VERIFY(m_settings->values().isContrastHigh);
        }
        QTRY_VERIFY(m_settings->values() == X11SettingsManager::Values());
    }
}

void X11SettingsManagerTest::nonsenseIsNoWish()
{
    FakeManager manager(m_displayName, animations(0));
    QTRY_COMPARE(m_changeCount, 1);
    manager.publish(MadeX11Settings().text("Gtk/EnableAnimations", "0").number("Net/ThemeName", 0));
    QTRY_COMPARE(m_changeCount, 2);
    QVERIFY(m_settings->values() == X11SettingsManager::Values());
}

int main(int argc, char *argv[])
{
    PrivateDesktop desktop;
    if (!desktop.start())
        return EXIT_FAILURE;
    QCoreApplication application(argc, argv);
    X11SettingsManagerTest test(desktop.displayName());
    return QTest::qExec(&test, argc, argv);
}

#include "X11SettingsManagerTest.moc"
